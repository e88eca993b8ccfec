#include "seq/pir_reader.hpp"

#include <cstdio>
#include <string>

#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

// A read-only stream over text that lives as long as the object.
struct TextStream {
  explicit TextStream(const std::string& text) : stream(std::tmpfile()) {
    std::fputs(text.c_str(), stream);
    std::rewind(stream);
  }
  ~TextStream() { std::fclose(stream); }
  TextStream(const TextStream&) = delete;
  TextStream& operator=(const TextStream&) = delete;
  std::FILE* stream;
};

const char* const kRuler = "                5        10        15        20\n";

// One entry with the given residue lines (each with its line end).
std::string entry(const std::string& acc, const std::string& title, const std::string& residueLines,
                  const std::string& end = "///\n") {
  return "ENTRY           " + acc + "       #type complete\n" + "TITLE           " + title + "\n" +
         "DATE            01-Jan-1990\n" + "SEQUENCE\n" + kRuler + residueLines + end;
}

struct PirRead {
  int result = 0;
  SeqRecord seq;
  std::string printed;
  std::string rest;  // what the stream still holds after the read
};

PirRead read_pir(const std::string& text, int minRes = 3, int maxRes = 4000) {
  TextStream in(text);
  PirRead out;
  testing::internal::CaptureStdout();
  out.result = read_seq_pir(in.stream, out.seq, minRes, maxRes);
  out.printed = testing::internal::GetCapturedStdout();
  for (int ch = std::fgetc(in.stream); ch != EOF; ch = std::fgetc(in.stream)) out.rest.push_back(static_cast<char>(ch));
  return out;
}

}  // namespace

TEST(ReadSeqPir, ReadsAGoodEntryAndLeavesTheStreamBehindTheEndToken) {
  SeqRecord seq;
  seq.resNums = {0, 7, 8};
  seq.sRes = "HHH";
  seq.organism = "human";
  TextStream in(
      entry("CCHU", "cytochrome c - human\n                and chimpanzee", "      1 G D V E K G\n      7 K K I\n") +
      entry("CCHO", "cytochrome c - horse", "      1 M K V\n"));
  EXPECT_EQ(read_seq_pir(in.stream, seq, 3, 4000), 1);
  EXPECT_EQ(seq.acc, "CCHU");
  EXPECT_EQ(seq.title, "cytochrome c - human and chimpanzee");
  EXPECT_EQ(seq.pRes, "GDVEKGKKI");
  EXPECT_EQ(seq.numRes, 9);
  EXPECT_EQ(seq.hasSRes, 0);
  EXPECT_EQ(seq.hasURes, 0);
  EXPECT_FALSE(seq.sRes.has_value());
  EXPECT_FALSE(seq.uRes.has_value());
  EXPECT_FALSE(seq.organism.has_value());
  EXPECT_FALSE(seq.reference.has_value());
  EXPECT_EQ(seq.resNums, (std::vector<std::int32_t>{0, 7, 8}));

  SeqRecord second;
  EXPECT_EQ(read_seq_pir(in.stream, second, 3, 4000), 1);
  EXPECT_EQ(second.acc, "CCHO");
  EXPECT_EQ(second.title, "cytochrome c - horse");
  EXPECT_EQ(second.pRes, "MKV");

  SeqRecord third;
  EXPECT_EQ(read_seq_pir(in.stream, third, 3, 4000), -1);
  EXPECT_EQ(third.numRes, 0);
}

TEST(ReadSeqPir, TitleForms) {
  // Continuation lines are joined with one space however they are indented;
  // a blank continuation line still adds its space.
  EXPECT_EQ(read_pir(entry("A1", "first  part\n   second\n third", " 1 M K V\n")).seq.title,
            "first  part second third");
  EXPECT_EQ(read_pir(entry("A1", "x\n  \n y", " 1 M K V\n")).seq.title, "x  y");
  // "TITLE" with nothing behind it.
  PirRead empty = read_pir("ENTRY A1\nTITLE\nSEQUENCE\nruler\n 1 M K V\n///\n");
  EXPECT_EQ(empty.result, 1);
  EXPECT_EQ(empty.seq.title, "");
  EXPECT_EQ(empty.seq.pRes, "MKV");
  // A long title is kept whole.
  const std::string longTitle(400, 't');
  EXPECT_EQ(read_pir(entry("A1", longTitle, " 1 M K V\n")).seq.title, longTitle);
}

TEST(ReadSeqPir, KeywordsCountOnlyAsFirstTokenOfALine) {
  PirRead read = read_pir(
      "REFERENCE ENTRY X\nENTRY\n  P1 rest\nNOTE TITLE decoy\nTITLE real one\nDATE SEQUENCE\n"
      "SEQUENCE\nruler\n 1 A C D\n///\n");
  EXPECT_EQ(read.result, 1);
  EXPECT_EQ(read.seq.acc, "P1");  // found on the line after "ENTRY"
  EXPECT_EQ(read.seq.title, "real one");
  EXPECT_EQ(read.seq.pRes, "ACD");
}

