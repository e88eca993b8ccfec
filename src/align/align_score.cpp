#include "align/align_score.hpp"

#include <algorithm>
#include <cstring>

namespace {

// Only upper-case letters are residues here; gaps, lower case and anything
// else neither score nor count towards the reference.
bool is_residue(char c) { return c >= 'A' && c <= 'Z'; }

int self_score(const ScoreTable& table, char c) {
  if (!is_residue(c)) return 0;
  const int code = c - 'A';
  return table[code * kTableDim + code];
}

// Length of s within the first n characters; a missing text is empty.
std::size_t bounded_length(const char* s, int n) {
  if (s == nullptr || n < 1) return 0;
  return strnlen(s, static_cast<std::size_t>(n));
}

// Position of an aligned string's first residue, or -1.
int first_residue(const std::string& aRes, int len) {
  const int limit = std::min(len, static_cast<int>(aRes.size()));
  for (int p = 0; p < limit; ++p) {
    if (is_residue(aRes[static_cast<std::size_t>(p)])) return p;
  }
  return -1;
}

// Position of the last residue, scanning back from len - 1; column 0 is never
// looked at, so a string whose only residue stands there has none.
int last_residue(const std::string& aRes, int len) {
  for (int p = std::min(len, static_cast<int>(aRes.size())) - 1; p >= 1; --p) {
    if (is_residue(aRes[static_cast<std::size_t>(p)])) return p;
  }
  return -1;
}

// The aligned string from column from on, empty when it is shorter.
const char* from_column(const std::string& aRes, int from) {
  if (from < 0 || static_cast<std::size_t>(from) > aRes.size()) return "";
  return aRes.c_str() + from;
}

}  // namespace

std::int32_t pct_homol_score(const ScoreTable& table, const char* s1, const char* s2, int n) {
  const std::size_t width = std::min(bounded_length(s1, n), bounded_length(s2, n));
  std::int64_t sum = 0;
  for (std::size_t p = 0; p < width; ++p) {
    if (is_residue(s1[p]) && is_residue(s2[p])) sum += table[(s1[p] - 'A') * kTableDim + (s2[p] - 'A')];
  }
  return static_cast<std::int32_t>(sum);
}

std::int32_t pct_perfect_score(const ScoreTable& table, const char* s1, const char* s2, int n) {
  const std::size_t len1 = bounded_length(s1, n);
  const std::size_t len2 = bounded_length(s2, n);
  const std::size_t width = std::max(len1, len2);
  std::int64_t sum = 0;
  for (std::size_t p = 0; p < width; ++p) {
    const int d1 = p < len1 ? self_score(table, s1[p]) : 0;
    const int d2 = p < len2 ? self_score(table, s2[p]) : 0;
    // A residue facing a non-residue is worth its own self score; two
    // residues are worth the smaller of theirs.
    sum += (d1 == 0 || d2 == 0) ? std::max(d1, d2) : std::min(d1, d2);
  }
  return static_cast<std::int32_t>(sum);
}

AlignStatus calc_align_pct(const ScoreTable& table, AlignRecord& record, int len, double& pct) {
  const int numSeqs = std::min(record.numSeqs, static_cast<int>(record.seqs.size()));
  int first = 0;
  int last = len;
  for (int k = 0; k < numSeqs; ++k) {
    const std::string& aRes = record.seqs[static_cast<std::size_t>(k)].aRes;
    const int start = first_residue(aRes, len);
    if (start < 0) return {AlignFault::noFirstResidue, len};
    first = std::max(first, start);
    const int end = last_residue(aRes, len);
    if (end < 0) return {AlignFault::noLastResidue, len};
    last = std::min(last, end);
  }
  record.overlapStart = first + 1;
  record.overlapEnd = last + 1;

  const int width = last - first + 1;
  std::int64_t homol = 0;
  std::int64_t perfect = 0;
  for (int a = 0; a < numSeqs; ++a) {
    const char* sa = from_column(record.seqs[static_cast<std::size_t>(a)].aRes, first);
    for (int b = a + 1; b < numSeqs; ++b) {
      const char* sb = from_column(record.seqs[static_cast<std::size_t>(b)].aRes, first);
      homol += pct_homol_score(table, sa, sb, width);
      perfect += pct_perfect_score(table, sa, sb, width);
    }
  }
  pct = perfect == 0 ? 0.0 : static_cast<double>(homol) * 100.0 / static_cast<double>(perfect);
  return {};
}

double scor_align_pct(const ScoreTable& table, AlignRecord& record, int len) {
  double pct = 0.0;
  const AlignStatus status = calc_align_pct(table, record, len, pct);
  if (align_failed(status)) report_align_fault(status);
  return pct;
}

double scor_pair_align(double pct, int hasStruct1, int hasStruct2, int bias) {
  double score = pct;
  if (hasStruct1 == 1) score += bias;
  if (hasStruct2 == 1) score += bias;
  return score;
}
