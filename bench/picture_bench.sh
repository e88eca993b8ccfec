#!/usr/bin/env bash
# Times ravlin-align's pictures on a synthetic family and gives their size:
#   bench/picture_bench.sh RAVLIN_ALIGN COUNT LENGTH WORKDIR [FORMAT]
# e.g. bench/picture_bench.sh build/apps/ravlin-align 500 3489 /tmp/pic html
# (500 sequences; 3,489 residues give 3,500 columns, the most ravlin-align
# takes). The sequences keep input order and no table of percent homology is
# printed, so that no pair is aligned; the time of the picture is the total
# less the multiple alignment's, which the program prints.
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
align="$(realpath "$1")"
count="$2"
length="$3"
work="$4"
format="${5:-html}"
mkdir -p "$work"
cd "$work"
python3 "$here/bench/picture_input.py" "$count" "$length" family
sed 's/^RAVLIN:PRINT_PCT_HOM 1/RAVLIN:PRINT_PCT_HOM 0/' "$here/data/ravlin.parms" > family.parms
/usr/bin/time -f "total %e s, %M KB" "$align" --params family.parms --weights "$here/data/ravlin.wts" \
  --order input -f "$format" --ss family.ss.fa -o "family.$format" --force family.fa 2>&1 | grep -v "read as FASTA"
echo "$(grep -o '<title>Alignment of [^<]*' "family.$format" | head -1 | sed 's/<title>//'): $(stat -c %s "family.$format") bytes"
