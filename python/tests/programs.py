"""Where the programs of this build are."""

import os
import subprocess

import pytest

PROGRAM = os.environ["TALVEK_PROGRAM"]
EXAMPLE_STONE = os.environ["TALVEK_EXAMPLE_STONE"]


def need_option(*words):
    """Skip a file of tests whose program does not have an option yet."""
    shown = subprocess.run([PROGRAM, *words[:-1], "--help"], capture_output=True, text=True, check=False).stdout
    if words[-1] not in shown:
        pytest.skip(f"the program has no {words[-1]}", allow_module_level=True)
