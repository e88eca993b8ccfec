#include "report/standard_writers.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "shell/version.hpp"

namespace {

constexpr int kBlockWidth = 60;
// A feature of our own: PP_cons, the nearest recommended one, holds
// posterior probabilities, which the column confidence is not.
constexpr const char* kConfidenceTag = "#=GC confidence";

// Residue groups of the Clustal conservation line.
constexpr std::array<std::string_view, 9> kStrongGroups = {"STA",  "NEQK", "NHQK", "NDEQ", "QHRK",
                                                           "MILV", "MILF", "HY",   "FYW"};
constexpr std::array<std::string_view, 11> kWeakGroups = {"CSA",    "ATV",    "SAG",    "STNK",  "STPA", "SGND",
                                                          "SNDEQK", "NDEQHK", "NEQHRK", "FVLIM", "HFY"};

char gap_as_dash(char ch) { return ch == ' ' ? '-' : ch; }

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
    const std::string text = gapped(row.residues);
    for (std::size_t start = 0; start < text.size(); start += kBlockWidth)
      std::fprintf(stream, "%s\n", text.substr(start, kBlockWidth).c_str());
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
