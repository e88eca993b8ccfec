// Sections: the shared FASTA and Stockholm layouts first; then the four
// sequence parsers; before them all, the line and residue rules they share.
#include "seq/text_formats.hpp"

#include <cctype>
#include <cstdio>

#include "shell/text_input.hpp"

namespace {

bool is_blank(char ch) { return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\f' || ch == '\v'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

bool is_gap(char ch) { return ch == '-' || ch == '.' || ch == '~'; }

TextFault fault_at(int line, std::string message) { return TextFault{line, std::move(message)}; }

// The first word of a trimmed text, and the rest trimmed.
std::pair<std::string_view, std::string_view> first_word(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size() && !is_blank(text[end])) ++end;
  return {text.substr(0, end), trimmed(text.substr(end))};
}

// Splits a header (without its '>') into id and description.
void split_header(std::string_view header, TextEntry& entry) {
  entry.header = std::string(header);
  const auto [id, description] = first_word(trimmed(header));
  entry.id = std::string(id);
  entry.description = std::string(description);
}

// Adds one line's residues to entry: letters in any case, gaps and blanks
// skipped, '*' only as the very end of the sequence (checked by the caller).
bool add_residues(std::string_view line, int lineNo, TextEntry& entry, bool& ended, TextFault& fault) {
  for (const char ch : line) {
    if (is_blank(ch)) continue;
    if (is_gap(ch)) {
      entry.aligned.push_back('-');
      continue;
    }
    if (ended)
      return (fault = fault_at(lineNo, "sequence " + entry.id + " continues after its end mark '*'; remove the '*'"),
              false);
    if (ch == '*') {
      ended = true;
      continue;
    }
    if (!std::isalpha(static_cast<unsigned char>(ch)))
      return (fault = fault_at(lineNo, shown_byte(ch) + " in sequence " + entry.id +
                                           " is not a residue letter; protein sequences hold letters only"),
              false);
    entry.residues.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(ch))));
    entry.aligned.push_back(entry.residues.back());
  }
  return true;
}

bool check_id(const TextEntry& entry, TextFault& fault) {
  if (!entry.id.empty()) return true;
  fault = fault_at(entry.line, "a header without an id; give every sequence a name after '>'");
  return false;
}

void add_row(std::vector<StockholmRow>& rows, std::map<std::string, std::size_t>& index, std::string_view id,
             std::string_view text, int line) {
  const auto [at, added] = index.emplace(std::string(id), rows.size());
  if (added) rows.push_back({std::string(id), "", line});
  rows[at->second].text += text;
}

}  // namespace

std::string shown_byte(char ch) {
  const auto byte = static_cast<unsigned char>(ch);
  if (std::isprint(byte)) return std::string("'") + ch + "'";
  char text[16];
  std::snprintf(text, sizeof text, "byte 0x%02X", byte);
  return text;
}

// ---- the shared layouts ----

bool read_fasta_entries(std::string_view text, std::vector<FastaEntry>& entries, TextFault& fault) {
  const std::vector<std::string_view> lines = split_lines(text);
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const int lineNo = static_cast<int>(k) + 1;
    const std::string_view line = lines[k];
    if (!line.empty() && line[0] == '>') {
      FastaEntry entry;
      entry.head.line = lineNo;
      split_header(line.substr(1), entry.head);
      if (!check_id(entry.head, fault)) return false;
      entries.push_back(std::move(entry));
      continue;
    }
    if (trimmed(line).empty() || line[0] == ';') continue;
    if (entries.empty())
      return (fault = fault_at(lineNo, "residues before the first header; a FASTA file starts with a '>' line"), false);
    entries.back().data.push_back({lineNo, line});
  }
  return true;
}

namespace {

const StockholmRow* find_row(const std::vector<StockholmRow>& rows, const std::map<std::string, std::size_t>& index,
                             const std::string& id) {
  const auto found = index.find(id);
  return found == index.end() ? nullptr : &rows[found->second];
}

}  // namespace

const StockholmRow* StockholmRows::seq_row(const std::string& id) const { return find_row(seqs, seqIndex, id); }
const StockholmRow* StockholmRows::ss_row(const std::string& id) const { return find_row(ss, ssIndex, id); }

bool read_stockholm_rows(std::string_view text, StockholmRows& rows, TextFault& fault) {
  const std::vector<std::string_view> lines = split_lines(text);
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const int lineNo = static_cast<int>(k) + 1;
    const std::string_view line = trimmed(lines[k]);
    if (line.starts_with("//")) break;
    if (line.empty()) continue;
    const auto [name, rest] = first_word(line);
    if (name == "#=GS") {
      const auto [id, tagged] = first_word(rest);
      const auto [tag, text] = first_word(tagged);
      if (tag != "DE" || text.empty()) continue;
      std::string& description = rows.descriptions[std::string(id)];
      description += (description.empty() ? "" : " ") + std::string(text);
      continue;
    }
    if (name == "#=GR") {
      const auto [id, tagged] = first_word(rest);
      const auto [tag, states] = first_word(tagged);
      if (tag != "SS") continue;
      if (states.empty())
        return (
            fault = fault_at(lineNo, "#=GR " + std::string(id) + " SS without states; give them or remove the line"),
            false);
      add_row(rows.ss, rows.ssIndex, id, states, lineNo);
      continue;
    }
    if (line[0] == '#') continue;
    if (rest.empty()) return (fault = fault_at(lineNo, "a sequence line needs a name and its aligned residues"), false);
    add_row(rows.seqs, rows.seqIndex, name, rest, lineNo);
  }
  return true;
}

