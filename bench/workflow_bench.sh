#!/usr/bin/env bash
# Times workflow/Snakefile on a folder of HOMSTRAD families against a plain
# loop of ravlin-align over the same families, to show what the workflow
# costs and what running families side by side gains.
#
#   bench/workflow_bench.sh HOMSTRAD_DIR RAVLIN_ALIGN [CORES]
#
# HOMSTRAD_DIR holds NAME.ref.fa (the reference alignment; ravlin-align drops
# its gaps) and NAME.ss.fa for each family.
set -euo pipefail
homstrad=$(cd "$1" && pwd)
program=$(realpath "$2")
cores=${3:-2}
snakefile=$(cd "$(dirname "$0")/.." && pwd)/workflow/Snakefile
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir "$work/families"
for ref in "$homstrad"/*.ref.fa; do
  name=$(basename "$ref" .ref.fa)
  cp "$ref" "$work/families/$name.fa"
  [ -f "$homstrad/$name.ss.fa" ] && cp "$homstrad/$name.ss.fa" "$work/families/$name.ss.fa"
done
count=$(ls "$work/families" | grep -vc '\.ss\.fa$')
echo "$count families, $cores cores"

# Wall time and the CPU time of the command and its children: on a shared
# machine the second is the steadier measure of what the workflow costs.
timed() {
  /usr/bin/time -f '%e s wall, %U+%S s CPU' -o "$work/time" "$@" > /dev/null 2>&1 || true
  cat "$work/time"
}

loop() {
  for fa in "$work"/families/*.fa; do
    case $fa in *.ss.fa) continue ;; esac
    local ss=()
    [ -f "${fa%.fa}.ss.fa" ] && ss=(--ss "${fa%.fa}.ss.fa")
    "$program" -q -t 1 -f stockholm "${ss[@]}" -o "$work/loop.aln" --force "$fa" || true
  done
}
export -f loop
export work program
echo "plain loop, one family after another: $(timed bash -c loop)"

for threads in 1 "$cores"; do
  rm -rf "$work/results" "$work/.snakemake"
  echo "snakemake --cores $cores, threads=$threads: $(timed snakemake -s "$snakefile" --cores "$cores" \
    --directory "$work" --config families=families results=results threads="$threads" ravlin_align="$program")"
done
echo "rerun with nothing to do: $(timed snakemake -s "$snakefile" --cores "$cores" --directory "$work" \
  --config families=families results=results threads="$cores" ravlin_align="$program")"
cut -f5 "$work/results/summary.tsv" | tail -n +2 | sort | uniq -c | sed 's/^/exit status count: /'
