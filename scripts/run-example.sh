#!/usr/bin/env bash
# Builds ravlin and aligns the shipped glutathione S-transferase example with
# the shipped default parameters, answering the menus as a user would:
# 1 (text-based format), the data file name, 15 (let the program choose the
# order of the 14 sequences) and the report file name.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target ravlin -j2

# ravlin reads ravlin.parms (which names ravlin.wts) from the directory it runs
# in and leaves ravlin.parms.tmp there, so it runs in a directory of its own.
run=build/example
mkdir -p "$run"
cp data/ravlin.parms data/ravlin.wts examples/gluts.txt "$run"/
cd "$run"
printf '1\ngluts.txt\n15\ngluts.report\n' | ../apps/ravlin
echo
echo "Report: $(pwd)/gluts.report"
