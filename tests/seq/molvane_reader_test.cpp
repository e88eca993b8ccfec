#include "seq/molvane_reader.hpp"

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

UniqueFile input_of(const std::string& text) {
  UniqueFile file(std::tmpfile());
  std::fputs(text.c_str(), file.get());
  std::rewind(file.get());
  return file;
}

struct ReadResult {
  int status;
  std::string out;  // warnings written to standard output
};

ReadResult read_entry(std::FILE* in, SeqRecord& seq) {
  testing::internal::CaptureStdout();
  const int status = read_seq_molvane(in, seq, 3, 4000);
  return {status, testing::internal::GetCapturedStdout()};
}

ReadResult read_text(const std::string& text, SeqRecord& seq) { return read_entry(input_of(text).get(), seq); }

std::string warning(const std::string& message) { return error_frame(0, "read_seq_molvane", message); }

}  // namespace

TEST(ReadSeqMolvane, ReadsFullEntryWithSplitLines) {
  const std::string res1(30, 'G'), res2 = "nlhgK", str1(30, 'H'), str2 = "ccCCb";
  SeqRecord seq;
  seq.reference = "kept";
  const auto got = read_text("file header\n\nPSEQ\nnCytochrome c\nACCHU\noHomo sapiens\nr" + res1 + "\nr" + res2 +
                                 "\nS" + str1 + "\nS" + str2 + "\nG" + std::string(35, '-') + "\n\n",
                             seq);
  EXPECT_EQ(got.status, 1);
  EXPECT_EQ(got.out, "");
  EXPECT_EQ(seq.acc, "CCHU");
  EXPECT_EQ(seq.title, "Cytochrome c");
  EXPECT_EQ(seq.organism, "Homo sapiens");
  EXPECT_EQ(seq.reference, "kept");     // absent tag: the field keeps its value
  EXPECT_EQ(seq.pRes, res1 + "NLHGK");  // residues folded to upper case
  EXPECT_EQ(seq.sRes, str1 + str2);     // structure keeps its case
  EXPECT_EQ(seq.uRes, std::string(35, '-'));
  EXPECT_EQ(seq.numRes, 35);
  EXPECT_EQ(seq.hasSRes, 1);
  EXPECT_EQ(seq.hasURes, 1);
  EXPECT_TRUE(seq.resNums.empty());
}

TEST(ReadSeqMolvane, TagsValuesAndFillers) {
  SeqRecord seq;
  const auto got = read_text("PSEQ\nnfirst\nnsecond \nK anything\nP\nTxx\nir1\nr GD\nrVE\nS\n\n", seq);
  EXPECT_EQ(got.status, 1);
  EXPECT_EQ(seq.title, "second ");  // replaced, nothing trimmed
  EXPECT_EQ(seq.reference, "r1");
  EXPECT_EQ(seq.pRes, " GDVE");  // the blank after the tag is a residue
  EXPECT_EQ(seq.numRes, 5);
  EXPECT_EQ(seq.sRes, "XXXXX");  // an empty 'S' line gives no structure
  EXPECT_EQ(seq.uRes, "-----");
  EXPECT_EQ(seq.hasSRes, 0);
  EXPECT_EQ(seq.hasURes, 0);

  SeqRecord empty;
  EXPECT_EQ(read_text("PSEQ\n\n", empty).status, 1);
  EXPECT_EQ(empty.numRes, 0);
  EXPECT_EQ(empty.pRes, "");
}

TEST(ReadSeqMolvane, StartLineIsPseqAlone) {
  SeqRecord seq;
  EXPECT_EQ(read_text("", seq).status, -1);
  const auto noStart = read_text("PSEQ extra\nrAAA\n\n", seq);
  EXPECT_EQ(noStart.status, -1);
  EXPECT_EQ(noStart.out, "");
  EXPECT_EQ(read_text("  PSEQ \t\nrAAA\n\n", seq).status, 1);
  // The search reads 254 characters at a time: the rest of a longer line
  // counts as a line of its own.
  EXPECT_EQ(read_text(std::string(254, 'x') + "PSEQ\nrAAA\n\n", seq).status, 1);
  EXPECT_EQ(read_text(std::string(253, 'x') + "PSEQ\nrAAA\n\n", seq).status, -1);
}

