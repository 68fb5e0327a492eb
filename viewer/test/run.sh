#!/usr/bin/env bash
# Runs the page's tests: run.sh unit, or run.sh page with the programs' names in TALVEK and TALVEK_EXAMPLE_STONE.
# Ends with 77, saying why, where this machine has not what they need.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
skip() {
    echo "skipped: $1"
    exit 77
}
command -v node >/dev/null || skip "there is no node; scripts/do setup viewer installs it"
[ -d node_modules/esbuild ] || skip "viewer/node_modules is missing; scripts/do setup viewer fills it"
[ "$1" = unit ] || [ -x /usr/bin/chromium ] || skip "there is no chromium; scripts/do setup viewer installs it"
exec node test/run.mjs "$1"
