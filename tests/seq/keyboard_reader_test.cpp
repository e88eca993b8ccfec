#include "seq/keyboard_reader.hpp"

#include <cstdio>
#include <string>

#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

std::string stream_text(std::FILE* stream) {
  std::rewind(stream);
  std::string text;
  for (int ch = std::fgetc(stream); ch != EOF; ch = std::fgetc(stream)) text.push_back(static_cast<char>(ch));
  return text;
}

std::string ruler_text(int indent) {
  std::FILE* out = std::tmpfile();
  print_ruler(out, indent);
  std::string text = stream_text(out);
  std::fclose(out);
  return text;
}

const std::string kIntro =
    "\n Enter title for the sequence. Use underscores instead "
    "\n of blanks to separate words (eg. thioredoxin_human).\n"
    "\n>> "
    "\n Enter each amino acid (one letter code). "
    "\n You may enter up to 50 amino acids on one line. "
    "\n Press <return> to get a new prompt line."
    "\n When you are done enter $ and press <return>.\n";

// The ruler and prompt shown above every input line.
std::string line_prompt() { return ruler_text(3) + "\n>> "; }

struct KbdRead {
  int result = 0;
  SeqRecord seq;
  std::string prompts;   // written to the output stream
  std::string warnings;  // written to standard output
};

KbdRead type_in(const std::string& typed, int minRes = 3, int maxRes = 4000) {
  std::FILE* in = std::tmpfile();
  std::FILE* out = std::tmpfile();
  std::fputs(typed.c_str(), in);
  std::rewind(in);
  KbdRead read;
  read.seq.sRes = "CCC";
  read.seq.hasSRes = 1;
  read.seq.organism = "yeast";
  testing::internal::CaptureStdout();
  read.result = read_seq_kbd(in, out, read.seq, minRes, maxRes);
  read.warnings = testing::internal::GetCapturedStdout();
  read.prompts = stream_text(out);
  std::fclose(in);
  std::fclose(out);
  return read;
}

std::string kbd_warning(const std::string& message) { return error_frame(0, "read_seq_kbd", message); }

}  // namespace

TEST(PrintRuler, WritesThreeIndentedLinesWithoutAFinalLineEnd) {
  EXPECT_EQ(ruler_text(3),
            "\n            1         2         3         4         5\n"
            "   12345678901234567890123456789012345678901234567890\n"
            "            |         |         |         |         |");
  const std::string plain =
      "\n         1         2         3         4         5\n"
      "12345678901234567890123456789012345678901234567890\n"
      "         |         |         |         |         |";
  EXPECT_EQ(ruler_text(0), plain);
  EXPECT_EQ(ruler_text(-2), plain);
}

TEST(ReadSeqKbd, TakesASequenceAndShowsEveryPrompt) {
  KbdRead read = type_in("thioredoxin_human\nMKV\n$\n");
  EXPECT_EQ(read.result, 1);
  EXPECT_EQ(read.seq.title, "thioredoxin_human\n");
  EXPECT_EQ(read.seq.acc, "000000");
  EXPECT_EQ(read.seq.pRes, "MKV");
  EXPECT_EQ(read.seq.numRes, 3);
  EXPECT_EQ(read.prompts, kIntro + line_prompt() + line_prompt());
  EXPECT_EQ(read.warnings, "");
  // Fields the keyboard has nothing for are left alone.
  EXPECT_EQ(read.seq.sRes, "CCC");
  EXPECT_EQ(read.seq.hasSRes, 1);
  EXPECT_EQ(read.seq.organism, "yeast");
  EXPECT_TRUE(read.seq.resNums.empty());
}

TEST(ReadSeqKbd, LineHandling) {
  // Empty lines only bring the ruler and prompt back.
  KbdRead empty = type_in("t\n\n\nMK\nV$");
  EXPECT_EQ(empty.result, 1);
  EXPECT_EQ(empty.seq.pRes, "MKV");
  EXPECT_EQ(empty.prompts, kIntro + line_prompt() + line_prompt() + line_prompt() + line_prompt());
  // 120 letters on one line are all taken, with no extra prompt.
  const std::string letters = std::string(50, 'A') + std::string(50, 'C') + std::string(20, 'D');
  KbdRead wide = type_in("wide\n" + letters + "$\n");
  EXPECT_EQ(wide.result, 1);
  EXPECT_EQ(wide.seq.pRes, letters);
  EXPECT_EQ(wide.seq.numRes, 120);
  EXPECT_EQ(wide.prompts, kIntro + line_prompt());
}

TEST(ReadSeqKbd, WarningsShowTheTitleWithItsLineEnd) {
  KbdRead few = type_in("short_one\nMK$\n");
  EXPECT_EQ(few.result, 0);
  EXPECT_EQ(few.warnings, kbd_warning("Too few amino acids (Min = 3) in short_one\n\n"));
  EXPECT_EQ(few.seq.pRes, "MK");
  EXPECT_EQ(few.seq.numRes, 2);

  KbdRead lower = type_in("t\nmkv$\n");
  EXPECT_EQ(lower.result, 0);
  EXPECT_EQ(lower.warnings, kbd_warning("Illegal amino acid 'm' in t\n\n"));

  KbdRead blank = type_in("t\nMK V$\n");
  EXPECT_EQ(blank.result, 0);
  EXPECT_EQ(blank.warnings, kbd_warning("Illegal amino acid ' ' in t\n\n"));

  // End of input shows as the byte that EOF converts to.
  KbdRead cut = type_in("t\nMKV");
  EXPECT_EQ(cut.result, 0);
  EXPECT_EQ(cut.warnings, kbd_warning("Illegal amino acid '\xff' in t\n\n"));
  EXPECT_EQ(type_in("").warnings, kbd_warning("Illegal amino acid '\xff' in \n\n"));
}

TEST(ReadSeqKbd, ResidueLimit) {
  const std::string full(4000, 'G');
  KbdRead exact = type_in("t\n" + full + "$\n");
  EXPECT_EQ(exact.result, 1);
  EXPECT_EQ(exact.seq.numRes, 4000);

  KbdRead over = type_in("t\n" + full + "G$\n");
  EXPECT_EQ(over.result, 0);
  EXPECT_EQ(over.warnings, kbd_warning("Too many amino acids (Max = 4000) in t\n\n"));
}

TEST(ReadSeqKbd, LongTitleWordIsCutAndItsRestDropped) {
  const std::string word(300, 'x');
  KbdRead read = type_in(word + "\nMKV$");
  EXPECT_EQ(read.result, 1);
  EXPECT_EQ(read.seq.title, std::string(254, 'x') + "\n");
  EXPECT_EQ(read.seq.pRes, "MKV");
}
