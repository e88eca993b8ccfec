#include "shell/text_input.hpp"

#include <cctype>
#include <climits>

#include "shell/limits.hpp"

UniqueFile open_file(const std::string& path, const char* mode) {
  return UniqueFile(std::fopen(path.c_str(), mode));
}

bool read_word(std::FILE* stream, std::string& word) {
  word.clear();
  int ch = std::fgetc(stream);
  while (ch != EOF && std::isspace(ch)) ch = std::fgetc(stream);
  if (ch == EOF) return false;
  while (ch != EOF && !std::isspace(ch)) {
    word.push_back(static_cast<char>(ch));
    ch = std::fgetc(stream);
  }
  if (ch != EOF) std::ungetc(ch, stream);
  return true;
}

bool read_line(std::FILE* stream, std::string& line, int maxChars) {
  line.clear();
  while (static_cast<int>(line.size()) < maxChars) {
    const int ch = std::fgetc(stream);
    if (ch == EOF) break;
    line.push_back(static_cast<char>(ch));
    if (ch == '\n') break;
  }
  return !line.empty();
}

void skip_line(std::FILE* stream, int maxChars) {
  for (int count = 0; count < maxChars; ++count) {
    const int ch = std::fgetc(stream);
    if (ch == EOF || ch == '\n') return;
  }
}

bool find_keyword(std::FILE* stream, const char* keyword) {
  std::string token;
  while (read_word(stream, token)) {
    if (token == keyword) return true;
    skip_line(stream, kLineRead);
  }
  return false;
}

bool scan_int(std::FILE* stream, int& value) {
  int ch = std::fgetc(stream);
  while (ch != EOF && std::isspace(ch)) ch = std::fgetc(stream);
  const bool negative = ch == '-';
  if (ch == '-' || ch == '+') ch = std::fgetc(stream);
  if (ch == EOF || !std::isdigit(ch)) {
    if (ch != EOF) std::ungetc(ch, stream);
    return false;
  }
  constexpr long long kCap = 1LL << 40;  // past any int; digits beyond it change nothing
  long long magnitude = 0;
  for (; ch != EOF && std::isdigit(ch); ch = std::fgetc(stream))
    if (magnitude < kCap) magnitude = magnitude * 10 + (ch - '0');
  if (ch != EOF) std::ungetc(ch, stream);
  const long long signedValue = negative ? -magnitude : magnitude;
  value = static_cast<int>(signedValue > INT_MAX ? INT_MAX : (signedValue < INT_MIN ? INT_MIN : signedValue));
  return true;
}
