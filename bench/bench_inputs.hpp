// What the alignment benchmarks share: the shipped scores, and random
// sequences that look like proteins and their relatives.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "malign/run_settings.hpp"
#include "seq/seq_record.hpp"
#include "shell/parms.hpp"
#include "shell/text_input.hpp"

namespace bench {

// The shipped weight file's tables and penalties.
inline const RunSettings& shipped_scoring() {
  static const RunSettings s = [] {
    RunSettings loaded;
    ParmsRead found;
    if (const UniqueFile in = open_file(RAVLIN_SOURCE_DIR "/data/ravlin.wts", "r"))
      read_weight_file(in.get(), loaded, found);
    return loaded;
  }();
  return s;
}

// n residues drawn with the frequencies of typical globular proteins.
inline std::string random_residues(std::mt19937& rng, int n) {
  static const std::string kResidues = "ACDEFGHIKLMNPQRSTVWY";
  static const std::vector<double> kPerThousand = {83, 14, 55, 67, 39, 71, 23, 59, 58, 97,
                                                   24, 41, 47, 39, 55, 66, 53, 69, 11, 29};
  std::discrete_distribution<int> pick(kPerThousand.begin(), kPerThousand.end());
  std::string out;
  for (int k = 0; k < n; ++k) out += kResidues[pick(rng)];
  return out;
}

// A relative of seq at about 70 percent identity: 25 percent substitutions,
// 5 percent insertions and deletions.
inline std::string mutated(std::mt19937& rng, const std::string& seq) {
  std::uniform_real_distribution<double> roll(0.0, 1.0);
  std::string out;
  for (char residue : seq) {
    const double r = roll(rng);
    if (r < 0.025) continue;
    if (r < 0.05) out += random_residues(rng, 1);
    out += r < 0.30 ? random_residues(rng, 1)[0] : residue;
  }
  return out;
}

// A record of residues and structure (none when empty: X throughout).
inline SeqRecord record_of(const std::string& res, const std::string& sRes) {
  SeqRecord seq;
  seq.pRes = res;
  seq.numRes = static_cast<std::int32_t>(res.size());
  seq.hasSRes = sRes.empty() ? 0 : 1;
  seq.sRes = sRes.empty() ? std::string(res.size(), 'X') : sRes;
  return seq;
}

}  // namespace bench
