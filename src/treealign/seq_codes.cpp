#include "treealign/seq_codes.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "align/penalties.hpp"
#include "align/score_codes.hpp"

SeqCodes seq_codes(const SeqRecord& seq, int midPen, int endPen) {
  const int n = std::max(seq.numRes, 0);
  const std::size_t len = static_cast<std::size_t>(n);
  auto padded = [len](const std::optional<std::string>& text, char filler) {
    std::string copy = text ? text->substr(0, len) : std::string();
    copy.resize(len, filler);
    return copy;
  };
  const std::string res = padded(seq.pRes, 'X'), sres = padded(seq.sRes, 'X'), ures = padded(seq.uRes, '-');
  SeqCodes codes;
  codes.res.resize(len);
  codes.ss.resize(len);
  codes.structPen.resize(len);
  codes_to_indices(res.data(), n, codes.res.data(), kOtherCode);
  codes_to_indices(sres.data(), n, codes.ss.data(), kOtherCode);
  calc_struct_scores(sres.data(), n, codes.structPen.data(), midPen, endPen, 1);
  codes.hasSs = seq.hasSRes == 1;
  codes.anchor.assign(len, 0);
  codes.inGroup.assign(len, 0);
  if (seq.hasURes == 1)
    for (std::size_t x = 0; x < len; ++x) {
      const char c = ures[x];
      if (c >= '1' && c <= '5')
        codes.anchor[x] = c;
      else if (c != '-' && x > 0 && ures[x - 1] != '-')
        codes.inGroup[x] = 1;
    }
  return codes;
}
