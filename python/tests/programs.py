"""Where the programs of this build are."""

import os

PROGRAM = os.environ["TALVEK_PROGRAM"]
EXAMPLE_STONE = os.environ["TALVEK_EXAMPLE_STONE"]
