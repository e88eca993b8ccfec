// A writer of compressed PIR records for the tests: packed residues with
// repeat counts, and record texts coded with dictionary and space codes,
// number ranges and escapes, each step the inverse of one reading pass.
// Header-only, so test programs and test tools can both include it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "seq/pir_comp_reader.hpp"

namespace pir_comp_encoder {

inline constexpr int kFirstDigitCode = 26;
inline constexpr int kMaxRun = 255;  // a count of 255 would wrap to zero letters

// Packs 5-bit codes least significant bit first, into as few bytes as hold them.
inline std::string pack_codes(const std::vector<int>& codes) {
  std::string packed((codes.size() * 5 + 7) / 8, '\0');
  std::size_t bitPos = 0;
  for (const int code : codes) {
    for (int bit = 0; bit < 5; ++bit, ++bitPos) {
      if ((code >> bit) & 1) packed[bitPos / 8] = static_cast<char>(packed[bitPos / 8] | (1 << (bitPos % 8)));
    }
  }
  return packed;
}

inline void append_run(std::vector<int>& codes, char letter, int length) {
  if (length > 1) {
    std::vector<int> digits;
    for (int repeat = length - 1; repeat > 0; repeat /= 6) digits.insert(digits.begin(), repeat % 6);
    for (const int digit : digits) codes.push_back(kFirstDigitCode + digit);
  }
  codes.push_back(letter - 'A');
}

// Codes of upper-case residues: a run of one letter becomes base-6 repeat
// digits (most significant first) and the letter.
inline std::vector<int> residue_codes(const std::string& residues) {
  std::vector<int> codes;
  for (std::size_t i = 0; i < residues.size();) {
    const char letter = residues[i];
    if (letter < 'A' || letter > 'Z') throw std::invalid_argument("residue is not a capital letter");
    std::size_t end = i;
    while (end < residues.size() && residues[end] == letter) ++end;
    for (int left = static_cast<int>(end - i); left > 0; left -= kMaxRun) {
      append_run(codes, letter, left < kMaxRun ? left : kMaxRun);
    }
    i = end;
  }
  return codes;
}

struct DictEntry {
  std::string text;
  char prefix;
  unsigned char code;
};

// Every dictionary row a code can reach, with the prefix and code that reach it.
inline const std::vector<DictEntry>& dictionary_entries() {
  static const std::vector<DictEntry> entries = [] {
    std::vector<DictEntry> all;
    auto add = [&all](const char* text, char prefix, int code) {
      if (text != nullptr && text[0] != '\0') all.push_back({text, prefix, static_cast<unsigned char>(code)});
    };
    for (int code = 1; code <= 255; ++code) {
      add(rep_words[code - 1], '@', code);
      add(journals[code - 1], '#', code);
      add(journals[code + 255], '!', code);
    }
    for (int code = 1; code <= kJournalRows - 512; ++code) add(journals[code + 511], '$', code);
    return all;
  }();
  return entries;
}

// The longest dictionary row that the plain text holds at pos, if any.
inline const DictEntry* match_entry(const std::string& plain, std::size_t pos) {
  const DictEntry* best = nullptr;
  for (const DictEntry& entry : dictionary_entries()) {
    if (plain.compare(pos, entry.text.size(), entry.text) == 0 &&
        (best == nullptr || entry.text.size() > best->text.size()))
      best = &entry;
  }
  return best;
}

inline bool is_prefix(unsigned char ch) { return ch == '@' || ch == '!' || ch == '$' || ch == '#'; }

// Dictionary and space codes. A literal prefix character can't be followed by
// anything, and bytes from 128 up and zero bytes can't be written at all.
inline std::string encode_words(const std::string& plain, bool useDictionary = true) {
  std::string out;
  std::size_t i = 0;
  auto emit_unit = [&](bool spaced) {
    const DictEntry* entry = useDictionary ? match_entry(plain, i) : nullptr;
    if (entry != nullptr) {
      out.push_back(static_cast<char>(spaced ? 128 + entry->prefix : entry->prefix));
      out.push_back(static_cast<char>(entry->code));
      i += entry->text.size();
      return;
    }
    const auto ch = static_cast<unsigned char>(plain[i]);
    if (ch == 0 || ch >= 128) throw std::invalid_argument("byte can't be coded");
    if (is_prefix(ch) && i + 1 < plain.size()) throw std::invalid_argument("prefix character inside the text");
    out.push_back(static_cast<char>(spaced ? 128 + ch : ch));
    ++i;
  };
  while (i < plain.size()) {
    if (plain[i] == ' ') {
      if (++i == plain.size()) throw std::invalid_argument("text ends in a space");
      emit_unit(true);
    } else {
      emit_unit(false);
    }
  }
  return out;
}

inline bool is_digit(char ch) { return ch >= '0' && ch <= '9'; }

// The number at pos when it is written as "%u" of a 16-bit number; -1 otherwise.
inline long codable_number(const std::string& text, std::size_t pos, std::size_t& end) {
  end = pos;
  while (end < text.size() && is_digit(text[end])) ++end;
  if (end == pos || end - pos > 5 || (text[pos] == '0' && end - pos > 1)) return -1;
  const long value = std::stol(text.substr(pos, end - pos));
  if (value > 0xFFFF) return -1;
  return value;
}

// Number ranges "first-second" become a space and the two numbers' four bytes.
inline std::string encode_ranges(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t dash = 0;
    std::size_t end = 0;
    const long first = (i == 0 || !is_digit(text[i - 1])) ? codable_number(text, i, dash) : -1;
    const long second =
        (first >= 0 && dash < text.size() && text[dash] == '-') ? codable_number(text, dash + 1, end) : -1;
    if (second >= 0 && (end == text.size() || !is_digit(text[end]))) {
      out.push_back(' ');
      for (const long value : {first, second}) {
        out.push_back(static_cast<char>(value >> 8));
        out.push_back(static_cast<char>(value & 0xFF));
      }
      i = end;
    } else {
      out.push_back(text[i++]);
    }
  }
  return out;
}

