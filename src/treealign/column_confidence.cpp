#include "treealign/column_confidence.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

std::string column_confidence(const Group& alignment, const PairLibrary& library) {
  const std::size_t len = static_cast<std::size_t>(alignment.len);
  // The residues of each column: (member, residue).
  std::vector<std::vector<std::pair<int, int>>> columns(len);
  for (std::size_t k = 0; k < alignment.members.size(); ++k)
    for (std::size_t x = 0; x < alignment.cols[k].size(); ++x)
      columns[static_cast<std::size_t>(alignment.cols[k][x])].emplace_back(alignment.members[k], static_cast<int>(x));
  std::string digits(len, '0');
  if (!library.keepsMaps) return digits;
  for (std::size_t c = 0; c < len; ++c) {
    const auto& here = columns[c];
    std::int64_t pairs = 0, agreed = 0;
    for (std::size_t u = 0; u < here.size(); ++u)
      for (std::size_t v = u + 1; v < here.size(); ++v) {
        ++pairs;
        const std::int32_t* partners = pair_partners(library, here[u].first, here[v].first);
        agreed += partners[here[u].second] == here[v].second ? 1 : 0;
      }
    if (pairs > 0) digits[c] = static_cast<char>('0' + std::min<std::int64_t>(9, agreed * 10 / pairs));
  }
  return digits;
}
