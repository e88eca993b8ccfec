// Sections: the schemes' tables, then the public routines.
#include "report/residue_colours.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace {

constexpr char kPlain = 0;
constexpr char kBlue = 1, kRed = 2, kMagenta = 3, kGreen = 4, kPink = 5, kOrange = 6, kYellow = 7, kCyan = 8;

// ---- Clustal X ----
// A residue takes its class colour only when its column meets one of the
// class's conditions: more than `percent` of the column's sequences (gaps
// count) hold letters of `letters` together, or, when `single`, one letter
// of them alone does. The classes and conditions are Clustal X's published
// colouring table.
struct Condition {
  std::string_view letters;
  int percent;
  bool single;
};

struct ClustalRule {
  std::string_view residues;
  char colour;
  std::array<Condition, 4> conditions;  // unused ones have no letters
};

constexpr std::string_view kHydrophobic = "WLVIMAFCHP";

constexpr ClustalRule kClustalRules[] = {
    {"AILMFWV", kBlue, {{{kHydrophobic, 60, false}}}},
    {"C", kPink, {{{"C", 85, false}}}},  // before the hydrophobic rule for C: the more particular one wins
    {"C", kBlue, {{{kHydrophobic, 60, false}}}},
    {"KR", kRed, {{{"KR", 60, false}, {"KRQ", 85, true}}}},
    {"E", kMagenta, {{{"KR", 60, false}, {"QE", 50, false}, {"ED", 50, false}, {"EQD", 85, true}}}},
    {"D", kMagenta, {{{"KR", 60, false}, {"KRQ", 85, true}, {"ED", 50, false}}}},
    {"N", kGreen, {{{"N", 50, false}, {"NY", 85, true}}}},
    {"Q", kGreen, {{{"KR", 60, false}, {"QE", 50, false}, {"QEKR", 85, true}}}},
    {"ST", kGreen, {{{kHydrophobic, 60, false}, {"TS", 50, false}, {"ST", 85, true}}}},
    {"G", kOrange, {{{"G", 0, false}}}},
    {"P", kYellow, {{{"P", 0, false}}}},
    {"HY", kCyan, {{{kHydrophobic, 60, false}, {"WYACPQFHILMV", 85, true}}}},
};

const std::vector<std::string> kClustalPalette = {"#ffffff", "#80a0f0", "#f01505", "#c048c0", "#15c015",
                                                  "#f08080", "#f09048", "#c0c000", "#15a4a4"};

using LetterCounts = std::array<int, 26>;

bool is_letter(char ch) { return ch >= 'A' && ch <= 'Z'; }

LetterCounts column_counts(const AlignmentView& view, int column) {
  LetterCounts counts{};
  for (const ViewRow& row : view.rows) {
    const char ch = row.residues[static_cast<std::size_t>(column)];
    if (is_letter(ch)) ++counts[static_cast<std::size_t>(ch - 'A')];
  }
  return counts;
}

// Percentages compare as counts: count * 100 > percent * rows.
bool condition_holds(const Condition& condition, const LetterCounts& counts, int rows) {
  int together = 0;
  for (char letter : condition.letters) {
    const int count = counts[static_cast<std::size_t>(letter - 'A')];
    if (condition.single && count * 100 > condition.percent * rows) return true;
    together += count;
  }
  return !condition.single && !condition.letters.empty() && together * 100 > condition.percent * rows;
}

char clustal_colour(char residue, const LetterCounts& counts, int rows) {
  for (const ClustalRule& rule : kClustalRules) {
    if (rule.residues.find(residue) == std::string_view::npos) continue;
    for (const Condition& condition : rule.conditions)
      if (condition_holds(condition, counts, rows)) return rule.colour;
  }
  return kPlain;
}

// ---- fixed colours by residue ----

// Zappo: aliphatic, aromatic, positive, negative, hydrophilic, conformational (P, G), cysteine.
const std::vector<std::string> kZappoPalette = {"#ffffff", "#ffafaf", "#ffc800", "#6464ff",
                                                "#ff0000", "#00ff00", "#ff00ff", "#ffff00"};
constexpr std::string_view kZappoClasses[] = {"", "ILVAM", "FWY", "KRH", "DE", "STNQ", "PG", "C"};

// Kyte-Doolittle hydropathy of the twenty residues; other letters are uncoloured.
constexpr std::string_view kKyteDoolittleLetters = "ARNDCQEGHILKMFPSTWYV";
constexpr double kKyteDoolittle[] = {1.8, -4.5, -3.5, -3.5, 2.5,  -3.5, -3.5, -0.4, -3.2, 4.5,
                                     3.8, -3.9, 1.9,  2.8,  -1.6, -0.8, -0.7, -0.9, -1.3, 4.2};
constexpr double kMostHydrophobic = 4.5;

// Of the ends' colours, the share of pure blue or red: black letters stay
// readable on them (pure blue left them unreadable).
constexpr double kStrongest = 0.5;

// From blue (most hydrophilic) through white to red (most hydrophobic).
std::string hydropathy_colour(double value) {
  const double t = std::clamp(value / kMostHydrophobic, -1.0, 1.0);
  const int fade = static_cast<int>(255.0 * (1.0 - kStrongest * (t < 0 ? -t : t)) + 0.5);
  const int red = t < 0 ? fade : 255;
  const int blue = t < 0 ? 255 : fade;
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", red, fade, blue);
  return text;
}

// Palette entry k + 1 is the colour of kKyteDoolittleLetters[k].
std::vector<std::string> hydropathy_palette() {
  std::vector<std::string> palette = {"#ffffff"};
  for (double value : kKyteDoolittle) palette.push_back(hydropathy_colour(value));
  return palette;
}

char fixed_colour(ColourScheme scheme, char residue) {
  if (scheme == ColourScheme::kZappo) {
    for (std::size_t k = 1; k < std::size(kZappoClasses); ++k)
      if (kZappoClasses[k].find(residue) != std::string_view::npos) return static_cast<char>(k);
    return kPlain;
  }
  const std::size_t k = kKyteDoolittleLetters.find(residue);
  return k == std::string_view::npos ? kPlain : static_cast<char>(k + 1);
}

}  // namespace

std::vector<std::string> scheme_palette(ColourScheme scheme) {
  switch (scheme) {
    case ColourScheme::kClustal:
      return kClustalPalette;
    case ColourScheme::kZappo:
      return kZappoPalette;
    case ColourScheme::kHydrophobicity:
      return hydropathy_palette();
    case ColourScheme::kNone:
      break;
  }
  return {"#ffffff"};
}

std::vector<std::string> calc_residue_colours(const AlignmentView& view, ColourScheme scheme) {
  const int rows = static_cast<int>(view.rows.size());
  std::vector<std::string> colours(view.rows.size(), std::string(static_cast<std::size_t>(view.width), kPlain));
  if (scheme == ColourScheme::kNone) return colours;
  for (int c = 0; c < view.width; ++c) {
    const LetterCounts counts = scheme == ColourScheme::kClustal ? column_counts(view, c) : LetterCounts{};
    for (std::size_t r = 0; r < view.rows.size(); ++r) {
      const char residue = view.rows[r].residues[static_cast<std::size_t>(c)];
      if (!is_letter(residue)) continue;
      colours[r][static_cast<std::size_t>(c)] =
          scheme == ColourScheme::kClustal ? clustal_colour(residue, counts, rows) : fixed_colour(scheme, residue);
    }
  }
  return colours;
}
