#include "seq/pir_comp_reader.hpp"

#include <cstring>
#include <string>
#include <vector>

#include "seq/pir_comp_encoder.hpp"
#include "seq/seq_record.hpp"
#include "shell/text_input.hpp"
#include "support/test_support.hpp"

namespace {

using namespace pir_comp_encoder;

class PirCompReaderTest : public ::testing::Test {
 protected:
  UniqueFile open_bytes(const std::string& bytes) {
    const auto path = dir_.write("in" + std::to_string(files_++) + ".pir", bytes);
    return open_file(path.string(), "rb");
  }

  // The results of reading the bytes until a call returns something other than 1.
  std::vector<int> read_all(const std::string& bytes, std::vector<SeqRecord>& records) {
    UniqueFile in = open_bytes(bytes);
    std::vector<int> results;
    for (;;) {
      records.emplace_back();
      results.push_back(read_seq_pir_comp(in.get(), records.back()));
      if (results.back() != 1) return results;
    }
  }

  int read_one(const std::string& bytes, SeqRecord& seq) {
    UniqueFile in = open_bytes(bytes);
    return read_seq_pir_comp(in.get(), seq);
  }

  // A record of three residues "ACD" with the given coded text.
  static std::string with_text(const std::string& codedText) {
    return record_bytes(3, pack_codes({0, 2, 3}), codedText);
  }

