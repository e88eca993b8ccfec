// Sections: public routines (codes, groups, join), then the profiles, the
// consistency support and the merge of two groups along a traceback.
#include "treealign/group_align.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

#include "align/score_codes.hpp"
#include "shell/errors.hpp"
#include "treealign/join_kernel.hpp"
#include "treealign/pair_posterior.hpp"

namespace {

constexpr int kCodes = kOtherCode + 1;  // residue and structure codes 0 .. 26

std::size_t at(std::size_t row, std::size_t width, std::size_t col) { return row * width + col; }

// What the scores and the kernel read of one side, derived from its profile.
struct SideTerms {
  std::vector<std::int32_t> structPen;                                     // scaled
  std::vector<std::vector<std::pair<int, std::int64_t>>> resList, ssList;  // non-zero counts
};

SideTerms side_terms(const GroupProfile& profile, int scale) {
  const std::size_t len = static_cast<std::size_t>(profile.len);
  SideTerms terms;
  terms.structPen.assign(len, 0);
  if (profile.ssWeight > 0)
    for (std::size_t c = 0; c < len; ++c)
      terms.structPen[c] = static_cast<std::int32_t>(profile.penSum[c] * scale / profile.ssWeight);
  terms.resList.resize(len);
  terms.ssList.resize(len);
  for (std::size_t c = 0; c < len; ++c)
    for (int x = 0; x < kCodes; ++x) {
      if (profile.res[at(c, kCodes, x)] != 0) terms.resList[c].emplace_back(x, profile.res[at(c, kCodes, x)]);
      if (profile.ss[at(c, kCodes, x)] != 0) terms.ssList[c].emplace_back(x, profile.ss[at(c, kCodes, x)]);
    }
  return terms;
}

// Per column of the column side: each code's table score against the column,
// summed over the column's members (kCodes x len: a code's scores along the
// columns lie together, for the row loop of the join's scores).
std::vector<std::int64_t> scored_against(const ScoreTable& table, const std::vector<std::int64_t>& counts, int len) {
  const std::size_t width = static_cast<std::size_t>(len);
  std::vector<std::int64_t> out(width * kCodes, 0);
  for (std::size_t c = 0; c < width; ++c)
    for (int y = 0; y < kCodes; ++y) {
      const std::int64_t n = counts[at(c, kCodes, y)];
      if (n == 0) continue;
      for (int x = 0; x < kCodes; ++x) out[at(x, width, c)] += n * table[at(x, kTableDim, y)];
    }
  return out;
}

// Adds count times a code's scores along the columns to sums.
void add_scaled(std::vector<std::int64_t>& sums, const std::int64_t* scores, std::int64_t count) {
  for (std::size_t q = 0; q < sums.size(); ++q) sums[q] += count * scores[q];
}

// Library support from the likely partners: each member pair's residue pairs
// weighted by their probability, and through each third sequence by the
// product of the two links' probabilities.
std::vector<std::int64_t> likely_support(const JoinContext& context, const Group& a, const Group& b) {
  const std::size_t lenB = static_cast<std::size_t>(b.len);
  std::vector<std::int64_t> support(static_cast<std::size_t>(a.len) * lenB, 0);
  const PairLibrary& library = *context.library;
  std::vector<std::vector<const SparseMap*>> fromThirds(b.members.size());
  for (std::size_t kb = 0; kb < b.members.size(); ++kb)
    for (const int third : context.thirds)
      fromThirds[kb].push_back(third == b.members[kb] ? nullptr : likely_partners(library, third, b.members[kb]));
  for (std::size_t ka = 0; ka < a.members.size(); ++ka) {
    const int sa = a.members[ka];
    const std::vector<std::int32_t>& colsA = a.cols[ka];
    std::vector<const SparseMap*> toThirds;
    for (const int third : context.thirds)
      toThirds.push_back(third == sa ? nullptr : likely_partners(library, sa, third));
    for (std::size_t kb = 0; kb < b.members.size(); ++kb) {
      const int sb = b.members[kb];
      const std::vector<std::int32_t>& colsB = b.cols[kb];
      const std::int64_t w =
          context.weights[static_cast<std::size_t>(sa)] * context.weights[static_cast<std::size_t>(sb)];
      auto add = [&](std::size_t x, std::size_t y, std::int64_t value) {
        support[at(static_cast<std::size_t>(colsA[x]), lenB, static_cast<std::size_t>(colsB[y]))] += value;
      };
      const SparseMap& direct = *likely_partners(library, sa, sb);
      for (std::size_t x = 0; x < colsA.size(); ++x)
        for (std::int32_t s = direct.start[x]; s < direct.start[x + 1]; ++s)
          add(x, static_cast<std::size_t>(direct.partner[static_cast<std::size_t>(s)]),
              w * direct.prob[static_cast<std::size_t>(s)]);
      for (std::size_t t = 0; t < context.thirds.size(); ++t) {
        const SparseMap* toThird = toThirds[t];
        const SparseMap* fromThird = fromThirds[kb][t];
        if (toThird == nullptr || fromThird == nullptr) continue;
        for (std::size_t x = 0; x < colsA.size(); ++x)
          for (std::int32_t s = toThird->start[x]; s < toThird->start[x + 1]; ++s) {
            const std::size_t z = static_cast<std::size_t>(toThird->partner[static_cast<std::size_t>(s)]);
            const std::int64_t pz = toThird->prob[static_cast<std::size_t>(s)];
            for (std::int32_t u = fromThird->start[z]; u < fromThird->start[z + 1]; ++u)
              add(x, static_cast<std::size_t>(fromThird->partner[static_cast<std::size_t>(u)]),
                  w * (pz * fromThird->prob[static_cast<std::size_t>(u)] / 1000));
          }
      }
    }
  }
  return support;
}

// std::llround's result without its call per cell: the fraction left by
// truncation is exact for any value a join score can take.
std::int64_t round_half_away(double value) {
  auto whole = static_cast<std::int64_t>(value);
  const double fraction = value - static_cast<double>(whole);
  if (fraction >= 0.5) ++whole;
  if (fraction <= -0.5) --whole;
  return whole;
}

// Per column of the column side: each code's odds ratio against the
// column's residues, averaged over them (kCodes x len, as scored_against
// lays them out), and the column's share of members with a residue.
struct ExpectedOdds {
  std::vector<double> odds, filled;
};

ExpectedOdds expected_odds(const std::vector<double>& table, const GroupProfile& profile) {
  const std::size_t width = static_cast<std::size_t>(profile.len);
  ExpectedOdds out;
  out.odds.assign(width * kCodes, 0.0);
  out.filled.assign(width, 0.0);
  for (std::size_t c = 0; c < width; ++c) {
    std::int64_t residues = 0;
    for (int y = 0; y < kCodes; ++y) residues += profile.res[at(c, kCodes, y)];
    if (residues == 0) continue;
    out.filled[c] = static_cast<double>(residues) / static_cast<double>(profile.weight);
    for (int y = 0; y < kCodes; ++y) {
      const std::int64_t n = profile.res[at(c, kCodes, y)];
      if (n == 0) continue;
      const double share = static_cast<double>(n) / static_cast<double>(residues);
      for (int x = 0; x < kCodes; ++x) out.odds[at(x, width, c)] += share * table[at(x, kCodes, y)];
    }
  }
  return out;
}

// One row of log-expectation scores, in table units: row's residues (with
// their column's share of members) against every column of the other side.
void expectation_row(const GroupScoring& scoring, const std::vector<std::pair<int, std::int64_t>>& residues,
                     std::int64_t weight, const ExpectedOdds& other, std::vector<double>& sums,
                     std::vector<double>& out) {
  std::fill(out.begin(), out.end(), 0.0);
  std::int64_t total = 0;
  for (const auto& [x, n] : residues) total += n;
  if (total == 0) return;
  std::fill(sums.begin(), sums.end(), 0.0);
  for (const auto& [x, n] : residues) {
    const double share = static_cast<double>(n) / static_cast<double>(total);
    const double* odds = other.odds.data() + static_cast<std::size_t>(x) * sums.size();
    for (std::size_t q = 0; q < sums.size(); ++q) sums[q] += share * odds[q];
  }
  const double filled = static_cast<double>(total) / static_cast<double>(weight);
  for (std::size_t q = 0; q < sums.size(); ++q)
    if (other.filled[q] > 0)
      out[q] = filled * other.filled[q] *
               (scoring.expectationWeight * 2 * portable_log2(sums[q]) + scoring.expectationBonus);
}

std::vector<std::int32_t> join_scores(const JoinContext& context, const GroupProfile& pa, const GroupProfile& pb,
                                      const SideTerms& ta, const Group* a, const Group* b) {
  const GroupScoring& scoring = context.scoring;
  const std::size_t rows = static_cast<std::size_t>(pa.len), cols = static_cast<std::size_t>(pb.len);
  std::vector<std::int32_t> scores = checked_vector<std::int32_t>(rows * cols, "join scores");
  const bool byExpectation = !scoring.expectedOdds.empty();
  const std::vector<std::int64_t> resB =
      byExpectation ? std::vector<std::int64_t>() : scored_against(scoring.wtTable, pb.res, pb.len);
  const std::vector<std::int64_t> ssB = scored_against(scoring.ssTable, pb.ss, pb.len);
  std::vector<std::int64_t> support;
  const bool withLibrary = scoring.libraryWeight > 0 && context.library != nullptr && context.library->keepsLikely &&
                           a != nullptr && b != nullptr;
  if (withLibrary) support = likely_support(context, *a, *b);
  const double pairWeight = static_cast<double>(pa.weight) * static_cast<double>(pb.weight);
  const double tableFactor = scoring.scale * scoring.tableWeight / pairWeight;
  const double libraryFactor = scoring.scale * scoring.libraryWeight /
                               (pairWeight * 1000.0 * (1.0 + static_cast<double>(context.thirds.size())));
  const ExpectedOdds oddsB = byExpectation ? expected_odds(scoring.expectedOdds, pb) : ExpectedOdds();
  const double expectationFactor = scoring.scale * scoring.tableWeight;
  std::vector<double> oddsSums(byExpectation ? cols : 0), expectation(byExpectation ? cols : 0);
  std::vector<std::int64_t> sums(cols);
  for (std::size_t p = 0; p < rows; ++p) {
    std::int32_t* out = scores.data() + p * cols;
    std::fill(sums.begin(), sums.end(), 0);
    if (byExpectation)
      expectation_row(scoring, ta.resList[p], pa.weight, oddsB, oddsSums, expectation);
    else
      for (const auto& [x, n] : ta.resList[p]) add_scaled(sums, resB.data() + static_cast<std::size_t>(x) * cols, n);
    for (const auto& [x, n] : ta.ssList[p]) add_scaled(sums, ssB.data() + static_cast<std::size_t>(x) * cols, n);
    for (std::size_t q = 0; q < cols; ++q) {
      double value = tableFactor * static_cast<double>(sums[q]);
      if (byExpectation) value += expectationFactor * expectation[q];
      if (withLibrary) value += libraryFactor * static_cast<double>(support[p * cols + q]);
      std::int64_t score = round_half_away(value);
      if (pa.anchor[p] != 0 && pa.anchor[p] == pb.anchor[q]) score += std::int64_t{kAnchorScore} * scoring.scale;
      out[q] = static_cast<std::int32_t>(std::clamp<std::int64_t>(score, -(1 << 28), 1 << 28));
    }
  }
  return scores;
}

void add_members(Group& joined, const Group& side, const std::vector<std::int32_t>& to) {
  for (std::size_t k = 0; k < side.members.size(); ++k) {
    joined.members.push_back(side.members[k]);
    std::vector<std::int32_t> cols = side.cols[k];
    for (std::int32_t& c : cols) c = to[static_cast<std::size_t>(c)];
    joined.cols.push_back(std::move(cols));
  }
}

}  // namespace

