// The pairwise stage's thread count and its handling of a batch where one
// pair cannot be aligned.
#include "malign/pair_stage.hpp"

#include <cstdlib>
#include <string>
#include <thread>
#include <tuple>

#include "align/lane_align.hpp"
#include "support/test_support.hpp"

TEST(PairStage, ThreadCountFromTheSettingTheEnvironmentOrTheCores) {
  const int cores = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  const std::tuple<int, const char*, int> cases[] = {
      {0, "3", 3},      {0, "5000", 1024}, {0, "0", cores},     {0, "-2", cores},
      {0, "2x", cores}, {0, "", cores},    {0, nullptr, cores}, {5, "3", 5},
  };
  for (const auto& [set, env, expected] : cases) {
    if (env != nullptr)
      setenv("RAVLIN_THREADS", env, 1);
    else
      unsetenv("RAVLIN_THREADS");
    EXPECT_EQ(pair_threads(set), expected) << set << " " << (env ? env : "(unset)");
  }
  unsetenv("RAVLIN_THREADS");
}

// A sequence longer than the column limit fails its own lane only; the other
// lanes of the batch give what the scalar kernel gives.
TEST(PairStage, AnOverlongSequenceFailsOnlyItsOwnPair) {
  ScoreTable wt{};
  for (int c = 0; c < 26; ++c) wt[static_cast<std::size_t>(c * kTableDim + c)] = 5;
  auto seq = [](const std::string& res) {
    SeqRecord s;
    s.pRes = res, s.numRes = static_cast<int>(res.size()), s.sRes = std::string(res.size(), 'X');
    return s;
  };
  const SeqRecord A = seq("MKVLAAGICW"), shortB = seq("MKVAAGIW"), longB = seq(std::string(3501, 'A'));
  const PairParams params{&wt, &wt, 3, 1, 0, 0, 1, 0, 1};
  for (KernelKind kind : {KernelKind::sse41, KernelKind::avx2, KernelKind::avx512}) {
    if (!kernel_supported(kind)) continue;
    LaneWorkspace ws;
    AlignRecord first, second;
    const SeqRecord* Bs[] = {&shortB, &longB};
    AlignRecord* records[] = {&first, &second};
    AlignStatus statuses[2];
    align_pairs_lanes(ws, kind, A, Bs, records, statuses, params);
    EXPECT_FALSE(align_failed(statuses[0])) << kernel_name(kind);
    EXPECT_EQ(statuses[1].fault, AlignFault::alignTooLong) << kernel_name(kind);
    EXPECT_EQ(statuses[1].value, kMaxAlignLen) << kernel_name(kind);

    AlignWorkspace scalar;
    AlignRecord reference;
    ASSERT_FALSE(align_failed(align_pair(scalar, reference, A, shortB, params)));
    EXPECT_EQ(first.alignLen, reference.alignLen) << kernel_name(kind);
    EXPECT_EQ(first.seqs[0].aRes, reference.seqs[0].aRes) << kernel_name(kind);
    EXPECT_EQ(first.seqs[1].aRes, reference.seqs[1].aRes) << kernel_name(kind);
    EXPECT_EQ(first.pctHomol, reference.pctHomol) << kernel_name(kind);
  }
}
