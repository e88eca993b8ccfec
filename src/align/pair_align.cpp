// Sections: public routines (fit_operand, save_pair_result, align_pair),
// then private helpers (workspace growth, operand arrays).
#include "align/pair_align.hpp"

#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>

#include "align/penalties.hpp"
#include "align/score_codes.hpp"
#include "align/traceback.hpp"
#include "align/wrap_arith.hpp"
#include "shell/strutil.hpp"

namespace {

const char* const kMatrixLabel = "calc_pair_align: sm";
const char* const kCarryLabel = "sm_mat_sum";
const char* const kWorkLabel = "do_pair_align";
const char* const kSaveLabel = "save_seq_align";

AlignStatus reserve_workspace(AlignWorkspace& ws, int rows, int cols) {
  const auto r = static_cast<std::size_t>(rows), c = static_cast<std::size_t>(cols);
  if (!grow(ws.matrix, r * c)) return {AlignFault::outOfMemory, 0, kMatrixLabel};
  const std::size_t longer = std::max(r, c);
  if (!grow(ws.rowCodes, r) || !grow(ws.colCodes, c) || !grow(ws.rowStruct, r) || !grow(ws.colStruct, c) ||
      !grow(ws.zeros, longer))
    return {AlignFault::outOfMemory, 0, kWorkLabel};
  if (!grow(ws.carries, c)) return {AlignFault::outOfMemory, 0, kCarryLabel};
  return {};
}

void set_codes(std::int32_t* codes, std::string_view text, int n, int codeScale) {
  codes_to_indices(text.data(), n, codes, kOtherCode);
  for (int p = 0; p < n; ++p) codes[p] *= codeScale;
}

std::string_view fitted_text(const std::string* text, int n, std::string& spare) {
  const std::size_t want = static_cast<std::size_t>(std::max(n, 0));
  if (text && text->size() >= want) return std::string_view(*text).substr(0, want);
  spare = text ? *text : std::string();
  spare.resize(want, 'X');
  return spare;
}

bool aligned_text(std::string& out, std::string_view input, int numRes, const AlignTemplate& templ, int len) {
  try {
    out.assign(static_cast<std::size_t>(std::max(len, 0)), ' ');
  } catch (const std::bad_alloc&) {
    return false;
  } catch (const std::length_error&) {
    return false;
  }
  str_match_blanks(input.data(), numRes, templ.data(), len, ' ', out.data());
  return true;
}

void release(std::string& text) { std::string().swap(text); }

}  // namespace

void fit_operand(const SeqRecord& seq, OperandText& text) {
  text.n = std::max(seq.numRes, 0);
  text.res = fitted_text(&seq.pRes, text.n, text.spareRes);
  text.sRes = fitted_text(seq.sRes ? &*seq.sRes : nullptr, text.n, text.spareSRes);
}

AlignStatus save_pair_result(AlignRecord& record, const SeqRecord& A, const OperandText& a, const SeqRecord& B,
                             const OperandText& b, const AlignTemplate& first, const AlignTemplate& second, int len,
                             const PairParams& params) {
  try {
    if (record.seqs.size() < 2) record.seqs.resize(2);
  } catch (const std::bad_alloc&) {
    return {AlignFault::outOfMemory, 0, kSaveLabel};
  }
  AlignedSeq& alA = record.seqs[0];
  AlignedSeq& alB = record.seqs[1];
  bool saved = aligned_text(alA.aRes, a.res, a.n, first, len);
  if (saved && A.hasSRes == 1) saved = aligned_text(alA.aSRes, a.sRes, a.n, first, len);
  if (saved) saved = aligned_text(alB.aRes, b.res, b.n, second, len);
  if (saved && B.hasSRes == 1) saved = aligned_text(alB.aSRes, b.sRes, b.n, second, len);
  if (!saved) return {AlignFault::outOfMemory, 0, kSaveLabel};

  record.numSeqs = 2;
  record.alignLen = len;
  const AlignStatus status = calc_align_pct(*params.wtTable, record, len, record.pctHomol);
  if (align_failed(status)) return status;
  record.alignScore = scor_pair_align(record.pctHomol, A.hasSRes, B.hasSRes, params.bias);

  if (params.keepStrings == 0) {
    release(alA.aRes);
    release(alB.aRes);
    if (A.hasSRes == 1) release(alA.aSRes);
    if (B.hasSRes == 1) release(alB.aSRes);
  }
  return {};
}

AlignStatus align_pair(AlignWorkspace& ws, AlignRecord& record, const SeqRecord& A, const SeqRecord& B,
                       const PairParams& params) {
  OperandText a, b;
  fit_operand(A, a);
  fit_operand(B, b);
  const int rows = a.n, cols = b.n;
  // Every template holds all of its operand's positions, so a sequence
  // longer than the limit can only give an over-long alignment.
  if (std::max(rows, cols) > kMaxAlignLen) return {AlignFault::alignTooLong, kMaxAlignLen};
  AlignStatus status = reserve_workspace(ws, rows, cols);
  if (align_failed(status)) return status;

  // Every score is written by sm_mat_score at once, so the links are all the
  // initialisation needs. Pairwise alignment uses no groups: both grouping
  // arrays are the zeros.
  SumCell* const matrix = ws.matrix.data();
  sm_mat_init(matrix, rows, cols, 0);
  std::fill_n(ws.zeros.begin(), std::max(rows, cols), 0);
  set_codes(ws.rowCodes.data(), a.res, rows, kTableDim);
  set_codes(ws.colCodes.data(), b.res, cols, 1);
  calc_struct_scores(a.sRes.data(), rows, ws.rowStruct.data(), params.midPen, params.endPen, params.reach);
  calc_struct_scores(b.sRes.data(), cols, ws.colStruct.data(), params.midPen, params.endPen, params.reach);

  sm_mat_score(*params.wtTable, matrix, rows, cols, ws.rowCodes.data(), ws.colCodes.data());
  if (A.hasSRes == 1 && B.hasSRes == 1) {
    // The residue codes are spent: the same arrays take the structure codes.
    set_codes(ws.rowCodes.data(), a.sRes, rows, kTableDim);
    set_codes(ws.colCodes.data(), b.sRes, cols, 1);
    sm_mat_add_score(*params.ssTable, matrix, rows, cols, ws.rowCodes.data(), ws.colCodes.data());
  }
  sum_matrix_cells(ws.carries.data(), matrix, rows, cols, ws.rowStruct.data(), ws.colStruct.data(), ws.zeros.data(),
                   ws.zeros.data(), params.gapPen, params.gapSizePen);

  int len = 0;
  const std::int32_t start = find_path_start(matrix, rows, cols);
  status = trace_best_align(start, matrix, rows, cols, ws.first, ws.second, kMaxAlignLen, len);
  if (align_failed(status)) return status;
  return save_pair_result(record, A, a, B, b, ws.first, ws.second, len, params);
}
