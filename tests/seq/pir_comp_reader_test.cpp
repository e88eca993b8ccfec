#include "seq/pir_comp_reader.hpp"

#include <string>
#include <vector>

#include "seq/seq_record.hpp"
#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using namespace std::string_literals;
using testsupport::stream_of;

namespace {

// One record as it stands in the file: its newline, a header of an unread
// byte, the residue count and the packed length (both big-endian 16 bits),
// then the packed residues and the coded text.
std::string record(int count, const std::string& packed, const std::string& text) {
  const std::string header = {'\n',
                              '\0',
                              static_cast<char>((count >> 8) & 0xFF),
                              static_cast<char>(count & 0xFF),
                              static_cast<char>(packed.size() >> 8),
                              static_cast<char>(packed.size() & 0xFF)};
  return header + packed + text;
}

// The 5-bit codes 0 2 3, least significant bit first: "ACD".
const std::string kACD = "\x40\x0C";

std::string with_text(const std::string& codedText) { return record(3, kACD, codedText); }

int read_one(const std::string& bytes, SeqRecord& seq) { return read_seq_pir_comp(stream_of(bytes).get(), seq); }

// The results of reading the bytes until a call returns something other than 1.
std::vector<int> read_all(const std::string& bytes, std::vector<SeqRecord>& records) {
  UniqueFile in = stream_of(bytes);
  std::vector<int> results;
  do {
    records.emplace_back();
    results.push_back(read_seq_pir_comp(in.get(), records.back()));
  } while (results.back() == 1);
  return results;
}

}  // namespace

TEST(PirCompReader, PackedResiduesAndTheFieldsARecordSets) {
  // Codes 26 27 2: two C. A lone 26 then D: one D. 27 27 26 29 (255) then B:
  // no B at all. Then A, and bits left over in the last byte.
  SeqRecord seq;
  seq.hasSRes = seq.hasURes = 1;
  seq.sRes = seq.uRes = seq.organism = seq.reference = "old";
  seq.resNums = {0, 1, 2};
  ASSERT_EQ(read_one(record(4, "\x7A\x0B\x3D\xF6\xD6\x3D\x00"s, "Title~ACC1~x~y~\x01"s + "12"), seq), 1);
  EXPECT_EQ(seq.pRes, "CCDA");
  EXPECT_EQ(seq.numRes, 4);
  EXPECT_EQ(seq.title, "Title");
  EXPECT_EQ(seq.acc, "ACC1");
  EXPECT_FALSE(seq.sRes || seq.uRes || seq.organism || seq.reference);
  EXPECT_EQ(seq.hasSRes + seq.hasURes, 2);
  EXPECT_EQ(seq.resNums.size(), 3u);
}

