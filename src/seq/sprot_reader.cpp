#include "seq/sprot_reader.hpp"

#include <cctype>
#include <string>

#include "shell/errors.hpp"
#include "shell/text_input.hpp"

namespace {

constexpr const char* kModule = "read_seq_sprot";
constexpr int kSprotMaxRes = 4000;
constexpr int kSprotMinRes = 3;
constexpr std::size_t kAccLen = 6;

void skip_spaces(std::FILE* stream) {
  int ch = std::fgetc(stream);
  while (ch == ' ') ch = std::fgetc(stream);
  if (ch != EOF) std::ungetc(ch, stream);
}

// Collects the letters behind the SQ line up to the first '/' or the end of
// input. Returns 1, or -20 for a stray character, -30 when the letters do not
// fit (a later -30 replaces a -20).
int read_sprot_residues(std::FILE* stream, std::string& residues) {
  int result = 1;
  for (int ch = std::fgetc(stream); ch != '/' && ch != EOF; ch = std::fgetc(stream)) {
    if (std::isalpha(ch)) {
      if (static_cast<int>(residues.size()) >= kSprotMaxRes) return kReadTooMany;
      residues.push_back(static_cast<char>(std::toupper(ch)));
    } else if (ch != ' ' && ch != '\n') {
      result = kReadBadResidue;
    }
  }
  return result;
}

}  // namespace

int read_seq_sprot(std::FILE* stream, SeqRecord& seq, const WarningSink& warnings) {
  seq.numRes = 0;
  // Switched off: removing this report switches the format on.
  raise_failure(kModule, "Not supporting swiss-prot at this time\n");
  return parse_seq_sprot(stream, seq, warnings);
}

int parse_seq_sprot(std::FILE* stream, SeqRecord& seq, const WarningSink& warnings) {
  if (!find_keyword(stream, "ID")) return -1;
  std::string line;
  if (!read_line(stream, line, kLineRead)) {
    warn(warnings, kModule, "Unable to read accession for sequence\n");
    return 0;
  }
  // The accession is the first six characters behind "ID", blanks and all.
  const std::string acc = line.substr(0, kAccLen);
  seq.acc = acc;

  if (!find_keyword(stream, "DE")) return -1;
  skip_spaces(stream);
  if (!read_line(stream, line, kLineRead)) {
    warn(warnings, kModule, "Unable to read title for sequence %s\n", acc.c_str());
    return 0;
  }
  seq.title = line;

  if (!find_keyword(stream, "SQ")) return -1;
  skip_line(stream, kLineRead);

  std::string residues;
  const int result = read_sprot_residues(stream, residues);
  seq.pRes = residues;
  seq.numRes = static_cast<int>(residues.size());
  return seq.numRes < kSprotMinRes ? kReadTooFew : result;
}
