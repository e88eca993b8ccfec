#include "align/profile_score.hpp"

#include <cstddef>
#include <vector>

#include "align/penalties.hpp"
#include "align/score_codes.hpp"
#include "shell/errors.hpp"

namespace {

using Codes = std::vector<std::int32_t>;

// Per column of the alignment, the summed score of its members against each
// of the 32 codes: profile[p * 32 + q]. Sums wrap at 32 bits like the matrix
// cells they become.
using Profile = std::vector<std::uint32_t>;

void add_to_profile(const ScoreTable& table, const Codes& rowCodes, Profile& profile) {
  for (std::size_t p = 0; p < rowCodes.size(); ++p) {
    const std::int32_t* tableRow = table.data() + ((rowCodes[p] * kTableDim) & (kTableSize - 1));
    std::uint32_t* column = profile.data() + p * kTableDim;
    for (int q = 0; q < kTableDim; ++q) column[q] += static_cast<std::uint32_t>(tableRow[q]);
  }
}

}  // namespace

// The members' scores are summed per column first and laid into the matrix
// once, which gives the same cells as adding each member's scores cell by cell.
void calc_profile_scores(std::span<const ProfileMember> members, int alignLen, int seqLen,
                         const std::int32_t* dSeqNums, const std::int32_t* dsSeqNums, int newHasSRes,
                         const ProfileTables& tables, std::int32_t* msNums, std::int32_t* mPenGroup, SumCell* matrix) {
  const std::size_t m = static_cast<std::size_t>(alignLen);
  Codes aNums = checked_vector<std::int32_t>(m, "aNums");
  Codes mSeqNums = checked_vector<std::int32_t>(m, "mSeqNums");
  Codes msSeqNums = checked_vector<std::int32_t>(m, "msSeqNums");
  Profile wtProfile = checked_vector<std::uint32_t>(m * kTableDim, "mSeqNums");
  Profile ssProfile = checked_vector<std::uint32_t>(m * kTableDim, "msSeqNums");
  for (const ProfileMember& member : members) {
    codes_to_indices(member.aRes->c_str(), alignLen, mSeqNums.data(), kOtherCode);
    calc_struct_scores(member.aSRes->c_str(), alignLen, aNums.data(), tables.midPen, tables.endPen, 1);
    for (std::size_t p = 0; p < m; ++p) msNums[p] += aNums[p];
    if (member.hasURes == 1)
      calc_anchor_group_pen(member.aURes->c_str(), alignLen, mSeqNums.data(), mPenGroup, kGroupPen);
    add_to_profile(*tables.wtTable, mSeqNums, wtProfile);
    if (member.hasSRes == 1 && newHasSRes == 1) {
      codes_to_indices(member.aSRes->c_str(), alignLen, msSeqNums.data(), kOtherCode);
      add_to_profile(*tables.ssTable, msSeqNums, ssProfile);
    }
  }
  for (int i = 0; i < alignLen; ++i) {
    const std::uint32_t* wtColumn = wtProfile.data() + static_cast<std::size_t>(i) * kTableDim;
    const std::uint32_t* ssColumn = ssProfile.data() + static_cast<std::size_t>(i) * kTableDim;
    SumCell* row = matrix + static_cast<std::size_t>(i) * static_cast<std::size_t>(seqLen);
    for (int j = 0; j < seqLen; ++j) {
      const std::uint32_t sum = wtColumn[dSeqNums[j] & (kTableDim - 1)] + ssColumn[dsSeqNums[j] & (kTableDim - 1)] +
                                static_cast<std::uint32_t>(row[j].score);
      row[j].score = static_cast<std::int32_t>(sum);
    }
  }
}
