// Placing structure on sequences, matching by id, and anchor files.
#include "structure/placement.hpp"

#include "structure/anchor_file.hpp"
#include "support/test_support.hpp"

namespace {

const std::string kTwenty = "ACDEFGHIKLMNPQRSTVWY";

}  // namespace

TEST(PlaceStructure, MatchesResiduesAndMarksTheRestX) {
  struct Case {
    const char* label;
    std::string residues, states, sequence, expected;
    std::vector<std::string> numbers{};
    std::string note{};
  };
  const std::vector<Case> cases = {
      {"same residues", "ACDEF", "HHE-T", "ACDEF", "HHBCT"},
      {"no residues: one state per residue", "", "HGIEBTSPC- X", std::string(12, 'A'), "HHHBBTTCCCCX"},
      {"structure covers the middle", "DEFGHIKLMN", "HHHHHEEEEE", "MSAADEFGHIKLMNPQ", "XXXXHHHHHBBBBBXX"},
      {"a loop missing from the structure", "ACDEFGHIKLRSTVW", "HHHHHHHHHHEEEEE", "ACDEFGHIKLMNPQRSTVW",
       "HHHHHHHHHHXXXXBBBBB"},
      {"a tag the sequence lacks", "GS" + kTwenty, "CC" + std::string(10, 'H') + std::string(10, 'T'), kTwenty,
       std::string(10, 'H') + std::string(10, 'T')},
      {"a point mutant keeps its place", "ACDEFGHIALMNPQRSTVWY", "CCCCCCCCCHCCCCCCCCCC", kTwenty,
       "CCCCCCCCCHCCCCCCCCCC"},
      {"an unknown residue keeps its place", "ACDEFGHIXLMNPQRSTVWY", "CCCCCCCCCHCCCCCCCCCC", kTwenty,
       "CCCCCCCCCHCCCCCCCCCC"},
      {"a domain of the chain, named by the file's numbers",
       kTwenty,
       std::string(10, 'H') + std::string(10, 'E'),
       "IKLMNPQRS",
       "HHHBBBBBB",
       {"-2", "-1", "1", "2", "3", "4", "5", "6", "6A", "7", "8", "9", "10", "11", "12", "13", "14", "15", "16", "17"},
       "structure for s1: residues 6-13 of f lie on the sequence (9 of its 20 residues with states); to use another "
       "part, give ID=FILE:CHAIN:FROM-TO"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    std::string sRes, note, error;
    ASSERT_TRUE(place_structure({"s1", c.residues, c.states, "f", c.numbers}, "s1", c.sequence, sRes, note, error))
        << error;
    EXPECT_EQ(sRes, c.expected);
    EXPECT_EQ(note, c.note);
  }
}

TEST(AssignStructures, ReportsEachFault) {
  const std::vector<std::string> ids = {"s1", "s2", "s3"}, seqs = {"ACDE", kTwenty, "KLM"};
  // An unknown id and a wrong length are in ravlin-align's failure table, and
  // its users' rows print the warning for an unused entry and the notes.
  const StructEntry s1{"s1", "", "HHEE", "a.ss.fa"}, gone{"gone", "", "HHEE", "a.ss.fa"};
  std::vector<std::string> sRes;
  StructureNotes told;
  std::string error;

  struct Case {
    std::vector<StructEntry> entries;
    std::string message;
  };
  const std::vector<Case> cases = {
      {{s1, {"s1", "", "CCCC", "c.ss.fa"}}, "structure for s1 is given twice (a.ss.fa and c.ss.fa); give one"},
      {{{"s2", "ACDEFGHIKLMNPWWWWWWW", std::string(20, 'H'), "e.dssp chain B"}},
       "structure for s2 in e.dssp chain B matches only 14 of its 20 known residues to sequence s2 (20 residues); at "
       "least 90% of the structure's or of the sequence's residues must match: check that the file and chain are "
       "this protein's"},
      {{{"s3", "XXX", "HHH", "f.cif chain A"}},
       "structure for s3 in f.cif chain A has only unknown residues (X), which cannot be matched to the sequence; "
       "check the file"},
      {{gone, {"zz", "", "H", "z.ss.fa"}},
       "no structure given is for an input sequence; a.ss.fa gives structure for gone, which is not an input "
       "sequence; check the id (the first word of its header) or name it as ID=FILE"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message);
    EXPECT_FALSE(assign_structures(c.entries, ids, seqs, sRes, told, error));
    EXPECT_EQ(error, c.message);
  }
}

TEST(AnchorFile, ReadsChecksAndAssigns) {
  testsupport::TempDir dir;
  const std::string good = dir.write("a.anchors.fa", ">s1 title\n-*1\n2345\n>s3\n---\n").string();
  const std::vector<std::string> ids = {"s1", "s2", "s3"}, seqs = {"ACDEFGH", "KLMN", "PQR"};
  std::vector<AnchorEntry> entries;
  std::vector<std::string> uRes;
  std::string error;
  ASSERT_TRUE(read_anchor_file(good, entries, error)) << error;
  ASSERT_TRUE(assign_anchors(entries, ids, seqs, uRes, error)) << error;
  EXPECT_EQ(uRes, (std::vector<std::string>{"-*12345", "----", "---"}));

  struct Case {
    std::string content, message;  // "{F}" stands for the path
  };
  const std::vector<Case> cases = {
      {">s1\n-*6\n", "{F} line 2: '6' in s1 is not an anchor symbol ('-', '*' or 1 to 5)"},
      {">s1\n-*1\n",
       "anchors for s1 in {F} line 1 have 3 symbols but the sequence has 7 residues; give one symbol per "
       "residue"},
      {">s4\n---\n",
       "{F} line 1 gives anchors for s4, which is not an input sequence; check the id (the first word "
       "of its header)"},
      {">s3\n---\n>s3\n---\n", "anchors for s3 are given twice ({F} line 1 and {F} line 3); give them once"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message);
    const std::string path = dir.write("b.anchors.fa", c.content).string();
    std::string expected = c.message;
    for (std::size_t at; (at = expected.find("{F}")) != std::string::npos;) expected.replace(at, 3, path);
    entries.clear();
    const bool ok = read_anchor_file(path, entries, error) && assign_anchors(entries, ids, seqs, uRes, error);
    EXPECT_FALSE(ok);
    EXPECT_EQ(error, expected);
  }
}
