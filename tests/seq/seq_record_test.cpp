#include "seq/seq_record.hpp"

#include <string>

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::stream_of;
using testsupport::TempDir;
using testsupport::text_of;

namespace {

// count entries of the text-based format, named S1, S2, ...
std::string text_entries(int count) {
  std::string text;
  for (int k = 1; k <= count; ++k) text += ">S" + std::to_string(k) + " seq " + std::to_string(k) + "\nMKVW\n\n";
  return text;
}

}  // namespace

// A sequence typed at the keyboard, which gives no structure, anchors or
// numbering: read_seq adds them.
TEST(ReadSeq, TypedSequenceGetsFillersAndNumbering) {
  const UniqueFile in = stream_of("typed\nMKVW$");
  const UniqueFile out(std::tmpfile());
  SeqRecord record;
  record.hasSRes = 1;  // a flag without its string is not believed
  ASSERT_EQ(read_seq(in.get(), record, SeqReading{kFormatKeyboard, 3, 4000, out.get(), nullptr}), 1);
  EXPECT_EQ(text_of(out.get()), testsupport::read_golden("seq/keyboard_intro.txt") +
                                    testsupport::read_golden("seq/ruler_indent3.txt") + "\n>> ");
  EXPECT_EQ(record.title, "typed\n");
  EXPECT_EQ(record.acc, "000000");
  EXPECT_EQ(record.pRes, "MKVW");
  EXPECT_EQ(record.sRes, "XXXX");
  EXPECT_EQ(record.uRes, "----");
  EXPECT_EQ(record.hasSRes, 0);
  ASSERT_EQ(record.resNums.size(), 4000u);
  EXPECT_EQ(record.resNums[4], 4);
}

TEST(MreadSeq, AFullTableStillGetsOneRead) {
  std::vector<SeqRecord> roomy(501), full(500);
  int count = 500, result = 0;
  const SeqReading how{kFormatText, 3, 4000, stdout, nullptr};
  EXPECT_EQ(mread_seq(stream_of(text_entries(2)).get(), roomy, count, 500, how, result), std::nullopt);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(count, 501);
  EXPECT_EQ(roomy[500].acc, "S1");
  // Without room for it the entry is read and dropped, never written past the table.
  count = 500;
  EXPECT_EQ(mread_seq(stream_of(text_entries(2)).get(), full, count, 500, how, result), std::nullopt);
  EXPECT_EQ(count, 501);
  EXPECT_FALSE(full[499].acc.has_value());
}

// Fewer than two sequences: ravlin-batch's fatal paths (tests/app/batch_test.cpp).
TEST(MgetSeqs, ReadsAtMostMaxSeqs) {
  TempDir dir;
  const auto path = dir.write("many.seq", text_entries(600));
  std::vector<SeqRecord> records;
  const UniqueFile out(std::tmpfile());
  const SeqReading how{kFormatText, 3, 4000, out.get(), nullptr};
  EXPECT_EQ(mget_seqs(path.string(), records, 500, how), std::nullopt);
  ASSERT_EQ(records.size(), 500u);
  EXPECT_EQ(records[499].acc, "S500");
  EXPECT_EQ(text_of(out.get()), "\nNumber of sequences to align: 500");
}