TextFault ss_columns_fault(const StockholmRow& ss, std::size_t seqColumns) {
  return fault_at(ss.line, "the SS line of " + ss.id + " has " + std::to_string(ss.text.size()) +
                               " columns but its aligned sequence has " + std::to_string(seqColumns) +
                               "; give one SS column per alignment column");
}

// ---- the sequence parsers ----

bool read_fasta_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault) {
  std::vector<FastaEntry> read;
  TextFault layoutFault;
  const bool whole = read_fasta_entries(text, read, layoutFault);
  for (FastaEntry& entry : read) {
    bool ended = false;
    for (const DataLine& data : entry.data)
      if (!add_residues(data.text, data.line, entry.head, ended, fault)) return false;
    entries.push_back(std::move(entry.head));
  }
  if (!whole) fault = layoutFault;
  return whole;
}

bool is_pir_annotation(std::string_view line) { return line.starts_with("C;") || line.starts_with("R;"); }

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
    if (trimmed(line).empty() || is_pir_annotation(line)) continue;
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
  StockholmRows rows;
  if (!read_stockholm_rows(text, rows, fault)) return false;
  for (const StockholmRow& row : rows.seqs) {
    entries.emplace_back();
    TextEntry& entry = entries.back();
    entry.id = row.id;
    const auto described = rows.descriptions.find(row.id);
    if (described != rows.descriptions.end()) entry.description = described->second;
    entry.header = row.id + (entry.description.empty() ? "" : " " + entry.description);
    entry.line = row.line;
    const StockholmRow* ss = rows.ss_row(row.id);
    if (ss != nullptr && ss->text.size() != row.text.size())
      return (fault = ss_columns_fault(*ss, row.text.size()), false);
    bool ended = false;
    if (!add_residues(row.text, row.line, entry, ended, fault)) return false;
    if (ss == nullptr) continue;
    // The states of the residue columns: those add_residues kept.
    for (std::size_t c = 0; c < row.text.size(); ++c)
      if (!is_gap(row.text[c]) && !is_blank(row.text[c]) && row.text[c] != '*') entry.structure.push_back(ss->text[c]);
  }
  return true;
}

namespace {

bool is_clustal_header(std::string_view line) {
  return line.starts_with("CLUSTAL") || line.starts_with("MUSCLE") || line.starts_with("PROBCONS");
}

// A row's text without the residue count some writers put after it.
std::string_view without_count(std::string_view row) {
  const std::size_t blank = row.find_last_of(" \t");
  if (blank == std::string_view::npos) return row;
  const std::string_view last = row.substr(blank + 1);
  if (last.find_first_not_of("0123456789") != std::string_view::npos) return row;
  return trimmed(row.substr(0, blank));
}

std::size_t columns_of(std::string_view row) {
  std::size_t columns = 0;
  for (const char ch : row) columns += is_blank(ch) ? 0 : 1;
  return columns;
}

}  // namespace

bool read_clustal_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault) {
  const std::vector<std::string_view> lines = split_lines(text);
  std::vector<StockholmRow> rows;
  std::map<std::string, std::size_t> index;
  bool headed = false;
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const int lineNo = static_cast<int>(k) + 1;
    const std::string_view line = lines[k];
    if (trimmed(line).empty()) continue;
    if (!headed) {
      if (!is_clustal_header(line))
        return (fault = fault_at(lineNo, "a Clustal file starts with its header line, such as 'CLUSTAL W'"), false);
      headed = true;
      continue;
    }
    if (is_blank(line[0])) continue;  // a block's conservation line
    const auto [name, rest] = first_word(trimmed(line));
    if (rest.empty()) return (fault = fault_at(lineNo, "a Clustal line needs a name and its aligned residues"), false);
    add_row(rows, index, name, without_count(rest), lineNo);
  }
  for (const StockholmRow& row : rows) {
    const std::size_t columns = columns_of(row.text), first = columns_of(rows.front().text);
    if (columns != first)
      return (fault = fault_at(row.line, "the row of " + row.id + " has " + std::to_string(columns) +
                                             " columns but that of " + rows.front().id + " has " +
                                             std::to_string(first) + "; give every row all the blocks' columns"),
              false);
    entries.emplace_back();
    TextEntry& entry = entries.back();
    entry.id = row.id;
    entry.header = row.id;
    entry.line = row.line;
    bool ended = false;
    if (!add_residues(row.text, row.line, entry, ended, fault)) return false;
  }
  return true;
}