Group single_group(int seq, int numRes) {
  Group group;
  group.members = {seq};
  std::vector<std::int32_t> cols(static_cast<std::size_t>(std::max(numRes, 0)));
  for (std::size_t x = 0; x < cols.size(); ++x) cols[x] = static_cast<std::int32_t>(x);
  group.cols.push_back(std::move(cols));
  group.len = std::max(numRes, 0);
  return group;
}

Group group_of_rows(std::span<const int> seqs, std::span<const std::string> rows) {
  Group group;
  group.len = rows.empty() ? 0 : static_cast<int>(rows.front().size());
  for (std::size_t k = 0; k < seqs.size(); ++k) {
    group.members.push_back(seqs[k]);
    std::vector<std::int32_t>& cols = group.cols.emplace_back();
    for (std::size_t c = 0; c < rows[k].size(); ++c)
      if (rows[k][c] != '-') cols.push_back(static_cast<std::int32_t>(c));
  }
  return group;
}

GroupProfile group_profile(const JoinContext& context, const Group& group) {
  const int scale = context.scoring.scale;
  GroupProfile profile;
  profile.len = group.len;
  const std::size_t len = static_cast<std::size_t>(group.len);
  profile.res.assign(len * kCodes, 0);
  profile.ss.assign(len * kCodes, 0);
  profile.penSum.assign(len, 0);
  profile.groupPen.assign(len, 0);
  profile.anchor.assign(len, 0);
  for (std::size_t k = 0; k < group.members.size(); ++k) {
    const int seq = group.members[k];
    const SeqCodes& codes = context.codes[static_cast<std::size_t>(seq)];
    const std::int64_t w = context.weights[static_cast<std::size_t>(seq)];
    const std::vector<std::int32_t>& cols = group.cols[k];
    profile.weight += w;
    if (codes.hasSs) profile.ssWeight += w;
    for (std::size_t x = 0; x < cols.size(); ++x) {
      const std::size_t c = static_cast<std::size_t>(cols[x]);
      profile.res[at(c, kCodes, static_cast<std::size_t>(codes.res[x]))] += w;
      if (codes.hasSs) {
        profile.ss[at(c, kCodes, static_cast<std::size_t>(codes.ss[x]))] += w;
        profile.penSum[c] += w * codes.structPen[x];
      }
      if (codes.anchor[x] != 0 && profile.anchor[c] == 0) profile.anchor[c] = codes.anchor[x];
      // A gap-free group: no column may open between its residues.
      if (codes.inGroup[x] != 0 && x > 0)
        for (std::size_t g = static_cast<std::size_t>(cols[x - 1]) + 1; g <= c; ++g)
          profile.groupPen[g] = kGroupPen * scale;
    }
  }
  return profile;
}

