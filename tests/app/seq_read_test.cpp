// Reading whole sequence files through the read_seqs tool: what a run sees,
// and how bad files end it.
#include <algorithm>
#include <string>

#include "support/test_support.hpp"

using testsupport::error_frame;
using testsupport::run_command;
using testsupport::shell_quote;
using testsupport::TempDir;
using testsupport::tool_path;

namespace {

testsupport::RunResult read_seqs(const TempDir& dir, const std::string& fname, int format = 5) {
  return run_command(shell_quote(tool_path("read_seqs")) + " " + std::to_string(format) + " " + shell_quote(fname), "",
                     dir.path());
}

// count residues of one kind, in lines of 80.
std::string lines_of(char ch, int count) {
  std::string text;
  for (; count > 0; count -= 80) text += std::string(std::min(count, 80), ch) + "\n";
  return text;
}

void expect_fatal(const testsupport::RunResult& result, const std::string& module, const std::string& message,
                  const std::string& before = "") {
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, before + error_frame(1, module, message));
}

}  // namespace

TEST(SeqRead, ReadsAWholeTextFile) {
  TempDir dir;
  dir.write("two.seq",
            "header text\n>TRX1 thioredoxin [101-120]\nMVKQIESKTA\nCCCCBBBBBH\n-----*****\n\n"
            ">title untitled one\ngailv\n");
  const auto result = read_seqs(dir, "two.seq");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out,
            "\nNumber of sequences to align: 2\n"
            "acc=TRX1|title=thioredoxin [101-120]|numRes=10|hasSRes=1|hasURes=1|pRes=MVKQIESKTA|sRes=CCCCBBBBBH|"
            "uRes=-----*****|resNums=0,101,102,103\n"
            "acc=|title=untitled one|numRes=5|hasSRes=0|hasURes=0|pRes=GAILV|sRes=XXXXX|uRes=-----|resNums=0,1,2,3\n");
}

TEST(SeqRead, OverlongInputEndsTheRun) {
  TempDir dir;
  const std::string tooMany = "Sequence has > 4000 amino acids";
  dir.write("line.seq", ">A x\n" + std::string(10000, 'A') + "\n");
  expect_fatal(read_seqs(dir, "line.seq"), "read_seq_data", tooMany);
  dir.write("long.seq", ">A x\n" + lines_of('G', 5000));
  expect_fatal(read_seqs(dir, "long.seq"), "read_seq_data", tooMany);
  dir.write("struct.seq", ">A x\n" + lines_of('G', 4000) + std::string(4100, 'H') + "\n");
  expect_fatal(read_seqs(dir, "struct.seq"), "store_seq_data", "Primary/secondary structures do not line up.");
  dir.write("anchor.seq", ">A x\n" + lines_of('G', 4000) + lines_of('*', 4001));
  expect_fatal(read_seqs(dir, "anchor.seq"), "store_seq_data", "Primary/anchor symbols do not line up.");
}

TEST(SeqRead, BadFilesEndTheRun) {
  TempDir dir;
  std::string bytes;
  for (int k = 0; k < 256; ++k) bytes.push_back(static_cast<char>(k));
  dir.write("binary.seq", bytes + bytes);
  // The code runs from the byte behind the first '>' to the zero byte.
  expect_fatal(read_seqs(dir, "binary.seq"), "read_seq_id_str",
               "Sequence ID code too long at: " + bytes.substr('>' + 1));
  dir.write("noentry.seq", bytes.substr(0, '>') + "\n");
  expect_fatal(read_seqs(dir, "noentry.seq"), "mget_seqs", "Must have 2 or more sequences to align.",
               "\nNumber of sequences to align: 0");

  const std::string longName(300, 'f');
  expect_fatal(read_seqs(dir, longName), "mget_seqs", "Cannot open data file: " + longName);
  expect_fatal(read_seqs(dir, "missing.seq"), "mget_seqs", "Cannot open data file: missing.seq");
  dir.write("ok.seq", ">A x\nMKV\n>B y\nMKV\n");
  expect_fatal(read_seqs(dir, "ok.seq", 7), "read_seq", "Illegal sequence format: 7\n");
}
