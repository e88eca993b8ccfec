#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "align/score_codes.hpp"
#include "malign/mult_align.hpp"
#include "malign/ordering.hpp"
#include "malign/run.hpp"
#include "shell/errors.hpp"

namespace {

constexpr int kBigIdFrom = 100;  // from here on the default id drops its underscore

bool input_order_chosen(const RunInput& input) { return input.seqSelect > static_cast<int>(input.seqs.size()); }

bool pairwise_stage_needed(const RunSettings& settings, const RunInput& input) {
  return settings.printPairsFlag == 1 || !input_order_chosen(input) || settings.printPctHomFlag == 1;
}

// Default ids for the records without an accession; the number is that of
// the sequence at position i of the order, not i.
void set_seq_id_str(std::vector<SeqRecord>& seqs, std::span<const int> alignOrder) {
  const std::size_t n = std::min(seqs.size(), alignOrder.size());
  for (std::size_t i = 0; i < n; ++i) {
    SeqRecord& record = seqs[i];
    if (record.acc) continue;
    const int number = alignOrder[i] + 1;
    record.acc = checked_alloc("set_seq_id_str:acc",
                               [number] { return format_text(number < kBigIdFrom ? "Seq_%d" : "Seq%d", number); });
  }
}

std::vector<AlignRecord> do_pairs(const RunSettings& settings, const RunInput& input, PctHomTable& pctHom,
                                  const RunCallbacks& callbacks) {
  if (callbacks.stageStarted) callbacks.stageStarted(RunStage::kPairwise);
  const int n = static_cast<int>(input.seqs.size());
  const std::size_t numPairs = n > 1 ? static_cast<std::size_t>(n) * static_cast<std::size_t>(n - 1) / 2 : 0;
  std::vector<AlignRecord> pairs = checked_vector<AlignRecord>(numPairs, "do_pairs");
  for (int i = 1, k = 0; i < n; ++i) {
    for (int j = 0; j < i; ++j, ++k) {
      pairs[k].seqs = checked_vector<AlignedSeq>(2, "do_pairs");
      pairs[k].seqs[0].seqIndex = i;
      pairs[k].seqs[1].seqIndex = j;
    }
  }
  const PairParams params{&settings.wtMatrix,
                          &settings.ssMatrix,
                          settings.gapPen,
                          settings.gapSizePen,
                          settings.midStructPen,
                          settings.endStructPen,
                          1,
                          settings.structBias,
                          settings.printPairsFlag};
  align_all_pairs(pairs, input.seqs, params, settings.threads, callbacks.pairDone);
  for (const AlignRecord& pair : pairs) {
    const int i = pair.seqs[0].seqIndex, j = pair.seqs[1].seqIndex;
    pctHom.cells[static_cast<std::size_t>(i) * n + j] = pair.pctHomol;
    pctHom.cells[static_cast<std::size_t>(j) * n + i] = pair.pctHomol;
  }
  return pairs;
}

void order_from_pairs(const RunSettings& settings, RunInput& input, RunResult& result) {
  const int n = static_cast<int>(input.seqs.size());
  if (input.seqSelect < n)
    order_against_seq(result.pairs, input.seqSelect, n, result.alignOrder);
  else if (input.seqSelect == n)
    order_computed(result.pairs, input.seqs, result.alignOrder);
  else
    return;  // input order: alignOrder stays 0 .. n-1
  if (settings.printOrderFlag == 0) set_seq_id_str(input.seqs, result.alignOrder);
}

void run_stages(const RunSettings& given, RunInput& input, RunResult& result, const RunCallbacks& callbacks) {
  RunSettings settings = given;
  settings.wtMatrix = prepared_residue_table(given);
  const int n = static_cast<int>(input.seqs.size());
  result = RunResult{};
  result.alignOrder.resize(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) result.alignOrder[static_cast<std::size_t>(i)] = i;
  if (input_order_chosen(input) || settings.printOrderFlag == 1) set_seq_id_str(input.seqs, result.alignOrder);
  result.pctHom = {n, std::vector<double>(static_cast<std::size_t>(n) * static_cast<std::size_t>(n), 0.0)};

  if (pairwise_stage_needed(settings, input)) {
    result.pairs = do_pairs(settings, input, result.pctHom, callbacks);
    if (!result.pairs.empty()) sort_align(result.pairs.data(), 0, static_cast<int>(result.pairs.size()) - 1, 1);
    order_from_pairs(settings, input, result);
  }
  if (callbacks.orderDecided) callbacks.orderDecided(input, result);

  if (callbacks.stageStarted) callbacks.stageStarted(RunStage::kMultiple);
  build_mult_align(settings, input.seqs, result.alignOrder, result.alignment);
  if (callbacks.stageStarted) callbacks.stageStarted(RunStage::kDone);
}

}  // namespace

ScoreTable prepared_residue_table(const RunSettings& settings) {
  ScoreTable table = settings.wtMatrix;
  for (int code = kOtherCode + 1; code < kTableDim; ++code) table[code * kTableDim + code] = kAnchorScore;
  for (int row = 0; row < kTableDim; ++row) table[row * kTableDim + kOtherCode] = settings.blankMatch;
  for (int col = 0; col < kTableDim; ++col) table[kOtherCode * kTableDim + col] = settings.blankMatch;
  return table;
}

std::optional<Failure> align_run(const RunSettings& settings, RunInput& input, RunResult& result,
                                 const RunCallbacks& callbacks) {
  return capture_failure("main", [&] { run_stages(settings, input, result, callbacks); });
}
