// Table codes and fixed scores that the alignment kernel and its callers
// share. The score tables' shape (kTableDim, kTableSize) lives with the
// tables in matrix/weight_matrix.hpp.
#pragma once

#include "matrix/weight_matrix.hpp"

inline constexpr int kOtherCode = 26;           // table index of any non-letter
inline constexpr int kGroupPen = 5000;          // gap charge inside a user group
inline constexpr int kAnchorScore = 10000;      // same anchor paired with itself
inline constexpr int kCarryFloor = -(1 << 30);  // initial gap carry: below any real sum
