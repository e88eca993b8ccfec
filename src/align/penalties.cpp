#include "align/penalties.hpp"

namespace {

bool is_structured(char code) { return code == 'H' || code == 'B'; }

bool ends_structure(char code) { return code == 'C' || code == 'X' || code == 'T'; }

// Penalty of one 'H' or 'B' position: endPen as soon as a pair of neighbours
// holds an end code, or once the string's edge lies within reach.
std::int32_t struct_penalty_at(const char* sRes, int n, int p, int midPen, int endPen, int reach) {
  std::int32_t value = midPen;
  for (int d = 1; d <= reach; ++d) {
    if (d <= p && p + d < n) {
      if (ends_structure(sRes[p - d]) || ends_structure(sRes[p + d])) return endPen;
    } else {
      value = endPen;
    }
  }
  return value;
}

bool is_anchor(char code) { return code >= '1' && code <= '5'; }

}  // namespace

void codes_to_indices(const char* str, int n, std::int32_t* out, int other) {
  for (int p = 0; p < n; ++p) {
    const unsigned offset = static_cast<unsigned>(str[p] - 'A');
    out[p] = offset < 26u ? static_cast<std::int32_t>(offset) : other;
  }
}

void calc_struct_scores(const char* sRes, int n, std::int32_t* out, int midPen, int endPen, int reach) {
  for (int p = 0; p < n; ++p)
    out[p] = is_structured(sRes[p]) ? struct_penalty_at(sRes, n, p, midPen, endPen, reach) : 0;
}

void calc_anchor_group_pen(const char* uRes, int n, std::int32_t* codes, std::int32_t* groupPen, int pen) {
  for (int p = 0; p < n; ++p) {
    const char c = uRes[p];
    if (is_anchor(c)) {
      codes[p] = c - 22;  // '1'..'5' become the anchor indices 27..31
    } else if (c != '-' && p >= 1 && uRes[p - 1] != '-') {
      groupPen[p] = pen;
    }
  }
}
