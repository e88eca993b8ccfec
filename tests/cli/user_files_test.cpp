// What users do with ravlin-align and the files they have, one row each:
// the real binary in a temporary directory, its status, what it prints and,
// where another tool reads what it writes, that tool's verdict.
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "support/test_support.hpp"

namespace {

using ::testing::HasSubstr;
using testsupport::read_file;
using testsupport::RunResult;
using testsupport::shell_quote;
using testsupport::source_path;
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

// Hen lysozyme (1lzt), the protein of the shipped PDB entry 1dpx.
const std::string k1lzt =
    "KVFGRCELAAAMKRHGLDNYRGYSLGNWVCAAKFESNFNTQATNRNTDGSTDYGILQINSRWWCNDGRTPGSRNLCNIPCSALLSSDITASVNCAKKIVSDGNGM"
    "NAWVAWRNRCKGTDVQAWIRGCRL";

bool have_mkdssp() { return std::system("command -v mkdssp >/dev/null 2>&1") == 0; }

// The real mkdssp's mmCIF and classic output for the shipped 1dpx entry with
// the atoms of residues 1-5 and 60-63 taken out, as a PDB file leaves out
// disordered residues that its SEQRES still lists. Empty without mkdssp.
std::map<std::string, std::string> mkdssp_on_1dpx_without_residues() {
  if (!have_mkdssp()) return {};
  const TempDir dir;
  const std::string entry = read_file(source_path("tests/data/1dpx.pdb"));
  std::string pdb;
  for (const std::string_view line : split_lines(entry)) {
    const int number = line.substr(0, 4) == "ATOM" ? std::stoi(std::string(line.substr(22, 4))) : 0;
    if (!(number >= 1 && number <= 5) && !(number >= 60 && number <= 63)) pdb += std::string(line) + "\n";
  }
  dir.write("gap.pdb", pdb);
  for (const char* run :
       {"mkdssp --output-format mmcif gap.pdb gap.cif", "mkdssp --output-format dssp gap.pdb gap.dssp"})
    EXPECT_EQ(testsupport::run_command(std::string(run) + " 2>&1", "", dir.path()).status, 0) << run;
  return {{"gap.cif", dir.read("gap.cif")}, {"gap.dssp", dir.read("gap.dssp")}, {"in.fa", ">1lzt\n" + k1lzt + "\n"}};
}

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
      {"ran mkdssp on a PDB file whose SEQRES lists residues without atoms and gave its mmCIF output: the same "
       "states as from its classic output, X where there are no coordinates (and for residue 129, whose "
       "backbone is incomplete)",
       mkdssp_on_1dpx_without_residues(), "-q -f stockholm -o cif.sto --ss 1lzt=gap.cif in.fa", 0, "", "",
       bin() + " -q -f stockholm -o dssp.sto --ss 1lzt=gap.dssp in.fa && cmp cif.sto dssp.sto && "
               "grep -Eq '^#=GR 1lzt +SS +XXXXX[^X]{54}XXXX[^X]{65}X$' cif.sto"},
      {"gave a domain-trimmed sequence (lysozyme 20-80) with the whole chain's DSSP: placed where it lies, the "
       "part used named, and the same as naming that part",
       {{"domain.fa", ">d\n" + k1lzt.substr(19, 61) + "\n"},
        {"1dpx.dssp", read_file(source_path("examples/1dpx.dssp"))}},
       "-f stockholm -o whole.sto --ss d=1dpx.dssp domain.fa",
       0,
       "",
       "ravlin-align: structure for d: residues 20-80 of 1dpx.dssp chain A lie on the sequence (61 of its 128 "
       "residues with states); to use another part, give ID=FILE:CHAIN:FROM-TO\n",
       bin() + " -q -f stockholm -o range.sto --ss d=1dpx.dssp:A:20-80 domain.fa && cmp whole.sto range.sto && "
               "grep -q '^#=GR d  *SS  *ETTECHHHH' whole.sto"},
      {"removed a sequence from a family whose .ss.fa still lists it: a warning, and the others' structure used",
       {{"fam.fa", ">a\nACDEFGHIK\n>b\nACDEGHIK\n"}, {"fam.ss.fa", ">a\nHHHHHCCCC\n>gone\nEEEE\n>b\nHHHHCCCC\n"}},
       "-q -f stockholm -o fam.sto --ss fam.ss.fa fam.fa",
       0,
       "",
       "ravlin-align: warning: structure for gone (fam.ss.fa) not used: no input sequence has this id\n",
       "grep -q '^#=GR a  *SS  *HHHHHCCCC' fam.sto && grep -q '^#=GR b ' fam.sto"},
      {"gave a deposited mmCIF (2BEG, not from mkdssp): its authors' strands, no turns, and a note saying so",
       {{"2beg.cif", read_file(source_path("tests/data/2beg-model1-chainA.cif"))},
        {"abeta.fa", ">abeta\nDAEFRHDSGYEVHHQKLVFFAEDVGSNKGAIIGLMVGGVVIA\n"}},
       "-f stockholm --ss abeta=2beg.cif abeta.fa",
       0,
       "# STOCKHOLM 1.0\n"
       "abeta           DAEFRHDSGYEVHHQKLVFFAEDVGSNKGAIIGLMVGGVVIA\n"
       "#=GR abeta SS   XXXXXXXXXXXXXXXXCEEEEEEEEECCCCEEEEEEEEEEEC\n"
       "#=GC SS_cons    ................CEEEEEEEEECCCCEEEEEEEEEEEC\n"
       "#=GC confidence 000000000000000000000000000000000000000000\n"
       "//\n",
       "ravlin-align: 2beg.cif: not written by mkdssp, so the states are the file's own helix and strand records, "
       "with no turns or bends; for DSSP's states run mkdssp on it and give its output\n"},
  };
  // Rows that run mkdssp say so first; without it they are left out.
  for (const UserRow& row : rows)
    if (have_mkdssp() || std::string_view(row.what).substr(0, 10) != "ran mkdssp") check_row(row);
  if (!have_mkdssp())
    GTEST_SKIP() << "mkdssp is not installed (Debian package dssp, installed by scripts/setup.sh): the row that runs "
                    "it was NOT checked";
}

}  // namespace
