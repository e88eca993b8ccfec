#include "shell/text_input.hpp"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "shell/limits.hpp"

UniqueFile open_file(const std::string& path, const char* mode) { return UniqueFile(std::fopen(path.c_str(), mode)); }

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

std::string as_c_text(std::string text) {
  const auto zero = text.find('\0');
  if (zero != std::string::npos) text.resize(zero);
  return text;
}

bool read_text_line(std::FILE* stream, std::string& line, int maxChars) {
  if (!read_line(stream, line, maxChars)) return false;
  line = as_c_text(std::move(line));
  return true;
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

namespace {

constexpr long long kDigitCap = 1LL << 40;  // past any int; digits beyond it change nothing

int held_in_int(long long value) {
  return static_cast<int>(value > INT_MAX ? INT_MAX : (value < INT_MIN ? INT_MIN : value));
}

}  // namespace

bool scan_int(std::string_view text, std::size_t& pos, int& value) {
  while (pos < text.size() && std::isspace(static_cast<unsigned char>(text[pos]))) ++pos;
  bool negative = false;
  if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) negative = text[pos++] == '-';
  if (pos >= text.size() || !std::isdigit(static_cast<unsigned char>(text[pos]))) return false;
  long long magnitude = 0;
  for (; pos < text.size() && std::isdigit(static_cast<unsigned char>(text[pos])); ++pos)
    if (magnitude < kDigitCap) magnitude = magnitude * 10 + (text[pos] - '0');
  value = held_in_int(negative ? -magnitude : magnitude);
  return true;
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
  long long magnitude = 0;
  for (; ch != EOF && std::isdigit(ch); ch = std::fgetc(stream))
    if (magnitude < kDigitCap) magnitude = magnitude * 10 + (ch - '0');
  if (ch != EOF) std::ungetc(ch, stream);
  value = held_in_int(negative ? -magnitude : magnitude);
  return true;
}

std::vector<std::string_view> split_lines(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    start = end + 1;
  }
  return lines;
}

bool read_text_file(const std::string& path, std::string& text, std::string& error) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) {
    error = "cannot read " + path + " (it is a directory); give a file";
    return false;
  }
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    error =
        "cannot read " + path + " (" + (errno != 0 ? std::strerror(errno) : "cannot open") + "); check the file name";
    return false;
  }
  std::ostringstream buffer;
  buffer << in.rdbuf();
  text = buffer.str();
  // Editors on some systems open a text file with a byte-order mark.
  if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) text.erase(0, 3);
  text = with_newlines(std::move(text));
  return true;
}

std::string with_newlines(std::string text) {
  if (text.find('\r') == std::string::npos) return text;
  std::string out;
  out.reserve(text.size());
  for (std::size_t k = 0; k < text.size(); ++k) {
    if (text[k] != '\r') {
      out.push_back(text[k]);
    } else if (k + 1 == text.size() || text[k + 1] != '\n') {
      out.push_back('\n');
    }
  }
  return out;
}

void show_prompt(std::FILE* stream, const char* text) { std::fprintf(stream, "%s%s", text, "\n>> "); }
