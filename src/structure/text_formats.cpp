// Structure readers for the line-based formats: FASTA-style state strings,
// Stockholm #=GR SS lines and PSIPRED predictions (.ss2 and .horiz). FASTA
// and Stockholm are laid out by the sequence parsers of seq/text_formats.
//
// Sections: shared FASTA-style reading; FASTA-style states; Stockholm; PSIPRED.
#include "seq/text_formats.hpp"

#include <cctype>
#include <sstream>

#include "structure/structure_formats.hpp"

namespace {

constexpr std::string_view kStateLetters = "HGIEBTSPC- Xhgiebtspcx";

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  const std::size_t last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

std::string_view trim_end(std::string_view text) {
  const std::size_t last = text.find_last_not_of(" \t");
  return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

}  // namespace

// ---- shared FASTA-style reading ----

bool read_fasta_records(const std::string& path, std::string_view text, std::string_view allowed, const char* what,
                        std::vector<FastaRecord>& out, std::string& error) {
  std::vector<FastaEntry> entries;
  TextFault fault;
  const bool whole = read_fasta_entries(text, entries, fault);
  std::vector<FastaRecord> records;
  for (const FastaEntry& entry : entries) {
    FastaRecord record{entry.head.id, "", entry.head.line};
    for (const DataLine& line : entry.data) {
      // A blank inside a line may be data; blanks at its end are not.
      const std::string_view data = trim_end(line.text);
      for (const char c : data) {
        if (allowed.find(c) == std::string_view::npos) {
          error = file_line(path, line.line) + shown_byte(c) + " in " + record.id + " is not " + what;
          return false;
        }
      }
      record.data += data;
    }
    records.push_back(record);
  }
  if (!whole) {
    error = file_line(path, fault.line) + fault.message;
    return false;
  }
  if (records.empty()) {
    error = path + ": no '>' entries found; write each sequence's id on a '>' line before its symbols";
    return false;
  }
  for (const FastaRecord& record : records) {
    if (record.data.empty()) {
      error = file_line(path, record.line) + record.id + " has no symbols; give one per residue or remove the entry";
      return false;
    }
  }
  out.insert(out.end(), records.begin(), records.end());
  return true;
}

// ---- FASTA-style states ----

bool read_ss_fasta(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                   std::string& error) {
  std::vector<FastaRecord> records;
  if (!read_fasta_records(source.path, text, kStateLetters, "a structure state (H G I E B T S P C, '-' or X)", records,
                          error))
    return false;
  for (const FastaRecord& record : records) out.push_back({record.id, "", record.data, source.path});
  return true;
}

// ---- Stockholm ----

namespace {

bool is_stockholm_gap(char c) { return c == '.' || c == '-'; }

}  // namespace

bool read_ss_stockholm(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                       std::string& error) {
  StockholmRows rows;
  TextFault fault;
  if (!read_stockholm_rows(text, rows, fault)) {
    error = file_line(source.path, fault.line) + fault.message;
    return false;
  }
  if (rows.ss.empty()) {
    error = source.path + ": no '#=GR ID SS' lines found; Stockholm structure needs them";
    return false;
  }
  for (const StockholmRow& ss : rows.ss) {
    const StockholmRow* seq = rows.seq_row(ss.id);
    if (seq == nullptr || seq->text.size() != ss.text.size()) {
      fault = ss_columns_fault(ss, seq == nullptr ? 0 : seq->text.size());
      error = file_line(source.path, fault.line) + fault.message;
      return false;
    }
    StructEntry entry{ss.id, "", "", source.path};
    for (std::size_t c = 0; c < ss.text.size(); ++c) {
      if (is_stockholm_gap(seq->text[c])) continue;
      const char state = is_stockholm_gap(ss.text[c]) || ss.text[c] == '_' ? '-' : ss.text[c];
      if (map_structure_state(state) == 0) {
        error = file_line(source.path, ss.line) + shown_byte(state) + " in the SS line of " + ss.id +
                " is not a structure state (H G I E B T S P C, '-' or X)";
        return false;
      }
      entry.states += state;
    }
    out.push_back(entry);
  }
  return true;
}

// ---- PSIPRED ----

namespace {

bool read_ss2(const StructSource& source, const std::vector<std::string_view>& lines, StructEntry& entry,
              std::string& error) {
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const std::string_view line = trim(lines[k]);
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words{std::string(line)};
    int number = 0;
    char residue = 0, state = 0;
    if (!(words >> number >> residue >> state) || !std::isalpha(static_cast<unsigned char>(residue)) ||
        (state != 'H' && state != 'E' && state != 'C')) {
      error = file_line(source.path, static_cast<int>(k) + 1) +
              "not a PSIPRED .ss2 line (number, residue, state H, E or C, three scores); check the file";
      return false;
    }
    entry.residues += static_cast<char>(std::toupper(static_cast<unsigned char>(residue)));
    entry.states += state;
  }
  return true;
}

bool read_horiz(const StructSource& source, const std::vector<std::string_view>& lines, StructEntry& entry,
                std::string& error) {
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const std::string_view line = trim(lines[k]);
    const bool pred = line.substr(0, 5) == "Pred:", aa = line.substr(0, 3) == "AA:";
    if (!pred && !aa) continue;
    const std::string_view value = trim(line.substr(pred ? 5 : 3));
    for (const char c : value) {
      const bool good = pred ? (c == 'H' || c == 'E' || c == 'C') : std::isalpha(static_cast<unsigned char>(c)) != 0;
      if (!good) {
        error = file_line(source.path, static_cast<int>(k) + 1) + shown_byte(c) + " is not a PSIPRED " +
                (pred ? "state (H, E or C)" : "residue letter") + "; check the file";
        return false;
      }
    }
    (pred ? entry.states : entry.residues) += value;
  }
  if (entry.states.size() != entry.residues.size()) {
    error = source.path + ": " + std::to_string(entry.states.size()) + " predicted states but " +
            std::to_string(entry.residues.size()) + " residues on the AA lines; the file looks cut short";
    return false;
  }
  return true;
}

}  // namespace

bool read_ss_psipred(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                     std::string& error) {
  const std::vector<std::string_view> lines = split_lines(text);
  bool horiz = false;
  for (const std::string_view line : lines) horiz = horiz || trim(line).substr(0, 5) == "Pred:";
  StructEntry entry{source.id, "", "", source.path};
  if (!(horiz ? read_horiz(source, lines, entry, error) : read_ss2(source, lines, entry, error))) return false;
  if (entry.states.empty()) {
    error = source.path + ": no predicted residues found; give PSIPRED's .ss2 or .horiz output";
    return false;
  }
  for (char& c : entry.residues) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  out.push_back(entry);
  return true;
}
