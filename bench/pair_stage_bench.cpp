// Speed of the whole pairwise stage per kernel and thread count: every pair
// of 64 sequences of about 300 residues (eight families of eight members,
// each member a mutated copy of its family's first, with structure lines),
// aligned, traced back and saved as a run does it. Reported: cells per second
// of wall-clock time and cells per second of processor time (rows x cols
// summed over the pairs).
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "align/kernel_select.hpp"
#include "bench_inputs.hpp"
#include "malign/pair_stage.hpp"

namespace {

constexpr int kSeqs = 64;

// A structure line of random states (H, B, C, T).
std::string random_states(std::mt19937& rng, std::size_t n) {
  static const std::string kStates = "HHHBBCCT";
  std::uniform_int_distribution<std::size_t> pick(0, kStates.size() - 1);
  std::string out;
  for (std::size_t k = 0; k < n; ++k) out += kStates[pick(rng)];
  return out;
}

struct Stage {
  RunSettings weights;  // the shipped weight file's
  std::vector<SeqRecord> seqs;
  double cells = 0;
};

const Stage& stage() {
  static const Stage s = [] {
    Stage loaded;
    loaded.weights = bench::shipped_scoring();
    std::mt19937 rng(20261123u);
    std::string first;
    for (int s = 0; s < kSeqs; ++s) {
      if (s % 8 == 0) first = bench::random_residues(rng, 300);
      const std::string res = s % 8 == 0 ? first : bench::mutated(rng, first);
      loaded.seqs.push_back(bench::record_of(res, random_states(rng, res.size())));
    }
    for (int i = 1; i < kSeqs; ++i)
      for (int j = 0; j < i; ++j) loaded.cells += static_cast<double>(loaded.seqs[i].numRes) * loaded.seqs[j].numRes;
    return loaded;
  }();
  return s;
}

void BM_PairStage(benchmark::State& state) {
  const auto kind = static_cast<KernelKind>(state.range(0));
  if (!kernel_supported(kind)) {
    state.SkipWithError("kernel not available on this machine");
    return;
  }
  const Stage& s = stage();
  set_active_kernel(kind);
  const RunSettings& w = s.weights;
  const PairParams params{&w.wtMatrix, &w.ssMatrix, w.gapPen, w.gapSizePen, w.midStructPen, w.endStructPen, 1, 10, 0};
  std::vector<AlignRecord> pairs(static_cast<std::size_t>(kSeqs * (kSeqs - 1) / 2));
  // The process's processor time over all threads: cells per processor
  // second is the speed of one core, however busy the machine is.
  const std::clock_t cpuStart = std::clock();
  for (auto _ : state) {
    align_all_pairs(pairs, s.seqs, params, static_cast<int>(state.range(1)), nullptr);
    benchmark::DoNotOptimize(pairs.back().alignScore);
  }
  const double cpuSeconds = static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC;
  state.SetLabel(kernel_name(kind));
  state.counters["cells/s"] = benchmark::Counter(s.cells, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["cells/cpu-s"] = s.cells * static_cast<double>(state.iterations()) / cpuSeconds;
}

}  // namespace

BENCHMARK(BM_PairStage)
    ->ArgsProduct({{static_cast<int>(KernelKind::scalar), static_cast<int>(KernelKind::sse41),
                    static_cast<int>(KernelKind::avx2), static_cast<int>(KernelKind::avx512)},
                   {1, 2}})
    ->ArgNames({"kernel", "threads"})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
