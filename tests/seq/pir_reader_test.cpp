#include "seq/pir_reader.hpp"

#include <cstdio>
#include <string>

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::stream_of;

namespace {

// One entry with the given residue lines (each with its line end).
std::string entry(const std::string& acc, const std::string& title, const std::string& residueLines,
                  const std::string& end = "///\n") {
  return "ENTRY           " + acc + "       #type complete\nTITLE           " + title +
         "\nDATE            01-Jan-1990\nSEQUENCE\n                5        10        15        20\n" + residueLines +
         end;
}

struct PirRead {
  int result = 0;
  SeqRecord seq;
  std::string printed;
  std::string rest;  // what the stream still holds after the read
};

PirRead read_pir(const std::string& text, int maxRes = 4000) {
  const UniqueFile in = stream_of(text);
  PirRead out;
  out.result = read_seq_pir(in.get(), out.seq, 3, maxRes, testsupport::frame_warnings(out.printed));
  for (int ch; (ch = std::fgetc(in.get())) != EOF;) out.rest.push_back(static_cast<char>(ch));
  return out;
}

}  // namespace

// Entries in a row are read in whole runs; here what PIR has no field for is
// cleared, but the numbering is kept.
TEST(ReadSeqPir, ClearsWhatItHasNoFieldFor) {
  SeqRecord seq;
  seq.resNums = {0, 7, 8};
  seq.sRes = seq.organism = "kept";
  seq.hasSRes = 1;
  EXPECT_EQ(read_seq_pir(stream_of(entry("CCHU", "cytochrome c", "      1 G D V E K G\n      7 K K I\n")).get(), seq, 3,
                         4000, nullptr),
            1);
  EXPECT_EQ(seq.pRes, "GDVEKGKKI");
  EXPECT_EQ(seq.hasSRes, 0);
  EXPECT_FALSE(seq.sRes || seq.uRes || seq.organism || seq.reference);
  EXPECT_EQ(seq.resNums, (std::vector<std::int32_t>{0, 7, 8}));
}

TEST(ReadSeqPir, TitlesAndKeywords) {
  // Continuation lines are joined with one space however they are indented;
  // a blank continuation line still adds its space. Long titles are kept whole.
  EXPECT_EQ(read_pir(entry("A1", "cytochrome c - human\n   and\n chimpanzee", " 1 M K V\n")).seq.title,
            "cytochrome c - human and chimpanzee");
  EXPECT_EQ(read_pir(entry("A1", "x\n  \n y", " 1 M K V\n")).seq.title, "x  y");
  EXPECT_EQ(read_pir(entry("A1", std::string(400, 't'), " 1 M K V\n")).seq.title, std::string(400, 't'));
  EXPECT_EQ(read_pir("ENTRY A1\nTITLE\nSEQUENCE\nruler\n 1 M K V\n///\n").seq.title, "");
  // Keywords count only as the first token of a line.
  const PirRead read = read_pir(
      "REFERENCE ENTRY X\nENTRY\n  P1 rest\nNOTE TITLE decoy\nTITLE real one\nDATE SEQUENCE\nSEQUENCE\nruler\n"
      " 1 A C D\n///\n");
  EXPECT_EQ(read.seq.acc, "P1");  // found on the line after "ENTRY"
  EXPECT_EQ(read.seq.title, "real one");
  EXPECT_EQ(read.seq.pRes, "ACD");
}

TEST(ReadSeqPir, ResidueLinesResultsAndEndTokens) {
  const struct {
    const char* what;
    const char* lines;
    const char* end;
    int maxRes;
    int result;
    const char* pRes;
    const char* rest;
  } cases[] = {
      {"lower case: stored folded but rejected", " 1 M k V W\n", "///\n", 4000, -20, "MKVW", "\n"},
      {"two spaces: every second character is a residue", " 1 M  K V\n", "///\n", 4000, -20, "M  ", "\n"},
      {"no position number: the first residue is taken for it", "G D V E\n", "///\n", 4000, 1, "DVE", "\n"},
      {"trailing blank and a bare number", " 1 M K \n 4\n 4 V\n", "///\n", 4000, 1, "MKV", "\n"},
      {"exactly maxRes", " 1 A B C D E\n", "///\n", 5, 1, "ABCDE", "\n"},
      {"one more, still read through the end token", " 1 A B C D E F G\n 8 H\n", "///\n", 5, -30, "ABCDE", "\n"},
      {"a later -30 replaces -20", " 1 a B C D E F\n", "///\n", 5, -30, "ABCDE", "\n"},
      {"too few", " 1 A B\n", "///\n", 5, -40, "AB", "\n"},
      {"any token beginning with ///", " 1 M K V\n", "//// x\nENTRY NEXT\n", 4000, 1, "MKV", " x\nENTRY NEXT\n"},
      {"end of input keeps what was read", " 1 M K V W", "", 4000, 1, "MKVW", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const PirRead read = read_pir(entry("E1", "t", c.lines, c.end), c.maxRes);
    EXPECT_EQ(read.result, c.result);
    EXPECT_EQ(read.seq.pRes, c.pRes);
    EXPECT_EQ(read.seq.numRes, static_cast<int>(read.seq.pRes.size()));
    EXPECT_EQ(read.rest, c.rest);
    EXPECT_EQ(read.printed, "");  // rejections are never announced
  }
}

TEST(ReadSeqPir, EndOfInputBeforeTheEntryIsComplete) {
  EXPECT_EQ(read_pir("").result, -1);
  EXPECT_EQ(read_pir("ENTRY A1\nDATE x\n").result, -1);
  EXPECT_EQ(read_pir("ENTRY A1\nTITLE cut short").result, -1);
  EXPECT_EQ(read_pir("ENTRY A1\nTITLE t\nSEQUENCE\n").result, -40);
  const PirRead read = read_pir("junk\nENTRY   \n\n");  // "ENTRY" as the last token
  EXPECT_EQ(read.result, 0);
  EXPECT_EQ(read.printed, testsupport::error_frame(0, "read_seq_pir", "Unable to read accession for sequence\n"));
  EXPECT_FALSE(read.seq.acc || read.seq.title);
}
