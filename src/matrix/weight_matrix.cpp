// Sections: read_matrix_file at the end; before it, the line and token
// helpers, then the label line and the rows of scores.
#include "matrix/weight_matrix.hpp"

#include <cctype>
#include <climits>
#include <vector>

#include "shell/errors.hpp"
#include "shell/limits.hpp"
#include "shell/text_input.hpp"

namespace {

const char* const kModule = "read_matrix_file";
constexpr int kMinScore = -50;
constexpr int kMaxScore = 50;
constexpr int kLetters = 26;

// The first whitespace-delimited token of a line, empty when there is none.
std::string first_token(const std::string& line) {
  std::size_t start = 0;
  while (start < line.size() && std::isspace(static_cast<unsigned char>(line[start]))) ++start;
  std::size_t end = start;
  while (end < line.size() && !std::isspace(static_cast<unsigned char>(line[end]))) ++end;
  return line.substr(start, end - start);
}

// Where a row's tokens lie: split at single blanks only, so tabs stay inside
// a token and the line's newline stays on the last one.
struct Token {
  std::size_t start;
  std::size_t length;
};

std::vector<Token> split_at_blanks(const std::string& line) {
  std::vector<Token> tokens;
  std::size_t pos = 0;
  while (pos < line.size()) {
    while (pos < line.size() && line[pos] == ' ') ++pos;
    if (pos == line.size()) break;
    const std::size_t start = pos;
    while (pos < line.size() && line[pos] != ' ') ++pos;
    tokens.push_back({start, pos - start});
  }
  return tokens;
}

// A decimal integer scan of a token.
bool scan_int(const std::string& token, int& value) {
  std::size_t pos = 0;
  return ::scan_int(std::string_view(token), pos, value);
}

// The number of codes: a word scan converted as atoi would.
int read_code_count(std::FILE* stream) {
  std::string word;
  read_word(stream, word);
  int count = 0;
  scan_int(word, count);
  return count;
}

// Skips blank lines and '#' comment lines up to the label line, which only
// serves the human reader. The line buffer keeps the label line.
void skip_to_label_line(std::FILE* stream, std::string& lineBuf) {
  std::string line;
  while (read_text_line(stream, line, kLineRead)) {
    lineBuf = line;
    const std::string token = first_token(line);
    if (token.empty() || token[0] == '#') continue;
    return;
  }
  raise_failure(kModule, "Unexpected EOF, no amino acid label line found");
}

// The table index of a row's label token; the label must be one letter.
int row_label_index(const std::string& line, const std::vector<Token>& tokens) {
  if (tokens.empty()) raise_failure(kModule, "Illegal amino acid character: %s", line.c_str());
  const std::string label = line.substr(tokens[0].start, tokens[0].length);
  if (label.size() > 1) raise_failure(kModule, "Illegal amino acid label length: %s", label.c_str());
  const int index = std::toupper(static_cast<unsigned char>(label[0])) - 'A';
  if (index < 0 || index >= kLetters) raise_failure(kModule, "Illegal amino acid character: %s", line.c_str());
  return index;
}

// Reads row r's r + 1 scores into the table, mirrored across the diagonal.
// A token without a number keeps the previous cell's value (lastValue).
void read_row_scores(const std::string& line, const std::vector<Token>& tokens, const std::vector<int>& labels, int r,
                     int& lastValue, ScoreTable& matrix) {
  std::size_t next = 1;
  for (int j = 0; j <= r; ++j, ++next) {
    if (next >= tokens.size()) raise_failure(kModule, "Trouble reading matrix at %s", line.c_str());
    scan_int(line.substr(tokens[next].start, tokens[next].length), lastValue);
    if (lastValue < kMinScore) raise_failure(kModule, "Min score violated at %s", line.c_str());
    if (lastValue > kMaxScore) raise_failure(kModule, "Max score violated at %s", line.c_str());
    matrix[labels[r] * kTableDim + labels[j]] = lastValue;
    matrix[labels[j] * kTableDim + labels[r]] = lastValue;
  }
  // A word after the scores is a remark; a number means the row is too long.
  int extra = 0;
  if (next < tokens.size() && scan_int(line.substr(tokens[next].start, tokens[next].length), extra))
    raise_failure(kModule, "Input check, line too long at %s", line.c_str());
}

}  // namespace

int read_matrix_file(std::FILE* stream, ScoreTable& matrix) {
  matrix.fill(0);
  // The line buffer as the messages show it: nothing before the label line,
  // afterwards the last line read, cut after its label once it was parsed.
  std::string lineBuf;

  const int count = read_code_count(stream);
  if (count < 1 || count > kTableDim) raise_failure(kModule, "Illegal number of codes: %s", lineBuf.c_str());

  skip_to_label_line(stream, lineBuf);

  std::vector<int> labels(static_cast<std::size_t>(count), 0);
  int lastValue = 0;
  std::string line;
  bool atEof = !read_text_line(stream, line, kLineRead);
  for (int r = 0; r < count; ++r) {
    if (atEof) raise_failure(kModule, "Unexpected EOF at: %s, count = %d", lineBuf.c_str(), r);
    lineBuf = line;
    const std::vector<Token> tokens = split_at_blanks(line);
    labels[static_cast<std::size_t>(r)] = row_label_index(line, tokens);
    read_row_scores(line, tokens, labels, r, lastValue, matrix);
    lineBuf.resize(tokens[0].start + tokens[0].length);
    // Also after the last row: the line that follows a section is dropped.
    atEof = !read_text_line(stream, line, kLineRead);
  }
  return 1;
}
