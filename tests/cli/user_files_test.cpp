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
std::string example(const std::string& name) { return shell_quote(testsupport::source_path("examples/" + name)); }
// A read-back command: Python code run by the Debian python3.
std::string python(const std::string& code) { return "/usr/bin/python3 -c " + shell_quote(code); }

// Long ids, descriptions and more columns than one block of any format holds.
const std::string kGlobins =
    ">HBA_HUMAN_P69905 Hemoglobin subunit alpha\n"
    "MVLSPADKTNVKAAWGKVGAHAGEYGAEALERMFLSFPTTKTYFPHFDLSHGSAQVKGHGKKVADALTNAVAHV\n"
    ">HBB_HUMAN_P68871 Hemoglobin subunit beta\n"
    "MVHLTPEEKSAVTALWGKVNVDEVGGEALGRLLVVYPWTQRFFESFGDLSTPDAVMGNPKVKAHGKKVLGAF\n"
    ">MYG_HUMAN\nMGLSDGEWQLVLNVWGKVEADIPGHGQEVLIRLFKGHPETLEKFDKFKHLKSEDEMKASEDLKKHGATVLTALGG\n";

// A user asking for an output format by the name they typed: Biopython reads
// the file back as FORMAT (its name for it) with in.fa's ids and residues.
UserRow asked_for(const char* what, const std::string& typed, const std::string& file, const std::string& format) {
  const std::string readBack =
      "/usr/bin/python3 " + shell_quote(source_path("tests/cli/read_back.py").string()) + " " + file + " " + format;
  UserRow row{what, {{"in.fa", kGlobins}}, "-q --outfmt " + typed + " -o " + file + " in.fa", 0, "", ""};
  row.readBack = readBack + " in.fa";
  return row;
}

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
      asked_for("7: typed --outfmt clu", "clu", "out.aln", "clustal"),
      asked_for("7: asked for MSF: GCG's checksums (EMBOSS's seqret writes the same)", "msf", "out.msf", "msf"),
      asked_for("7: asked for PHYLIP with ids longer than 10", "phy", "out.phy", "phylip-relaxed"),
      asked_for("7: asked for A2M", "a2m", "out.a2m", "a2m"),
      asked_for("9: typed --outfmt st: the descriptions on #=GS DE lines", "st", "out.sto", "stockholm"),
      // The README's install step, then its commands with the installed programs and files.
      {"13: installed with cmake --install under a prefix of the user's choice",
       {},
       "--version",
       0,
       "*",
       "",
       "cmake --install " + shell_quote(RAVLIN_BUILD_DIR) +
           " --prefix p >/dev/null && test -f p/share/man/man1/ravlin-align.1 && "
           "test -f p/share/man/man1/ravlin.1 && p/bin/ravlin-align -q -f clustal -s "
           "p/share/ravlin/examples/gluts.ss.fa "
           "p/share/ravlin/examples/gluts.fa | grep -q '^CLUSTAL' && cd p/share/ravlin/data && "
           "../../../bin/ravlin-batch "
           "ravlin.parms ../../../../gluts.report >/dev/null && grep -q 'S-transferase, PDB 1hna' "
           "../../../../gluts.report"},
      // The given columns stay: a and b keep theirs, c's W gets a new column, d none.
      {"15: added two sequences to an alignment",
       {{"to.fa", ">a\nACDEFGHIKL\n>b\nACDE-GHIKL\n"}, {"new.fa", ">c first added\nACDEWFGHIKL\n>d\nACDEFGHIKL\n"}},
       "-q --add new.fa --to to.fa",
       0,
       ">a\nACDE-FGHIKL\n>b\nACDE--GHIKL\n>c first added\nACDEWFGHIKL\n>d\nACDE-FGHIKL\n",
       ""},
      // Each side keeps its rows; d's W faces a new column in A, a's A a free end gap in B.
      {"15: joined two alignments",
       {{"A.fa", ">a\nACDEFGHIKLMNPQ\n>b\nACDE-GHIKLMNPQ\n"}, {"B.fa", ">c\nCDEFG-HIKLMNPQ\n>d\nCDEFGWHIKLMNPQ\n"}},
       "-q --profile A.fa --profile B.fa",
       0,
       ">a\nACDEFG-HIKLMNPQ\n>b\nACDE-G-HIKLMNPQ\n>c\n-CDEFG-HIKLMNPQ\n>d\n-CDEFGWHIKLMNPQ\n",
       ""},
      {"15: added to a file whose rows differ in width",
       {{"to.fa", ">a\nACDEFGHIKL\n>b\nACDEGHIKL\n"}, {"new.fa", ">c\nACDEFGHIKL\n"}},
       "-q --add new.fa --to to.fa -o out.fa",
       1,
       "",
       "to.fa is not an alignment: the row of b has 9 columns and that of a 10",
       "test ! -e out.fa"},
      {"15: gave --add without --to",
       {{"new.fa", ">c\nACDEFGHIKL\n"}},
       "--add new.fa",
       2,
       "",
       "--add NEW needs --to ALIGNED"},
      {"1: ran mkdssp on a PDB file whose SEQRES lists residues without atoms and gave its mmCIF output: the same "
       "states as from its classic output, X where there are no coordinates (and for residue 129, whose "
       "backbone is incomplete)",
       mkdssp_on_1dpx_without_residues(), "-q -f stockholm -o cif.sto --ss 1lzt=gap.cif in.fa", 0, "", "",
       bin() + " -q -f stockholm -o dssp.sto --ss 1lzt=gap.dssp in.fa && cmp cif.sto dssp.sto && "
               "grep -Eq '^#=GR 1lzt +SS +XXXXX[^X]{54}XXXX[^X]{65}X$' cif.sto"},
      {"10: gave a domain-trimmed sequence (lysozyme 20-80) with the whole chain's DSSP: placed where it lies, the "
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
      {"11: removed a sequence from a family whose .ss.fa still lists it: a warning, and the others' structure used",
       {{"fam.fa", ">a\nACDEFGHIK\n>b\nACDEGHIK\n"}, {"fam.ss.fa", ">a\nHHHHHCCCC\n>gone\nEEEE\n>b\nHHHHCCCC\n"}},
       "-q -f stockholm -o fam.sto --ss fam.ss.fa fam.fa",
       0,
       "",
       "ravlin-align: warning: structure for gone (fam.ss.fa) not used: no input sequence has this id\n",
       "grep -q '^#=GR a  *SS  *HHHHHCCCC' fam.sto && grep -q '^#=GR b ' fam.sto"},
      {"12: gave a deposited mmCIF (2BEG, not from mkdssp): its authors' strands, no turns, and a note saying so",
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
      {"3: drew a family with UniProt ids: whole ids in the id pane and in data-seq, where the report cuts them "
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
      {"4: drew the README's example in hydrophobicity colours: block starts 121 and 181 whole, black letters "
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
  // Rows that run mkdssp say so first; without it they are left out.
  for (const UserRow& row : rows)
    if (have_mkdssp() || std::string_view(row.what).find("ran mkdssp") == std::string_view::npos) check_row(row);
  if (!have_mkdssp())
    GTEST_SKIP() << "mkdssp is not installed (Debian package dssp, installed by scripts/setup.sh): the row that runs "
                    "it was NOT checked";
}

}  // namespace