// Escapes for the two bytes the line read and the escape pass reserve.
inline std::string encode_escapes(const std::string& text) {
  std::string out;
  for (const char ch : text) {
    if (ch == '\n') {
      out += "\xFE\xBF";
    } else if (static_cast<unsigned char>(ch) == 0xFE) {
      out += "\xFE\xFE";
    } else {
      out.push_back(ch);
    }
  }
  return out;
}

// The coded form of a plain record text, without its closing newline.
inline std::string encode_text(const std::string& plain) { return encode_escapes(encode_ranges(encode_words(plain))); }

struct Record {
  std::string title;
  std::string acc;
  std::string field3;
  std::string field4;
  std::vector<std::pair<std::string, std::string>> items;  // residue range, text
  int trailing = 0;
  std::string residues;
};

inline std::string plain_text(const Record& record) {
  std::string text = record.title + "~" + record.acc + "~" + record.field3 + "~" + record.field4 + "~";
  text.push_back(static_cast<char>(record.items.size() + 1));
  for (const auto& [range, itemText] : record.items) text += range + "~" + itemText + "~";
  return text + std::to_string(record.trailing);
}

// One record as it stands in the file: its leading newline, the header, the
// packed residues and the coded text. The newline that leads the next record
// ends the text; the last record's text ends with the file or a final newline.
inline std::string record_bytes(int count, const std::string& packed, const std::string& codedText,
                                unsigned char firstByte = 0) {
  const auto count16 = static_cast<std::uint16_t>(count);
  std::string bytes = "\n";
  bytes.push_back(static_cast<char>(firstByte));
  bytes.push_back(static_cast<char>(count16 >> 8));
  bytes.push_back(static_cast<char>(count16 & 0xFF));
  bytes.push_back(static_cast<char>(packed.size() >> 8));
  bytes.push_back(static_cast<char>(packed.size() & 0xFF));
  return bytes + packed + codedText;
}

inline std::string encode_record(const Record& record) {
  return record_bytes(static_cast<int>(record.residues.size()), pack_codes(residue_codes(record.residues)),
                      encode_text(plain_text(record)));
}

}  // namespace pir_comp_encoder
