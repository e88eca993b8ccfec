#!/usr/bin/env bash
# Builds ravlin with its tests and runs every test, then does the same in a
# clang++ build with the address and undefined-behaviour sanitizers, and
# checks the sources' layout with clang-format. Under CI (CI set) compiler
# warnings fail the build.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
werror=-DRAVLIN_WERROR=OFF
[ -n "${CI:-}" ] && werror=-DRAVLIN_WERROR=ON

git ls-files '*.cpp' '*.hpp' | xargs clang-format --dry-run -Werror

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo "$werror"
cmake --build build -j2
ctest --test-dir build --output-on-failure -j2

# The second compiler and the sanitizers in one build, to keep the run short.
CXX=clang++ cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRAVLIN_SANITIZE=ON -DRAVLIN_BENCH=OFF "$werror"
cmake --build build-asan -j2
ctest --test-dir build-asan --output-on-failure -j2

# The threaded pairwise stage under the thread sanitizer: only the tests that
# run it on several workers.
cmake -S . -B build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DRAVLIN_TSAN=ON -DRAVLIN_BENCH=OFF
cmake --build build-tsan -j2 --target ravlin-batch parallel_runs_test
ctest --test-dir build-tsan --output-on-failure -R ParallelRuns
