#include "seq/pir_comp_reader.hpp"

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "seq/pir_comp_encoder.hpp"
#include "seq/seq_record.hpp"
#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using namespace std::string_literals;
using testsupport::stream_of;

namespace {

using namespace pir_comp_encoder;

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

const std::string kACD = pack_codes({0, 2, 3});

// A record of the three residues "ACD" with the given coded text.
std::string with_text(const std::string& codedText) { return record_bytes(3, kACD, codedText); }

TEST(PirCompTables, JournalRowsAreFixedCountedAndOrdered) {
  EXPECT_STREQ(journals[0], "AIDS Res. Hum. Retroviruses (19");
  EXPECT_STREQ(journals[19], "Adv. Prostaglandin Thromboxane Leukotriene Res. (19");
  EXPECT_STREQ(journals[71], "Bio\\/Technology (19");
  EXPECT_STREQ(journals[84], "Biochemistry (N.");
  EXPECT_STREQ(journals[520], "Zool. Sci. (19");
  for (int row = kJournalRows; row < kJournalSlots; ++row) EXPECT_EQ(journals[row], nullptr) << "row " << row;
  // Empty rows stand where the listing has them; row 19 is the longest; byte
  // order throughout, row 71 standing before 72 being the one exception.
  int previous = -1;
  for (int row = 0; row < kJournalRows; ++row) {
    ASSERT_NE(journals[row], nullptr) << "row " << row;
    const bool emptyRow = journals[row][0] == '\0';
    const bool fixedEmpty = row == 12 || row == 31 || row == 255 || row == 268 || row == 287 || row == 511;
    EXPECT_EQ(emptyRow, fixedEmpty) << "row " << row;
    if (emptyRow) continue;
    EXPECT_TRUE(row == 19 || std::strlen(journals[row]) < std::strlen(journals[19])) << "row " << row;
    EXPECT_TRUE(previous < 0 || row == 72 || std::strcmp(journals[previous], journals[row]) < 0) << "row " << row;
    previous = row;
  }
  EXPECT_GT(std::strcmp(journals[71], journals[72]), 0);
  EXPECT_LT(std::strcmp(journals[70], journals[72]), 0);
}

TEST(PirCompTables, RepWordsFollowTheListing) {
  EXPECT_STREQ(rep_words[0], "-transporting");
  EXPECT_STREQ(rep_words[8], "alpha");
  EXPECT_STREQ(rep_words[12], "");
  EXPECT_STREQ(rep_words[246], "ubiquinol--cytochrome-c");
  EXPECT_STREQ(rep_words[kRepWordRows - 1], "yeast");
  for (int row = 0; row < kRepWordRows; ++row) {
    ASSERT_NE(rep_words[row], nullptr);
    EXPECT_EQ(std::strchr(rep_words[row], ' '), nullptr) << "row " << row;
  }
}

TEST(PirCompReader, RepeatCountsUseEightBitBaseSixDigits) {
  // 26 27 2: two C. A lone 26 then D: one D. 27 27 26 29 (255) then B: no B at all.
  SeqRecord seq;
  ASSERT_EQ(read_one(record_bytes(4, pack_codes({26, 27, 2, 26, 3, 27, 27, 26, 29, 1, 0}), "t~a~"), seq), 1);
  EXPECT_EQ(seq.pRes, "CCDA");
  EXPECT_EQ(seq.numRes, 4);
  // The bits left over in the last byte are ignored.
  ASSERT_EQ(read_one(record_bytes(1, std::string(1, '\xE0'), "t~a~"), seq), 1);
  EXPECT_EQ(seq.pRes, "A");
}

TEST(PirCompReader, RecordFieldsAreSetAndTheRestLeftAlone) {
  SeqRecord seq;
  seq.hasSRes = seq.hasURes = 1;
  seq.sRes = seq.uRes = seq.organism = seq.reference = "old";
  seq.resNums = {0, 1, 2};
  ASSERT_EQ(read_one(with_text(std::string("Title~ACC1~x~y~\x01") + "12"), seq), 1);
  EXPECT_EQ(seq.title, "Title");
  EXPECT_EQ(seq.acc, "ACC1");
  EXPECT_EQ(seq.pRes, "ACD");
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
       std::string(journals[0]) + "|" + journals[256] + "|" + journals[520] +
           "|xy|Bacillus bacillus|q AIDS Res. Hum. Retroviruses (19",
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
      {"a lone newline", "\n", 0},
      {"a header cut short", std::string("\n\0\0", 3), 0},
      {"no packed data", record_bytes(3, "", "t~a~"), 0},
      {"packed data cut short", record_bytes(3, kACD, "").substr(0, 7), 0},
      {"byte 0 of the header is not interpreted", record_bytes(3, kACD, "t~a~", 0xFF), 1},
      {"a run past the count", record_bytes(2, pack_codes({28, 0}), "t~a~"), 0},
      {"codes running out", record_bytes(5, kACD, "t~a~"), 0},
      {"a negative count", record_bytes(-3, kACD, "t~a~"), 0},
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

TEST(PirCompReader, ReadSeqCutsTheCountButNotTheResidues) {
  const std::string residues(4100, 'W');
  UniqueFile in = stream_of(encode_record({"long", "L1", "", "", {}, 0, residues}));
  SeqRecord seq;
  ASSERT_EQ(read_seq(in.get(), stdout, seq, kFormatPirComp, kMinRes, kMaxRes), 1);
  EXPECT_EQ(seq.numRes, kMaxRes);
  EXPECT_EQ(seq.pRes, residues);
}

TEST(PirCompReader, RealSequencesRoundTrip) {
  const auto make = [](const char* title, const char* acc, const char* field3, const char* field4,
                       std::vector<std::pair<std::string, std::string>> items, int trailing, std::string residues) {
    return Record{title, acc, field3, field4, std::move(items), trailing, std::move(residues)};
  };
  const std::vector<Record> records = {
      make("insulin B chain - human", "INHUB", "Homo sapiens (man)", "J. Biol. Chem. (1985) 260:1234-1678",
           {{"A", "complete sequence"}, {"1-30", "fragment"}}, 30, "FVNQHLCGSHLVEALYLVCGERGFFYTPKT"),
      make("melittin precursor - honeybee", "MEL\nHB", "Apis mellifera", "Eur. J. Biochem. (1976) 61, 369-376", {}, 7,
           "GIGAVLKVLTTGLPALISWIKRKRQQ"),
      make("ubiquitin - Saccharomyces cerevisiae (yeast)", "UQBY", "", "", {{"1-76", "sequence"}}, 0,
           "MQIFVKTLTGKTITLEVEPSDTIENVKAKIQDKEGIPPDQQRLIFAGKQLEDGRTLSDYNIQKESTLHLVLRLRGG"),
      make("alpha-amylase, Bacillus subtilis  strain 168", "AMY1", "", "", {}, 1,
           std::string(300, 'G') + "HSQGTFTSDYSKYLDSRRAQDFVQWLMNT" + std::string(17, 'P')),
  };
  std::string file;
  for (const Record& record : records) file += encode_record(record);
  // The coding really uses dictionary codes and number ranges.
  const std::string coded = encode_text(plain_text(records[0]));
  EXPECT_TRUE(coded.find('@') != std::string::npos && coded.find(' ') != std::string::npos);
  EXPECT_NE(coded.find('\0'), std::string::npos);  // the range "1-30" holds zero bytes

  std::vector<SeqRecord> read;
  ASSERT_EQ(read_all(file + "\n", read), (std::vector<int>{1, 1, 1, 1, 0}));
  for (std::size_t i = 0; i < records.size(); ++i) {
    EXPECT_EQ(read[i].title, records[i].title);
    EXPECT_EQ(read[i].acc, records[i].acc);
    EXPECT_EQ(read[i].pRes, records[i].residues);
    EXPECT_EQ(read[i].numRes, static_cast<int>(records[i].residues.size()));
  }
}

}  // namespace
