#include "seq/keyboard_reader.hpp"

#include <cstdio>
#include <string>

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

namespace {

std::string golden(const std::string& name) {
  return testsupport::read_file(testsupport::source_path("tests/golden/seq/" + name + ".txt"));
}

std::string stream_text(std::FILE* stream) {
  std::rewind(stream);
  std::string text;
  for (int ch; (ch = std::fgetc(stream)) != EOF;) text.push_back(static_cast<char>(ch));
  return text;
}

std::string ruler_text(int indent) {
  const UniqueFile out(std::tmpfile());
  print_ruler(out.get(), indent);
  return stream_text(out.get());
}

// The ruler and prompt shown above every input line.
const std::string kLinePrompt = golden("ruler_indent3") + "\n>> ";

struct KbdRead {
  int result = 0;
  SeqRecord seq;
  std::string prompts;   // written to the output stream
  std::string warnings;  // written to standard output
};

KbdRead type_in(const std::string& typed) {
  const UniqueFile in(std::tmpfile()), out(std::tmpfile());
  std::fputs(typed.c_str(), in.get());
  std::rewind(in.get());
  KbdRead read;
  read.seq.sRes = "CCC";
  read.seq.hasSRes = 1;
  testing::internal::CaptureStdout();
  read.result = read_seq_kbd(in.get(), out.get(), read.seq, 3, 4000);
  read.warnings = testing::internal::GetCapturedStdout();
  read.prompts = stream_text(out.get());
  return read;
}

}  // namespace

TEST(PrintRuler, WritesThreeIndentedLinesWithoutAFinalLineEnd) {
  EXPECT_EQ(ruler_text(3), golden("ruler_indent3"));
  EXPECT_EQ(ruler_text(0), golden("ruler_plain"));
  EXPECT_EQ(ruler_text(-2), golden("ruler_plain"));
}

TEST(ReadSeqKbd, TakesASequenceAndShowsEveryPrompt) {
  KbdRead read = type_in("thioredoxin_human\nMKV\n$\n");
  EXPECT_EQ(read.result, 1);
  EXPECT_EQ(read.seq.title, "thioredoxin_human\n");
  EXPECT_EQ(read.seq.acc, "000000");
  EXPECT_EQ(read.seq.pRes, "MKV");
  EXPECT_EQ(read.prompts, golden("keyboard_intro") + kLinePrompt + kLinePrompt);
  EXPECT_EQ(read.warnings, "");
  EXPECT_EQ(read.seq.sRes, "CCC");  // fields the keyboard has nothing for are left alone
  EXPECT_EQ(read.seq.hasSRes, 1);

  // Empty lines only bring the ruler and prompt back.
  read = type_in("t\n\n\nMK\nV$");
  EXPECT_EQ(read.seq.pRes, "MKV");
  EXPECT_EQ(read.prompts, golden("keyboard_intro") + kLinePrompt + kLinePrompt + kLinePrompt + kLinePrompt);
  // 120 letters on one line are all taken, with no extra prompt; up to 4,000 in all.
  const std::string letters = std::string(50, 'A') + std::string(50, 'C') + std::string(20, 'D');
  read = type_in("wide\n" + letters + "$\n");
  EXPECT_EQ(read.seq.pRes, letters);
  EXPECT_EQ(read.prompts, golden("keyboard_intro") + kLinePrompt);
  EXPECT_EQ(type_in("t\n" + std::string(4000, 'G') + "$\n").seq.numRes, 4000);
  // A title word longer than 254 characters is cut and its rest dropped.
  read = type_in(std::string(300, 'x') + "\nMKV$");
  EXPECT_EQ(read.seq.title, std::string(254, 'x') + "\n");
  EXPECT_EQ(read.seq.pRes, "MKV");
}

TEST(ReadSeqKbd, WarningsShowTheTitleWithItsLineEnd) {
  const struct {
    std::string typed;
    std::string message;
  } cases[] = {
      {"short_one\nMK$\n", "Too few amino acids (Min = 3) in short_one\n\n"},
      {"t\n" + std::string(4001, 'G') + "$\n", "Too many amino acids (Max = 4000) in t\n\n"},
      {"t\nmkv$\n", "Illegal amino acid 'm' in t\n\n"},
      {"t\nMK V$\n", "Illegal amino acid ' ' in t\n\n"},
      // End of input shows as the byte that EOF converts to.
      {"t\nMKV", "Illegal amino acid '\xff' in t\n\n"},
      {"", "Illegal amino acid '\xff' in \n\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    const KbdRead read = type_in(c.typed);
    EXPECT_EQ(read.result, 0);
    EXPECT_EQ(read.warnings, testsupport::error_frame(0, "read_seq_kbd", c.message));
  }
}
