// Sections: public routines (add a member, re-gap, score a step), then
// private helpers.
#include "align/profile_score.hpp"

#include <cstddef>
#include <vector>

#include "align/penalties.hpp"
#include "align/score_codes.hpp"
#include "align/traceback.hpp"
#include "shell/errors.hpp"

namespace {

using Codes = std::vector<std::int32_t>;

void add_codes(const ScoreTable& table, const Codes& codes, std::vector<std::uint32_t>& profile) {
  for (std::size_t p = 0; p < codes.size(); ++p) {
    const std::int32_t* tableRow = table.data() + ((codes[p] * kTableDim) & (kTableSize - 1));
    std::uint32_t* column = profile.data() + p * kTableDim;
    for (int q = 0; q < kTableDim; ++q) column[q] += static_cast<std::uint32_t>(tableRow[q]);
  }
}

// Moves the old columns to their places in the new length, filling each gap
// column with count blanks' scores.
void regap_columns(std::vector<std::uint32_t>& profile, const char* templ, int newLen, const ScoreTable& table,
                   int count, const char* module) {
  std::vector<std::uint32_t> grown =
      checked_vector<std::uint32_t>(static_cast<std::size_t>(newLen) * kTableDim, module);
  const std::int32_t* blankRow = table.data() + kOtherCode * kTableDim;
  std::size_t from = 0;
  for (int t = 0; t < newLen; ++t) {
    std::uint32_t* column = grown.data() + static_cast<std::size_t>(t) * kTableDim;
    if (templ[t] == ' ') {
      for (int q = 0; q < kTableDim; ++q)
        column[q] = static_cast<std::uint32_t>(count) * static_cast<std::uint32_t>(blankRow[q]);
    } else {
      for (int q = 0; q < kTableDim; ++q) column[q] = profile[from * kTableDim + static_cast<std::size_t>(q)];
      ++from;
    }
  }
  profile.swap(grown);
}

}  // namespace

void add_profile_member(AlignProfile& profile, const ProfileMember& member, int alignLen, const ProfileTables& tables) {
  const std::size_t m = static_cast<std::size_t>(alignLen);
  if (profile.len != alignLen || profile.wt.size() != m * kTableDim) {
    profile.wt = checked_vector<std::uint32_t>(m * kTableDim, "mSeqNums");
    profile.ss = checked_vector<std::uint32_t>(m * kTableDim, "msSeqNums");
    profile.len = alignLen;
  }
  Codes codes = checked_vector<std::int32_t>(m, "mSeqNums");
  Codes groups = checked_vector<std::int32_t>(m, "mPenGroup");
  codes_to_indices(member.aRes->c_str(), alignLen, codes.data(), kOtherCode);
  if (member.hasURes == 1)
    calc_anchor_group_pen(member.aURes->c_str(), alignLen, codes.data(), groups.data(), kGroupPen);
  add_codes(*tables.wtTable, codes, profile.wt);
  ++profile.members;
  if (member.hasSRes == 1) {
    codes_to_indices(member.aSRes->c_str(), alignLen, codes.data(), kOtherCode);
    add_codes(*tables.ssTable, codes, profile.ss);
    ++profile.ssMembers;
  }
}

void regap_profile(AlignProfile& profile, const char* templ, int newLen, const ProfileTables& tables) {
  if (newLen == profile.len) return;
  regap_columns(profile.wt, templ, newLen, *tables.wtTable, profile.members, "mSeqNums");
  regap_columns(profile.ss, templ, newLen, *tables.ssTable, profile.ssMembers, "msSeqNums");
  profile.len = newLen;
}

void calc_profile_scores(const AlignProfile& profile, std::span<const ProfileMember> members, int alignLen, int seqLen,
                         const std::int32_t* dSeqNums, const std::int32_t* dsSeqNums, int newHasSRes,
                         const ProfileTables& tables, std::int32_t* msNums, std::int32_t* mPenGroup,
                         std::int32_t* scores) {
  const std::size_t m = static_cast<std::size_t>(alignLen);
  Codes aNums = checked_vector<std::int32_t>(m, "aNums");
  Codes mSeqNums = checked_vector<std::int32_t>(m, "mSeqNums");
  for (const ProfileMember& member : members) {
    calc_struct_scores(member.aSRes->c_str(), alignLen, aNums.data(), tables.midPen, tables.endPen, 1);
    for (std::size_t p = 0; p < m; ++p) msNums[p] += aNums[p];
    if (member.hasURes == 1)
      calc_anchor_group_pen(member.aURes->c_str(), alignLen, mSeqNums.data(), mPenGroup, kGroupPen);
  }
  const bool structScores = newHasSRes == 1;
  for (int i = 0; i < alignLen; ++i) {
    const std::uint32_t* wtColumn = profile.wt.data() + static_cast<std::size_t>(i) * kTableDim;
    const std::uint32_t* ssColumn = profile.ss.data() + static_cast<std::size_t>(i) * kTableDim;
    std::int32_t* row = scores + static_cast<std::size_t>(i) * static_cast<std::size_t>(seqLen);
    for (int j = 0; j < seqLen; ++j) {
      std::uint32_t sum = wtColumn[dSeqNums[j] & (kTableDim - 1)];
      if (structScores) sum += ssColumn[dsSeqNums[j] & (kTableDim - 1)];
      row[j] = static_cast<std::int32_t>(sum);
    }
  }
}

AlignStatus align_profile_step(StepWorkspace& ws, KernelKind kind, const std::int32_t* scores, int rows, int cols,
                               const std::int32_t* rowStruct, const std::int32_t* colStruct,
                               const std::int32_t* rowGroup, const std::int32_t* colGroup, int gapPen, int gapSizePen,
                               std::span<char> first, std::span<char> second, int maxLen, int& len) {
  if (kind != KernelKind::scalar) {
    const AlignStatus status =
        sum_band(ws.band, kind, scores, rows, cols, rowStruct, colStruct, rowGroup, colGroup, gapPen, gapSizePen);
    if (align_failed(status)) return status;
    return trace_path(
        band_path_start(ws.band), rows, cols, [&ws](std::int32_t cell) { return band_next_cell(ws.band, cell); }, first,
        second, maxLen, len);
  }
  const std::size_t cells = rows > 0 && cols > 0 ? static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols) : 0;
  if (ws.matrix.size() < cells) ws.matrix = checked_vector<SumCell>(cells, "sm");
  for (std::size_t k = 0; k < cells; ++k) ws.matrix[k].score = scores[k];
  sm_mat_init(ws.matrix.data(), rows, cols, 0);
  if (rows > 1 && cols > 0 && ws.carries.size() < static_cast<std::size_t>(cols))
    ws.carries = checked_vector<ColCarry>(static_cast<std::size_t>(cols), "sm_mat_sum");
  sum_matrix_cells(ws.carries.data(), ws.matrix.data(), rows, cols, rowStruct, colStruct, rowGroup, colGroup, gapPen,
                   gapSizePen);
  const std::int32_t start = find_path_start(ws.matrix.data(), rows, cols);
  return trace_best_align(start, ws.matrix.data(), rows, cols, first, second, maxLen, len);
}
