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
std::string example(const std::string& name) { return shell_quote(testsupport::source_path("examples/" + name)); }
// A read-back command: Python code run by the Debian python3.
std::string python(const std::string& code) { return "/usr/bin/python3 -c " + shell_quote(code); }

void check_row(const UserRow& row) {
  SCOPED_TRACE(row.what);
  const TempDir dir;
  for (const auto& [name, text] : row.files) dir.write(name, text);
  const RunResult run = testsupport::run_command(bin() + " " + row.args + " 2>stderr.txt", "", dir.path());
  const std::string err = dir.read("stderr.txt");
  EXPECT_EQ(run.status, row.status) << err;
  if (row.out != "*") EXPECT_EQ(run.out, row.out);
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
      {"drew a family with UniProt ids: whole ids in the id pane and in data-seq, where the report cuts them "
       "alike (sp|P0004~1)",
       {{"cyc.fa",
         ">sp|P00045|CYC7_YEAST Cytochrome c iso-2\nMAKESTGFKPGSAKKGATLFKTRCQQCHTIEEGG\n"
         ">sp|P00044|CYC1_YEAST Cytochrome c iso-1\nMTEFKAGSAKKGATLFKTRCLQCHTVEKGG\n"},
        {"cyc.ss.fa",
         ">sp|P00045|CYC7_YEAST\nCHHHHHCCCCCHHHHHHCCCEEEECCCCCHHHCC\n"
         ">sp|P00044|CYC1_YEAST\nCCHHHHCCCCHHHHHHHHCCCEEECCCCCC\n"}},
       "-q -f svg --ss cyc.ss.fa cyc.fa -o out.svg",
       0,
       "",
       "",
       python(R"py(import sys, xml.etree.ElementTree as ET
root = ET.parse("out.svg").getroot()
ids = [e.text for e in root.iter() if e.get("class") == "id"]
cyc7 = [e for e in root.iter() if e.get("class") == "helix" and e.get("data-seq") == "sp|P00045|CYC7_YEAST"]
if ids != ["sp|P00045|CYC7_YEAST", "sp|P00044|CYC1_YEAST"] or len(cyc7) != 3:
    sys.exit(f"ids {ids}, {len(cyc7)} helices of CYC7_YEAST")
)py")},
      {"drew the README's example in hydrophobicity colours: block starts 121 and 181 whole, black letters "
       "readable on every cell colour (contrast at least 4.5)",
       {},
       "-q -f svg --colour hydrophobicity --ss " + example("gluts.ss.fa") + " " + example("gluts.fa") + " -o out.svg",
       0,
       "",
       "",
       python(R"py(import sys, xml.etree.ElementTree as ET
root = ET.parse("out.svg").getroot()
starts = [(e.text, e.get("x")) for e in root.iter() if e.get("class") == "rul first"]
def contrast_with_black(colour):
    rgb = [int(colour[k:k + 2], 16) / 255 for k in (1, 3, 5)]
    lin = [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4 for c in rgb]
    return (0.2126 * lin[0] + 0.7152 * lin[1] + 0.0722 * lin[2] + 0.05) / 0.05
cells = {e.get("stroke") for e in root.iter() if e.get("stroke")}
dark = sorted(c for c in cells if contrast_with_black(c) < 4.5)
if starts != [("1", "0"), ("61", "0"), ("121", "0"), ("181", "0")] or dark or len(cells) < 10:
    sys.exit(f"block starts {starts}; too dark for black letters: {dark}")
)py")},
  };
  for (const UserRow& row : rows) check_row(row);
}

}  // namespace
