// An alignment of PIR entries through ravlin-batch, from file to report.
#include <string>
#include <vector>

#include "support/test_support.hpp"

using testsupport::run_command;
using testsupport::shell_quote;
using testsupport::source_path;
using testsupport::TempDir;

namespace {

struct Protein {
  std::string acc;
  std::string title;
  std::string residues;
};

const std::vector<Protein> kCytochromes = {
    {"CCHU", "cytochrome c - human",
     "GDVEKGKKIFIMKCSQCHTVEKGGKHKTGPNLHGLFGRKTGQAPGYSYTAANKNKGIIWGEDTLMEYLENPKKYIPGTKMIFVGIKKKEERADLIAYLKKATNE"},
    {"CCHO", "cytochrome c - horse",
     "GDVEKGKKIFVQKCAQCHTVEKGGKHKTGPNLHGLFGRKTGQAPGFTYTDANKNKGITWKEETLMEYLENPKKYIPGTKMIFAGIKKKTEREDLIAYLKKATNE"},
    {"CCBY", "cytochrome c iso-1 - baker's yeast",
     "TEFKAGSAKKGATLFKTRCLQCHTVEKGGPHKVGPNLHGIFGRHSGQAEGYSYTDANIKKNVLWDENNMSEYLTNPKKYIPGTKMAFGGLKKEKDRNDLITYLKKACE"},
};

// One entry as the PIR database writes it: numbered lines of 30 residues.
std::string pir_entry(const Protein& protein) {
  std::string text = "ENTRY           " + protein.acc + "       #type complete\nTITLE           " + protein.title +
                     "\nDATE            01-Jan-1990\nSEQUENCE\n"
                     "                5        10        15        20        25        30\n";
  for (std::size_t pos = 0; pos < protein.residues.size(); pos += 30) {
    std::string number = std::to_string(pos + 1);
    text += std::string(7 - number.size(), ' ') + number;
    for (std::size_t k = pos; k < protein.residues.size() && k < pos + 30; ++k)
      text += std::string(" ") + protein.residues[k];
    text += "\n";
  }
  return text + "///\n";
}

testsupport::RunResult run_batch(const TempDir& dir, const std::string& pirText, int seqSelect) {
  dir.write("cyt.pir", pirText);
  dir.write("job.parms", "RAVLIN:SCOR_MATRIX " + source_path("data/ravlin.wts").string() +
                             "\nRAVLIN:STRUCT_BIAS 10\nRAVLIN:INC_GAP_PEN 5\nRAVLIN:PRINT_PAIRWISE 0\n"
                             "RAVLIN:PRINT_PCT_HOM 1\nRAVLIN:PRINT_FORMAT 0\nRAVLIN:PRINT_ORDER 1\n"
                             "RAVLIN:CONSENSUS_PCT 50\nRAVLIN:RES_LINE_LEN 50\nRAVLIN:ASCII_FLAG 1\n"
                             "RAVLIN:DATA_FORMAT 1\nRAVLIN:DATA_FILE cyt.pir\nRAVLIN:SEQ_SELECT " +
                             std::to_string(seqSelect) + "\n");
  return run_command(shell_quote(RAVLIN_BATCH_BIN) + " job.parms report.txt", "", dir.path());
}

// The last line of the multiple alignment that names acc, which carries the
// sequence's residue count.
std::string last_alignment_line(const std::string& report, const std::string& acc) {
  const auto at = report.rfind(acc + ": ");
  if (at == std::string::npos) return "";
  return report.substr(at, report.find('\n', at) - at);
}

}  // namespace

TEST(PirBatch, AlignsEveryEntryOfAPirFile) {
  TempDir dir;
  std::string pirText = "\\\\\\ a database header line\n";
  for (const Protein& protein : kCytochromes) pirText += pir_entry(protein);
  const auto result = run_batch(dir, pirText, 4);
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("Number of sequences to align: 3"), std::string::npos);

  const std::string report = dir.read("report.txt");
  for (const Protein& protein : kCytochromes) {
    SCOPED_TRACE(protein.acc);
    EXPECT_THAT(report, testing::ContainsRegex(protein.acc + " +" + protein.title + "\n"));
    EXPECT_THAT(last_alignment_line(report, protein.acc),
                testing::EndsWith(" " + std::to_string(protein.residues.size())));
  }
}

// The lower-case residue ends the reading at the yeast entry without a word; the run goes on with two.
TEST(PirBatch, ALowerCaseResidueQuietlyEndsTheFileThere) {
  TempDir dir;
  Protein yeast = kCytochromes[2];
  yeast.residues[40] = 'h';
  const auto result = run_batch(dir, pir_entry(kCytochromes[0]) + pir_entry(kCytochromes[1]) + pir_entry(yeast), 3);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, testing::StartsWith("\nNumber of sequences to align: 2\n"));
  EXPECT_EQ(result.out.find("Error"), std::string::npos);
  EXPECT_EQ(dir.read("report.txt").find("CCBY"), std::string::npos);
}
