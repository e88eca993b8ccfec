// Sections: the three parsers at the end; before them the line splitting and
// the residue rules they share.
#include "seq/text_formats.hpp"

#include <cctype>
#include <cstdio>
#include <map>

#include "shell/text_input.hpp"

namespace {

bool is_blank(char ch) { return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\f' || ch == '\v'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

bool is_gap(char ch) { return ch == '-' || ch == '.' || ch == '~'; }

std::string shown_char(char ch) {
  const auto byte = static_cast<unsigned char>(ch);
  if (std::isprint(byte)) return std::string("'") + ch + "'";
  char text[16];
  std::snprintf(text, sizeof text, "byte 0x%02X", byte);
  return text;
}

TextFault fault_at(int line, std::string message) { return TextFault{line, std::move(message)}; }

// Splits a header (without its '>') into id and description.
void split_header(std::string_view header, TextEntry& entry) {
  entry.header = std::string(header);
  const std::string_view rest = trimmed(header);
  std::size_t end = 0;
  while (end < rest.size() && !is_blank(rest[end])) ++end;
  entry.id = std::string(rest.substr(0, end));
  entry.description = std::string(trimmed(rest.substr(end)));
}

// Adds one line's residues to entry: letters in any case, gaps and blanks
// skipped, '*' only as the very end of the sequence (checked by the caller).
bool add_residues(std::string_view line, int lineNo, TextEntry& entry, bool& ended, TextFault& fault) {
  for (const char ch : line) {
    if (is_blank(ch) || is_gap(ch)) continue;
    if (ended)
      return (fault = fault_at(lineNo, "sequence " + entry.id + " continues after its end mark '*'; remove the '*'"),
              false);
    if (ch == '*') {
      ended = true;
      continue;
    }
    if (!std::isalpha(static_cast<unsigned char>(ch)))
      return (fault = fault_at(lineNo, shown_char(ch) + " in sequence " + entry.id +
                                           " is not a residue letter; protein sequences hold letters only"),
              false);
    entry.residues.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(ch))));
  }
  return true;
}

bool check_id(const TextEntry& entry, TextFault& fault) {
  if (!entry.id.empty()) return true;
  fault = fault_at(entry.line, "a header without an id; give every sequence a name after '>'");
  return false;
}

}  // namespace

bool read_fasta_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault) {
  const std::vector<std::string_view> lines = split_lines(text);
  bool ended = false;
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const int lineNo = static_cast<int>(k) + 1;
    const std::string_view line = lines[k];
    if (!line.empty() && line[0] == '>') {
      entries.emplace_back();
      entries.back().line = lineNo;
      split_header(line.substr(1), entries.back());
      if (!check_id(entries.back(), fault)) return false;
      ended = false;
      continue;
    }
    if (trimmed(line).empty() || line[0] == ';') continue;
    if (entries.empty())
      return (fault = fault_at(lineNo, "residues before the first header; a FASTA file starts with a '>' line"), false);
    if (!add_residues(line, lineNo, entries.back(), ended, fault)) return false;
  }
  return true;
}

bool read_pir_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault) {
  const std::vector<std::string_view> lines = split_lines(text);
  bool ended = true;
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const int lineNo = static_cast<int>(k) + 1;
    const std::string_view line = lines[k];
    if (!line.empty() && line[0] == '>') {
      const std::size_t semi = line.find(';');
      if (semi == std::string_view::npos || semi != 3)
        return (fault = fault_at(lineNo, "a PIR header reads '>P1;ID' (a type such as P1 or F1, then ';')"), false);
      if (!ended)
        return (fault = fault_at(lineNo, "sequence " + entries.back().id + " has no end mark '*'; end it with '*'"),
                false);
      entries.emplace_back();
      TextEntry& entry = entries.back();
      entry.line = lineNo;
      split_header(line.substr(semi + 1), entry);
      if (!check_id(entry, fault)) return false;
      // The line after the header is the description.
      if (k + 1 < lines.size()) entry.description = std::string(trimmed(lines[++k]));
      entry.header = entry.id + (entry.description.empty() ? "" : " " + entry.description);
      ended = false;
      continue;
    }
    if (trimmed(line).empty()) continue;
    if (entries.empty())
      return (fault = fault_at(lineNo, "residues before the first header; a PIR file starts with a '>P1;' line"),
              false);
    if (!add_residues(line, lineNo, entries.back(), ended, fault)) return false;
  }
  if (!entries.empty() && !ended)
    return (fault = fault_at(static_cast<int>(lines.size()),
                             "sequence " + entries.back().id + " has no end mark '*'; end it with '*'"),
            false);
  return true;
}

bool read_stockholm_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault) {
  const std::vector<std::string_view> lines = split_lines(text);
  std::map<std::string, std::size_t> byId;
  std::map<std::string, std::string> rows, structure;
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const int lineNo = static_cast<int>(k) + 1;
    const std::string_view line = trimmed(lines[k]);
    if (line.empty() || line.starts_with("# STOCKHOLM")) continue;
    if (line.starts_with("//")) break;
    TextEntry fields;
    split_header(line, fields);
    if (line.starts_with("#=GR")) {
      TextEntry rest;
      split_header(fields.description, rest);
      TextEntry value;
      split_header(rest.description, value);
      if (value.id == "SS") structure[rest.id] += value.description;
      continue;
    }
    if (line[0] == '#') continue;
    if (fields.description.empty())
      return (fault = fault_at(lineNo, "a sequence line needs a name and its aligned residues"), false);
    if (byId.emplace(fields.id, entries.size()).second) {
      entries.emplace_back();
      entries.back().id = fields.id;
      entries.back().header = fields.id;
      entries.back().line = lineNo;
    }
    rows[fields.id] += fields.description;
  }
  for (TextEntry& entry : entries) {
    const std::string& row = rows[entry.id];
    const auto ss = structure.find(entry.id);
    if (ss != structure.end() && ss->second.size() != row.size())
      return (fault = fault_at(entry.line, "the SS line of " + entry.id + " has " + std::to_string(ss->second.size()) +
                                               " columns, its sequence " + std::to_string(row.size())),
              false);
    bool ended = false;
    std::string kept;
    for (std::size_t c = 0; c < row.size(); ++c) {
      if (is_gap(row[c]) || is_blank(row[c]) || row[c] == '*') continue;
      if (ss != structure.end()) kept.push_back(ss->second[c]);
    }
    if (!add_residues(row, entry.line, entry, ended, fault)) return false;
    entry.structure = kept;
  }
  return true;
}
