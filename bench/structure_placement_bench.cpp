// Times placing a structure's residues on a sequence, the one step of
// reading structure whose cost grows with the product of the two lengths.
#include <benchmark/benchmark.h>

#include <random>

#include "structure/placement.hpp"

namespace {

// A random sequence of n residues and a structure of it without its first
// and last tenth and without a loop of a twentieth in the middle.
void BM_PlaceStructure(benchmark::State& state) {
  const std::size_t n = static_cast<std::size_t>(state.range(0));
  std::mt19937 rng(7);
  const char* const kLetters = "ACDEFGHIKLMNPQRSTVWY";
  std::string sequence;
  for (std::size_t k = 0; k < n; ++k) sequence += kLetters[rng() % 20];
  const std::string residues = sequence.substr(n / 10, n * 4 / 10) + sequence.substr(n / 2 + n / 20, n * 4 / 10);
  const StructEntry entry{"s", residues, std::string(residues.size(), 'H'), "bench"};
  std::string sRes, note, error;
  for (auto _ : state) {
    if (!place_structure(entry, "s", sequence, sRes, note, error)) state.SkipWithError(error.c_str());
    benchmark::DoNotOptimize(sRes.data());
  }
  state.counters["cells/s"] =
      benchmark::Counter(static_cast<double>(residues.size() * n), benchmark::Counter::kIsIterationInvariantRate);
}

}  // namespace

BENCHMARK(BM_PlaceStructure)->Arg(130)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
