// Pairwise alignment of two sequences into one AlignRecord, on a per-worker
// workspace that is reused from pair to pair.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "align/align_score.hpp"
#include "align/align_status.hpp"
#include "align/sum_matrix.hpp"
#include "seq/seq_record.hpp"
#include "shell/limits.hpp"

using AlignTemplate = std::array<char, kMaxAlignLen + 1>;

// The settings of one pairwise stage (the tables are borrowed).
struct PairParams {
  const ScoreTable* wtTable;
  const ScoreTable* ssTable;
  int gapPen, gapSizePen, midPen, endPen, reach, bias, keepStrings;
};

// A sequence's residue and structure texts cut or padded to numRes characters.
struct OperandText {
  int n = 0;
  std::string_view res, sRes;
  std::string spareRes, spareSRes;  // storage when the record's own text does not fit
};

// Scratch of one worker: grown as pairs need it, never shrunk. Nothing in it
// carries over from one pair to the next.
struct AlignWorkspace {
  std::vector<SumCell> matrix;
  std::vector<ColCarry> carries;
  std::vector<std::int32_t> rowCodes, colCodes, rowStruct, colStruct, zeros;
  AlignTemplate first{}, second{};
};

// In: seq. Out: text holds views of exactly numRes characters (short or absent
// texts padded with 'X', an unknown residue without structure penalty).
void fit_operand(const SeqRecord& seq, OperandText& text);

// In: the two operands' texts, templates of len columns from the traceback.
// Out: record.seqs[0..1] aligned strings (when asked to keep them), numSeqs,
// alignLen, overlap, pctHomol, alignScore; or a failure status.
AlignStatus save_pair_result(AlignRecord& record, const SeqRecord& A, const OperandText& a, const SeqRecord& B,
                             const OperandText& b, const AlignTemplate& first, const AlignTemplate& second, int len,
                             const PairParams& params);

// In: record (seqs entries made if missing; seqIndex set by the caller), A
// (rows) and B (columns), the stage's settings.
// Out: the record filled, or the status of the first failure (alignment too
// long, no residues, out of memory), reported by the caller.
AlignStatus align_pair(AlignWorkspace& ws, AlignRecord& record, const SeqRecord& A, const SeqRecord& B,
                       const PairParams& params);
