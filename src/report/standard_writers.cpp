#include "report/standard_writers.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "shell/version.hpp"

namespace {

constexpr int kBlockWidth = 60;
// GCG's MSF blocks: 50 columns in groups of 10, the checksum weights cycle every 57.
constexpr int kMsfBlockWidth = 50;
constexpr int kMsfGroupWidth = 10;
constexpr int kGcgCheckCycle = 57;
constexpr int kGcgCheckModulus = 10000;
// A feature of our own: PP_cons, the nearest recommended one, holds
// posterior probabilities, which the column confidence is not.
constexpr const char* kConfidenceTag = "#=GC confidence";

// Residue groups of the Clustal conservation line.
constexpr std::array<std::string_view, 9> kStrongGroups = {"STA",  "NEQK", "NHQK", "NDEQ", "QHRK",
                                                           "MILV", "MILF", "HY",   "FYW"};
constexpr std::array<std::string_view, 11> kWeakGroups = {"CSA",    "ATV",    "SAG",    "STNK",  "STPA", "SGND",
                                                          "SNDEQK", "NDEQHK", "NEQHRK", "FVLIM", "HFY"};

char gap_as_dash(char ch) { return ch == ' ' ? '-' : ch; }

char upper(char ch) { return static_cast<char>(std::toupper(static_cast<unsigned char>(ch))); }
char lower(char ch) { return static_cast<char>(std::tolower(static_cast<unsigned char>(ch))); }

std::string gapped(const std::string& text) {
  std::string out = text;
  std::transform(out.begin(), out.end(), out.begin(), gap_as_dash);
  return out;
}

bool all_in_one(const std::string& column, std::string_view group) {
  return std::all_of(column.begin(), column.end(), [&](char ch) { return group.find(ch) != std::string_view::npos; });
}

template <std::size_t N>
bool in_some_group(const std::string& column, const std::array<std::string_view, N>& groups) {
  return std::any_of(groups.begin(), groups.end(), [&](std::string_view g) { return all_in_one(column, g); });
}

std::string column_of(const AlignmentView& view, int c) {
  std::string column;
  for (const ViewRow& row : view.rows) column.push_back(row.residues[static_cast<std::size_t>(c)]);
  return column;
}

std::size_t name_width(const AlignmentView& view) {
  std::size_t width = 0;
  for (const ViewRow& row : view.rows) width = std::max(width, row.name.size());
  return width;
}

void write_padded(std::FILE* stream, const std::string& text, std::size_t width) {
  std::fputs(text.c_str(), stream);
  for (std::size_t k = text.size(); k < width; ++k) std::fputc(' ', stream);
}

// The header after the name, blanks around it removed.
std::string description_of(const ViewRow& row) {
  const std::string rest = row.header.substr(std::min(row.name.size(), row.header.size()));
  const std::size_t first = rest.find_first_not_of(" \t");
  if (first == std::string::npos) return "";
  return rest.substr(first, rest.find_last_not_of(" \t") - first + 1);
}

void write_wrapped(std::FILE* stream, const std::string& text) {
  for (std::size_t start = 0; start < text.size(); start += kBlockWidth)
    std::fprintf(stream, "%s\n", text.substr(start, kBlockWidth).c_str());
}

// A row as MSF writes it: '~' in the gaps before its first and after its
// last residue, '.' in the gaps between.
std::string msf_row(const std::string& residues) {
  std::string out = residues;
  const std::size_t first = out.find_first_not_of(' ');
  const std::size_t last = out.find_last_not_of(' ');
  for (std::size_t c = 0; c < out.size(); ++c)
    if (out[c] == ' ') out[c] = (first == std::string::npos || c < first || c > last) ? '~' : '.';
  return out;
}

// GCG's checksum of a row as written, gaps included: each upper-case
// character weighted by its position, counted 1 to 57 over and over.
int gcg_checksum(const std::string& text) {
  long sum = 0;
  for (std::size_t k = 0; k < text.size(); ++k)
    sum += static_cast<long>(k % kGcgCheckCycle + 1) * static_cast<unsigned char>(upper(text[k]));
  return static_cast<int>(sum % kGcgCheckModulus);
}

// The ruler above an MSF block: its first column's number over its first
// residue, its last column's number over its last.
void write_msf_ruler(std::FILE* stream, std::size_t nameWidth, int start, int len) {
  write_padded(stream, "", nameWidth);
  const std::string first = std::to_string(start + 1);
  std::fputs(first.c_str(), stream);
  if (len > 1) {
    const std::string last = std::to_string(start + len);
    const int blockText = len + (len - 1) / kMsfGroupWidth;
    const int blanks = blockText - static_cast<int>(first.size() + last.size());
    std::fprintf(stream, "%*s%s", std::max(blanks, 1), "", last.c_str());
  }
  std::fputc('\n', stream);
}

// A row's structure on its gapped row: the letters where residues stand
// (strands as E, the letter other tools know), '.' in gaps.
std::string structure_row(const ViewRow& row) {
  std::string out;
  for (std::size_t c = 0; c < row.residues.size(); ++c) {
    const char state = c < row.structure.size() ? row.structure[c] : 'X';
    out.push_back(row.residues[c] == ' ' ? '.' : (state == 'B' ? 'E' : state));
  }
  return out;
}

// The most frequent known state of a column, '.' where none is known; ties
// go to the first in H, E, T, C.
char consensus_state(const std::vector<std::string>& rows, std::size_t c) {
  constexpr std::string_view kStates = "HETC";
  std::array<int, 4> counts{};
  for (const std::string& row : rows) {
    const std::size_t k = kStates.find(row[c]);
    if (k != std::string_view::npos) ++counts[k];
  }
  const auto best = std::max_element(counts.begin(), counts.end());
  return *best == 0 ? '.' : kStates[static_cast<std::size_t>(best - counts.begin())];
}

}  // namespace

