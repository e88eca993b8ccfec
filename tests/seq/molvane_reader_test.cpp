#include "seq/molvane_reader.hpp"

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using namespace std::string_literals;

namespace {

// The reader's result and the warnings it wrote to standard output.
std::pair<int, std::string> read_into(SeqRecord& seq, const std::string& text) {
  const UniqueFile in = testsupport::stream_of(text);
  std::string printed;
  const int status = read_seq_molvane(in.get(), seq, 3, 4000, testsupport::frame_warnings(printed));
  return {status, printed};
}

std::pair<int, std::string> outcome(const std::string& text) {
  SeqRecord seq;
  return read_into(seq, text);
}

std::pair<int, std::string> warned(int status, const std::string& message) {
  return {status, testsupport::error_frame(0, "read_seq_molvane", message)};
}

const std::pair<int, std::string> kQuiet{1, ""};

}  // namespace

// Split lines and the 'A', 'n' and 'S' tags are read in whole runs.
TEST(ReadSeqMolvane, ReadsEntriesWithSplitLinesAndTags) {
  SeqRecord seq, second;
  seq.reference = "kept";
  EXPECT_EQ(
      read_into(seq, "header\n\nPSEQ\nnCytochrome c\nACCHU\noHomo sapiens\nrGD\nrnlhgK\nSHH\nSccCCb\nG-------\n\n"),
      kQuiet);
  EXPECT_EQ(seq.organism, "Homo sapiens");
  EXPECT_EQ(seq.reference, "kept");  // an absent tag leaves the field alone
  EXPECT_EQ(seq.pRes, "GDNLHGK");    // residues folded to upper case...
  EXPECT_EQ(seq.sRes, "HHccCCb");    // ...structure kept as it stands
  EXPECT_EQ(seq.uRes, "-------");
  EXPECT_EQ(seq.hasSRes + seq.hasURes, 2);

  ASSERT_EQ(read_into(second, "PSEQ\nnfirst\nnsecond \nK any\nP\nTxx\nir1\nr GD\nrVE\nS\n\n"), kQuiet);
  EXPECT_EQ(second.title, "second ");  // replaced, nothing trimmed
  EXPECT_EQ(second.reference, "r1");
  EXPECT_EQ(second.pRes, " GDVE");  // the blank after the tag is a residue
  EXPECT_EQ(second.sRes, "XXXXX");  // an empty 'S' line gives no structure
  EXPECT_EQ(second.uRes, "-----");
  EXPECT_EQ(second.hasSRes + second.hasURes, 0);
}

TEST(ReadSeqMolvane, LineLimitsAndStartLine) {
  EXPECT_EQ(outcome("PSEQ extra\nrAAA\n\n").first, -1);
  EXPECT_EQ(outcome("  PSEQ \t\nrAAA\n\n").first, 1);
  EXPECT_EQ(outcome("PSEQ\0 x\nrAAA\n\n"s).first, 1);  // the line ends at its zero byte
  // The search reads 254 characters at a time, so the rest of a longer line is a line of its own.
  EXPECT_EQ(outcome(std::string(254, 'x') + "PSEQ\nrAAA\n\n").first, 1);
  EXPECT_EQ(outcome(std::string(253, 'x') + "PSEQ\nrAAA\n\n").first, -1);
  EXPECT_EQ(outcome("PSEQ\n\n").first, 1);  // an entry without residues
  // Entry lines hold 3,998: the 3,999th character is the newline that ends the entry.
  SeqRecord seq;
  ASSERT_EQ(read_into(seq, "PSEQ\nr" + std::string(3996, 'A') + "B\n\n").first, 1);
  EXPECT_EQ(seq.pRes, std::string(3996, 'A'));
  const std::string line = "r" + std::string(3000, 'W') + "\n";
  ASSERT_EQ(read_into(seq, "PSEQ\n" + line + line + line + "\n").first, 1);
  EXPECT_EQ(seq.numRes, 9000);  // the texts grow past 4,000
}

TEST(ReadSeqMolvane, EveryWarning) {
  EXPECT_EQ(outcome("PSEQ\nnMy title\nrAAA\n"), warned(-1, "Unexpected EOF in sequence file: 'My title'"));
  // A last line without a newline still loses its last character.
  EXPECT_EQ(outcome("PSEQ\nrAAA\nnTitle"), warned(-1, "Unexpected EOF in sequence file: 'Titl'"));
  EXPECT_EQ(outcome("PSEQ\nrAAA\nN title\n\n"), warned(0, "Cannot parse line in sequence file: 'N title\n'"));
  EXPECT_EQ(outcome("PSEQ\nrAAAA\nSHHH\nG12345\n\n"), warned(0, "Residues/Structure/Grouping align problems: 4 3 5"));
}

TEST(ReadSeqMolvane, LengthsRuleNeedsOneMatchingText) {
  const struct {
    std::string text;
    const char* pRes;
    const char* sRes;
    const char* uRes;
    int hasSRes;
  } cases[] = {
      {"PSEQ\nrAAAA\nSHHHH\nG-1-1**\n\n", "AAAA", "HHHH", "-1-1", 1},  // a longer text is cut
      {"PSEQ\nrAAAA\nShh\nG-11-\n\n", "AAAA", "hhXX", "-11-", 1},      // a shorter one is completed
      {"PSEQ\nrAAAA\nG12\n\n", "AAAA", "XXXX", "12--", 0},             // an absent structure matches
      // The line ends at the zero byte and its value still drops a character: the 'B'.
      {"PSEQ\nrAB\0CD\nrcc\nSHHH\nG123\n\n"s, "ACC", "HHH", "123", 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    SeqRecord seq;
    ASSERT_EQ(read_into(seq, c.text), kQuiet);
    EXPECT_EQ(seq.pRes, c.pRes);
    EXPECT_EQ(seq.sRes, c.sRes);
    EXPECT_EQ(seq.uRes, c.uRes);
    EXPECT_EQ(seq.hasSRes, c.hasSRes);
  }
}
