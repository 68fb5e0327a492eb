"""What pyproject.toml cannot say: the version of the library, and wheels that carry the program for one platform."""

import os
import re
import shutil
from pathlib import Path

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py
from wheel.bdist_wheel import bdist_wheel

HERE = Path(__file__).resolve().parent
HEADER = HERE.parent / "include" / "talvek.h"
# Where "cmake --install" has put the program and the library; without it the wheel is plain Python.
PREFIX = os.environ.get("TALVEK_PREFIX")
PROGRAM_FILES = ["bin/talvek", "bin/talvek.exe", "bin/*.dll", "lib/libTalvekAPI.so.[0-9]"]


def version() -> str:
    """The version that the library's header states; in an unpacked source archive the one that it was made with."""
    if not HEADER.exists():
        return re.search(r"^Version: (.+)$", (HERE / "PKG-INFO").read_text(), re.MULTILINE)[1]
    text = HEADER.read_text()
    return ".".join(re.search(rf"TALVEK_VERSION_{part} (\d+)", text)[1] for part in ("MAJOR", "MINOR", "PATCH"))


def platform() -> str:
    """The platform of the installed program."""
    return "win_amd64" if (Path(PREFIX) / "bin" / "talvek.exe").exists() else "linux_x86_64"


class BuildWithProgram(build_py):
    """Puts the program and the library beside the modules."""

    def run(self):
        super().run()
        if PREFIX is None or self.editable_mode:
            return
        for pattern in PROGRAM_FILES:
            for file in Path(PREFIX).glob(pattern):
                target = Path(self.build_lib) / "talvek" / "program" / file.relative_to(PREFIX)
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(file, target)


class PlatformDistribution(Distribution):
    """Not for every platform once the program is inside."""

    def has_ext_modules(self):
        return PREFIX is not None


class PlatformWheel(bdist_wheel):
    """A wheel for any Python 3 and, with the program inside, for one platform."""

    def get_tag(self):
        return ("py3", "none", "any" if PREFIX is None else platform())


setup(
    version=version(),
    distclass=PlatformDistribution,
    cmdclass={"build_py": BuildWithProgram, "bdist_wheel": PlatformWheel},
)