char conservation_mark(const std::string& column) {
  if (column.empty() || column.find(' ') != std::string::npos || column.find('-') != std::string::npos) return ' ';
  if (std::all_of(column.begin(), column.end(), [&](char ch) { return ch == column[0]; })) return '*';
  if (in_some_group(column, kStrongGroups)) return ':';
  if (in_some_group(column, kWeakGroups)) return '.';
  return ' ';
}

void write_fasta_alignment(std::FILE* stream, const AlignmentView& view) {
  for (const ViewRow& row : view.rows) {
    std::fprintf(stream, ">%s\n", row.header.c_str());
    write_wrapped(stream, gapped(row.residues));
  }
}

std::vector<bool> a2m_match_columns(const AlignmentView& view) {
  std::vector<bool> match(static_cast<std::size_t>(view.width), false);
  for (std::size_t c = 0; c < match.size(); ++c) {
    std::size_t residues = 0;
    for (const ViewRow& row : view.rows) residues += c < row.residues.size() && row.residues[c] != ' ';
    match[c] = 2 * residues >= view.rows.size();
  }
  return match;
}

void write_a2m_alignment(std::FILE* stream, const AlignmentView& view) {
  const std::vector<bool> match = a2m_match_columns(view);
  for (const ViewRow& row : view.rows) {
    std::string text = row.residues;
    for (std::size_t c = 0; c < text.size(); ++c) {
      const bool isMatch = c < match.size() && match[c];
      if (text[c] == ' ')
        text[c] = isMatch ? '-' : '.';
      else
        text[c] = isMatch ? upper(text[c]) : lower(text[c]);
    }
    std::fprintf(stream, ">%s\n", row.header.c_str());
    write_wrapped(stream, text);
  }
}