// A side's gap costs in a join. Opening a gap at a position is charged only
// for the members with residues on both sides of it (the others' gaps just
// grow), and the kernel charges it, with the structure charge of breaking a
// helix or strand there, only for the other side's members with a residue in
// the columns the gap skips: insertions of a few members thus cost little
// and stand in columns of their own, even among many members with structure.
SideGapCosts side_gap_costs(const GroupProfile& profile, const SideTerms& terms, const GroupScoring& scoring) {
  const std::size_t len = static_cast<std::size_t>(profile.len);
  std::vector<double> occupied(len, 0.0);
  for (std::size_t c = 0; c < len; ++c) {
    std::int64_t filled = 0;
    for (int x = 0; x < kCodes; ++x) filled += profile.res[at(c, kCodes, x)];
    occupied[c] = static_cast<double>(filled) / static_cast<double>(std::max<std::int64_t>(profile.weight, 1));
  }
  const double gapOpen = static_cast<double>(scoring.gapOpen) * scoring.scale;
  SideGapCosts costs;
  costs.open.assign(len + 1, 0);
  costs.opening.assign(len + 1, 0);
  costs.filled.assign(len, 0);
  costs.skip.assign(len, scoring.gapLength * scoring.scale);
  costs.skipLevel.assign(len, 0);
  for (std::size_t g = 1; g < len; ++g) {
    costs.open[g] = profile.groupPen[g];
    costs.opening[g] = static_cast<std::int32_t>(std::llround(gapOpen * std::min(occupied[g - 1], occupied[g]))) +
                       std::min(terms.structPen[g - 1], terms.structPen[g]);
  }
  for (std::size_t c = 0; c < len; ++c) {
    costs.filled[c] = static_cast<std::int32_t>(std::llround(1024 * occupied[c]));
    costs.skipLevel[c] = c + 1 < len ? std::min(terms.structPen[c], terms.structPen[c + 1]) : 0;
  }
  return costs;
}

