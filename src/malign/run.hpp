// One alignment run as a value: the settings and the input go in, the result
// comes out. align_run does no file I/O and never ends the process: progress
// and the run's milestones reach the caller through callbacks, a failure
// comes back as the value.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "align/align_score.hpp"
#include "malign/pair_stage.hpp"
#include "malign/run_settings.hpp"
#include "seq/seq_record.hpp"
#include "shell/errors.hpp"

struct RunInput {
  std::vector<SeqRecord> seqs;
  // The order: 0 .. n-1 the sequence the others are aligned against, n the
  // order computed from the pair scores, above n the input order.
  int seqSelect = 0;
};

// Percent homology of every pair, n x n.
struct PctHomTable {
  int n = 0;
  std::vector<double> cells;
  double at(int i, int j) const { return cells[static_cast<std::size_t>(i) * n + j]; }
};

struct RunResult {
  std::vector<AlignRecord> pairs;  // ranked, best first; empty when the order needed no pairs
  PctHomTable pctHom;
  std::vector<int> alignOrder;  // the order in which the sequences joined
  AlignRecord alignment;        // the multiple alignment
};

enum class RunStage { kPairwise, kMultiple, kDone };

struct RunCallbacks {
  std::function<void(RunStage)> stageStarted;
  PairDone pairDone;
  // The pairs are ranked and the order is decided (the records' default ids
  // given): what a report shows before the multiple alignment is known.
  std::function<void(const RunInput&, const RunResult&)> orderDecided;
};

// The residue table as the run scores with it: anchors score 10000 against
// themselves, a blank blankMatch against anything.
ScoreTable prepared_residue_table(const RunSettings& settings);

// Aligns input's sequences. Records without an accession receive their
// default id ("Seq_%d"), as the report shows them.
std::optional<Failure> align_run(const RunSettings& settings, RunInput& input, RunResult& result,
                                 const RunCallbacks& callbacks);
