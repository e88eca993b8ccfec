// The kernel of a join: two profiles aligned column to column by dynamic
// programming with three states (a column pair, a column of the first side
// against a gap, a column of the second against a gap), every gap charge
// given per position. Profiles need what single sequences do not: a gap in
// one side may follow a gap in the other (two groups' own insertions side by
// side), and a gap opposite columns that are mostly gaps already costs little.
// Integer arithmetic, one scalar loop: the same path on every machine.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

// What one side's gaps cost, in score units. Position g lies between the
// side's columns g - 1 and g; positions 0 and len are its ends, where gaps
// are free.
struct SideGapCosts {
  std::vector<std::int32_t> open;       // len + 1: a fixed charge for opening a gap at position g
  std::vector<std::int32_t> opening;    // len + 1: the charge of a gap at g opposite a full column (with
                                        // the structure charge of breaking the side there)
  std::vector<std::int32_t> filled;     // len: share of column p's members with a residue, of 1024
  std::vector<std::int32_t> skip;       // len: the side's column p against a gap in the other
  std::vector<std::int32_t> skipLevel;  // len: structure charge of putting column p against a gap
};

// One step of a join's path.
enum class JoinStep : char { kBoth = 'M', kFirstOnly = 'A', kSecondOnly = 'B' };

// In: scores[p * colsB + q] for column p of the first side against column q
// of the second; each side's gap costs. A gap's opening and structure
// charge is the highest along it, paid once: at each column it skips, the
// gap's opening charge times the share of the column's members with a
// residue (only they see a gap open), plus the column's structure charge. Out: the best path from the start to the end,
// or empty when a side has no columns and the other none either. Raises when memory is exhausted.
std::vector<JoinStep> join_path(std::span<const std::int32_t> scores, int colsA, int colsB, const SideGapCosts& a,
                                const SideGapCosts& b);
