#include "malign/mult_align.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "align/kernel_select.hpp"
#include "align/penalties.hpp"
#include "align/profile_score.hpp"
#include "align/score_codes.hpp"
#include "align/sum_matrix.hpp"
#include "align/traceback.hpp"
#include "shell/errors.hpp"
#include "shell/limits.hpp"
#include "shell/strutil.hpp"

namespace {

using Codes = std::vector<std::int32_t>;

// What every step of one multiple alignment reads and the alignment it grows.
struct MultRun {
  const RunSettings& settings;
  std::span<const SeqRecord> seqs;
  AlignRecord& malign;
};

// Exactly n characters of a sequence's string. Every reader supplies them;
// an absent structure or grouping string reads as its filler, and a short
// string is padded rather than read past its end.
std::string bounded_copy(const std::optional<std::string>& text, int n, char filler) {
  const std::size_t len = n > 0 ? static_cast<std::size_t>(n) : 0;
  std::string copy = text ? text->substr(0, len) : std::string();
  copy.resize(len, filler);
  return copy;
}

std::string bounded_copy(const std::string& text, int n, char filler) {
  return bounded_copy(std::optional<std::string>(text), n, filler);
}

// One aligned string: the gap-free text laid onto the template's gaps.
std::string lay_onto_template(const std::string& text, const char* templ, int len, const char* module) {
  std::string aligned = checked_string(len > 0 ? static_cast<std::size_t>(len) : 0, ' ', module);
  str_match_blanks(text.c_str(), static_cast<int>(text.size()), templ, len, ' ', aligned.data());
  str_scan(aligned.data(), len, ' ', ' ');
  return aligned;
}

std::size_t cell_count(int rows, int cols) {
  if (rows < 1 || cols < 1) return 0;
  return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
}

// The step's work arrays for the sequence being added (d) and the alignment (m).
struct StepArrays {
  Codes dSeqNums;
  Codes dsSeqNums;
  Codes dsNums;
  Codes msNums;
  Codes dPenGroup;
  Codes mPenGroup;
};

StepArrays alloc_step_arrays(int alignLen, int seqLen) {
  const std::size_t m = alignLen > 0 ? static_cast<std::size_t>(alignLen) : 0;
  const std::size_t d = seqLen > 0 ? static_cast<std::size_t>(seqLen) : 0;
  StepArrays arrays;
  arrays.dSeqNums = checked_vector<std::int32_t>(d, "dSeqNums");
  arrays.dsSeqNums = checked_vector<std::int32_t>(d, "dsSeqNums");
  arrays.dsNums = checked_vector<std::int32_t>(d, "dsNums");
  arrays.msNums = checked_vector<std::int32_t>(m, "msNums");
  arrays.dPenGroup = checked_vector<std::int32_t>(d, "dPenGroup");
  arrays.mPenGroup = checked_vector<std::int32_t>(m, "mPenGroup");
  return arrays;
}

void prepare_new_seq(const RunSettings& settings, const SeqRecord& seq, int n, StepArrays& arrays) {
  const std::string res = bounded_copy(seq.pRes, n, 'X');
  const std::string sres = bounded_copy(seq.sRes, n, 'X');
  codes_to_indices(res.c_str(), n, arrays.dSeqNums.data(), kOtherCode);
  calc_struct_scores(sres.c_str(), n, arrays.dsNums.data(), settings.midStructPen, settings.endStructPen, 1);
  if (seq.hasURes == 1) {
    const std::string ures = bounded_copy(seq.uRes, n, '-');
    calc_anchor_group_pen(ures.c_str(), n, arrays.dSeqNums.data(), arrays.dPenGroup.data(), kGroupPen);
  }
  if (seq.hasSRes == 1) codes_to_indices(sres.c_str(), n, arrays.dsSeqNums.data(), kOtherCode);
}

ProfileTables profile_tables(const RunSettings& settings) {
  return {&settings.wtMatrix, &settings.ssMatrix, settings.midStructPen, settings.endStructPen};
}

ProfileMember member_of(const MultRun& run, const AlignedSeq& member) {
  const SeqRecord& memberSeq = run.seqs[static_cast<std::size_t>(member.seqIndex)];
  return {&member.aRes, &member.aSRes, &member.aURes, memberSeq.hasSRes, memberSeq.hasURes};
}

// The alignment as a profile: every member adds its scores against the new
// sequence, its structure penalties and the groups it forbids to split.
void add_member_profiles(const MultRun& run, const SeqRecord& newSeq, int alignLen, int seqLen,
                         const AlignProfile& profile, StepArrays& arrays, std::vector<std::int32_t>& scores) {
  std::vector<ProfileMember> members =
      checked_vector<ProfileMember>(static_cast<std::size_t>(run.malign.numSeqs), "aNums");
  for (std::size_t k = 0; k < members.size(); ++k) members[k] = member_of(run, run.malign.seqs[k]);
  calc_profile_scores(profile, members, alignLen, seqLen, arrays.dSeqNums.data(), arrays.dsSeqNums.data(),
                      newSeq.hasSRes, profile_tables(run.settings), arrays.msNums.data(), arrays.mPenGroup.data(),
                      scores.data());
}

// The member just added, scored into the alignment's profile.
void add_last_member(const MultRun& run, AlignProfile& profile) {
  const AlignedSeq& member = run.malign.seqs[static_cast<std::size_t>(run.malign.numSeqs - 1)];
  add_profile_member(profile, member_of(run, member), run.malign.alignLen, profile_tables(run.settings));
}

void regap_string(std::string& aligned, int oldLen, const char* templ, int newLen, const char* module) {
  const std::string copy = bounded_copy(aligned, oldLen, ' ');
  aligned = lay_onto_template(copy, templ, newLen, module);
}

// Gaps once placed stay: when the alignment grew, every member receives the
// new blank columns where the traceback put them.
void update_malign_seqs(AlignRecord& malign, int oldLen, const char* templ, int newLen) {
  if (newLen == oldLen || malign.numSeqs <= 0) return;
  for (int k = 0; k < malign.numSeqs; ++k) {
    AlignedSeq& member = malign.seqs[static_cast<std::size_t>(k)];
    regap_string(member.aRes, oldLen, templ, newLen, "update_malign_seqs: pRes");
    regap_string(member.aSRes, oldLen, templ, newLen, "update_malign_seqs: sRes");
    regap_string(member.aURes, oldLen, templ, newLen, "update_malign_seqs: uBuf");
  }
}

// Aligns one more sequence against the alignment so far.
void add_next_seq(const MultRun& run, int seqIndex, int curGapPen, int curGapSizePen, AlignProfile& profile,
                  std::vector<std::int32_t>& scores, StepWorkspace& ws, std::vector<char>& mTemplate,
                  std::vector<char>& dTemplate) {
  AlignRecord& mar = run.malign;
  const SeqRecord& newSeq = run.seqs[static_cast<std::size_t>(seqIndex)];
  const int seqLen = newSeq.numRes;
  const int alignLen = mar.alignLen;
  const std::size_t cells = cell_count(alignLen, seqLen);
  if (scores.size() < cells) scores = checked_vector<std::int32_t>(cells, "sm");
  StepArrays arrays = alloc_step_arrays(alignLen, seqLen);
  prepare_new_seq(run.settings, newSeq, seqLen, arrays);
  add_member_profiles(run, newSeq, alignLen, seqLen, profile, arrays, scores);

  int newLen = 0;
  const AlignStatus status =
      align_profile_step(ws, active_kernel(), scores.data(), alignLen, seqLen, arrays.msNums.data(),
                         arrays.dsNums.data(), arrays.mPenGroup.data(), arrays.dPenGroup.data(), curGapPen,
                         curGapSizePen, mTemplate, dTemplate, kMaxAlignLen, newLen);
  if (align_failed(status)) report_align_fault(status);

  update_malign_seqs(mar, alignLen, mTemplate.data(), newLen);
  add_dSeq_malign(mar, seqIndex, newSeq, dTemplate.data(), newLen);
  mar.alignLen = newLen;
  regap_profile(profile, mTemplate.data(), newLen, profile_tables(run.settings));
  add_last_member(run, profile);
}

}  // namespace

