// Sections: tree_align at the end; before it the pair stage's scores, the
// tree, the joins, the refinement and the result's records.
#include "treealign/tree_align.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "align/score_codes.hpp"
#include "shell/errors.hpp"
#include "treealign/column_confidence.hpp"
#include "treealign/group_align.hpp"
#include "treealign/guide_tree.hpp"
#include "treealign/kmer_tree.hpp"
#include "treealign/pair_library.hpp"
#include "treealign/profile_joins.hpp"

namespace {

constexpr int kTreeMapsMostSeqs = 500;

// How surely two sequences align: the mean, over the shorter one's residues,
// of the likelihood of each residue's likeliest partner (0..1).
double alignment_sureness(const SparseMap& aToB, const SparseMap& bToA) {
  const SparseMap& shorter = aToB.start.size() <= bToA.start.size() ? aToB : bToA;
  const std::size_t len = shorter.start.size() - 1;
  if (len == 0) return 0;
  std::int64_t sum = 0;
  for (std::size_t x = 0; x < len; ++x) {
    std::int16_t best = 0;
    for (std::int32_t s = shorter.start[x]; s < shorter.start[x + 1]; ++s)
      best = std::max(best, shorter.prob[static_cast<std::size_t>(s)]);
    sum += best;
  }
  return static_cast<double>(sum) / (1000.0 * static_cast<double>(len));
}

// Distances for the guide tree: one minus the pair's identity, or where the
// library keeps likely pairs, one minus the mean of identity and sureness
// (identity alone ranks a distant member by a few chance matches).
std::vector<double> pair_distances(const PairLibrary& library) {
  const int n = library.n;
  std::vector<double> d(static_cast<std::size_t>(n) * static_cast<std::size_t>(n), 0.0);
  for (int i = 1; i < n; ++i)
    for (int j = 0; j < i; ++j) {
      const double identity = pair_identity(library, i, j) / 1000.0;
      const double similarity =
          library.keepsLikely
              ? 0.5 * (identity + alignment_sureness(*likely_partners(library, i, j), *likely_partners(library, j, i)))
              : identity;
      const double value = 1.0 - similarity;
      d[static_cast<std::size_t>(i) * n + j] = d[static_cast<std::size_t>(j) * n + i] = value;
    }
  return d;
}

// Sequences the library is extended through: all of them, or as many as
// allowed spread evenly along the tree's leaves (so every branch has some).
std::vector<int> third_sequences(const GuideTree& tree, int n, int most) {
  std::vector<int> leaves = tree_leaves(tree, tree.root);
  if (n <= most) {
    std::vector<int> all(static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k) all[static_cast<std::size_t>(k)] = k;
    return all;
  }
  std::vector<int> chosen;
  for (int k = 0; k < most; ++k)
    chosen.push_back(leaves[static_cast<std::size_t>(static_cast<long long>(k) * n / most)]);
  std::sort(chosen.begin(), chosen.end());
  return chosen;
}

Group join_up_tree(const JoinContext& context, const GuideTree& tree, std::span<const SeqRecord> seqs) {
  std::vector<Group> groups(tree.nodes.size());
  for (std::size_t k = 0; k < seqs.size(); ++k) groups[k] = single_group(static_cast<int>(k), seqs[k].numRes);
  for (const int node : joins_in_order(tree)) {
    const TreeNode& join = tree.nodes[static_cast<std::size_t>(node)];
    Group& left = groups[static_cast<std::size_t>(join.left)];
    Group& right = groups[static_cast<std::size_t>(join.right)];
    groups[static_cast<std::size_t>(node)] = join_groups(context, left, right);
    left = Group();
    right = Group();
  }
  return std::move(groups[static_cast<std::size_t>(tree.root)]);
}

// ---- refinement ----

// The likelihood, summed in thousandths, of the residue pairs of a and b
// that the alignment puts in one column.
std::int64_t likely_agreement(const SparseMap& aToB, const std::vector<std::int32_t>& colsA,
                              const std::vector<std::int32_t>& colsB) {
  std::int64_t agreed = 0;
  for (std::size_t x = 0; x < colsA.size(); ++x)
    for (std::int32_t s = aToB.start[x]; s < aToB.start[x + 1]; ++s)
      if (colsB[static_cast<std::size_t>(aToB.partner[static_cast<std::size_t>(s)])] == colsA[x])
        agreed += aToB.prob[static_cast<std::size_t>(s)];
  return agreed;
}

// Agreement of the alignment with the pair library between the two sides of
// a split, weighted as the joins weigh pairs: the likely pairs' summed
// likelihood where the library keeps them (what the joins maximise), else the
// residue pairs the alignment shares with each best pairwise alignment.
std::int64_t cross_agreement(const JoinContext& context, const Group& group, const std::vector<char>& side) {
  const PairLibrary& library = *context.library;
  std::int64_t total = 0;
  for (std::size_t ka = 0; ka < group.members.size(); ++ka) {
    const int sa = group.members[ka];
    if (!side[static_cast<std::size_t>(sa)]) continue;
    for (std::size_t kb = 0; kb < group.members.size(); ++kb) {
      const int sb = group.members[kb];
      if (side[static_cast<std::size_t>(sb)]) continue;
      if (library.keepsLikely) {
        total += likely_agreement(*likely_partners(library, sa, sb), group.cols[ka], group.cols[kb]) *
                 context.weights[static_cast<std::size_t>(sa)] * context.weights[static_cast<std::size_t>(sb)];
        continue;
      }
      const std::int32_t* partners = pair_partners(library, sa, sb);
      std::int64_t agreed = 0;
      for (std::size_t x = 0; x < group.cols[ka].size(); ++x)
        if (partners[x] >= 0 && group.cols[ka][x] == group.cols[kb][static_cast<std::size_t>(partners[x])]) ++agreed;
      total += agreed * context.weights[static_cast<std::size_t>(sa)] * context.weights[static_cast<std::size_t>(sb)] *
               pair_identity(library, sa, sb);
    }
  }
  return total;
}

// Edges from the leaves up (a leaf's edge costs least), each realigning its
// two sides, until a pass has cost about twice what the joins did.
Group refine(const JoinContext& context, const GuideTree& tree, Group alignment, int passes) {
  const std::size_t n = static_cast<std::size_t>(context.codes.size());
  const double budget = static_cast<double>(n) * static_cast<double>(n);
  for (int pass = 0; pass < passes; ++pass) {
    bool changed = false;
    double spent = 0;
    for (std::size_t node = 0; node < tree.nodes.size(); ++node) {
      if (static_cast<int>(node) == tree.root) continue;
      const double leaves = tree.nodes[node].leaves;
      spent += leaves * (static_cast<double>(n) - leaves);
      if (spent > budget) break;
      std::vector<char> side(n, 0);
      for (const int seq : tree_leaves(tree, static_cast<int>(node))) side[static_cast<std::size_t>(seq)] = 1;
      std::vector<char> rest(n, 0);
      for (std::size_t k = 0; k < n; ++k) rest[k] = side[k] ? 0 : 1;
      const Group candidate = join_groups(context, sub_group(alignment, side), sub_group(alignment, rest));
      if (cross_agreement(context, candidate, side) > cross_agreement(context, alignment, side)) {
        alignment = candidate;
        changed = true;
      }
    }
    if (!changed) break;
  }
  return alignment;
}

// ---- the result ----

std::string aligned_text(const std::string& text, const std::vector<std::int32_t>& cols, int len, char filler) {
  std::string out(static_cast<std::size_t>(len), ' ');
  for (std::size_t x = 0; x < cols.size(); ++x)
    out[static_cast<std::size_t>(cols[x])] = x < text.size() ? text[x] : filler;
  return out;
}

void fill_result(const Group& alignment, std::span<const SeqRecord> seqs, const std::vector<int>& rowOrder,
                 TreeAlignResult& result) {
  std::vector<std::size_t> slot(seqs.size(), 0);
  for (std::size_t k = 0; k < alignment.members.size(); ++k) slot[static_cast<std::size_t>(alignment.members[k])] = k;
  AlignRecord& record = result.alignment;
  record.numSeqs = static_cast<std::int32_t>(rowOrder.size());
  record.alignLen = alignment.len;
  record.seqs.clear();
  for (const int seq : rowOrder) {
    const SeqRecord& s = seqs[static_cast<std::size_t>(seq)];
    const std::vector<std::int32_t>& cols = alignment.cols[slot[static_cast<std::size_t>(seq)]];
    AlignedSeq row;
    row.seqIndex = seq;
    row.aRes = aligned_text(s.pRes, cols, alignment.len, 'X');
    row.aSRes = aligned_text(s.sRes.value_or(""), cols, alignment.len, 'X');
    row.aURes = aligned_text(s.uRes.value_or(""), cols, alignment.len, '-');
    record.seqs.push_back(std::move(row));
  }
  result.order = rowOrder;
}

std::vector<SeqCodes> all_seq_codes(const TreeScores& scores, std::span<const SeqRecord> seqs) {
  std::vector<SeqCodes> codes;
  for (const SeqRecord& seq : seqs) codes.push_back(seq_codes(seq, scores.midStructPen, scores.endStructPen));
  return codes;
}

// The table's mean score of a standard residue against itself: the scale of
// its scores (at least 1).
double mean_identity_score(const ScoreTable& table) {
  const std::string standard = "ARNDCQEGHILKMFPSTWYV";
  double sum = 0;
  for (const char c : standard) sum += table[static_cast<std::size_t>(c - 'A') * (kTableDim + 1)];
  return std::max(1.0, sum / static_cast<double>(standard.size()));
}

// Odds ratios of a log-odds table in half bits (kCodes x kCodes codes), as
// powers of two times a constant: the same bits on every machine.
std::vector<double> odds_ratios(const ScoreTable& table) {
  constexpr double kSqrt2 = 1.4142135623730951;
  constexpr int kCodes = kOtherCode + 1;
  std::vector<double> odds(static_cast<std::size_t>(kCodes * kCodes));
  for (int x = 0; x < kCodes; ++x)
    for (int y = 0; y < kCodes; ++y) {
      const int score = table[static_cast<std::size_t>(x * kTableDim + y)];
      const int whole = score >= 0 ? score / 2 : -((1 - score) / 2);  // floor(score / 2)
      odds[static_cast<std::size_t>(x * kCodes + y)] = std::ldexp(score - 2 * whole == 1 ? kSqrt2 : 1.0, whole);
    }
  return odds;
}

// The joins' scores: the run's tables and gaps, without consistency.
GroupScoring group_scoring(const TreeScores& scores, const TreeAlignOptions& options) {
  GroupScoring scoring;
  scoring.wtTable = scores.wtTable;
  scoring.ssTable = scores.ssTable;
  const double share = options.mode == TreeMode::kConsistency ? options.consistencyJoinGapShare : options.joinGapShare;
  scoring.gapOpen = static_cast<int>(std::lround(scores.gapOpen * share));
  scoring.gapLength = scores.gapLength;
  scoring.tableWeight = options.tableWeight;
  if (options.mode == TreeMode::kFast && options.expectationTable) {
    const double runScale = mean_identity_score(scores.wtTable);
    scoring.expectedOdds = odds_ratios(*options.expectationTable);
    scoring.expectationWeight = options.expectationWeight * runScale / mean_identity_score(*options.expectationTable);
    scoring.expectationBonus = options.expectationBonus * runScale;
  } else if (options.mode == TreeMode::kFast) {
    const int bonus = static_cast<int>(std::lround(options.fastPairBonus * mean_identity_score(scores.wtTable)));
    for (int row = 0; row < kOtherCode; ++row)
      for (int col = 0; col < kOtherCode; ++col)
        scoring.wtTable[static_cast<std::size_t>(row * kTableDim + col)] += bonus;
  }
  return scoring;
}

void run_fast_align(const TreeScores& scores, std::span<const SeqRecord> seqs, const TreeAlignOptions& options,
                    TreeAlignResult& result, const TreeAlignProgress& progress) {
  if (progress.stageStarted) progress.stageStarted(TreeStage::kSeedTree);
  const std::vector<SeqCodes> codes = all_seq_codes(scores, seqs);
  const PairScoring pairScoring{&scores.wtTable, &scores.ssTable, scores.gapOpen, scores.gapLength};
  const SeedDistances aligned = [&](std::span<const int> seeds) {
    return seed_distances(seqs, codes, pairScoring, seeds, options.threads);
  };
  const GuideTree tree = kmer_tree(seqs, options.threads, aligned);
  if (progress.stageStarted) progress.stageStarted(TreeStage::kJoins);
  const std::vector<std::int64_t> weights = tree_weights(tree);
  JoinContext context{codes, weights, nullptr, {}, group_scoring(scores, options)};
  const Group alignment = join_profiles_up_tree(context, tree, seqs, options.threads);
  fill_result(alignment, seqs, tree_leaves(tree, tree.root), result);
}

void run_tree_align(const TreeScores& scores, std::span<const SeqRecord> seqs, const TreeAlignOptions& options,
                    TreeAlignResult& result, const TreeAlignProgress& progress) {
  const int n = static_cast<int>(seqs.size());
  const ScoreTable& table = scores.wtTable;
  if (progress.stageStarted) progress.stageStarted(TreeStage::kPairs);
  const std::vector<SeqCodes> codes = all_seq_codes(scores, seqs);
  const PairScoring pairScoring{&table, &scores.ssTable, scores.gapOpen, scores.gapLength};
  // The residue maps take about 4 bytes per residue per other sequence; the
  // tree alone needs only the identities, so beyond the size where the maps
  // stay small it keeps none (and gives neither refinement nor confidence).
  const bool keepMaps = options.mode == TreeMode::kConsistency || n <= kTreeMapsMostSeqs;
  std::vector<PosteriorModel> likely;
  if (options.mode == TreeMode::kConsistency) {
    const bool anyStructure = std::any_of(codes.begin(), codes.end(), [](const SeqCodes& c) { return c.hasSs; });
    const double heat = anyStructure ? options.likelyHeat : options.likelyHeatWithoutStructure;
    likely.push_back(
        posterior_model(table, scores.ssTable, scores.gapOpen, scores.gapLength, heat * mean_identity_score(table)));
    if (options.secondTable && !anyStructure) {
      const ScoreTable& second = options.secondTable->wtTable;
      likely.push_back(posterior_model(second, scores.ssTable, options.secondTable->gapOpen,
                                       options.secondTableGapLength,
                                       options.secondTableHeat * mean_identity_score(second)));
    }
  }
  const PairLibrary library =
      build_pair_library(seqs, codes, pairScoring, keepMaps, likely, options.threads, progress.pairDone);
  const GuideTree tree = upgma_tree(n, pair_distances(library));

  if (progress.stageStarted) progress.stageStarted(TreeStage::kJoins);
  const std::vector<std::int64_t> weights = tree_weights(tree);
  JoinContext context{codes, weights, &library, {}, group_scoring(scores, options)};
  if (options.mode == TreeMode::kConsistency) {
    context.scoring.libraryWeight = options.libraryWeight;
    context.thirds = third_sequences(tree, n, options.maxThirds);
  }
  Group alignment = join_up_tree(context, tree, seqs);
  if (options.refinePasses > 0 && n > 2 && library.keepsMaps) {
    if (progress.stageStarted) progress.stageStarted(TreeStage::kRefine);
    alignment = refine(context, tree, std::move(alignment), options.refinePasses);
  }
  fill_result(alignment, seqs, tree_leaves(tree, tree.root), result);
  if (library.keepsMaps) result.confidence = column_confidence(alignment, library);
}

void run_given_joins(const TreeScores& scores, std::span<const SeqRecord> seqs,
                     const std::vector<std::vector<int>>& parts, const std::vector<std::vector<std::string>>& rows,
                     TreeAlignResult& result) {
  const std::vector<SeqCodes> codes = all_seq_codes(scores, seqs);
  const std::vector<std::int64_t> weights(seqs.size(), 1);
  const JoinContext context{
      codes, weights, nullptr, {}, group_scoring(scores, TreeAlignOptions{.mode = TreeMode::kTree})};
  Group alignment = group_of_rows(parts[0], rows[0]);
  std::vector<int> rowOrder = parts[0];
  for (std::size_t p = 1; p < parts.size(); ++p) {
    alignment = join_groups(context, alignment, group_of_rows(parts[p], rows[p]));
    rowOrder.insert(rowOrder.end(), parts[p].begin(), parts[p].end());
  }
  fill_result(alignment, seqs, rowOrder, result);
}

}  // namespace

std::optional<Failure> join_given_alignments(const TreeScores& scores, std::span<const SeqRecord> seqs,
                                             const std::vector<std::vector<int>>& parts,
                                             const std::vector<std::vector<std::string>>& rows,
                                             TreeAlignResult& result) {
  result = TreeAlignResult();
  if (parts.empty()) return std::nullopt;
  return capture_failure("main", [&] { run_given_joins(scores, seqs, parts, rows, result); });
}

std::optional<Failure> tree_align(const TreeScores& scores, std::span<const SeqRecord> seqs,
                                  const TreeAlignOptions& options, TreeAlignResult& result,
                                  const TreeAlignProgress& progress) {
  result = TreeAlignResult();
  if (seqs.empty()) return std::nullopt;
  return capture_failure("main", [&] {
    if (options.mode == TreeMode::kFast)
      run_fast_align(scores, seqs, options, result, progress);
    else
      run_tree_align(scores, seqs, options, result, progress);
  });
}
