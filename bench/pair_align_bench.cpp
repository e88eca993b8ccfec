// Speed and matrix memory of the pairwise alignment on the scalar kernel.
//
// Inputs: random sequences drawn with a fixed seed from typical residue
// frequencies, each paired with a mutated copy of itself (substitutions,
// insertions, deletions, so the path is a realistic one), and every pair of
// the glutathione S-transferase example family. Scores are the shipped
// weight file's BLOSUM62 table and penalties. Reported: cells per second
// (rows x cols per alignment) and the matrix's bytes per cell.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "align/pair_align.hpp"
#include "bench_inputs.hpp"
#include "matrix/weight_matrix.hpp"

static_assert(sizeof(SumCell) == 8, "a matrix cell is two 32-bit words");

namespace {

// Runs of helix, strand and coil, roughly as a folded protein has them.
std::string random_structure(std::mt19937& rng, std::size_t n) {
  std::uniform_int_distribution<int> kind(0, 2), length(3, 14);
  std::string out;
  while (out.size() < n) out.append(static_cast<std::size_t>(length(rng)), "HBC"[kind(rng)]);
  out.resize(n);
  return out;
}

AlignWorkspace benchWs;

void report(benchmark::State& state, double cellsPerIteration) {
  state.counters["cells/s"] = benchmark::Counter(cellsPerIteration, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["matrix_MB"] = static_cast<double>(benchWs.matrix.capacity() * sizeof(SumCell)) / (1024.0 * 1024.0);
  state.counters["bytes/cell"] = static_cast<double>(benchWs.matrix.size() * sizeof(SumCell)) / cellsPerIteration;
}

void align_pair(benchmark::State& state, bool withStructure) {
  const RunSettings& s = bench::shipped_scoring();
  std::mt19937 rng(20240611u + static_cast<unsigned>(state.range(0)));
  const std::string resA = bench::random_residues(rng, static_cast<int>(state.range(0)));
  const std::string resB = bench::mutated(rng, resA);
  const SeqRecord a = bench::record_of(resA, withStructure ? random_structure(rng, resA.size()) : "");
  const SeqRecord b = bench::record_of(resB, withStructure ? random_structure(rng, resB.size()) : "");
  benchWs = AlignWorkspace{};  // so bytes/cell reflects this size alone
  AlignRecord record;
  for (auto _ : state) {
    record.seqs.assign(2, AlignedSeq{});
    const PairParams params{&s.wtMatrix, &s.ssMatrix, s.gapPen, s.gapSizePen, s.midStructPen, s.endStructPen, 1, 10, 0};
    align_pair(benchWs, record, a, b, params);
    benchmark::DoNotOptimize(record.alignScore);
  }
  report(state, static_cast<double>(a.numRes) * b.numRes);
}

void BM_PairAlignRandom(benchmark::State& state) { align_pair(state, false); }
void BM_PairAlignRandomStructure(benchmark::State& state) { align_pair(state, true); }

// Every pair of the example family, read with the program's own text reader.
void BM_PairAlignExampleFamily(benchmark::State& state) {
  std::vector<SeqRecord> family(kMaxSeqs);
  int count = 0, result = 0;
  if (const UniqueFile in = open_file(RAVLIN_SOURCE_DIR "/examples/gluts.txt", "r"))
    mread_seq(in.get(), family, count, kMaxSeqs, SeqReading{kFormatText, kMinRes, kMaxRes, stderr, nullptr}, result);
  if (count < 2) {
    state.SkipWithError("examples/gluts.txt is not readable");
    return;
  }
  const RunSettings& s = bench::shipped_scoring();
  double cells = 0;
  for (int i = 1; i < count; ++i)
    for (int j = 0; j < i; ++j) cells += static_cast<double>(family[i].numRes) * family[j].numRes;
  AlignRecord record;
  const PairParams params{&s.wtMatrix, &s.ssMatrix, s.gapPen, s.gapSizePen, s.midStructPen, s.endStructPen, 1, 10, 0};
  for (auto _ : state) {
    for (int i = 1; i < count; ++i) {
      for (int j = 0; j < i; ++j) {
        record.seqs.assign(2, AlignedSeq{});
        align_pair(benchWs, record, family[i], family[j], params);
        benchmark::DoNotOptimize(record.alignScore);
      }
    }
  }
  state.counters["cells/s"] = benchmark::Counter(cells, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["pairs"] = count * (count - 1) / 2;
}

}  // namespace

BENCHMARK(BM_PairAlignRandom)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PairAlignRandomStructure)->Arg(300)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PairAlignExampleFamily)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
