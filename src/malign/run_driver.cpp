#include "malign/run_driver.hpp"

#include <array>
#include <cstddef>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "align/kernel_select.hpp"
#include "align/pair_align.hpp"
#include "align/score_codes.hpp"
#include "malign/alignment_views.hpp"
#include "malign/mult_align.hpp"
#include "malign/ordering.hpp"
#include "malign/pair_stage.hpp"
#include "malign/progress.hpp"
#include "matrix/weight_file.hpp"
#include "matrix/weight_matrix.hpp"
#include "report/report_sections.hpp"
#include "seq/seq_record.hpp"
#include "shell/errors.hpp"
#include "shell/limits.hpp"
#include "shell/parms.hpp"
#include "shell/run_params.hpp"

PctHomTable pctHomMatrix{};

namespace {

// One found-flag per key, in the order in which missing keys are reported.
enum KeyId {
  kScorMatrix,
  kWtPmat,
  kWtSmat,
  kGapPenKey,
  kGapPenSize,
  kMidGapPen,
  kEndGapPen,
  kNearMatch,
  kBlankMatch,
  kStructBias,
  kIncGapPen,
  kPrintFormat,
  kPrintPairwise,
  kPrintPctHom,
  kPrintOrder,
  kConsensusPct,
  kResLineLen,
  kDataFormat,
  kDataFile,
  kSeqSelect,
  kAsciiFlag,
  kKeyCount
};

constexpr std::array<const char*, kKeyCount> kKeyNames = {
    "RAVLIN:SCOR_MATRIX",    "KEY:WT_PMAT",          "KEY:WT_SMAT",        "KEY:GAP_PEN",
    "KEY:GAP_PEN_SIZE",      "KEY:MID_GAP_PEN",      "KEY:END_GAP_PEN",    "KEY:NEAR_MATCH",
    "KEY:BLANK_MATCH",       "RAVLIN:STRUCT_BIAS",   "RAVLIN:INC_GAP_PEN", "RAVLIN:PRINT_FORMAT",
    "RAVLIN:PRINT_PAIRWISE", "RAVLIN:PRINT_PCT_HOM", "RAVLIN:PRINT_ORDER", "RAVLIN:CONSENSUS_PCT",
    "RAVLIN:RES_LINE_LEN",   "RAVLIN:DATA_FORMAT",   "RAVLIN:DATA_FILE",   "RAVLIN:SEQ_SELECT",
    "RAVLIN:ASCII_FLAG"};

using FoundFlags = std::array<int, kKeyCount>;

// An integer key: where its value goes and the bounds it must keep.
struct IntKey {
  KeyId id;
  int min;
  int max;
  int* target;
};

// What the parameter file gives the run besides the run-parameter globals.
struct RunInputs {
  int dataFormat = 0;
  std::string dataFname;
  int seqSelect = 0;
};

const IntKey* find_int_key(std::span<const IntKey> keys, const std::string& word) {
  for (const IntKey& key : keys)
    if (word == kKeyNames[key.id]) return &key;
  return nullptr;
}

// The weight file's keys come first in the run's key list, from kWtPmat on.
void read_run_weights(std::FILE* weights, WeightSettings& settings, FoundFlags& found) {
  WeightKeysFound weightFound{};
  for (int k = 0; k < kWeightKeyCount; ++k) weightFound[k] = found[kWtPmat + k];
  read_weight_file(weights, settings, weightFound);
  for (int k = 0; k < kWeightKeyCount; ++k) found[kWtPmat + k] = weightFound[k];
}

void set_weight_globals(const WeightSettings& settings) {
  wtMatrix = settings.residues;
  ssMatrix = settings.structure;
  gapPen = settings.gapPen;
  gapSizePen = settings.gapSizePen;
  midStructPen = settings.midStructPen;
  endStructPen = settings.endStructPen;
  nearMatchScore = settings.nearMatchScore;
  blankMatch = settings.blankMatch;
}

// weights, when given, stands for the weight file that RAVLIN:SCOR_MATRIX names.
void read_run_parms(std::FILE* parms, RunInputs& inputs, FoundFlags& found, const WeightSource* weights) {
  WeightSettings weightSettings;
  const std::array<IntKey, 11> intKeys = {{{kDataFormat, 1, highest_parameter_format(), &inputs.dataFormat},
                                           {kSeqSelect, 1, kSeqSelectMax, &inputs.seqSelect},
                                           {kStructBias, -100, 100, &structBias},
                                           {kIncGapPen, 0, 100, &incGapPen},
                                           {kPrintPairwise, 0, 1, &printPairsFlag},
                                           {kPrintPctHom, 0, 1, &printPctHomFlag},
                                           {kPrintFormat, 0, 1, &printFormat},
                                           {kPrintOrder, 0, 1, &printOrderFlag},
                                           {kConsensusPct, 0, 100, &consensusPercent},
                                           {kResLineLen, 3, 256, &resLineLen},
                                           {kAsciiFlag, 0, 1, &asciiFlag}}};
  std::string word;
  while (read_parm_key(parms, "RAVLIN", 6, word) == 1) {
    if (word == kKeyNames[kDataFile]) {
      found[kDataFile] = read_parm_string(parms, inputs.dataFname);
    } else if (word == kKeyNames[kScorMatrix] && weights != nullptr) {
      std::string ignored;
      read_word(parms, ignored);
    } else if (word == kKeyNames[kScorMatrix]) {
      // The weight file is read whole at once, then closed.
      UniqueFile weightFile = read_parm_fname2(parms, wtMatFname, word);
      found[kScorMatrix] = weightFile ? 1 : 0;
      if (weightFile) read_run_weights(weightFile.get(), weightSettings, found);
    } else if (const IntKey* key = find_int_key(intKeys, word)) {
      found[key->id] = read_parm_int(parms, key->target, key->min, key->max, word);
      if (key->id == kSeqSelect) mSeqSelect = inputs.seqSelect - 1;
    }
  }
  if (weights != nullptr) {
    wtMatFname = weights->name;
    found[kScorMatrix] = 1;
    read_run_weights(weights->stream, weightSettings, found);
  }
  set_weight_globals(weightSettings);
}

// Before a parameter file is read: what a run assumes of the keys it may lack.
void reset_run_parms() {
  resLineLen = 0;
  printPairsFlag = 0;
  printFormat = 1;
  asciiFlag = 0;
}

bool is_data_key(KeyId id) { return id == kDataFormat || id == kDataFile || id == kSeqSelect; }

bool counts_as_missing(KeyId id, bool dataKeysNeeded) {
  if (id == kAsciiFlag) return false;
  if (is_data_key(id)) return dataKeysNeeded;
  if (id == kPrintFormat || id == kPrintPairwise || id == kResLineLen) return asciiFlag == 1;
  return true;
}

void check_ravlin_parms(const FoundFlags& found, bool dataKeysNeeded) {
  for (int id = 0; id < kKeyCount; ++id)
    if (found[id] == 0 && counts_as_missing(static_cast<KeyId>(id), dataKeysNeeded))
      fatal_err("check_ravlin_parms", "Missing Parameter: %s\n", kKeyNames[id]);
}

// Anchors score 10000 against themselves; a blank scores blankMatch
// against anything.
void prepare_wt_matrix() {
  for (int code = kOtherCode + 1; code < kTableDim; ++code) wtMatrix[code * kTableDim + code] = kAnchorScore;
  for (int row = 0; row < kTableDim; ++row) wtMatrix[row * kTableDim + kOtherCode] = blankMatch;
  for (int col = 0; col < kTableDim; ++col) wtMatrix[kOtherCode * kTableDim + col] = blankMatch;
}

bool input_order_chosen(int n) { return mSeqSelect > n; }

bool pairwise_stage_needed(int n) { return printPairsFlag == 1 || !input_order_chosen(n) || printPctHomFlag == 1; }

std::vector<AlignRecord> do_pairs(int n) {
  progress_text("\nProcessing pairwise alignments\n");
  const std::size_t numPairs = n > 1 ? static_cast<std::size_t>(n) * static_cast<std::size_t>(n - 1) / 2 : 0;
  std::vector<AlignRecord> pairs = checked_vector<AlignRecord>(numPairs, "do_pairs");
  for (int i = 1, k = 0; i < n; ++i) {
    for (int j = 0; j < i; ++j, ++k) {
      pairs[k].seqs = checked_vector<AlignedSeq>(2, "do_pairs");
      pairs[k].seqs[0].seqIndex = i;
      pairs[k].seqs[1].seqIndex = j;
    }
  }
  const PairParams params{&wtMatrix,    &ssMatrix, gapPen,     gapSizePen,    midStructPen,
                          endStructPen, 1,         structBias, printPairsFlag};
  align_all_pairs(pairs, n, params);
  for (const AlignRecord& pair : pairs) {
    const int i = pair.seqs[0].seqIndex, j = pair.seqs[1].seqIndex;
    pctHomMatrix[i][j] = pair.pctHomol;
    pctHomMatrix[j][i] = pair.pctHomol;
  }
  return pairs;
}

void order_from_pairs(std::span<const AlignRecord> pairs, int n, std::span<int> alignOrder) {
  if (mSeqSelect < n)
    order_against_seq(pairs, mSeqSelect, n, alignOrder);
  else if (mSeqSelect == n)
    order_computed(pairs, n, alignOrder);
  else
    return;  // input order: alignOrder stays 0 .. n-1
  if (printOrderFlag == 0) set_seq_id_str(alignOrder);
}

void print_pairs(std::span<const AlignRecord> pairs, const PrintOptions& options) {
  print_pairwise_head(outfp);
  for (const AlignRecord& pair : pairs) print_pair_alignment(outfp, pair_view(pair), options);
  std::fflush(outfp);
}

}  // namespace

