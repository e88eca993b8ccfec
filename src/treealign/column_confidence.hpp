// How far the pairwise alignments agree with each column of a multiple one.
#pragma once

#include <string>

#include "treealign/group_align.hpp"
#include "treealign/pair_library.hpp"

// A digit per column: the share of the column's residue pairs that the two
// sequences' own pairwise alignment also pairs, in tenths (0-9, 9 from 90%
// up); a column with fewer than two residues is 0.
std::string column_confidence(const Group& alignment, const PairLibrary& library);
