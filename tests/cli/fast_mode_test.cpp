// A whole run of the large-family mode: thousands of short sequences, which
// auto sends there, come back every one, in input order, residues intact,
// in rows of one width, and the same bytes on any workers and kernel.
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "support/test_support.hpp"

namespace {

using testsupport::RunResult;
using testsupport::TempDir;

struct Record {
  std::string id, text;
};

std::vector<Record> fasta_records(const std::string& text) {
  std::vector<Record> records;
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.empty()) continue;
    if (line[0] == '>')
      records.push_back({line.substr(1, line.find(' ') - 1), ""});
    else if (!records.empty())
      records.back().text += line;
  }
  return records;
}

// 3,000 sequences of about 40 residues in 30 families: each a copy of its
// family's root with a fifth of the residues changed, some dropped or added.
std::vector<Record> families() {
  const std::string letters = "ACDEFGHIKLMNPQRSTVWY";
  std::uint32_t state = 12345;
  auto next = [&state](std::uint32_t below) {
    state = state * 1103515245u + 12345u;
    return (state >> 8) % below;
  };
  std::vector<std::string> roots(30);
  for (std::string& root : roots)
    for (int k = 0; k < 40; ++k) root += letters[next(20)];
  std::vector<Record> records;
  for (int k = 0; k < 3000; ++k) {
    std::string seq;
    for (const char c : roots[static_cast<std::size_t>(k % 30)]) {
      const std::uint32_t r = next(100);
      if (r < 3) continue;
      seq += r < 20 ? letters[next(20)] : c;
      if (r > 97) seq += letters[next(20)];
    }
    records.push_back({"f" + std::to_string(k % 30) + "_" + std::to_string(k), seq});
  }
  return records;
}

std::string ungapped(const std::string& text) {
  std::string out;
  for (const char c : text)
    if (c != '-') out += c;
  return out;
}

TEST(FastMode, ThousandsOfSequencesComeBackWholeAndTheSameOnAnyWorkers) {
  const TempDir dir;
  const std::vector<Record> input = families();
  std::string text;
  for (const Record& r : input) text += ">" + r.id + "\n" + r.text + "\n";
  dir.write("in.fa", text);
  const std::string program = testsupport::shell_quote(RAVLIN_ALIGN_BIN);
  const RunResult one = testsupport::run_command(program + " -t 1 in.fa 2>note.txt", "", dir.path());
  ASSERT_EQ(one.status, 0);
  EXPECT_NE(dir.read("note.txt").find("mode fast (3000 sequences"), std::string::npos);
  const std::vector<Record> rows = fasta_records(one.out);
  ASSERT_EQ(rows.size(), input.size());
  for (std::size_t k = 0; k < rows.size(); ++k) {
    EXPECT_EQ(rows[k].id, input[k].id);
    EXPECT_EQ(rows[k].text.size(), rows.front().text.size()) << rows[k].id;
    EXPECT_EQ(ungapped(rows[k].text), input[k].text) << rows[k].id;
  }
  EXPECT_EQ(testsupport::run_command(program + " -q -t 2 in.fa", "", dir.path()).out, one.out);
  EXPECT_EQ(testsupport::run_command("RAVLIN_KERNEL=scalar " + program + " -q -t 2 in.fa", "", dir.path()).out,
            one.out);
}

}  // namespace
