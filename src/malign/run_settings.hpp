// A run's settings as a value, and the one place that reads them: the keys of
// a parameter file ("RAVLIN:...") and of the weight file it names ("KEY:..."),
// in one table with their bounds and the order in which missing ones are
// reported.
#pragma once

#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include "matrix/weight_matrix.hpp"
#include "shell/errors.hpp"

struct RunSettings {
  ScoreTable wtMatrix{};   // residue scores, as the weight file gives them
  ScoreTable ssMatrix{};   // structure scores
  std::string wtMatFname;  // the weight file, as the report's header names it
  int gapPen = 0;
  int gapSizePen = 0;
  int midStructPen = 0;  // a gap inside a helix or strand
  int endStructPen = 0;  // a gap at an element's end
  int nearMatchScore = 0;
  int blankMatch = 0;  // a residue against a gap
  int structBias = 0;
  int incGapPen = 0;  // percent the gap penalties grow a step of the multiple alignment
  int printPairsFlag = 0;
  int printPctHomFlag = 0;
  int printOrderFlag = 0;  // 1: rows in input order
  int printFormat = 1;     // 1: the multiple alignment as Molvane entries
  int consensusPercent = 0;
  int resLineLen = 0;
  int asciiFlag = 0;  // makes the printing keys required
  int threads = 0;    // pairwise workers: 0 lets RAVLIN_THREADS decide, else every core
};

// Every key, in the order in which a missing one is reported.
enum SettingKey {
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
  kSettingKeyCount
};

// What a parameter file says besides the settings: its data keys, and which
// keys it gave (1 where the last read of the key succeeded).
struct ParmsRead {
  int dataFormat = 0;
  std::string dataFname;
  int seqSelect = 0;  // as written: 1-based, n + 1 computed, n + 2 input order
  std::array<int, kSettingKeyCount> found{};
};

// A weight file already open, standing in for the one a parameter file names.
struct WeightSource {
  std::FILE* stream;
  std::string name;  // as the report's header shows it
};

// Reads every key of parms into settings and read (weights, when given,
// replaces the weight file that RAVLIN:SCOR_MATRIX names). A value out of its
// bounds, an unopenable weight file or a faulty score table comes back as
// the failure.
std::optional<Failure> read_parms_file(std::FILE* parms, const WeightSource* weights, RunSettings& settings,
                                       ParmsRead& read);
// The weight file's keys alone.
std::optional<Failure> read_weight_file(std::FILE* weights, RunSettings& settings, ParmsRead& read);

// The first required key that read lacks ("Missing Parameter: KEY"); the data
// keys count only when dataKeysNeeded.
std::optional<Failure> check_ravlin_parms(const RunSettings& settings, const ParmsRead& read, bool dataKeysNeeded);
