// The progressive stage keeps its profile from step to step; re-gapped and
// grown, it must equal the profile summed afresh over the re-gapped members.
#include "align/profile_score.hpp"

#include <string>
#include <tuple>
#include <vector>

#include "align/score_codes.hpp"
#include "support/test_support.hpp"

namespace {

struct Member {
  std::string res, sres, ures;
  int hasSRes, hasURes;
};

// Lays text onto a template: ' ' stays a gap, anything else takes the next character.
std::string laid(const std::string& text, const std::string& templ) {
  std::string out;
  std::size_t next = 0;
  for (char t : templ) out += t == ' ' ? ' ' : text[next++];
  return out;
}

ScoreTable numbered_table(int seed) {
  ScoreTable t{};
  for (int k = 0; k < kTableSize; ++k) t[static_cast<std::size_t>(k)] = (k * seed) % 97 - 40;
  t[static_cast<std::size_t>(kOtherCode * kTableDim + 3)] = 2147483000;  // blank rows wrap when summed
  return t;
}

std::vector<std::uint32_t> fresh(const std::vector<Member>& members, const ProfileTables& tables, int len) {
  AlignProfile p;
  for (const Member& m : members) add_profile_member(p, {&m.res, &m.sres, &m.ures, m.hasSRes, m.hasURes}, len, tables);
  std::vector<std::uint32_t> both = p.wt;
  both.insert(both.end(), p.ss.begin(), p.ss.end());
  return both;
}

}  // namespace

TEST(ProfileScore, AProfileKeptAcrossStepsEqualsOneSummedAfresh) {
  const ScoreTable wt = numbered_table(7), ss = numbered_table(11);
  const ProfileTables tables{&wt, &ss, 0, 0};
  const std::vector<Member> members = {
      {"ACDEF", "HHHCC", "-12--", 1, 1}, {"KLMNP", "XXXXX", "-----", 0, 0}, {"QR ST", "BB CC", "** **", 1, 1}};
  const std::tuple<const char*, std::string> templates[] = {
      {"no new column", "XXXXX"},
      {"gaps inside, at both ends and in a run", " XX  XXX "},
      {"one gap at the front", " XXXXX"},
  };
  for (const auto& [name, templ] : templates) {
    AlignProfile kept;
    for (const Member& m : members)
      add_profile_member(kept, {&m.res, &m.sres, &m.ures, m.hasSRes, m.hasURes}, 5, tables);
    regap_profile(kept, templ.c_str(), static_cast<int>(templ.size()), tables);
    std::vector<Member> regapped;
    for (const Member& m : members)
      regapped.push_back({laid(m.res, templ), laid(m.sres, templ), laid(m.ures, templ), m.hasSRes, m.hasURes});
    std::vector<std::uint32_t> keptBoth = kept.wt;
    keptBoth.insert(keptBoth.end(), kept.ss.begin(), kept.ss.end());
    EXPECT_EQ(keptBoth, fresh(regapped, tables, static_cast<int>(templ.size()))) << name;
    EXPECT_EQ(kept.len, static_cast<int>(templ.size())) << name;
  }
}
