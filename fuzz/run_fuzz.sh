#!/usr/bin/env bash
# Fuzzes every reader harness (or those named) for TIME seconds each, JOBS at
# a time, then merges what was new into fuzz/corpus/<target>/ keeping only
# inputs that add coverage, and shrinks every crashing input it found.
#
# usage: fuzz/run_fuzz.sh TIME [TARGET...]      (JOBS=2 by default)
# Builds into build-fuzz with clang++ and libFuzzer; findings, logs and the
# shrunk crashing inputs go to build-fuzz/findings/<target>/.
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -ge 1 ] || { echo "usage: $0 TIME [TARGET...]" >&2; exit 2; }
time_each=$1
shift
jobs=${JOBS:-2}
# Harnesses that read a path write each input to a scratch file: keep it in memory.
[ -d /dev/shm ] && export TMPDIR=/dev/shm
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for src in fuzz/*_fuzz.cpp; do
    name=$(basename "$src" _fuzz.cpp)
    targets+=("$name")
  done
fi

CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRAVLIN_FUZZ=ON -DRAVLIN_TESTS=OFF \
  -DRAVLIN_BENCH=OFF >/dev/null
nice cmake --build build-fuzz -j2 --target "${targets[@]/%/_fuzz}" >/dev/null

fuzz_one() {
  local target=$1
  local out=build-fuzz/findings/$target
  local corpus=fuzz/corpus/$target
  rm -rf "$out"
  mkdir -p "$out/new" "$out/crashes" "$corpus"
  # Readers take files of a few kilobytes; longer inputs only slow the search.
  nice build-fuzz/fuzz/"${target}"_fuzz -max_total_time="$time_each" -max_len=8192 -rss_limit_mb=2048 \
    -timeout=10 -print_final_stats=1 -artifact_prefix="$out/crashes/" "$out/new" "$corpus" >"$out/fuzz.log" 2>&1 || true
  # Keep the corpus small: only inputs that reach code no earlier one reached
  # (edges, not hit counts), seeds first.
  mkdir -p "$out/merged"
  if nice build-fuzz/fuzz/"${target}"_fuzz -merge=1 -use_counters=0 "$out/merged" "$corpus" "$out/new" \
    >"$out/merge.log" 2>&1 &&
    [ -n "$(ls -A "$out/merged")" ]; then
    rm -f "$corpus"/*
    cp "$out/merged"/* "$corpus"/
  fi
  for crash in "$out"/crashes/*; do
    [ -f "$crash" ] || continue
    nice build-fuzz/fuzz/"${target}"_fuzz -minimize_crash=1 -runs=20000 -exact_artifact_path="$crash.min" "$crash" \
      >"$crash.minimize.log" 2>&1 || true
  done
  local execs cov crashes
  execs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$out/fuzz.log" | grep -o '[0-9]*$' || echo 0)
  cov=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$out/fuzz.log" | tail -1 || true)
  crashes=$(find "$out/crashes" -maxdepth 1 -type f ! -name '*.min' ! -name '*.log' | wc -l)
  printf '%-16s %10s execs  %-22s corpus %4s files  crashes %s\n' "$target" "$execs" "$cov" \
    "$(find "$corpus" -type f | wc -l)" "$crashes" | tee "$out/summary.txt"
}

running=0
for target in "${targets[@]}"; do
  fuzz_one "$target" &
  running=$((running + 1))
  if [ "$running" -ge "$jobs" ]; then
    wait -n
    running=$((running - 1))
  fi
done
wait
