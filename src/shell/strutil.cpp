#include "shell/strutil.hpp"

#include <algorithm>
#include <string>

#include "shell/errors.hpp"

void to_upper(const char* src, char* dst) {
  for (;; ++src, ++dst) {
    const char ch = *src;
    *dst = (ch >= 'a' && ch <= 'z') ? static_cast<char>(ch - 'a' + 'A') : ch;
    if (ch == '\0') return;
  }
}

int remove_blanks(const char* src, int len, char* dst) {
  int kept = 0;
  for (int i = 0; i < len; ++i) {
    const char ch = src[i];
    if (ch != '\t' && ch != ' ' && ch != '\n') dst[kept++] = ch;
  }
  dst[kept] = '\0';
  return kept;
}

int count_chars_in_string(const char* text, int len, char ch) {
  int count = 0;
  for (int i = 0; i < len; ++i)
    if (text[i] == ch) ++count;
  return count;
}

void str_match_blanks(const char* inStr, int inLen, const char* pattern, int patLen, char blankCh, char* out) {
  // The check always counts ' ': every caller passes ' ' as blankCh.
  if (patLen - count_chars_in_string(pattern, patLen, ' ') != inLen) {
    const std::string shown(inStr, static_cast<std::size_t>(std::max(inLen, 0)));
    raise_failure("str_match_blanks", "Program check: inStr = %s", shown.c_str());
  }
  int j = 0;
  for (int i = 0; i < patLen; ++i) out[i] = (pattern[i] == blankCh) ? blankCh : inStr[j++];
}

void str_scan(char* text, int len, char from, char to) {
  if (from == to) return;  // nothing would change
  for (int i = 0; i < len; ++i)
    if (text[i] == from) text[i] = to;
}

std::string fit_text(std::string_view text, int n, char filler, const char* module) {
  const std::size_t len = n > 0 ? static_cast<std::size_t>(n) : 0;
  std::string fitted = checked_string(len, filler, module);
  text.substr(0, len).copy(fitted.data(), len);
  return fitted;
}
