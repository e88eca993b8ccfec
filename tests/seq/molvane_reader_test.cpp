#include "seq/molvane_reader.hpp"

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

namespace {

UniqueFile input_of(const std::string& text) {
  UniqueFile file(std::tmpfile());
  std::fputs(text.c_str(), file.get());
  std::rewind(file.get());
  return file;
}

// The reader's result and the warnings it wrote to standard output.
std::pair<int, std::string> read_text(const std::string& text, SeqRecord& seq) {
  const UniqueFile in = input_of(text);
  testing::internal::CaptureStdout();
  const int status = read_seq_molvane(in.get(), seq, 3, 4000);
  return {status, testing::internal::GetCapturedStdout()};
}

std::pair<int, std::string> warned(int status, const std::string& message) {
  return {status, testsupport::error_frame(0, "read_seq_molvane", message)};
}

}  // namespace

TEST(ReadSeqMolvane, ReadsEntryWithSplitLines) {
  const std::string res(30, 'G'), str(30, 'H');
  SeqRecord seq;
  seq.reference = "kept";
  EXPECT_EQ(read_text("header\n\nPSEQ\nnCytochrome c\nACCHU\noHomo sapiens\nr" + res + "\nrnlhgK\nS" + str +
                          "\nSccCCb\nG" + std::string(35, '-') + "\n\n",
                      seq),
            std::make_pair(1, std::string()));
  EXPECT_EQ(seq.acc, "CCHU");
  EXPECT_EQ(seq.title, "Cytochrome c");
  EXPECT_EQ(seq.organism, "Homo sapiens");
  EXPECT_EQ(seq.reference, "kept");    // an absent tag leaves the field alone
  EXPECT_EQ(seq.pRes, res + "NLHGK");  // residues folded to upper case...
  EXPECT_EQ(seq.sRes, str + "ccCCb");  // ...structure kept as it stands
  EXPECT_EQ(seq.uRes, std::string(35, '-'));
  EXPECT_EQ(seq.numRes, 35);
  EXPECT_EQ(seq.hasSRes + seq.hasURes, 2);
  EXPECT_TRUE(seq.resNums.empty());
}

TEST(ReadSeqMolvane, TagsValuesAndFillers) {
  SeqRecord seq;
  ASSERT_EQ(read_text("PSEQ\nnfirst\nnsecond \nK any\nP\nTxx\nir1\nr GD\nrVE\nS\n\n", seq).first, 1);
  EXPECT_EQ(seq.title, "second ");  // replaced, nothing trimmed
  EXPECT_EQ(seq.reference, "r1");
  EXPECT_EQ(seq.pRes, " GDVE");  // the blank after the tag is a residue
  EXPECT_EQ(seq.sRes, "XXXXX");  // an empty 'S' line gives no structure
  EXPECT_EQ(seq.uRes, "-----");
  EXPECT_EQ(seq.hasSRes + seq.hasURes, 0);
  SeqRecord empty;
  EXPECT_EQ(read_text("PSEQ\n\n", empty).first, 1);
  EXPECT_EQ(empty.numRes, 0);
}

TEST(ReadSeqMolvane, LineLimitsAndStartLine) {
  SeqRecord seq;
  EXPECT_EQ(read_text("", seq), std::make_pair(-1, std::string()));
  EXPECT_EQ(read_text("PSEQ extra\nrAAA\n\n", seq), std::make_pair(-1, std::string()));
  EXPECT_EQ(read_text("  PSEQ \t\nrAAA\n\n", seq).first, 1);
  // The search reads 254 characters at a time, so the rest of a longer line
  // is a line of its own.
  EXPECT_EQ(read_text(std::string(254, 'x') + "PSEQ\nrAAA\n\n", seq).first, 1);
  EXPECT_EQ(read_text(std::string(253, 'x') + "PSEQ\nrAAA\n\n", seq).first, -1);
  // Entry lines hold 3,998: the 3,999th character is the newline that ends the entry.
  ASSERT_EQ(read_text("PSEQ\nr" + std::string(3996, 'A') + "B\n\n", seq).first, 1);
  EXPECT_EQ(seq.pRes, std::string(3996, 'A'));
  ASSERT_EQ(read_text("PSEQ\nr" + std::string(3995, 'A') + "B\n\n", seq).first, 1);
  EXPECT_EQ(seq.numRes, 3996);
  const std::string line = "r" + std::string(3000, 'W') + "\n";
  ASSERT_EQ(read_text("PSEQ\n" + line + line + line + "\n", seq).first, 1);
  EXPECT_EQ(seq.numRes, 9000);  // the texts grow past 4,000
}

TEST(ReadSeqMolvane, EndOfFileAndUnknownTags) {
  SeqRecord seq;
  EXPECT_EQ(read_text("PSEQ\nnMy title\nrAAA\n", seq), warned(-1, "Unexpected EOF in sequence file: 'My title'"));
  SeqRecord cut;  // the last line without a newline still loses its last character
  EXPECT_EQ(read_text("PSEQ\nrAAA\nnTitle", cut), warned(-1, "Unexpected EOF in sequence file: 'Titl'"));
  SeqRecord untitled;
  EXPECT_EQ(read_text("PSEQ\nrAAA\n", untitled), warned(-1, "Unexpected EOF in sequence file: ''"));
  EXPECT_EQ(read_text("PSEQ\nrAAA\nN title\n\n", seq), warned(0, "Cannot parse line in sequence file: 'N title\n'"));
  EXPECT_EQ(read_text("PSEQ\n rAAA\n\n", seq), warned(0, "Cannot parse line in sequence file: ' rAAA\n'"));
}

TEST(ReadSeqMolvane, LengthsRuleNeedsOneMatchingText) {
  SeqRecord seq;
  EXPECT_EQ(read_text("PSEQ\nrAAAA\nSHHH\nG12345\n\n", seq),
            warned(0, "Residues/Structure/Grouping align problems: 4 3 5"));
  ASSERT_EQ(read_text("PSEQ\nrAAAA\nSHHHH\nG-1-1**\n\n", seq), std::make_pair(1, std::string()));
  EXPECT_EQ(seq.uRes, "-1-1");  // a longer text is cut
  ASSERT_EQ(read_text("PSEQ\nrAAAA\nShh\nG-11-\n\n", seq).first, 1);
  EXPECT_EQ(seq.sRes, "hhXX");  // a shorter one is completed
  EXPECT_EQ(seq.hasSRes, 1);
  // An absent structure matches, so a short grouping is accepted.
  ASSERT_EQ(read_text("PSEQ\nrAAAA\nG12\n\n", seq).first, 1);
  EXPECT_EQ(seq.uRes, "12--");
  EXPECT_EQ(seq.hasSRes, 0);
}

TEST(ReadSeqMolvane, ReadsConsecutiveEntries) {
  const UniqueFile in = input_of("PSEQ\nAONE\nrAAA\n\nPSEQ\nATWO\nrCCCC\n\n\n");
  SeqRecord first, second, third;
  EXPECT_EQ(read_seq_molvane(in.get(), first, 3, 4000), 1);
  EXPECT_EQ(read_seq_molvane(in.get(), second, 3, 4000), 1);
  EXPECT_EQ(read_seq_molvane(in.get(), third, 3, 4000), -1);
  EXPECT_EQ(first.acc, "ONE");
  EXPECT_EQ(second.pRes, "CCCC");
}
