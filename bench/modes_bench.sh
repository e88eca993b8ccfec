#!/usr/bin/env bash
# Times every alignment mode of ravlin-align on one FASTA file, on 1 and 2
# threads, with Clustal Omega (one thread) side by side on the same input.
# Each run goes through /usr/bin/time -v (wall-clock time, processor time,
# peak resident memory); a run that fails or passes the time limit gets its
# row with its exit status and message, and the other runs go on.
#
#   bench/modes_bench.sh SEQUENCES.fa RAVLIN_ALIGN [RUNS]
#
# RUNS (default 1): each program runs that many times, the programs taking
# turns so that a busy machine slows them alike; the table shows the run
# with the least wall-clock time. Environment: MODES (default "tree
# consistency auto designed"), THREADS (default "1 2"), TIMEOUT (seconds a
# run may take, default 1800). Clustal Omega is left out when not installed
# (Debian package clustalo).
set -uo pipefail
if [[ $# -lt 2 ]]; then
  echo "usage: $0 SEQUENCES.fa RAVLIN_ALIGN [RUNS]" >&2
  exit 2
fi
fasta=$(realpath "$1") || exit 2
program=$(realpath "$2") || exit 2
runs=${3:-1}
read -r -a modes <<< "${MODES:-tree consistency auto designed}"
read -r -a threads <<< "${THREADS:-1 2}"
limit=${TIMEOUT:-1800}
[[ -r $fasta ]] || { echo "$0: cannot read $fasta" >&2; exit 2; }
[[ -x $program ]] || { echo "$0: cannot run $program" >&2; exit 2; }
[[ -x /usr/bin/time ]] || { echo "$0: needs GNU time as /usr/bin/time (Debian package time)" >&2; exit 2; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

labels=() commands=()
for mode in "${modes[@]}"; do
  for t in "${threads[@]}"; do
    labels+=("ravlin-align --mode $mode, $t thread$([[ $t == 1 ]] || echo s)")
    commands+=("$program --mode $mode -t $t -o $work/out.fa --force $fasta")
  done
done
if command -v clustalo > /dev/null; then
  labels+=("Clustal Omega, 1 thread")
  commands+=("clustalo -i $fasta -o $work/out.fa --outfmt=fa --threads=1 --force")
else
  echo "not installed: clustalo"
fi

# one run: fills wall, cpu, rss_mb, status, columns, note
measure() {
  rm -f "$work/out.fa" "$work/time"
  # shellcheck disable=SC2086  # the command is a word list on purpose
  /usr/bin/time -v -o "$work/time" timeout "$limit" $1 > /dev/null 2> "$work/err"
  local code=$?
  wall=$(awk -F': ' '/Elapsed \(wall clock\)/ { n = split($2, p, ":"); s = 0;
           for (i = 1; i <= n; i++) s = s * 60 + p[i]; print s }' "$work/time")
  cpu=$(awk -F': ' '/User time/ { u = $2 } /System time/ { s = $2 } END { print u + s }' "$work/time")
  rss_mb=$(awk -F': ' '/Maximum resident set size/ { printf("%.0f", $2 / 1024) }' "$work/time")
  columns=-
  note=
  if [[ $code -eq 0 ]]; then
    status=ok
    [[ -s $work/out.fa ]] && columns=$(awk '/^>/ { if (n++) exit; next } { w += length($0) } END { print w }' "$work/out.fa")
    # the mode auto picks, as it says on standard error
    note=$(grep -i -m1 'mode' "$work/err" || true)
  elif [[ $code -eq 124 ]]; then
    status="timed out"
    note="no answer within $limit s"
  else
    status="exit $code"
    note=$(grep -v '^[[:space:]]*$' "$work/err" | grep -v -E '^(Command exited|Usage|usage|Try )' | head -1)
  fi
  wall=${wall:-0} cpu=${cpu:-0} rss_mb=${rss_mb:-0}
}

declare -a best_wall best_row best_note best_ok
# whether this run of program $1 should replace its kept run
better() {
  [[ -z ${best_wall[$1]:-} ]] && return 0
  [[ $status == ok ]] || return 1
  [[ ${best_ok[$1]} == no ]] && return 0
  awk -v a="$wall" -v b="${best_wall[$1]}" 'BEGIN { exit !(a < b) }'
}
echo "$(grep -c '^>' "$fasta") sequences from $fasta; $runs run(s) each; $(nproc) cores, load $(cut -d' ' -f1-3 /proc/loadavg)"
for ((run = 1; run <= runs; run++)); do
  for k in "${!commands[@]}"; do
    measure "${commands[$k]}"
    # keep the fastest run, a finished run before a failed one
    if better "$k"; then
      best_wall[k]=$wall
      best_ok[k]=$([[ $status == ok ]] && echo yes || echo no)
      best_row[k]=$(printf '| %s | %s | %.2f | %.2f | %s | %s |' "${labels[$k]}" "$status" \
        "$wall" "$cpu" "$rss_mb" "$columns")
      best_note[k]=$note
    fi
  done
done

clustalo_wall=
for k in "${!labels[@]}"; do
  [[ ${labels[$k]} == Clustal* && ${best_ok[$k]} == yes ]] && clustalo_wall=${best_wall[$k]}
done
echo
echo "| Program | Status | Wall-clock s | Processor s | Peak memory MB | Columns | Wall / Clustal Omega | Note |"
echo "|---|---|---|---|---|---|---|---|"
failed=0
for k in "${!labels[@]}"; do
  ratio=-
  if [[ -n $clustalo_wall && ${best_ok[$k]} == yes ]]; then
    ratio=$(awk -v a="${best_wall[$k]}" -v b="$clustalo_wall" 'BEGIN { if (b > 0) printf("%.2f", a / b); else print "-" }')
  fi
  [[ ${best_ok[$k]} == yes ]] || failed=$((failed + 1))
  echo "${best_row[$k]} $ratio | ${best_note[$k]//|//} |"
done
# exit status 1 when some program never finished, so that a script can tell
[[ $failed -eq 0 ]]
