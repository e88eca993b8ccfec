#!/usr/bin/env bash
# Builds ravlin's three programs and aligns the shipped glutathione S-transferase family
# (14 sequences in FASTA, with their secondary structure in DSSP letters) with
# the built-in defaults, showing the alignment in Clustal layout.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh >&2
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j2 --target ravlin-align ravlin ravlin-batch >/dev/null
build/apps/ravlin-align --ss examples/gluts.ss.fa -f clustal examples/gluts.fa
