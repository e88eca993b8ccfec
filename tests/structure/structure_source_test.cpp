// Reading structure sources: each format, the forms of a source argument and
// every reader's message.
#include "structure/structure_source.hpp"

#include <cstdio>

#include "support/test_support.hpp"

namespace {

using testsupport::TempDir;

// One line of a classic DSSP residue table: chain in column 12, residue in
// column 14, state in column 17.
std::string dssp_line(int number, char chain, char residue, char state) {
  char line[64];
  std::snprintf(line, sizeof line, "%5d%5d %c %c  %c  0   0  100\n", number, number, chain, residue, state);
  return line;
}

const std::string kDssp = "==== Secondary Structure Definition by the program DSSP\n  #  RESIDUE AA STRUCTURE\n" +
                          dssp_line(1, 'A', 'K', ' ') + dssp_line(2, 'A', 'V', 'B') + dssp_line(3, 'A', 'a', 'H') +
                          "    4        !*             0   0    0\n" + dssp_line(5, 'B', 'G', 'E');

// Ranges over a residue table, as mkdssp 4.2 writes by default: a residue without coordinates ('?'),
// author chains X and Y for label chains A and B, a single-row item list, a
// quoted value, a text field that holds a tag and selenomethionine read as M.
const std::string kRangesCif =
    "data_T2\n_struct_keywords.text 'ONE; TWO'\n_struct.title\n;A title with\n_fake.tag inside\n;\n"
    "loop_\n_pdbx_poly_seq_scheme.asym_id\n_pdbx_poly_seq_scheme.seq_id\n_pdbx_poly_seq_scheme.mon_id\n"
    "_pdbx_poly_seq_scheme.pdb_mon_id\n_pdbx_poly_seq_scheme.pdb_strand_id\n"
    "A 1 MET ? X\nA 2 ALA ALA X\nA 3 MSE MSE X\nA 4 ILE ILE X\nA 5 VAL VAL X\nA 6 GLY GLY X\nB 1 TRP TRP Y\n#\n"
    "_struct_conf.conf_type_id HELX_RH_3T_P\n_struct_conf.beg_label_asym_id A\n"
    "_struct_conf.beg_label_seq_id 2\n_struct_conf.end_label_seq_id 3\n#\n"
    "loop_\n_struct_sheet_range.beg_label_asym_id\n_struct_sheet_range.beg_label_seq_id\n"
    "_struct_sheet_range.end_label_seq_id\nA 3 5\nB 1 1\n_software.name dssp\n";

// As mkdssp writes a PDB file's chain: every residue in the residue table,
// author numbers with an insertion code, and the atoms, which give the whole
// backbone (N, CA, C, O) in the first model only to residues 2 and 3.
const std::string kAtomsCif =
    "data_T3\n_software.name DSSP\nloop_\n_pdbx_poly_seq_scheme.asym_id\n_pdbx_poly_seq_scheme.seq_id\n"
    "_pdbx_poly_seq_scheme.mon_id\n_pdbx_poly_seq_scheme.pdb_seq_num\n_pdbx_poly_seq_scheme.pdb_ins_code\n"
    "_pdbx_poly_seq_scheme.pdb_mon_id\n_pdbx_poly_seq_scheme.pdb_strand_id\n"
    "A 1 GLY 10 . GLY A\nA 2 ALA 11 . ALA A\nA 3 VAL 11 B VAL A\nA 4 LEU 12 . LEU A\n"
    "_struct_conf.conf_type_id TURN_TY1_P\n_struct_conf.beg_label_asym_id A\n_struct_conf.beg_label_seq_id 1\n"
    "_struct_conf.end_label_seq_id 4\nloop_\n_atom_site.group_PDB\n_atom_site.label_atom_id\n"
    "_atom_site.label_asym_id\n_atom_site.label_seq_id\n_atom_site.Cartn_x\n_atom_site.pdbx_PDB_model_num\n"
    "ATOM N A 2 0.1 1\nATOM CA A 2 0.2 1\nATOM C A 2 0.3 1\nATOM O A 2 0.4 1\nATOM CB A 2 0.5 1\n"
    "ATOM N A 3 0.1 1\nATOM CA A 3 0.2 1\nATOM C A 3 0.3 1\nATOM O A 3 0.4 1\n"
    "ATOM N A 4 0.1 1\nATOM CA A 4 0.2 1\nATOM C A 4 0.3 1\n"
    "ATOM N A 1 0.1 2\nATOM CA A 1 0.2 2\nATOM C A 1 0.3 2\nATOM O A 1 0.4 2\n";

struct FormatCase {
  const char* label;
  const char* fileName;
  std::string content;
  std::string source;                 // the source argument, "{F}" standing for the path
  std::vector<StructEntry> expected;  // "{F}" in an origin stands for the path
};

std::string with_path(std::string text, const std::string& path) {
  for (std::size_t at; (at = text.find("{F}")) != std::string::npos;) text.replace(at, 3, path);
  return text;
}

}  // namespace