void read_run_settings(std::FILE* parms, const WeightSource* weights) {
  FoundFlags found{};
  reset_run_parms();
  RunInputs ignored;
  read_run_parms(parms, ignored, found, weights);
  check_ravlin_parms(found, false);
}

void run_alignment(std::FILE* report, std::vector<int>& orderStore) {
  const int n = multAlignNum;
  orderStore.assign(kMaxSeqs, 0);
  const std::span<int> alignOrder(orderStore.data(), static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) alignOrder[static_cast<std::size_t>(i)] = i;
  if (input_order_chosen(n) || printOrderFlag == 1) set_seq_id_str(alignOrder);

  prepare_wt_matrix();
  mar.seqs = checked_vector<AlignedSeq>(static_cast<std::size_t>(n), "init_ravlin");
  mar.numSeqs = 0;
  outfp = report;
  const PrintOptions options = run_print_options();
  if (report != nullptr) {
    print_report_header(report, options);
    std::fflush(report);
  }

  std::vector<AlignRecord> pairs;
  if (pairwise_stage_needed(n)) {
    pairs = do_pairs(n);
    if (!pairs.empty()) sort_align(pairs.data(), 0, static_cast<int>(pairs.size()) - 1, 1);
    order_from_pairs(pairs, n, alignOrder);
  }
  if (report != nullptr) {
    if (printPairsFlag == 1) print_pairs(pairs, options);
    print_sequences_section(report, print_order_rows(alignOrder, printOrderFlag));
    if (printPctHomFlag == 1) print_pct_hom_section(report, align_order_rows(alignOrder), pctHomMatrix);
  }

  progress_text("\nDoing Multiple Alignment");
  if (report != nullptr)
    do_mult_align(alignOrder);
  else
    build_mult_align(alignOrder);
  progress_text("\nDone\n");
  orderStore.resize(static_cast<std::size_t>(n));
}

int ravlin_main(const std::string& parmsPath, const std::string& outPath) {
  active_kernel();  // a wrong RAVLIN_KERNEL ends the run before anything is read
  UniqueFile parms = get_parms_file(parmsPath);
  FoundFlags found{};
  reset_run_parms();

  RunInputs inputs;
  read_run_parms(parms.get(), inputs, found, nullptr);

  // Sequences come before the key check, so a reader's own faults show first.
  found[kDataFile] =
      mget_seqs(inputs.dataFname, stdout, mySeq, inputs.dataFormat, kMaxSeqs, kMinRes, kMaxRes, multAlignNum);
  check_ravlin_parms(found, true);
  parms.reset();

  outfp = std::fopen(outPath.c_str(), "w");
  if (outfp == nullptr) fatal_err("ravlin_main", "Cannot open output file: '%s'\n", outPath.c_str());

  std::vector<int> alignOrder;
  run_alignment(outfp, alignOrder);
  std::fflush(outfp);
  return 0;
}
