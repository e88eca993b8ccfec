// Sections: do_pair_align, then its private helpers (work arrays, matrix
// storage, saving the aligned strings).
#include "align/pair_align.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "align/penalties.hpp"
#include "align/traceback.hpp"
#include "shell/errors.hpp"
#include "shell/limits.hpp"
#include "shell/strutil.hpp"

std::vector<SumCell> sm;

namespace {

const char* const kWorkLabel = "do_pair_align";
const char* const kSaveLabel = "save_seq_align";

using Template = std::array<char, kMaxAlignLen + 1>;

// The per-position inputs of one operand.
struct OperandArrays {
  std::vector<std::int32_t> codes;      // residue codes, then structure codes
  std::vector<std::int32_t> structPen;  // structure gap penalties
};

// A text of exactly n characters. Readers always give pRes and sRes numRes
// characters; should one be short or absent, it is padded with 'X', which
// scores as an unknown residue and draws no structure penalty.
std::string_view fitted_text(const std::string* text, int n, std::string& spare) {
  const std::size_t want = static_cast<std::size_t>(std::max(n, 0));
  if (text && text->size() >= want) return std::string_view(*text).substr(0, want);
  spare = text ? *text : std::string();
  spare.resize(want, 'X');
  return spare;
}

// Grows the shared matrix when a pair needs more cells; it never shrinks, so
// later pairs reuse the storage.
SumCell* pair_matrix(int rows, int cols) {
  const std::size_t cells = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
  if (sm.size() < cells) {
    try {
      sm.clear();  // nothing to keep: growing from empty avoids copying old cells
      sm.resize(cells);
    } catch (const std::bad_alloc&) {
      out_of_memory("calc_pair_align: sm");
    } catch (const std::length_error&) {
      out_of_memory("calc_pair_align: sm");
    }
  }
  return sm.data();
}

// Residue codes (the row operand's times 32, as table row offsets) and
// structure penalties of one operand.
OperandArrays make_operand(std::string_view res, std::string_view sRes, int n, int codeScale, int midPen, int endPen,
                           int reach) {
  OperandArrays ops{checked_vector<std::int32_t>(static_cast<std::size_t>(n), kWorkLabel),
                    checked_vector<std::int32_t>(static_cast<std::size_t>(n), kWorkLabel)};
  codes_to_indices(res.data(), n, ops.codes.data(), kOtherCode);
  for (std::int32_t& code : ops.codes) code *= codeScale;
  calc_struct_scores(sRes.data(), n, ops.structPen.data(), midPen, endPen, reach);
  return ops;
}

void set_codes(std::vector<std::int32_t>& codes, std::string_view text, int codeScale) {
  codes_to_indices(text.data(), static_cast<int>(codes.size()), codes.data(), kOtherCode);
  for (std::int32_t& code : codes) code *= codeScale;
}

std::string aligned_text(std::string_view input, int numRes, const Template& templ, int len) {
  std::string out = checked_string(static_cast<std::size_t>(len), ' ', kSaveLabel);
  str_match_blanks(input.data(), numRes, templ.data(), len, ' ', out.data());
  return out;
}

void release(std::string& text) { std::string().swap(text); }

}  // namespace

void do_pair_align(AlignRecord& record, const SeqRecord& A, const SeqRecord& B, const ScoreTable& wtTable,
                   const ScoreTable& ssTable, int gapPen, int gapSizePen, int midPen, int endPen, int reach, int bias,
                   int keepStrings) {
  const int rows = std::max(A.numRes, 0);
  const int cols = std::max(B.numRes, 0);
  std::string spareA, spareB, spareSA, spareSB;
  const std::string_view pA = fitted_text(&A.pRes, rows, spareA);
  const std::string_view pB = fitted_text(&B.pRes, cols, spareB);
  const std::string_view sA = fitted_text(A.sRes ? &*A.sRes : nullptr, rows, spareSA);
  const std::string_view sB = fitted_text(B.sRes ? &*B.sRes : nullptr, cols, spareSB);

  // Every score is written by sm_mat_score at once, so the links are all the
  // initialisation needs.
  SumCell* const matrix = pair_matrix(rows, cols);
  sm_mat_init(matrix, rows, cols, 0);

  // Pairwise alignment uses no groups: both grouping arrays are zero.
  const std::vector<std::int32_t> zeros = checked_vector<std::int32_t>(std::max(rows, cols), kWorkLabel);
  OperandArrays opA = make_operand(pA, sA, rows, kTableDim, midPen, endPen, reach);
  OperandArrays opB = make_operand(pB, sB, cols, 1, midPen, endPen, reach);

  sm_mat_score(wtTable, matrix, rows, cols, opA.codes.data(), opB.codes.data());
  if (A.hasSRes == 1 && B.hasSRes == 1) {
    // The residue codes are spent: the same arrays take the structure codes.
    set_codes(opA.codes, sA, kTableDim);
    set_codes(opB.codes, sB, 1);
    sm_mat_add_score(ssTable, matrix, rows, cols, opA.codes.data(), opB.codes.data());
  }
  sm_mat_sum(matrix, rows, cols, opA.structPen.data(), opB.structPen.data(), zeros.data(), zeros.data(), gapPen,
             gapSizePen);

  Template templA{}, templB{};
  const std::int32_t start = find_path_start(matrix, rows, cols);
  const int len = find_best_align(start, matrix, rows, cols, templA, templB, kMaxAlignLen);

  if (record.seqs.size() < 2) record.seqs.resize(2);
  AlignedSeq& alA = record.seqs[0];
  AlignedSeq& alB = record.seqs[1];
  alA.aRes = aligned_text(pA, rows, templA, len);
  if (A.hasSRes == 1) alA.aSRes = aligned_text(sA, rows, templA, len);
  alB.aRes = aligned_text(pB, cols, templB, len);
  if (B.hasSRes == 1) alB.aSRes = aligned_text(sB, cols, templB, len);

  record.numSeqs = 2;
  record.alignLen = len;
  record.pctHomol = scor_align_pct(wtTable, record, len);
  record.alignScore = scor_pair_align(record.pctHomol, A.hasSRes, B.hasSRes, bias);

  if (keepStrings == 0) {
    release(alA.aRes);
    release(alB.aRes);
    if (A.hasSRes == 1) release(alA.aSRes);
    if (B.hasSRes == 1) release(alB.aSRes);
  }
}
