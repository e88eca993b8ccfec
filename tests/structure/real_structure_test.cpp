// The structure library on real files: mkdssp run on a shipped PDB entry.
#include <cstdlib>

#include "structure/placement.hpp"
#include "structure/structure_formats.hpp"
#include "support/test_support.hpp"

namespace {

using testsupport::source_path;

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
  StructureNotes told;
  std::string error;
  if (!read_structure_source(source, entries, error) ||
      !assign_structures(entries, {"1lzt"}, {k1lzt}, sRes, told, error))
    return "error: " + error;
  return sRes[0];
}

}  // namespace

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
  // mkdssp 4.2's mmCIF gives states as ranges and lists residue 129 among
  // the chain's residues; its atoms show the backbone incomplete.
  EXPECT_EQ(placed_on_1lzt("1lzt=" + dir.file("1dpx.cif").string() + ":A"), k1dpxStates + "X");
  EXPECT_EQ(placed_on_1lzt("1lzt=" + dir.file("summary.cif").string()), k1dpxStates + "X");
}
