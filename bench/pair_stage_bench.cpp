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
#include "malign/pair_stage.hpp"
#include "malign/run_settings.hpp"
#include "seq/seq_record.hpp"
#include "shell/parms.hpp"
#include "shell/text_input.hpp"

namespace {

constexpr int kSeqs = 64;

const std::string kResidues = "ACDEFGHIKLMNPQRSTVWY";

std::string random_text(std::mt19937& rng, int n, const std::string& alphabet) {
  std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
  std::string out;
  for (int k = 0; k < n; ++k) out += alphabet[pick(rng)];
  return out;
}

// About 70 percent identity with about 5 percent insertions and deletions.
std::string mutated(std::mt19937& rng, const std::string& seq) {
  std::uniform_real_distribution<double> roll(0.0, 1.0);
  std::string out;
  for (char residue : seq) {
    const double r = roll(rng);
    if (r < 0.025) continue;
    if (r < 0.05) out += random_text(rng, 1, kResidues);
    out += r < 0.30 ? random_text(rng, 1, kResidues)[0] : residue;
  }
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
    ParmsRead found;
    if (const UniqueFile in = open_file(RAVLIN_SOURCE_DIR "/data/ravlin.wts", "r"))
      read_weight_file(in.get(), loaded.weights, found);
    std::mt19937 rng(20261123u);
    std::string first;
    loaded.seqs.resize(kSeqs);
    for (int s = 0; s < kSeqs; ++s) {
      if (s % 8 == 0) first = random_text(rng, 300, kResidues);
      SeqRecord& seq = loaded.seqs[static_cast<std::size_t>(s)];
      seq.pRes = s % 8 == 0 ? first : mutated(rng, first);
      seq.numRes = static_cast<std::int32_t>(seq.pRes.size());
      seq.sRes = random_text(rng, seq.numRes, "HHHBBCCT");
      seq.hasSRes = 1;
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
