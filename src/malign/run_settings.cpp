#include "malign/run_settings.hpp"

#include <span>

#include "seq/formats.hpp"
#include "shell/limits.hpp"
#include "shell/parms.hpp"

namespace {

// Which file a key belongs to, and how its value is read.
enum class KeyKind { kParmsInt, kDataInt, kWeightInt, kTable, kWeightFile, kDataFile };

struct KeyEntry {
  const char* name;
  KeyKind kind;
  int min = 0;
  int max = 0;
  int RunSettings::*setting = nullptr;  // kParmsInt, kWeightInt
  int ParmsRead::*data = nullptr;       // kDataInt
  ScoreTable RunSettings::*table = nullptr;
};

// One row per key, indexed by SettingKey.
const std::array<KeyEntry, kSettingKeyCount> kKeys = {{
    {"RAVLIN:SCOR_MATRIX", KeyKind::kWeightFile},
    {"KEY:WT_PMAT", KeyKind::kTable, 0, 0, nullptr, nullptr, &RunSettings::wtMatrix},
    {"KEY:WT_SMAT", KeyKind::kTable, 0, 0, nullptr, nullptr, &RunSettings::ssMatrix},
    {"KEY:GAP_PEN", KeyKind::kWeightInt, 0, 500, &RunSettings::gapPen},
    {"KEY:GAP_PEN_SIZE", KeyKind::kWeightInt, 0, 50, &RunSettings::gapSizePen},
    {"KEY:MID_GAP_PEN", KeyKind::kWeightInt, 0, 500, &RunSettings::midStructPen},
    {"KEY:END_GAP_PEN", KeyKind::kWeightInt, 0, 500, &RunSettings::endStructPen},
    {"KEY:NEAR_MATCH", KeyKind::kWeightInt, -50, 50, &RunSettings::nearMatchScore},
    {"KEY:BLANK_MATCH", KeyKind::kWeightInt, 0, 500, &RunSettings::blankMatch},
    {"RAVLIN:STRUCT_BIAS", KeyKind::kParmsInt, -100, 100, &RunSettings::structBias},
    {"RAVLIN:INC_GAP_PEN", KeyKind::kParmsInt, 0, 100, &RunSettings::incGapPen},
    {"RAVLIN:PRINT_FORMAT", KeyKind::kParmsInt, 0, 1, &RunSettings::printFormat},
    {"RAVLIN:PRINT_PAIRWISE", KeyKind::kParmsInt, 0, 1, &RunSettings::printPairsFlag},
    {"RAVLIN:PRINT_PCT_HOM", KeyKind::kParmsInt, 0, 1, &RunSettings::printPctHomFlag},
    {"RAVLIN:PRINT_ORDER", KeyKind::kParmsInt, 0, 1, &RunSettings::printOrderFlag},
    {"RAVLIN:CONSENSUS_PCT", KeyKind::kParmsInt, 0, 100, &RunSettings::consensusPercent},
    {"RAVLIN:RES_LINE_LEN", KeyKind::kParmsInt, 3, 256, &RunSettings::resLineLen},
    {"RAVLIN:DATA_FORMAT", KeyKind::kDataInt, 1, highest_parameter_format(), nullptr, &ParmsRead::dataFormat},
    {"RAVLIN:DATA_FILE", KeyKind::kDataFile},
    {"RAVLIN:SEQ_SELECT", KeyKind::kDataInt, 1, kSeqSelectMax, nullptr, &ParmsRead::seqSelect},
    {"RAVLIN:ASCII_FLAG", KeyKind::kParmsInt, 0, 1, &RunSettings::asciiFlag},
}};

bool is_weight_key(KeyKind kind) { return kind == KeyKind::kWeightInt || kind == KeyKind::kTable; }

// The key of the given file (weight file or parameter file) that word names.
int find_key(const std::string& word, bool inWeightFile) {
  for (int id = 0; id < kSettingKeyCount; ++id)
    if (is_weight_key(kKeys[id].kind) == inWeightFile && word == kKeys[id].name) return id;
  return -1;
}

void read_weight_keys(std::FILE* weights, RunSettings& settings, ParmsRead& read) {
  std::string word;
  while (read_parm_key(weights, "KEY", 3, word) == 1) {
    const int id = find_key(word, true);
    if (id < 0) continue;
    const KeyEntry& key = kKeys[id];
    if (key.kind == KeyKind::kTable)
      read.found[id] = read_matrix_file(weights, settings.*key.table);
    else
      read.found[id] = read_parm_int(weights, &(settings.*key.setting), key.min, key.max, word);
  }
}

void read_parms_keys(std::FILE* parms, const WeightSource* weights, RunSettings& settings, ParmsRead& read) {
  std::string word;
  while (read_parm_key(parms, "RAVLIN", 6, word) == 1) {
    const int id = find_key(word, false);
    if (id < 0) continue;
    const KeyEntry& key = kKeys[id];
    switch (key.kind) {
      case KeyKind::kDataFile:
        read.found[id] = read_parm_string(parms, read.dataFname);
        break;
      case KeyKind::kWeightFile:
        if (weights != nullptr) {
          std::string ignored;
          read_word(parms, ignored);
        } else {
          // The weight file is read whole at once, then closed.
          const UniqueFile weightFile = read_parm_fname2(parms, settings.wtMatFname, word);
          read.found[id] = 1;
          read_weight_keys(weightFile.get(), settings, read);
        }
        break;
      case KeyKind::kDataInt:
        read.found[id] = read_parm_int(parms, &(read.*key.data), key.min, key.max, word);
        break;
      default:
        read.found[id] = read_parm_int(parms, &(settings.*key.setting), key.min, key.max, word);
        break;
    }
  }
  if (weights != nullptr) {
    settings.wtMatFname = weights->name;
    read.found[kScorMatrix] = 1;
    read_weight_keys(weights->stream, settings, read);
  }
}

bool counts_as_missing(int id, int asciiFlag, bool dataKeysNeeded) {
  if (id == kAsciiFlag) return false;
  if (kKeys[id].kind == KeyKind::kDataInt || kKeys[id].kind == KeyKind::kDataFile) return dataKeysNeeded;
  if (id == kPrintFormat || id == kPrintPairwise || id == kResLineLen) return asciiFlag == 1;
  return true;
}

}  // namespace

std::optional<Failure> read_parms_file(std::FILE* parms, const WeightSource* weights, RunSettings& settings,
                                       ParmsRead& read) {
  return capture_failure("main", [&] { read_parms_keys(parms, weights, settings, read); });
}

std::optional<Failure> read_weight_file(std::FILE* weights, RunSettings& settings, ParmsRead& read) {
  return capture_failure("main", [&] { read_weight_keys(weights, settings, read); });
}

std::optional<Failure> check_ravlin_parms(const RunSettings& settings, const ParmsRead& read, bool dataKeysNeeded) {
  for (int id = 0; id < kSettingKeyCount; ++id)
    if (read.found[id] == 0 && counts_as_missing(id, settings.asciiFlag, dataKeysNeeded))
      return make_failure(FailureKind::kFault, "check_ravlin_parms", "Missing Parameter: %s\n", kKeys[id].name);
  return std::nullopt;
}