TEST(ReadSeqPir, ResidueLineQuirks) {
  // Lower case: stored folded but rejected, and nothing is said.
  PirRead lower = read_pir(entry("L1", "t", " 1 M k V W\n"));
  EXPECT_EQ(lower.result, -20);
  EXPECT_EQ(lower.seq.pRes, "MKVW");
  EXPECT_EQ(lower.printed, "");
  // Two spaces between residues: every second character is a residue.
  PirRead spaced = read_pir(entry("S1", "t", " 1 M  K V\n"));
  EXPECT_EQ(spaced.result, -20);
  EXPECT_EQ(spaced.seq.pRes, "M  ");
  EXPECT_EQ(spaced.seq.numRes, 3);
  // No position number: the first residue is taken for it.
  PirRead unnumbered = read_pir(entry("U1", "t", "G D V E\n"));
  EXPECT_EQ(unnumbered.result, 1);
  EXPECT_EQ(unnumbered.seq.pRes, "DVE");
  // Trailing blank, and a number with no residues, end their lines cleanly.
  EXPECT_EQ(read_pir(entry("T1", "t", " 1 M K \n 4\n 4 V\n")).seq.pRes, "MKV");
}

TEST(ReadSeqPir, ResidueCountLimitsAndResultOrder) {
  PirRead exact = read_pir(entry("E1", "t", " 1 A B C D E\n"), 3, 5);
  EXPECT_EQ(exact.result, 1);
  EXPECT_EQ(exact.seq.pRes, "ABCDE");

  PirRead over = read_pir(entry("E2", "t", " 1 A B C D E F G\n 8 H\n"), 3, 5);
  EXPECT_EQ(over.result, -30);
  EXPECT_EQ(over.seq.pRes, "ABCDE");
  EXPECT_EQ(over.seq.numRes, 5);
  EXPECT_EQ(over.rest, "\n");  // still read through "///"

  // A later -30 replaces an earlier -20.
  EXPECT_EQ(read_pir(entry("E3", "t", " 1 a B C D E F\n"), 3, 5).result, -30);

  PirRead few = read_pir(entry("F1", "t", " 1 A B\n"), 3, 5);
  EXPECT_EQ(few.result, -40);
  EXPECT_EQ(few.seq.pRes, "AB");
  // -40 replaces either of the others.
  EXPECT_EQ(read_pir(entry("F2", "t", " 1 a b\n"), 3, 5).result, -40);
}

TEST(ReadSeqPir, EndTokens) {
  // Any token beginning with "///" ends the residues; the stream stays just
  // behind it.
  PirRead four = read_pir(entry("Z1", "t", " 1 M K V\n", "//// x\nENTRY NEXT\n"));
  EXPECT_EQ(four.result, 1);
  EXPECT_EQ(four.seq.pRes, "MKV");
  EXPECT_EQ(four.rest, " x\nENTRY NEXT\n");
  // End of input without "///" keeps what was read, with its result.
  PirRead open = read_pir(entry("Z2", "t", " 1 M K v", ""));
  EXPECT_EQ(open.result, -20);
  EXPECT_EQ(open.seq.pRes, "MKV");
  EXPECT_EQ(read_pir(entry("Z3", "t", " 1 M K V W", "")).result, 1);
  EXPECT_EQ(read_pir(entry("Z4", "t", " 1 M", "")).result, -40);
}

TEST(ReadSeqPir, EndOfInputBeforeTheEntryIsComplete) {
  EXPECT_EQ(read_pir("").result, -1);
  EXPECT_EQ(read_pir("junk line\nmore junk\n").result, -1);
  PirRead noTitle = read_pir("ENTRY A1\nDATE x\n");
  EXPECT_EQ(noTitle.result, -1);
  EXPECT_EQ(noTitle.seq.acc, "A1");
  PirRead inTitle = read_pir("ENTRY A1\nTITLE cut short");
  EXPECT_EQ(inTitle.result, -1);
  EXPECT_EQ(inTitle.seq.title, "cut short");
  EXPECT_EQ(read_pir("ENTRY A1\nTITLE t\n continued\n").result, -1);
  EXPECT_EQ(read_pir("ENTRY A1\nTITLE t\nSEQUENCE\n").result, -40);
}

TEST(ReadSeqPir, EntryAsLastTokenWarnsAndReturnsZero) {
  PirRead read = read_pir("junk\nENTRY   \n\n");
  EXPECT_EQ(read.result, 0);
  EXPECT_EQ(read.printed, error_frame(0, "read_seq_pir", "Unable to read accession for sequence\n"));
  EXPECT_FALSE(read.seq.acc.has_value());
  EXPECT_FALSE(read.seq.title.has_value());
  EXPECT_EQ(read.seq.numRes, 0);
}