TEST(ReadStructureSource, ReadsEachFormat) {
  // The deposited form of kRangesCif, without mkdssp named as its software,
  // is a user's row of ravlin-align (tests/cli/user_files_test.cpp).
  // clang-format off
  const std::vector<FormatCase> cases = {
      // An existing file's name wins over the ID=FILE:CHAIN forms.
      {"FASTA-style: inner blanks are states, line-end blanks, CR and a byte-order mark are not", "odd=name:1.ss.fa",
       "\xEF\xBB\xBF>seq1 a title\nHGIEB TSPC-\r\nX  \n\n>seq2\nhhec\n", "{F}",
       {{"seq1", "", "HGIEB TSPC-X", "{F}"}, {"seq2", "", "hhec", "{F}"}}},
      {"Stockholm: gap columns of the sequence dropped, blocks joined", "aln.sto",
       "# STOCKHOLM 1.0\n#=GF ID test\ns1        AC-DE.F\n#=GR s1   SS HH-E..T\ns2        ACGDEKF\n"
       "#=GR s2 SS .HHHHH.\n\ns1        GH\n#=GR s1 SS -C\n//\n#=GR s3 SS HHH\n", "{F}",
       {{"s1", "", "HHE-T-C", "{F}"}, {"s2", "", "-HHHHH-", "{F}"}}},
      {"classic DSSP, first chain; bridged cysteine and break", "1abc.dssp", kDssp, "{F}",
       {{"1abc", "KVC", " BH", "{F} chain A", {"1", "2", "3"}}}},
      {"classic DSSP, chosen chain and id", "1abc.dssp", kDssp, "x={F}:B", {{"x", "G", "E", "{F} chain B", {"5"}}}},
      {"classic DSSP, residue range of the first chain", "1abc.dssp", kDssp, "{F}:2-5",
       {{"1abc", "VC", "BH", "{F} chain A residues 2-5", {"2", "3"}}}},
      {"mmCIF ranges, first chain by author name", "t2.cif", kRangesCif, "{F}",
       {{"t2", "AMIVG", "GGEE-", "{F} chain X", {"2", "3", "4", "5", "6"}}}},
      {"mmCIF ranges, chain by label name and residue range", "t2.cif", kRangesCif, "{F}:B:-1-1",
       {{"t2", "W", "E", "{F} chain B residues -1-1", {"1"}}}},
      {"mmCIF with atoms: only residues with a whole backbone in the first model", "t3.cif", kAtomsCif, "{F}:11-11",
       {{"t3", "AV", "TT", "{F} chain A residues 11-11", {"11", "11B"}}}},
      {"PSIPRED .ss2", "query.ss2",
       "# PSIPRED VFORMAT (PSIPRED V4.0)\n\n   1 M C   0.998  0.001  0.002\n   2 k H   0.100  0.800  0.100\n"
       "   3 L E   0.100  0.100  0.800\n", "{F}", {{"query", "MKL", "CHE", "{F}"}}},
      {"PSIPRED .horiz", "query.horiz",
       "# PSIPRED HFORMAT (PSIPRED V4.0)\n\nConf: 9876\nPred: CCHH\n  AA: MKLV\n              10\n\n"
       "Conf: 12\nPred: EE\n  AA: GA\n", "q={F}", {{"q", "MKLVGA", "CCHHEE", "{F}"}}},
  };
  // clang-format on
  for (const FormatCase& c : cases) {
    SCOPED_TRACE(c.label);
    TempDir dir;
    const std::string path = dir.write(c.fileName, c.content).string();
    std::vector<StructEntry> entries;
    std::string error;
    ASSERT_TRUE(read_structure_source(with_path(c.source, path), entries, error)) << error;
    ASSERT_EQ(entries.size(), c.expected.size());
    for (std::size_t k = 0; k < entries.size(); ++k) {
      EXPECT_EQ(entries[k].id, c.expected[k].id);
      EXPECT_EQ(entries[k].residues, c.expected[k].residues);
      EXPECT_EQ(entries[k].states, c.expected[k].states);
      EXPECT_EQ(entries[k].origin, with_path(c.expected[k].origin, path));
      EXPECT_EQ(entries[k].numbers, c.expected[k].numbers);
      EXPECT_EQ(entries[k].note, with_path(c.expected[k].note, path));
    }
  }
}

