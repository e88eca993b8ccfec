// The structure library on real files: the shipped examples in their
// FASTA-style forms, and mkdssp run on a shipped PDB entry.
#include <cstdlib>

#include "seq/molvane_reader.hpp"
#include "seq/text_reader.hpp"
#include "structure/anchor_file.hpp"
#include "structure/placement.hpp"
#include "structure/structure_formats.hpp"
#include "support/test_support.hpp"

namespace {

using testsupport::source_path;

std::vector<SeqRecord> read_example(const std::string& name, bool molvane) {
  const UniqueFile in = open_file(source_path("examples/" + name).string(), "r");
  std::vector<SeqRecord> records;
  for (SeqRecord record;
       (molvane ? read_seq_molvane(in.get(), record, 3, 4000) : read_seq_text(in.get(), record, 3, 4000)) == 1;
       record = SeqRecord{})
    records.push_back(record);
  return records;
}

void read_fasta_sequences(const std::string& path, std::vector<std::string>& ids, std::vector<std::string>& seqs) {
  std::string text, error;
  std::vector<FastaRecord> records;
  ASSERT_TRUE(read_text_file(path, text, error) &&
              read_fasta_records(path, text, "ABCDEFGHIJKLMNOPQRSTUVWXYZ", "a residue", records, error))
      << error;
  for (const FastaRecord& record : records) ids.push_back(record.id), seqs.push_back(record.data);
}

// 1lzt of the lysozyme example; 1dpx is the same protein.
const std::string k1lzt =
    "KVFGRCELAAAMKRHGLDNYRGYSLGNWVCAAKFESNFNTQATNRNTDGSTDYGILQINSRWWCNDGRTPGSRNLCNIPCSALLSSDITASVNCAKKIVSDGNGM"
    "NAWVAWRNRCKGTDVQAWIRGCRL";
// mkdssp 4.2.2's states for 1dpx chain A, reduced by hand; residue 129 has
// no complete backbone, so DSSP leaves it out.
const std::string k1dpxStates =
    "CBCCHHHHHHHHHHTTCTTBTTBCHHHHHHHHHHHHTTBTTCBBBCTTTCBBBTTTTBBTTTTTBCTCCTTCCCTTCTBHHHHHTTTCHHHHHHHHHHHTTTTHHHH"
    "THHHHHHTTTTCHHHHHTTCC";

std::string placed_on_1lzt(const std::string& source) {
  std::vector<StructEntry> entries;
  std::vector<std::string> sRes;
  std::string error;
  if (!read_structure_source(source, entries, error) || !assign_structures(entries, {"1lzt"}, {k1lzt}, sRes, error))
    return "error: " + error;
  return sRes[0];
}

}  // namespace

TEST(RealStructure, ShippedExamplesAgreeWithTheirStructureLines) {
  struct Example {
    const char* stem;
    const char* file;
    bool molvane, anchors;
  };
  for (const Example& e :
       {Example{"gluts", "gluts.txt", false, false}, Example{"pla2_anchored", "pla2_anchored.txt", false, true},
        Example{"lysozyme", "lysozyme.molvane", true, false}}) {
    SCOPED_TRACE(e.stem);
    const std::vector<SeqRecord> records = read_example(e.file, e.molvane);
    std::vector<std::string> ids, seqs, sRes, uRes;
    read_fasta_sequences(source_path(std::string("examples/") + e.stem + ".fa").string(), ids, seqs);
    std::vector<StructEntry> entries;
    std::string error;
    ASSERT_TRUE(
        read_structure_source(source_path(std::string("examples/") + e.stem + ".ss.fa").string(), entries, error) &&
        assign_structures(entries, ids, seqs, sRes, error))
        << error;
    std::vector<AnchorEntry> anchors;
    if (e.anchors) {
      ASSERT_TRUE(
          read_anchor_file(source_path(std::string("examples/") + e.stem + ".anchors.fa").string(), anchors, error) &&
          assign_anchors(anchors, ids, seqs, uRes, error))
          << error;
    }
    ASSERT_EQ(ids.size(), records.size());
    for (std::size_t k = 0; k < records.size(); ++k) {
      EXPECT_EQ(ids[k], records[k].acc.value_or(""));
      EXPECT_EQ(seqs[k], records[k].pRes);
      EXPECT_EQ(sRes[k], records[k].sRes.value_or(""));
      if (e.anchors) {
        EXPECT_EQ(uRes[k], records[k].uRes.value_or(""));
      }
    }
  }
}

TEST(RealStructure, ReadsMkdsspOutputInBothFormats) {
  if (std::system("command -v mkdssp >/dev/null 2>&1") != 0)
    GTEST_SKIP() << "mkdssp is not installed (Debian package dssp, installed by scripts/setup.sh): "
                    "mkdssp's output on a real PDB entry was NOT tested";
  testsupport::TempDir dir;
  const std::string pdb = testsupport::read_file(source_path("tests/data/1dpx.pdb"));
  dir.write("1dpx.pdb", pdb);
  // A predicted model has neither HEADER nor CRYST1; the README's recipe adds both.
  std::string model = "HEADER    MODEL\nCRYST1    1.000    1.000    1.000  90.00  90.00  90.00 P 1           1\n";
  for (const std::string_view line : split_lines(pdb))
    if (line.substr(0, 4) == "ATOM" || line.substr(0, 3) == "TER") model += std::string(line) + "\n";
  dir.write("model.pdb", model);
  for (const char* run :
       {"mkdssp --output-format dssp 1dpx.pdb 1dpx.dssp", "mkdssp --output-format mmcif 1dpx.pdb 1dpx.cif",
        "mkdssp --output-format dssp model.pdb model.dssp",
        "mkdssp --output-format mmcif --write-experimental 1dpx.pdb summary.cif"})
    ASSERT_EQ(testsupport::run_command(std::string(run) + " 2>&1", "", dir.path()).status, 0) << run;

  const std::string dssp = dir.file("1dpx.dssp").string();
  std::vector<StructEntry> entries;
  std::string error;
  ASSERT_TRUE(read_structure_source(dssp, entries, error)) << error;
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].id, "1dpx");
  EXPECT_EQ(entries[0].residues, k1lzt.substr(0, 128));  // bridged cysteines read as C

  EXPECT_EQ(placed_on_1lzt("1lzt=" + dssp), k1dpxStates + "X");
  EXPECT_EQ(placed_on_1lzt("1lzt=" + dir.file("model.dssp").string()), k1dpxStates + "X");
  EXPECT_EQ(placed_on_1lzt("1lzt=" + source_path("examples/1dpx.dssp").string()), k1dpxStates + "X");
  // mkdssp 4.2's mmCIF gives states as ranges over every residue with
  // coordinates, so residue 129 counts as coil there; a version that writes
  // the per-residue summary leaves it out.
  const std::string cif = placed_on_1lzt("1lzt=" + dir.file("1dpx.cif").string() + ":A");
  EXPECT_EQ(cif.substr(0, 128), k1dpxStates);
  EXPECT_THAT(cif.substr(128), testing::AnyOf("C", "X"));
  EXPECT_EQ(placed_on_1lzt("1lzt=" + dir.file("summary.cif").string()), k1dpxStates + "X");
}