TEST(ReadSeqMolvane, EntryLinesHoldAtMost3998Characters) {
  SeqRecord seq;
  // A 3,999-character line: its last character stands in the value's
  // dropped place, and its newline then ends the entry.
  ASSERT_EQ(read_text("PSEQ\nr" + std::string(3996, 'A') + "B\n\n", seq).status, 1);
  EXPECT_EQ(seq.pRes, std::string(3996, 'A'));
  ASSERT_EQ(read_text("PSEQ\nr" + std::string(3995, 'A') + "B\n\n", seq).status, 1);
  EXPECT_EQ(seq.pRes, std::string(3995, 'A') + "B");
  // The texts grow past 4,000 characters.
  const std::string line = "r" + std::string(3000, 'W') + "\n";
  ASSERT_EQ(read_text("PSEQ\n" + line + line + line + "\n", seq).status, 1);
  EXPECT_EQ(seq.numRes, 9000);
}

TEST(ReadSeqMolvane, EndOfFileInsideEntryWarns) {
  SeqRecord seq;
  auto got = read_text("PSEQ\nnMy title\nrAAA\n", seq);
  EXPECT_EQ(got.status, -1);
  EXPECT_EQ(got.out, warning("Unexpected EOF in sequence file: 'My title'"));
  // The last line without its newline still loses its last character.
  SeqRecord cut;
  got = read_text("PSEQ\nrAAA\nnTitle", cut);
  EXPECT_EQ(got.out, warning("Unexpected EOF in sequence file: 'Titl'"));
  SeqRecord untitled;
  EXPECT_EQ(read_text("PSEQ\nrAAA\n", untitled).out, warning("Unexpected EOF in sequence file: ''"));
}

TEST(ReadSeqMolvane, UnknownTagWarnsWithWholeLine) {
  SeqRecord seq;
  auto got = read_text("PSEQ\nrAAA\nN upper-case title\n\n", seq);
  EXPECT_EQ(got.status, 0);
  EXPECT_EQ(got.out, warning("Cannot parse line in sequence file: 'N upper-case title\n'"));
  got = read_text("PSEQ\n rAAA\n\n", seq);
  EXPECT_EQ(got.out, warning("Cannot parse line in sequence file: ' rAAA\n'"));
}

TEST(ReadSeqMolvane, LengthsRuleNeedsOneMatchingText) {
  SeqRecord seq;
  auto got = read_text("PSEQ\nrAAAA\nSHHH\nG12345\n\n", seq);
  EXPECT_EQ(got.status, 0);
  EXPECT_EQ(got.out, warning("Residues/Structure/Grouping align problems: 4 3 5"));

  got = read_text("PSEQ\nrAAAA\nSHHHH\nG-1-1**\n\n", seq);
  EXPECT_EQ(got.status, 1);
  EXPECT_EQ(got.out, "");
  EXPECT_EQ(seq.uRes, "-1-1");  // a longer text is cut

  ASSERT_EQ(read_text("PSEQ\nrAAAA\nShh\nG-11-\n\n", seq).status, 1);
  EXPECT_EQ(seq.sRes, "hhXX");  // a shorter one is completed
  EXPECT_EQ(seq.hasSRes, 1);

  // An absent structure matches, so a short grouping is accepted.
  ASSERT_EQ(read_text("PSEQ\nrAAAA\nG12\n\n", seq).status, 1);
  EXPECT_EQ(seq.uRes, "12--");
  EXPECT_EQ(seq.hasSRes, 0);
  EXPECT_EQ(seq.hasURes, 1);
}

TEST(ReadSeqMolvane, ReadsConsecutiveEntries) {
  const UniqueFile in = input_of("PSEQ\nAONE\nrAAA\n\nPSEQ\nATWO\nrCCCC\n\n\n");
  SeqRecord first, second, third;
  EXPECT_EQ(read_entry(in.get(), first).status, 1);
  EXPECT_EQ(read_entry(in.get(), second).status, 1);
  EXPECT_EQ(read_entry(in.get(), third).status, -1);
  EXPECT_EQ(first.acc, "ONE");
  EXPECT_EQ(second.acc, "TWO");
  EXPECT_EQ(second.numRes, 4);
}