TEST(ReadStructureSource, ReportsEachFaultWithFileLineAndRemedy) {
  struct Case {
    const char* fileName;
    std::string content, source, message;  // "{F}" stands for the path
  };
  const std::vector<Case> cases = {
      {"x.txt", "just text\n", "{F}",
       "{F}: not a structure file ravlin knows; give FASTA-style states ('>' headers), DSSP or mmCIF output of "
       "mkdssp, a PSIPRED .ss2 or .horiz file, or Stockholm with #=GR SS lines"},
      {"x.ss.fa", ">a\nHHQ\n", "{F}", "{F} line 2: 'Q' in a is not a structure state (H G I E B T S P C, '-' or X)"},
      {"x.ss.fa", ">a\n>b\nH\n", "{F}", "{F} line 1: a has no symbols; give one per residue or remove the entry"},
      {"x.ss.fa", ">a\n; a comment\nH\xFF\n", "{F}",
       "{F} line 3: byte 0xFF in a is not a structure state (H G I E B T S P C, '-' or X)"},
      {"x.ss.fa", ">a\nH\n", "y={F}", "{F}: this file names its own sequences; give it without 'y='"},
      {"x.ss.fa", ">a\nH\n",
       "x={F}:", "structure source 'x={F}:': give the chain or residue range after ':' or leave out the ':'"},
      {"x.ss.fa", ">a\nH\n", "{F}:1-5",
       "{F}: a residue range can be chosen only in DSSP and mmCIF files; leave out ':1-5'"},
      {"q.ss2", "# PSIPRED VFORMAT\n   1 M C 1 0 0\n", "{F}:A",
       "{F}: a chain can be chosen only in DSSP and mmCIF files; leave out ':A'"},
      {"q.ss2", "# PSIPRED VFORMAT\n   1 M C 1 0 0\n   2 K Q 0 0 1\n", "{F}",
       "{F} line 3: not a PSIPRED .ss2 line (number, residue, state H, E or C, three scores); check the file"},
      {"q.horiz", "# PSIPRED HFORMAT\nPred: CCH\n  AA: MK\n", "{F}",
       "{F}: 3 predicted states but 2 residues on the AA lines; the file looks cut short"},
      {"d.dssp", kDssp, "{F}:C", "{F} has no chain C (chains: A B); name one of them as ID=FILE:CHAIN"},
      {"d.dssp", kDssp, "{F}:A:9-5",
       "structure source '{F}:A:9-5': the residue range 9-5 runs backwards; give FROM-TO with FROM not above TO"},
      {"d.dssp", kDssp, "{F}:A:9",
       "structure source '{F}:A:9': give the residue range after the chain as FROM-TO, e.g. A:20-80"},
      {"d.dssp", kDssp, "{F}:A:7-9",
       "{F} chain A has no residues with secondary structure numbered 7-9 (its residues run from 1 to 3); give a "
       "range of the file's residue numbers"},
      {"d.dssp", "  #  RESIDUE AA STRUCTURE\n" + dssp_line(1, 'A', 'K', 'Q'), "{F}",
       "{F} line 2: no residue letter in column 14 or no DSSP state in column 17; give mkdssp's classic output "
       "unchanged"},
      {"m.cif", "data_x\n_entry.id x\n", "{F}",
       "{F}: no secondary structure in this mmCIF file; run mkdssp on it and give its output"},
      {"m.cif", "data_x\nloop_\n_struct_conf.id\n_struct_conf.conf_type_id\nH1\n", "{F}",
       "{F} line 2: the _struct_conf loop does not fill its last row; the file looks damaged"},
      {"s.sto", "# STOCKHOLM 1.0\ns1 ACD\n#=GR s1 SS HH\n//\n", "{F}",
       "{F} line 3: the SS line of s1 has 2 columns but its aligned sequence has 3; give one SS column per "
       "alignment column"},
      {"s.sto", "# STOCKHOLM 1.0\ns1 ACD\n//\n", "{F}",
       "{F}: no '#=GR ID SS' lines found; Stockholm structure needs them"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message);
    TempDir dir;
    const std::string path = dir.write(c.fileName, c.content).string();
    std::vector<StructEntry> entries;
    std::string error;
    EXPECT_FALSE(read_structure_source(with_path(c.source, path), entries, error));
    EXPECT_EQ(error, with_path(c.message, path));
  }
  TempDir dir;
  std::vector<StructEntry> entries;
  std::string error;
  EXPECT_FALSE(read_structure_source(dir.path().string(), entries, error));
  EXPECT_EQ(error, "cannot read " + dir.path().string() + " (it is a directory); give a file");
}
