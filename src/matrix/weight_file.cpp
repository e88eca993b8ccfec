#include "matrix/weight_file.hpp"

#include <string>

#include "shell/parms.hpp"

namespace {

struct IntKey {
  WeightKey id;
  int min;
  int max;
  int WeightSettings::*target;
};

constexpr std::array<IntKey, 6> kIntKeys = {{{kWeightGapPen, 0, 500, &WeightSettings::gapPen},
                                             {kWeightGapSize, 0, 50, &WeightSettings::gapSizePen},
                                             {kWeightNearMatch, -50, 50, &WeightSettings::nearMatchScore},
                                             {kWeightBlankMatch, 0, 500, &WeightSettings::blankMatch},
                                             {kWeightMidStruct, 0, 500, &WeightSettings::midStructPen},
                                             {kWeightEndStruct, 0, 500, &WeightSettings::endStructPen}}};

const IntKey* find_int_key(const std::string& word) {
  for (const IntKey& key : kIntKeys)
    if (word == kWeightKeyNames[key.id]) return &key;
  return nullptr;
}

}  // namespace

void read_weight_file(std::FILE* stream, WeightSettings& settings, WeightKeysFound& found) {
  std::string word;
  while (read_parm_key(stream, "KEY", 3, word) == 1) {
    if (word == kWeightKeyNames[kWeightResidues]) {
      found[kWeightResidues] = read_matrix_file(stream, settings.residues);
    } else if (word == kWeightKeyNames[kWeightStructure]) {
      found[kWeightStructure] = read_matrix_file(stream, settings.structure);
    } else if (const IntKey* key = find_int_key(word)) {
      found[key->id] = read_parm_int(stream, &(settings.*key->target), key->min, key->max, word);
    }
  }
}