JoinPath align_profiles(const JoinContext& context, const GroupProfile& pa, const GroupProfile& pb, const Group* groupA,
                        const Group* groupB) {
  const GroupScoring& scoring = context.scoring;
  const SideTerms ta = side_terms(pa, scoring.scale), tb = side_terms(pb, scoring.scale);
  const std::vector<std::int32_t> scores = join_scores(context, pa, pb, ta, groupA, groupB);
  const std::vector<JoinStep> steps =
      join_path(scores, pa.len, pb.len, side_gap_costs(pa, ta, scoring), side_gap_costs(pb, tb, scoring));
  JoinPath path;
  path.toA.reserve(static_cast<std::size_t>(pa.len));
  path.toB.reserve(static_cast<std::size_t>(pb.len));
  for (const JoinStep step : steps) {
    if (step != JoinStep::kSecondOnly) path.toA.push_back(path.len);
    if (step != JoinStep::kFirstOnly) path.toB.push_back(path.len);
    ++path.len;
  }
  return path;
}

Group join_groups(const JoinContext& context, const Group& a, const Group& b) {
  const JoinPath path = align_profiles(context, group_profile(context, a), group_profile(context, b), &a, &b);
  Group joined;
  joined.len = path.len;
  add_members(joined, a, path.toA);
  add_members(joined, b, path.toB);
  return joined;
}

