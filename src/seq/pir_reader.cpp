#include "seq/pir_reader.hpp"

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>

#include "shell/errors.hpp"
#include "shell/text_input.hpp"

namespace {

constexpr const char* kModule = "read_seq_pir";

// Appends ch and the characters after it up to the newline (consumed) or the
// end of input; returns whichever of the two ended the copy.
int copy_to_line_end(std::FILE* stream, int ch, std::string& text) {
  while (ch != '\n' && ch != EOF) {
    text.push_back(static_cast<char>(ch));
    ch = std::fgetc(stream);
  }
  return ch;
}

// The title follows "TITLE" on its line and goes on over every following line
// that begins with a space; the pieces are joined with one space each.
std::string read_title(std::FILE* stream) {
  std::string title;
  int ch = std::fgetc(stream);
  if (ch == ' ') {
    do {
      while (ch == ' ') ch = std::fgetc(stream);
      if (!title.empty()) title.push_back(' ');
      if (copy_to_line_end(stream, ch, title) == EOF) return title;
      ch = std::fgetc(stream);
    } while (ch == ' ');
  }
  // What ended the title belongs to the next line.
  if (ch != EOF) std::ungetc(ch, stream);
  return title;
}

// Reads the residue lines up to a token beginning with "///" or the end of
// input. Each line is a position token, then residues each behind one
// separator character. Returns 1, or -20 / -30 as they arise.
int read_residues(std::FILE* stream, std::string& aaBuf, int& count, int maxRes) {
  int result = 1;
  std::string token;
  while (read_word(stream, token)) {
    if (token.compare(0, 3, "///") == 0) break;
    for (;;) {
      const int separator = std::fgetc(stream);
      if (separator == '\n' || separator == EOF) break;
      const int residue = std::fgetc(stream);
      if (residue == '\n' || residue == EOF) break;
      if (count >= maxRes) {
        skip_line(stream, kLineRead);
        result = kReadTooMany;
        break;
      }
      aaBuf[static_cast<std::size_t>(count)] = static_cast<char>(std::toupper(residue));
      ++count;
      if (residue < 'A' || residue > 'Z') result = kReadBadResidue;
    }
  }
  return result;
}

}  // namespace

int read_seq_pir(std::FILE* stream, SeqRecord& seq, int minRes, int maxRes, const WarningSink& warnings) {
  seq.numRes = 0;
  if (!find_keyword(stream, "ENTRY")) return -1;

  std::string acc;
  if (!read_word(stream, acc)) {
    warn(warnings, kModule, "Unable to read accession for sequence\n");
    return 0;
  }
  seq.acc = acc;
  skip_line(stream, kLineRead);

  if (!find_keyword(stream, "TITLE")) return -1;
  seq.title = read_title(stream);

  if (!find_keyword(stream, "SEQUENCE")) return -1;
  skip_line(stream, kLineRead);  // rest of the SEQUENCE line
  skip_line(stream, kLineRead);  // the column ruler

  const int room = std::max(maxRes, 0);
  std::string aaBuf = checked_string(static_cast<std::size_t>(room), '\0', "read_seq_pir: aaBuf");
  int count = 0;
  int result = read_residues(stream, aaBuf, count, room);
  if (count < minRes) result = kReadTooFew;

  aaBuf.resize(static_cast<std::size_t>(count));
  seq.pRes = std::move(aaBuf);
  seq.numRes = count;
  seq.hasSRes = 0;
  seq.hasURes = 0;
  seq.sRes.reset();
  seq.uRes.reset();
  seq.organism.reset();
  seq.reference.reset();
  return result;
}