int grow_gap_pen(int pen, int step, int incPct) {
  // Integer product, sum in double, truncated toward zero.
  const std::int32_t raise = static_cast<std::int32_t>(pen) * step * incPct;
  return static_cast<int>(pen + raise * 0.01);
}

void add_dSeq_malign(AlignRecord& mar, int seqIndex, const SeqRecord& seq, const char* templ, int len) {
  const std::size_t slot = mar.numSeqs > 0 ? static_cast<std::size_t>(mar.numSeqs) : 0;
  if (mar.seqs.size() <= slot) mar.seqs.resize(slot + 1);
  AlignedSeq& entry = mar.seqs[slot];
  entry.seqIndex = seqIndex;
  const int n = seq.numRes;
  entry.aRes = lay_onto_template(bounded_copy(seq.pRes, n, 'X'), templ, len, "add_dSeq_malign: pRes");
  entry.aSRes = lay_onto_template(bounded_copy(seq.sRes, n, 'X'), templ, len, "add_dSeq_malign: sRes");
  entry.aURes = lay_onto_template(bounded_copy(seq.uRes, n, '-'), templ, len, "add_dSeq_malign: uBuf");
  mar.numSeqs = static_cast<std::int32_t>(slot) + 1;
}

void build_mult_align(const RunSettings& settings, std::span<const SeqRecord> seqs, std::span<const int> alignOrder,
                      AlignRecord& mar) {
  mar.numSeqs = 0;
  mar.alignLen = 0;
  const int count = std::min(static_cast<int>(seqs.size()), static_cast<int>(alignOrder.size()));
  if (count < 1) return;
  const MultRun run{settings, seqs, mar};

  int curGapPen = settings.gapPen;
  int curGapSizePen = settings.gapSizePen;
  const int first = alignOrder[0];
  const SeqRecord& firstSeq = seqs[static_cast<std::size_t>(first)];
  // The first member is its own template: a straight copy.
  const std::string firstTemplate = bounded_copy(firstSeq.pRes, firstSeq.numRes, 'X');
  add_dSeq_malign(mar, first, firstSeq, firstTemplate.c_str(), firstSeq.numRes);
  mar.alignLen = firstSeq.numRes;
  AlignProfile profile;
  if (count > 1) add_last_member(run, profile);

  std::vector<std::int32_t> scores;
  StepWorkspace ws;
  // The traceback stops writing at the end of the buffers; one more for the terminator.
  std::vector<char> mTemplate(kMaxAlignLen + 1, '\0');
  std::vector<char> dTemplate(kMaxAlignLen + 1, '\0');
  for (int k = 1; k < count; ++k) {
    add_next_seq(run, alignOrder[static_cast<std::size_t>(k)], curGapPen, curGapSizePen, profile, scores, ws, mTemplate,
                 dTemplate);
    curGapPen = grow_gap_pen(settings.gapPen, k, settings.incGapPen);
    curGapSizePen = grow_gap_pen(settings.gapSizePen, k, settings.incGapPen);
  }

  mar.pctHomol = scor_align_pct(settings.wtMatrix, mar, mar.alignLen);
}
