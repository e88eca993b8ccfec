#!/usr/bin/env bash
# Times ravlin-batch and the installed peer aligners side by side on one
# FASTA file, alternating the programs run by run so that a busy machine
# slows them alike. Prints each run's wall-clock time, processor time and
# peak memory and, at the end, each program's best times and their ratios
# to ClustalW's.
#
#   bench/compare_peers.sh SEQUENCES.fa [RUNS] [RAVLIN_BATCH]
#
# RUNS defaults to 3; RAVLIN_BATCH to build/apps/ravlin-batch. ravlin runs
# with the shipped weights, the program choosing the order and the percent
# homology table printed, once on every core and once on one thread; the
# peers run on one thread each. Peers that are not installed are left out
# (Debian's packages clustalw, clustalo, mafft and kalign).
set -euo pipefail
fasta=$(realpath "$1")
runs=${2:-3}
here=$(cd "$(dirname "$0")/.." && pwd)
ravlin=$(realpath "${3:-$here/build/apps/ravlin-batch}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# ravlin's text format takes short sequence codes: s0001, s0002, ...
awk '/^>/ { printf(">s%04d\n", ++n); next } { print }' "$fasta" > "$work/seqs.txt"
count=$(grep -c '^>' "$fasta")
cp "$here/data/ravlin.wts" "$work/"
sed -e "s|^RAVLIN:DATA_FILE.*|RAVLIN:DATA_FILE seqs.txt|" -e "s|^RAVLIN:SEQ_SELECT.*|RAVLIN:SEQ_SELECT $((count + 1))|" \
  "$here/data/ravlin.parms" > "$work/parms"

declare -A commands=(
  [ravlin]="$ravlin parms report"
  [ravlin-1thread]="env RAVLIN_THREADS=1 $ravlin parms report"
  [clustalw]="clustalw -INFILE=$fasta -OUTFILE=$work/clustalw.aln -QUIET"
  [clustalo]="clustalo -i $fasta -o $work/clustalo.fa --threads=1 --force"
  [mafft]="mafft --thread 1 --quiet $fasta"
  [kalign]="kalign -n 1 -i $fasta -o $work/kalign.fa"
)
order=(ravlin ravlin-1thread clustalw clustalo mafft kalign)
available=()
for name in "${order[@]}"; do
  first=${commands[$name]%% *}
  [[ $first == env ]] && first=$ravlin
  if command -v "$first" > /dev/null; then available+=("$name"); else echo "not installed: $name"; fi
done

declare -A best bestCpu
echo "$count sequences from $fasta, $runs runs each, $(nproc) cores"
for ((run = 1; run <= runs; run++)); do
  for name in "${available[@]}"; do
    (cd "$work" && /usr/bin/time -f "%e %M %U %S" -o "$work/time" ${commands[$name]} > /dev/null 2> "$work/err") ||
      { echo "$name failed:"; cat "$work/err"; exit 1; }
    read -r secs kb user sys < "$work/time"
    cpu=$(awk -v u="$user" -v s="$sys" 'BEGIN { print u + s }')
    printf '%-15s run %d: %7.2f s wall %7.2f s processor %8.1f MB\n' "$name" "$run" "$secs" "$cpu" \
      "$(awk -v k="$kb" 'BEGIN { print k / 1024 }')"
    if [[ -z ${best[$name]:-} ]] || awk -v a="$secs" -v b="${best[$name]}" 'BEGIN { exit !(a < b) }'; then
      best[$name]=$secs
    fi
    if [[ -z ${bestCpu[$name]:-} ]] || awk -v a="$cpu" -v b="${bestCpu[$name]}" 'BEGIN { exit !(a < b) }'; then
      bestCpu[$name]=$cpu
    fi
  done
done

echo "best of $runs (wall-clock and processor time), each with its ratio to ClustalW's:"
ratio() { [[ -n ${2:-} ]] && awk -v a="$1" -v b="$2" 'BEGIN { printf("%.3f", a / b) }'; }
for name in "${available[@]}"; do
  printf '%-15s %7.2f s  %6s   %7.2f s  %6s\n' "$name" "${best[$name]}" "$(ratio "${best[$name]}" "${best[clustalw]:-}")" \
    "${bestCpu[$name]}" "$(ratio "${bestCpu[$name]}" "${bestCpu[clustalw]:-}")"
done
