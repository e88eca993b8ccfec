#!/usr/bin/env bash
# Builds ravlin with its tests and runs every test, then does the same in a
# build with the address and undefined-behaviour sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j2
ctest --test-dir build --output-on-failure -j2
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRAVLIN_SANITIZE=ON -DRAVLIN_BENCH=OFF
cmake --build build-asan -j2
ctest --test-dir build-asan --output-on-failure -j2
# The threaded pairwise stage under the thread sanitizer: only the tests that
# run it on several workers.
cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRAVLIN_TSAN=ON -DRAVLIN_BENCH=OFF
cmake --build build-tsan -j2 --target ravlin-batch parallel_runs_test
ctest --test-dir build-tsan --output-on-failure -R ParallelRuns