TEST(PirCompReader, TextCodes) {
  const struct {
    const char* what;
    std::string coded, title, acc;
  } cases[] = {
      // '#', '!' and '$' journals, an empty row, '@' words, a fragment row
      // after its capital, and a spaced byte that opens a journal code.
      {"dictionary and space codes", "#\x01|!\x01|$\x09|x#\x0Dy|B@\x13\xE2@\x13|q\xA3\x01~",
       "AIDS Res. Hum. Retroviruses (19|Immunogenetics (19|Zool. Sci. (19|xy|Bacillus bacillus|q AIDS Res. Hum. "
       "Retroviruses (19",
       ""},
      {"after an expansion the '@' that was a code byte opens nothing", "@@A\xC1~\xE1\xE2~", "dna-directedA A", " a b"},
      {"a prefix at the very end stays as it is", "T~AC#", "T", "AC#"},
      {"number ranges", "pp \x01\x02\x03\x04, \xFF\xFF\x01\x01~", "pp258-772,65535-257", ""},
      {"number ranges holding zero bytes", "pages \x00\x05\x00\x0C; \x01\x00\x02\x00~ \x00\x00\x00\x01"s,
       "pages5-12;256-512", "0-1"},
      {"0xFE before a zero byte vanishes with it", "a\xFE\x00"s + "b~c", "ab", "c"},
      {"a zero byte left for the dictionary pass ends the text", "T~A#\x00x~y"s, "T", "A#"},
      // 0xFE 0xFE is a 0xFE byte, which the last pass reads as a space and '~'.
      {"escapes; 0xFE before anything else vanishes with it",
       std::string("a\xFE\xBF") + "b\xFE\xFE" + "c\xFE\x41" + "d~X", "a\nb ", "cd"},
      {"an empty first field gives the text before its dictionary pass", "~@\x03~ \x01\x01\x02\x02", "~@\x03~257-514",
       "adenovirus"},
      {"no text at the end of the file", "", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    SeqRecord seq;
    ASSERT_EQ(read_one(with_text(c.coded), seq), 1);
    EXPECT_EQ(seq.title, c.title);
    EXPECT_EQ(seq.acc, c.acc);
    EXPECT_EQ(seq.pRes, "ACD");
  }
}

TEST(PirCompReader, RecordSearchAndEndOfFile) {
  std::vector<SeqRecord> records;
  const std::string two = with_text("one~A1~") + with_text("two~A2~");
  EXPECT_EQ(read_all(two, records), (std::vector<int>{1, 1, 0}));
  EXPECT_EQ(records[1].title, "two");
  // Once the pushed-back newline is used up, the end of the file is just that.
  UniqueFile in = stream_of(two);
  SeqRecord seq;
  for (const int expected : {1, 1, 0, -1}) EXPECT_EQ(read_seq_pir_comp(in.get(), seq), expected);
  // A file must start with a record's newline.
  EXPECT_EQ(read_all("junk" + two, records), std::vector<int>{-1});
  EXPECT_EQ(read_all("", records), std::vector<int>{-1});
}

TEST(PirCompReader, ShortAndOverrunningRecordsAreRejected) {
  std::string row19Codes;  // row 19 is 51 characters: 196 codes fit in 9,999, 197 do not
  for (int i = 0; i < 196; ++i) row19Codes += "#\x14";
  std::string ranges;
  for (int i = 0; i < 1000; ++i) ranges += " \xFF\xFF\xFF\xFF";
  const struct {
    const char* what;
    std::string bytes;
    int result;
  } cases[] = {
      {"a header cut short", std::string("\n\0\0", 3), 0},
      {"no packed data", record(3, "", "t~a~"), 0},
      {"packed data cut short", record(3, kACD, "").substr(0, 7), 0},
      {"byte 0 of the header is not interpreted", "\n\xFF\0\x03\0\x02\x40\x0Ct~a~"s, 1},
      {"a run past the count", record(2, "\x1C\x00"s, "t~a~"), 0},
      {"codes running out", record(5, kACD, "t~a~"), 0},
      {"a negative count", record(-3, kACD, "t~a~"), 0},
      {"an absent journal row", with_text("t~$\xFE\xBF~"), 0},
      {"a range cut short", with_text("t~a~ \x01\x02"), 0},
      {"one journal more", with_text(row19Codes + "#\x14"), 0},
      {"ranges past the text's room", with_text(ranges), 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    SeqRecord seq;
    EXPECT_EQ(read_one(c.bytes, seq), c.result);
  }
  SeqRecord seq;
  ASSERT_EQ(read_one(with_text(row19Codes), seq), 1);
  EXPECT_EQ(seq.title->size(), 196u * 51);
  // A rejected record leaves the stream at the next record.
  UniqueFile in = stream_of(with_text("t~$\x0B~") + with_text("next~N~"));
  EXPECT_EQ(read_seq_pir_comp(in.get(), seq), 0);
  EXPECT_EQ(read_seq_pir_comp(in.get(), seq), 1);
  EXPECT_EQ(seq.title, "next");
}

// 20 runs of 216 W (codes 31 31 31 22: repeat 215, then W), two to each 5 bytes.
TEST(PirCompReader, ReadSeqCutsTheCountButNotTheResidues) {
  std::string packed;
  for (int k = 0; k < 10; ++k) packed += "\xFF\x7F\xFB\xFF\xB7";
  UniqueFile in = stream_of(record(4320, packed, "long~L1~"));
  SeqRecord seq;
  ASSERT_EQ(read_seq(in.get(), seq, SeqReading{kFormatPirComp, kMinRes, kMaxRes, stdout, nullptr}), 1);
  EXPECT_EQ(seq.numRes, kMaxRes);
  EXPECT_EQ(seq.pRes, std::string(4320, 'W'));
}
