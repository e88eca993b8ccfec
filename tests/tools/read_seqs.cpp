// Reads a sequence file as a run does (at most 500 sequences of 3 to 4000
// residues) and prints one line per record, so that tests can see what was read.
//
// usage: read_seqs FORMAT FILE
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "seq/seq_record.hpp"

namespace {

std::string text_or_null(const std::optional<std::string>& text) { return text ? *text : "(null)"; }

// The first numRes characters, as far as the text has them.
std::string by_count(const std::string& text, int numRes) {
  return text.substr(0, static_cast<std::size_t>(std::max(numRes, 0)));
}

std::string by_count(const std::optional<std::string>& text, int numRes) {
  return text ? by_count(*text, numRes) : "(null)";
}

void print_summary(const SeqRecord& seq) {
  std::printf(
      "acc=%s|title=%s|numRes=%d|hasSRes=%d|hasURes=%d|pRes=%s|sRes=%s|uRes=%s|resNums=", text_or_null(seq.acc).c_str(),
      text_or_null(seq.title).c_str(), seq.numRes, seq.hasSRes, seq.hasURes, by_count(seq.pRes, seq.numRes).c_str(),
      by_count(seq.sRes, seq.numRes).c_str(), by_count(seq.uRes, seq.numRes).c_str());
  for (std::size_t k = 0; k < 4 && k < seq.resNums.size(); ++k) std::printf(k == 0 ? "%d" : ",%d", seq.resNums[k]);
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: read_seqs FORMAT FILE\n");
    return 2;
  }
  mget_seqs(argv[2], stdout, mySeq, std::atoi(argv[1]), kMaxSeqs, kMinRes, kMaxRes, multAlignNum);
  std::printf("\n");
  for (int k = 0; k < multAlignNum; ++k) print_summary(mySeq[k]);
  return 0;
}