GroupProfile joined_profile(const GroupProfile& a, const GroupProfile& b, const JoinPath& path) {
  const std::size_t len = static_cast<std::size_t>(path.len);
  GroupProfile joined;
  joined.len = path.len;
  joined.weight = a.weight + b.weight;
  joined.ssWeight = a.ssWeight + b.ssWeight;
  joined.res.assign(len * kCodes, 0);
  joined.ss.assign(len * kCodes, 0);
  joined.penSum.assign(len, 0);
  joined.groupPen.assign(len, 0);
  joined.anchor.assign(len, 0);
  // a's members come first, so a's anchor digit wins a column.
  for (const GroupProfile* side : {&a, &b}) {
    const std::vector<std::int32_t>& to = side == &a ? path.toA : path.toB;
    std::size_t next = 0;  // the side's first column at or after t
    for (std::size_t t = 0; t < len; ++t) {
      while (next < to.size() && static_cast<std::size_t>(to[next]) < t) ++next;
      if (next == to.size()) break;
      // A column the side gained between two of its own lies inside every
      // gap-free group that spans the column after it.
      if (side->groupPen[next] != 0) joined.groupPen[t] = side->groupPen[next];
      if (static_cast<std::size_t>(to[next]) != t) continue;
      for (int x = 0; x < kCodes; ++x) {
        joined.res[at(t, kCodes, x)] += side->res[at(next, kCodes, x)];
        joined.ss[at(t, kCodes, x)] += side->ss[at(next, kCodes, x)];
      }
      joined.penSum[t] += side->penSum[next];
      if (joined.anchor[t] == 0) joined.anchor[t] = side->anchor[next];
    }
  }
  return joined;
}

Group sub_group(const Group& group, const std::vector<char>& keep) {
  std::vector<char> used(static_cast<std::size_t>(group.len), 0);
  Group part;
  for (std::size_t k = 0; k < group.members.size(); ++k) {
    if (!keep[static_cast<std::size_t>(group.members[k])]) continue;
    part.members.push_back(group.members[k]);
    part.cols.push_back(group.cols[k]);
    for (const std::int32_t c : group.cols[k]) used[static_cast<std::size_t>(c)] = 1;
  }
  std::vector<std::int32_t> renumber(static_cast<std::size_t>(group.len), 0);
  for (std::size_t c = 0; c < used.size(); ++c) {
    renumber[c] = part.len;
    part.len += used[c];
  }
  for (std::vector<std::int32_t>& cols : part.cols)
    for (std::int32_t& c : cols) c = renumber[static_cast<std::size_t>(c)];
  return part;
}
