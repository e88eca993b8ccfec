// Pairwise alignment of two sequences into one AlignRecord.
#pragma once

#include <vector>

#include "align/align_score.hpp"
#include "align/sum_matrix.hpp"
#include "seq/seq_record.hpp"

// The pairwise sum matrix; kept between pairs so that its storage is reused.
extern std::vector<SumCell> sm;

void do_pair_align(AlignRecord& record, const SeqRecord& A, const SeqRecord& B, const ScoreTable& wtTable,
                   const ScoreTable& ssTable, int gapPen, int gapSizePen, int midPen, int endPen, int reach, int bias,
                   int keepStrings);
