#!/usr/bin/env bash
# Installs what ravlin needs to build and test, when it is missing:
# a C++20 compiler (g++, and clang++ for the second test build), CMake,
# clang-format, GoogleTest, (optional) Google Benchmark, and mkdssp (Debian
# package dssp), which the structure tests run on a shipped PDB entry,
# Biopython, whose readers check ravlin-align's output, EMBOSS, whose seqret
# checks the checksums of its MSF files, Chromium, in which
# the picture test opens ravlin-align's pages and drawings, Snakemake, which
# runs the workflow that aligns many families, and libFuzzer (Debian package
# libclang-rt-14-dev, only a recommendation of clang) for the reader
# harnesses of fuzz/.
set -euo pipefail

missing=()
command -v g++ >/dev/null 2>&1 || missing+=(g++)
command -v cmake >/dev/null 2>&1 || missing+=(cmake)
command -v clang++ >/dev/null 2>&1 || missing+=(clang)
command -v clang-format >/dev/null 2>&1 || missing+=(clang-format)
compgen -G '/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-*.a' >/dev/null || missing+=(libclang-rt-14-dev)
[ -f /usr/include/gtest/gtest.h ] || missing+=(libgtest-dev)
[ -f /usr/include/gmock/gmock.h ] || missing+=(libgmock-dev)
[ -f /usr/include/benchmark/benchmark.h ] || missing+=(libbenchmark-dev)
command -v mkdssp >/dev/null 2>&1 || missing+=(dssp)
# The output tests read what ravlin-align writes with Biopython's readers.
/usr/bin/python3 -c 'import Bio.AlignIO' >/dev/null 2>&1 || missing+=(python3-biopython)
# The picture test renders ravlin-align's html and svg in headless Chromium.
[ -x /usr/bin/chromium ] || missing+=(chromium)
# workflow/Snakefile aligns a folder of families under the workflow engine
# users already run; its test runs it.
command -v snakemake >/dev/null 2>&1 || missing+=(snakemake)
# EMBOSS's seqret reads the GCG MSF files ravlin-align writes, checksums included.
command -v seqret >/dev/null 2>&1 || missing+=(emboss)

if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO=sudo
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${missing[@]}"
fi
