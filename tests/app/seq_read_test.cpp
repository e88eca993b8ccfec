// Bad sequence files read through the read_seqs tool: each ends the run with
// its framed message, never with a crash.
#include <algorithm>
#include <string>

#include "support/test_support.hpp"

using testsupport::error_frame;
using testsupport::shell_quote;

namespace {

// count residues of one kind, in lines of 80.
std::string lines_of(char ch, int count) {
  std::string text;
  for (; count > 0; count -= 80) text += std::string(std::min(count, 80), ch) + "\n";
  return text;
}

std::string all_bytes() {
  std::string bytes;
  for (int k = 0; k < 256; ++k) bytes.push_back(static_cast<char>(k));
  return bytes;
}

}  // namespace

TEST(SeqRead, BadFilesEndTheRun) {
  const std::string tooMany = "Sequence has > 4000 amino acids";
  const std::string bytes = all_bytes();
  const struct {
    const char* what;
    std::string text;  // no file at all when empty
    std::string output;
  } cases[] = {
      {"a 10,000-character line", ">A x\n" + std::string(10000, 'A') + "\n", error_frame(1, "read_seq_data", tooMany)},
      {"5,000 residues", ">A x\n" + lines_of('G', 5000), error_frame(1, "read_seq_data", tooMany)},
      {"4,100 structure symbols", ">A x\n" + lines_of('G', 4000) + std::string(4100, 'H') + "\n",
       error_frame(1, "store_seq_data", "Primary/secondary structures do not line up.")},
      {"4,001 anchor symbols", ">A x\n" + lines_of('G', 4000) + lines_of('*', 4001),
       error_frame(1, "store_seq_data", "Primary/anchor symbols do not line up.")},
      // The code runs from the byte behind the first '>' to the zero byte.
      {"a binary file", bytes + bytes,
       error_frame(1, "read_seq_id_str", "Sequence ID code too long at: " + bytes.substr('>' + 1))},
      {"binary bytes without an entry", bytes.substr(0, '>') + "\n",
       "\nNumber of sequences to align: 0" + error_frame(1, "mget_seqs", "Must have 2 or more sequences to align.")},
      {"a 300-character file name that does not exist", "",
       error_frame(1, "mget_seqs", "Cannot open data file: " + std::string(300, 'f'))},
  };
  testsupport::TempDir dir;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::string name = "data.seq";
    if (c.text.empty())
      name = std::string(300, 'f');
    else
      dir.write(name, c.text);
    const auto result = testsupport::run_command(
        shell_quote(testsupport::tool_path("read_seqs")) + " 5 " + shell_quote(name), "", dir.path());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, c.output);
  }
}
