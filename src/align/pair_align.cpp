#include "align/pair_align.hpp"

#include "shell/errors.hpp"

std::vector<SumCell> sm;

void do_pair_align(AlignRecord& record, const SeqRecord& A, const SeqRecord& B, const ScoreTable& wtTable, const ScoreTable& ssTable, int gapPen, int gapSizePen, int midPen, int endPen, int reach, int bias, int keepStrings) {
  fatal_err("do_pair_align", "not built yet");
}