 private:
  testsupport::TempDir dir_;
  int files_ = 0;
};

TEST(PirCompTables, JournalRowsAreFixedCountedAndOrdered) {
  const std::vector<std::pair<int, const char*>> fixed = {{0, "AIDS Res. Hum. Retroviruses (19"},
                                                          {1, "APMIS (19"},
                                                          {2, "Acc. Chem. Res. (19"},
                                                          {3, "Acta Biochim. Biophys. Acad. Sci. Hung. (19"},
                                                          {12, ""},
                                                          {19, "Adv. Prostaglandin Thromboxane Leukotriene Res. (19"},
                                                          {31, ""},
                                                          {44, "Ann. Immunol. (Inst. Paste"},
                                                          {71, "Bio\\/Technology (19"},
                                                          {72, "BioTechniques (19"},
                                                          {84, "Biochemistry (N."},
                                                          {255, ""},
                                                          {268, ""},
                                                          {287, ""},
                                                          {480, "Science in China (series"},
                                                          {511, ""},
                                                          {518, "Zbl. Bakt. Hyg. I. Abt. Orig. C (19"},
                                                          {519, "Zool. Res. (19"},
                                                          {520, "Zool. Sci. (19"}};
  for (const auto& [row, text] : fixed) EXPECT_STREQ(journals[row], text) << "row " << row;
  for (int row = kJournalRows; row < kJournalSlots; ++row) EXPECT_EQ(journals[row], nullptr) << "row " << row;

  int previous = -1;
  for (int row = 0; row < kJournalRows; ++row) {
    ASSERT_NE(journals[row], nullptr) << "row " << row;
    const bool emptyRow = journals[row][0] == '\0';
    const bool fixedEmpty = row == 12 || row == 31 || row == 255 || row == 268 || row == 287 || row == 511;
    EXPECT_EQ(emptyRow, fixedEmpty) << "row " << row;
    if (emptyRow) continue;
    if (row != 19) {
      EXPECT_LT(std::strlen(journals[row]), std::strlen(journals[19])) << "row " << row;
    }
    // Byte order throughout, row 71 standing before 72 being the one exception.
    if (previous >= 0 && row != 72) {
      EXPECT_LT(std::strcmp(journals[previous], journals[row]), 0) << "row " << row;
    }
    previous = row;
  }
  EXPECT_GT(std::strcmp(journals[71], journals[72]), 0);
  EXPECT_LT(std::strcmp(journals[70], journals[72]), 0);
}

TEST(PirCompTables, RepWordsFollowTheListing) {
  EXPECT_STREQ(rep_words[0], "-transporting");
  EXPECT_STREQ(rep_words[7], "alpha-amylase");
  EXPECT_STREQ(rep_words[8], "alpha");
  EXPECT_STREQ(rep_words[12], "");
  EXPECT_STREQ(rep_words[18], "acillus");
  EXPECT_STREQ(rep_words[31], "");
  EXPECT_STREQ(rep_words[84], "allus");
  EXPECT_STREQ(rep_words[182], "protein");
  EXPECT_STREQ(rep_words[193], "hizobium");
  EXPECT_STREQ(rep_words[246], "ubiquinol--cytochrome-c");
  EXPECT_STREQ(rep_words[kRepWordRows - 1], "yeast");
  for (int row = 0; row < kRepWordRows; ++row) {
    ASSERT_NE(rep_words[row], nullptr);
    EXPECT_EQ(std::strchr(rep_words[row], ' '), nullptr) << "row " << row;
  }
}

TEST_F(PirCompReaderTest, RepeatCountsUseEightBitBaseSixDigits) {
  // 26 27 2: two C. A lone 26 then D: one D. 27 27 26 29 (255) then B: no B at all.
  SeqRecord seq;
  ASSERT_EQ(read_one(record_bytes(4, pack_codes({26, 27, 2, 26, 3, 27, 27, 26, 29, 1, 0}), "t~a~"), seq), 1);
  EXPECT_EQ(seq.pRes, "CCDA");
  EXPECT_EQ(seq.numRes, 4);

  // The bits left over in the last byte are ignored.
  ASSERT_EQ(read_one(record_bytes(1, std::string(1, '\xE0'), "t~a~"), seq), 1);
  EXPECT_EQ(seq.pRes, "A");
}

TEST_F(PirCompReaderTest, RecordFieldsAreSetAndTheRestLeftAlone) {
  SeqRecord seq;
  seq.hasSRes = 1;
  seq.hasURes = 1;
  seq.sRes = "XXX";
  seq.uRes = "---";
  seq.organism = "old";
  seq.reference = "old";
  seq.resNums = {0, 1, 2};
  ASSERT_EQ(read_one(with_text("Title~ACC1~x~y~\x01"
                               "12"),
                     seq),
            1);
  EXPECT_EQ(seq.title, "Title");
  EXPECT_EQ(seq.acc, "ACC1");
  EXPECT_EQ(seq.pRes, "ACD");
  EXPECT_FALSE(seq.sRes || seq.uRes || seq.organism || seq.reference);
  EXPECT_EQ(seq.hasSRes, 1);
  EXPECT_EQ(seq.hasURes, 1);
  EXPECT_EQ(seq.resNums.size(), 3u);
}

TEST_F(PirCompReaderTest, RecordSearchAndEndOfFile) {
  std::vector<SeqRecord> records;
  const std::string two = with_text("one~A1~") + with_text("two~A2~");
  EXPECT_EQ(read_all(two, records), (std::vector<int>{1, 1, 0}));
  EXPECT_EQ(records[1].title, "two");

  // Once the pushed-back newline is used up, the end of the file is just that.
  UniqueFile in = open_bytes(two);
  SeqRecord seq;
  for (const int expected : {1, 1, 0, -1}) EXPECT_EQ(read_seq_pir_comp(in.get(), seq), expected);

  records.clear();
  EXPECT_EQ(read_all("junk" + two, records), std::vector<int>{-1});
  records.clear();
  EXPECT_EQ(read_all("", records), std::vector<int>{-1});
}

TEST_F(PirCompReaderTest, ShortHeadersAndPackedDataGiveZero) {
  SeqRecord seq;
  EXPECT_EQ(read_one("\n", seq), 0);
  EXPECT_EQ(read_one(std::string("\n\0\0", 3), seq), 0);
  EXPECT_EQ(read_one(record_bytes(3, "", "t~a~"), seq), 0);
  EXPECT_EQ(read_one(record_bytes(3, pack_codes({0, 2, 3}), "").substr(0, 7), seq), 0);
  // Byte 0 of the header is not interpreted.
  EXPECT_EQ(read_one(record_bytes(3, pack_codes({0, 2, 3}), "t~a~", 0xFF), seq), 1);
}

TEST_F(PirCompReaderTest, RecordWithoutTextAtEndOfFileReadsEmptyTexts) {
  SeqRecord seq;
  ASSERT_EQ(read_one(record_bytes(3, pack_codes({0, 2, 3}), ""), seq), 1);
  EXPECT_EQ(seq.title, "");
  EXPECT_EQ(seq.acc, "");
  EXPECT_EQ(seq.pRes, "ACD");
}

TEST_F(PirCompReaderTest, DictionaryAndSpaceCodes) {
  SeqRecord seq;
  // '#', '!' and '$' journals, an empty row, '@' words, a fragment row after
  // its capital, and a spaced byte that opens a journal code.
  ASSERT_EQ(read_one(with_text("#\x01|!\x01|$\x09|x#\x0Dy|B@\x13\xE2@\x13|q\xA3\x01~"), seq), 1);
  EXPECT_EQ(seq.title, std::string(journals[0]) + "|" + journals[256] + "|" + journals[520] +
                           "|xy|Bacillus bacillus|q AIDS Res. Hum. Retroviruses (19");

  // After an expansion the state starts afresh: the '@' that was a code byte opens nothing.
  ASSERT_EQ(read_one(with_text("@@A\xC1~\xE1\xE2~"), seq), 1);
  EXPECT_EQ(seq.title, "dna-directedA A");
  EXPECT_EQ(seq.acc, " a b");

  // A prefix at the very end stays as it is.
  ASSERT_EQ(read_one(with_text("T~AC#"), seq), 1);
  EXPECT_EQ(seq.acc, "AC#");
}

TEST_F(PirCompReaderTest, NumberRangesAndEscapes) {
  SeqRecord seq;
  ASSERT_EQ(read_one(with_text("pp \x01\x02\x03\x04, \xFF\xFF\x01\x01~"), seq), 1);
  EXPECT_EQ(seq.title, "pp258-772,65535-257");

  // 0xFE 0xBF is a newline, 0xFE 0xFE a 0xFE byte (which the last pass reads
  // as a space and '~'), 0xFE before anything else vanishes with it.
  ASSERT_EQ(read_one(with_text("a\xFE\xBF"
                               "b\xFE\xFE"
                               "c\xFE\x41"
                               "d~X"),
                     seq),
            1);
  EXPECT_EQ(seq.title, "a\nb ");
  EXPECT_EQ(seq.acc, "cd");
}

TEST_F(PirCompReaderTest, EmptyFirstFieldGivesTheTextBeforeItsDictionaryPass) {
  SeqRecord seq;
  ASSERT_EQ(read_one(with_text("~@\x03~ \x01\x01\x02\x02"), seq), 1);
  EXPECT_EQ(seq.title, "~@\x03~257-514");
  EXPECT_EQ(seq.acc, "adenovirus");
}

TEST_F(PirCompReaderTest, OverrunningRecordsAreRejected) {
  SeqRecord seq;
  const std::string acd = pack_codes({0, 2, 3});
  EXPECT_EQ(read_one(record_bytes(2, pack_codes({28, 0}), "t~a~"), seq), 0) << "a run past the count";
  EXPECT_EQ(read_one(record_bytes(5, acd, "t~a~"), seq), 0) << "codes running out";
  EXPECT_EQ(read_one(record_bytes(-3, acd, "t~a~"), seq), 0) << "a negative count";
  EXPECT_EQ(read_one(with_text("t~$\xFE\xBF~"), seq), 0) << "an absent journal row";
  EXPECT_EQ(read_one(with_text("t~a~ \x01\x02"), seq), 0) << "a range cut short";

  // Row 19 is 51 characters: 196 codes fit in 9,999, 197 do not.
  std::string codes;
  for (int i = 0; i < 196; ++i) codes += "#\x14";
  EXPECT_EQ(read_one(with_text(codes), seq), 1);
  EXPECT_EQ(seq.title->size(), 196u * 51);
  EXPECT_EQ(read_one(with_text(codes + "#\x14"), seq), 0);
  std::string ranges;
  for (int i = 0; i < 1000; ++i) ranges += " \xFF\xFF\xFF\xFF";
  EXPECT_EQ(read_one(with_text(ranges), seq), 0);

  // A rejected record leaves the stream at the next record.
  UniqueFile in = open_bytes(with_text("t~$\x0B~") + with_text("next~N~"));
  EXPECT_EQ(read_seq_pir_comp(in.get(), seq), 0);
  EXPECT_EQ(read_seq_pir_comp(in.get(), seq), 1);
  EXPECT_EQ(seq.title, "next");
}

TEST_F(PirCompReaderTest, ReadSeqCutsTheCountButNotTheResidues) {
  const std::string residues(4100, 'W');
  UniqueFile in = open_bytes(encode_record({"long", "L1", "", "", {}, 0, residues}));
  SeqRecord seq;
  ASSERT_EQ(read_seq(in.get(), stdout, seq, kFormatPirComp, kMinRes, kMaxRes), 1);
  EXPECT_EQ(seq.numRes, kMaxRes);
  EXPECT_EQ(seq.pRes, residues);
}

TEST_F(PirCompReaderTest, RealSequencesRoundTrip) {
  const std::vector<Record> records = {
      {"insulin B chain - human",
       "INHUB",
       "Homo sapiens (man)",
       "J. Biol. Chem. (1985) 260:1234-1678",
       {{"A", "complete sequence"}, {"1-30", "fragment"}},
       30,
       "FVNQHLCGSHLVEALYLVCGERGFFYTPKT"},
      {"melittin precursor - honeybee",
       "MEL\nHB",
       "Apis mellifera",
       "Eur. J. Biochem. (1976) 61, 369-376",
       {},
       7,
       "GIGAVLKVLTTGLPALISWIKRKRQQ"},
      {"ubiquitin - Saccharomyces cerevisiae (yeast)",
       "UQBY",
       "",
       "",
       {{"1-76", "sequence"}},
       0,
       "MQIFVKTLTGKTITLEVEPSDTIENVKAKIQDKEGIPPDQQRLIFAGKQLEDGRTLSDYNIQKESTLHLVLRLRGG"},
      {"alpha-amylase, Bacillus subtilis  strain 168",
       "AMY1",
       "",
       "",
       {},
       1,
       std::string(300, 'G') + "HSQGTFTSDYSKYLDSRRAQDFVQWLMNT" + std::string(17, 'P')},
  };
  std::string file;
  for (const Record& record : records) file += encode_record(record);
  file += "\n";
  // The coding really uses dictionary codes and number ranges.
  EXPECT_NE(encode_text(plain_text(records[0])).find('@'), std::string::npos);
  EXPECT_NE(encode_text(plain_text(records[0])).find(' '), std::string::npos);

  std::vector<SeqRecord> read;
  ASSERT_EQ(read_all(file, read), (std::vector<int>{1, 1, 1, 1, 0}));
  for (std::size_t i = 0; i < records.size(); ++i) {
    EXPECT_EQ(read[i].title, records[i].title);
    EXPECT_EQ(read[i].acc, records[i].acc);
    EXPECT_EQ(read[i].pRes, records[i].residues);
    EXPECT_EQ(read[i].numRes, static_cast<int>(records[i].residues.size()));
  }
}

}  // namespace