void write_msf_alignment(std::FILE* stream, const AlignmentView& view) {
  std::vector<std::string> rows;
  int total = 0;
  for (const ViewRow& row : view.rows) {
    rows.push_back(msf_row(row.residues));
    total = (total + gcg_checksum(rows.back())) % kGcgCheckModulus;
  }
  std::fprintf(stream, "!!AA_MULTIPLE_ALIGNMENT 1.0\n\n MSF: %d  Type: P  Check: %d  ..\n\n", view.width, total);
  const std::size_t width = name_width(view) + 2;
  for (std::size_t r = 0; r < rows.size(); ++r) {
    std::fputs(" Name: ", stream);
    write_padded(stream, view.rows[r].name, width);
    std::fprintf(stream, "Len: %d  Check: %d  Weight: 1.00\n", view.width, gcg_checksum(rows[r]));
  }
  std::fputs("\n//\n", stream);
  for (int start = 0; start < view.width; start += kMsfBlockWidth) {
    const int len = std::min(kMsfBlockWidth, view.width - start);
    std::fputc('\n', stream);
    write_msf_ruler(stream, width, start, len);
    for (std::size_t r = 0; r < rows.size(); ++r) {
      write_padded(stream, view.rows[r].name, width);
      for (int c = start; c < start + len; c += kMsfGroupWidth) {
        if (c > start) std::fputc(' ', stream);
        const int group = std::min(kMsfGroupWidth, start + len - c);
        std::fputs(rows[r].substr(static_cast<std::size_t>(c), static_cast<std::size_t>(group)).c_str(), stream);
      }
      std::fputc('\n', stream);
    }
  }
}

void write_phylip_alignment(std::FILE* stream, const AlignmentView& view) {
  std::fprintf(stream, "%zu %d\n", view.rows.size(), view.width);
  const std::size_t width = name_width(view) + 1;
  for (const ViewRow& row : view.rows) {
    write_padded(stream, row.name, width);
    std::fprintf(stream, "%s\n", gapped(row.residues).c_str());
  }
}

void write_clustal_alignment(std::FILE* stream, const AlignmentView& view) {
  std::fprintf(stream, "CLUSTAL multiple sequence alignment by ravlin-align %s\n\n\n", kVersion);
  const std::size_t width = name_width(view) + 6;
  for (int start = 0; start < view.width; start += kBlockWidth) {
    const int len = std::min(kBlockWidth, view.width - start);
    for (const ViewRow& row : view.rows) {
      write_padded(stream, row.name, width);
      std::fprintf(stream, "%s\n", gapped(row.residues.substr(static_cast<std::size_t>(start), len)).c_str());
    }
    write_padded(stream, "", width);
    for (int c = start; c < start + len; ++c) std::fputc(conservation_mark(column_of(view, c)), stream);
    std::fputs("\n\n", stream);
  }
}

void write_stockholm_alignment(std::FILE* stream, const AlignmentView& view) {
  std::fputs("# STOCKHOLM 1.0\n", stream);
  std::vector<std::string> structures;
  std::size_t width = name_width(view);
  for (const ViewRow& row : view.rows)
    if (row.hasStructure) width = std::max(width, std::string("#=GR " + row.name + " SS").size());
  width = std::max(width, std::string("#=GC SS_cons").size());
  if (!view.confidence.empty()) width = std::max(width, std::string(kConfidenceTag).size());
  ++width;
  for (const ViewRow& row : view.rows) {
    const std::string description = description_of(row);
    if (!description.empty()) std::fprintf(stream, "#=GS %s DE %s\n", row.name.c_str(), description.c_str());
  }
  for (const ViewRow& row : view.rows) {
    write_padded(stream, row.name, width);
    std::fprintf(stream, "%s\n", gapped(row.residues).c_str());
    if (!row.hasStructure) continue;
    structures.push_back(structure_row(row));
    write_padded(stream, "#=GR " + row.name + " SS", width);
    std::fprintf(stream, "%s\n", structures.back().c_str());
  }
  if (!structures.empty()) {
    std::string consensus;
    for (std::size_t c = 0; c < static_cast<std::size_t>(view.width); ++c)
      consensus.push_back(consensus_state(structures, c));
    write_padded(stream, "#=GC SS_cons", width);
    std::fprintf(stream, "%s\n", consensus.c_str());
  }
  if (!view.confidence.empty()) {
    write_padded(stream, kConfidenceTag, width);
    std::fprintf(stream, "%s\n", view.confidence.c_str());
  }
  std::fputs("//\n", stream);
}
