// What users do with ravlin-align and the files they have, one row each:
// the real binary in a temporary directory, its status, what it prints and,
// where another tool reads what it writes, that tool's verdict.
#include <map>
#include <string>
#include <vector>

#include "support/test_support.hpp"

namespace {

using ::testing::HasSubstr;
using testsupport::RunResult;
using testsupport::shell_quote;
using testsupport::TempDir;

struct UserRow {
  const char* what;
  std::map<std::string, std::string> files;  // written into the run's directory
  std::string args;                          // ravlin-align's arguments
  int status;
  std::string out;         // standard output, exactly; "*" for anything
  std::string err;         // a part of standard error ("" for none at all)
  std::string readBack{};  // a shell command run afterwards that must succeed
};

std::string bin() { return shell_quote(RAVLIN_ALIGN_BIN); }

void check_row(const UserRow& row) {
  SCOPED_TRACE(row.what);
  const TempDir dir;
  for (const auto& [name, text] : row.files) dir.write(name, text);
  const RunResult run = testsupport::run_command(bin() + " " + row.args + " 2>stderr.txt", "", dir.path());
  const std::string err = dir.read("stderr.txt");
  EXPECT_EQ(run.status, row.status) << err;
  if (row.out != "*") {
    EXPECT_EQ(run.out, row.out);
  }
  if (row.err.empty())
    EXPECT_EQ(err, "");
  else
    EXPECT_THAT(err, HasSubstr(row.err));
  if (!row.readBack.empty()) {
    const RunResult check = testsupport::run_command(row.readBack, "", dir.path());
    EXPECT_EQ(check.status, 0) << row.readBack << "\n" << check.out;
  }
}

TEST(UserFiles, EachReportedProblemWorksAsUsersExpect) {
  const std::vector<UserRow> rows = {
      {"a plain FASTA family",
       {{"in.fa", ">a\nACDEFGHIKLMN\n>b\nACDEFHIKLMN\n>c\nCDEFGHIKLMNP\n"}},
       "-q in.fa",
       0,
       "*",
       ""},
      {"2: a nucleotide FASTA",
       {{"in.fa", ">a\nACGTACGTTAGCNACGGATC\n>b\nACGTACGATAGCTACGGAUC\n"}},
       "-q in.fa",
       1,
       "",
       "in.fa looks like DNA/RNA: 100% of its residues are A, C, G, T, U or N; ravlin aligns protein"},
      {"5: a FASTA with a title line above its first '>'",
       {{"in.fa", "Trypsins\n>trypsin_bovine\nIVGGYTCGANTVPYQVSLNSGYHF\n>chymo_bovine\nIVNGEEAVPGSWPWQVSLQDKTGFHF\n"}},
       "-q in.fa",
       1,
       "",
       "in.fa line 2: Sequence ID code too long at: trypsin_bovine; read as ravlin's text format: lines stand "
       "before the first '>' header (--informat fasta reads it as FASTA",
       bin() + " -q --informat fasta in.fa > out.fa && test \"$(grep -c '^>' out.fa)\" = 2"},
      {"6: a HOMSTRAD / Modeller .ali (PIR with C; and R; lines)",
       {{"in.ali",
         "C; trypsin family\n\n>P1;1abc\nstructureX:1abc:1:A:24:A:trypsin:bovine:2.0:0.2\nIVGGYTCGANTVPYQVSLNSGYHF*\n"
         "R;a reference\n>P1;2def\nsequence:2def::::::::\nIVGGYECGANSVPYQVSLNSGYHF*\nC; after its sequence\n"}},
       "-q in.ali",
       0,
       ">1abc structureX:1abc:1:A:24:A:trypsin:bovine:2.0:0.2\nIVGGYTCGANTVPYQVSLNSGYHF\n"
       ">2def sequence:2def::::::::\nIVGGYECGANSVPYQVSLNSGYHF\n",
       ""},
      {"7: -i names the input",
       {{"in.fa", ">a\nIVGGYTCGANTVPYQVSLNSGYHF\n>b\nIVGGYECGANSVPYQVSLNSGYHF\n"}},
       "-q -i in.fa",
       0,
       ">a\nIVGGYTCGANTVPYQVSLNSGYHF\n>b\nIVGGYECGANSVPYQVSLNSGYHF\n",
       ""},
      // ravlin's own Clustal, two blocks (the second with gaps and a blank
      // conservation line), reads back to the same alignment and file.
      {"8: a Clustal alignment, ravlin's own",
       {{"in.aln",
         "CLUSTAL multiple sequence alignment by ravlin-align 6.0\n\n\n"
         "A      ACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWY\n"
         "B      ACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWY\n"
         "C      ACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWY\n"
         "       ************************************************************\n\n"
         "A      ACDEFGHIK\nB      ACDEFGHIK\nC      ---------\n                \n\n"}},
       "-q in.aln",
       0,
       ">A\nACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWY\nACDEFGHIK\n"
       ">B\nACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWY\nACDEFGHIK\n"
       ">C\nACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWYACDEFGHIKLMNPQRSTVWY\n---------\n",
       "",
       bin() + " -q -f aln --informat clustal in.aln > again.aln && cmp in.aln again.aln"},
      {"14: old Mac line ends (CR only)",
       {{"in.fa", ">a\rIVGGYTCGANTVPYQVSLNSGYHF\r>b\rIVGGYECGANSVPYQVSLNSGYHF\r"}},
       "-q in.fa",
       0,
       ">a\nIVGGYTCGANTVPYQVSLNSGYHF\n>b\nIVGGYECGANSVPYQVSLNSGYHF\n",
       ""},
  };
  for (const UserRow& row : rows) check_row(row);
}

}  // namespace
