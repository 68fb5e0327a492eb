"""A copy of the tracked files below build/mutation, in which sources can be changed and tests built and run."""
import contextlib
import os
import pathlib
import shutil
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREE = ROOT / "build" / "mutation" / "tree"
BUILD = ROOT / "build" / "mutation" / "build"
MEMORY_FOLDER = "/dev/shm"


def run(command, timeout=None, cwd=BUILD):
    """The exit status; below 0 when the time is up."""
    try:
        return subprocess.run(command, cwd=cwd, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=timeout, check=False).returncode
    except subprocess.TimeoutExpired:
        return -1


def copy_tree():
    """Copies what has changed, so that only that is compiled again."""
    listed = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, capture_output=True, check=True).stdout.decode()
    names = {name for name in listed.split("\0") if name and (ROOT / name).is_file()}
    for old in [path for path in TREE.rglob("*") if path.is_file() and str(path.relative_to(TREE)) not in names]:
        old.unlink()
    for name in names:
        source, target = ROOT / name, TREE / name
        if not target.is_file() or target.read_bytes() != source.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)


def set_up_copy():
    """Brings the copy up to date and configures it; nothing is built yet."""
    TREE.mkdir(parents=True, exist_ok=True)
    BUILD.mkdir(parents=True, exist_ok=True)
    copy_tree()
    subprocess.run(["cmake", "-G", "Ninja", "-S", str(TREE), "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1 -w",
                    "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=gold"], cwd=BUILD, check=True, capture_output=True)


@contextlib.contextmanager
def changed_file(name, text):
    """The file of the copy has this text meanwhile."""
    path = TREE / name
    original = path.read_text()
    path.write_text(text)
    try:
        yield
    finally:
        path.write_text(original)


@contextlib.contextmanager
def folder_in_memory():
    """Tests put their files into memory, where that is a folder."""
    folder = tempfile.mkdtemp(dir=MEMORY_FOLDER if os.access(MEMORY_FOLDER, os.W_OK) else None)
    os.environ["TMPDIR"] = folder
    try:
        yield
    finally:
        shutil.rmtree(folder, ignore_errors=True)
