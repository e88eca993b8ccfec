// Sections: the two public writers at the end; before them the style
// sheet and the settings text, the blocks (ruler, residue rows, consensus
// and conservation bars), the id pane and the structure tracks.
#include "report/picture_writer.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "report/picture_layout.hpp"
#include "report/structure_track.hpp"
#include "shell/version.hpp"

namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 20;
constexpr int kTextBaseline = 11;  // of a 12 px line in a kRowHeight row
constexpr int kIdX = 8;

constexpr std::string_view kPictureStyle =
    ".pic text{font-family:\"DejaVu Sans Mono\",\"Liberation Mono\",Menlo,Consolas,monospace;font-size:12px;"
    "fill:#000}\n"
    ".pic .res{text-anchor:middle;pointer-events:none}\n"
    ".pic .num{font-size:10px;fill:#666}\n"
    ".pic .rul{font-size:10px;fill:#666;text-anchor:middle}\n"
    ".pic .lab{font-style:italic;fill:#666}\n"
    ".pic .tick{fill:none;stroke:#777;stroke-width:1}\n"
    ".pic .coil{fill:none;stroke:#444;stroke-width:1.5}\n"
    ".pic .helix{fill:#e0403a;stroke:#8a1c18;stroke-width:.6}\n"
    ".pic .strand{fill:#f2b52b;stroke:#8a6200;stroke-width:.6}\n"
    ".pic .grp,.pic .anchor{fill:none;stroke:#000;stroke-width:1.5}\n"
    ".pic .bar{fill:#7a8fc0}\n";

constexpr std::string_view kPageStyle =
    "body{font-family:sans-serif;margin:16px;color:#222}\n"
    "h1{font-size:1.3em}\n"
    "p{margin:.3em 0}\n"
    ".wrap{display:flex;align-items:flex-start;overflow-x:auto;margin-top:1em}\n"
    ".wrap svg{flex:none}\n"
    "svg.ids{position:sticky;left:0;z-index:1;background:#fff}\n";

constexpr std::string_view kKeyText =
    "Above a sequence: red cylinders are helices, yellow arrows strands, the thin line turns and coil. "
    "A boxed residue is an anchor, an underlined stretch a gap-free group. Below each block: the consensus "
    "and, as bars, the share of the sequences that hold the column's most frequent residue. Hover over a "
    "residue for its sequence, number and structure.";

std::string_view scheme_name(ColourScheme scheme) {
  switch (scheme) {
    case ColourScheme::kClustal:
      return "Clustal X";
    case ColourScheme::kZappo:
      return "Zappo";
    case ColourScheme::kHydrophobicity:
      return "hydrophobicity (Kyte-Doolittle)";
    case ColourScheme::kNone:
      break;
  }
  return "none";
}

std::string settings_text(const PictureOptions& options) {
  const PrintOptions& s = options.settings;
  std::string text = "Scoring matrix " + s.scoreFile;
  const std::pair<const char*, int> values[] = {{"gap penalty", s.gapPen},
                                                {"gap size penalty", s.gapSizePen},
                                                {"mid-structure penalty", s.midStructPen},
                                                {"end-structure penalty", s.endStructPen},
                                                {"structure bias", s.structBias},
                                                {"increasing gap percent", s.incGapPen},
                                                {"blank match score", s.blankMatch},
                                                {"near-match score", s.nearMatchScore}};
  for (const auto& [name, value] : values) text += std::string(", ") + name + " " + std::to_string(value);
  text += "; consensus at " + std::to_string(s.consensusPercent) +
          "%; colours: " + std::string(scheme_name(options.colour)) + "; " + std::to_string(options.blockWidth) +
          " columns a block";
  return text;
}

std::string summary_text(const AlignmentView& view) {
  return "Alignment of " + std::to_string(view.rows.size()) + (view.rows.size() == 1 ? " sequence, " : " sequences, ") +
         std::to_string(view.width) + " columns";
}

void flush_text(std::FILE* stream, std::string& out) {
  std::fwrite(out.data(), 1, out.size(), stream);
  out.clear();
}

void append_text(std::string& out, std::string_view cls, int x, int y, std::string_view text) {
  out += "<text class=\"";
  out += cls;
  out += "\" x=\"";
  append_int(out, x);
  out += "\" y=\"";
  append_int(out, y);
  out += "\">";
  append_escaped(out, text);
  out += "</text>";
}

void append_palette(std::string& out, ColourScheme scheme) {
  out += "<defs>";
  const std::vector<std::string> palette = scheme_palette(scheme);
  for (std::size_t k = 0; k < palette.size(); ++k) {
    out += "<rect id=\"c";
    append_int(out, static_cast<long>(k));
    out += "\" width=\"10\" height=\"14\" fill=\"" + palette[k] + "\"/>";
  }
  out += "</defs>";
}

// ---- blocks ----

void append_ruler(std::string& out, int first, int last, const PictureLayout& layout) {
  std::string ticks;
  for (int c = first; c <= last; ++c) {
    const int centre = column_x(layout, c) + kCellWidth / 2;
    if ((c + 1) % 10 == 0 || c == first) append_text(out, "rul", centre, kTextBaseline, std::to_string(c + 1));
    if ((c + 1) % 10 != 0) continue;
    ticks += 'M';
    append_int(ticks, centre);
    ticks += " 12v4";
  }
  if (!ticks.empty()) out += "<path class=\"tick\" d=\"" + ticks + "\"/>";
}

// The hover text of one residue: id, residue and number, structure, anchor.
void append_residue_title(std::string& out, const ViewRow& row, std::size_t c, int number) {
  out += "<title>";
  append_escaped(out, row.id);
  out += ' ';
  append_escaped(out, std::string_view(&row.residues[c], 1));
  append_int(out, number);
  const std::string_view state = state_word(c < row.structure.size() ? row.structure[c] : 'X');
  if (!state.empty()) {
    out += ' ';
    out += state;
  }
  const char group = c < row.groups.size() ? row.groups[c] : '-';
  if (group == '*') out += ", gap-free group";
  if (group >= '1' && group <= '5') {
    out += ", anchor ";
    out += group;
  }
  out += "</title>";
}

// A path segment under a group's residues, or a box round an anchor.
void append_group_mark(std::string& groups, std::string& anchors, const ViewRow& row, std::size_t c, int x) {
  const char group = c < row.groups.size() ? row.groups[c] : '-';
  if (group == '*') {
    groups += 'M';
    append_int(groups, x);
    groups += " 13h10";
  } else if (group >= '1' && group <= '5') {
    anchors += 'M';
    append_int(anchors, x + 1);
    anchors += " 1h8v12h-8z";
  }
}

void append_residue_row(std::string& out, const ViewRow& row, const std::string& colours, int rowY, int first, int last,
                        int& count, const PictureLayout& layout) {
  out += "<g transform=\"translate(0,";
  append_int(out, rowY);
  out += ")\">";
  std::string xs, letters, groups, anchors;
  for (int c = first; c <= last; ++c) {
    const std::size_t at = static_cast<std::size_t>(c);
    if (row.residues[at] == ' ') continue;
    ++count;
    const int x = column_x(layout, c);
    out += "<use href=\"#c";
    append_int(out, colours[at]);
    out += "\" x=\"";
    append_int(out, x);
    out += "\">";
    append_residue_title(out, row, at, residue_number(row, count));
    out += "</use>";
    if (!xs.empty()) xs += ' ';
    append_int(xs, x + kCellWidth / 2);
    letters += row.residues[at];
    append_group_mark(groups, anchors, row, at, x);
  }
  if (!letters.empty()) {
    out += "<text class=\"res\" x=\"" + xs + "\" y=\"";
    append_int(out, kTextBaseline);
    out += "\">";
    append_escaped(out, letters);
    out += "</text>";
  }
  if (!groups.empty()) out += "<path class=\"grp\" d=\"" + groups + "\"/>";
  if (!anchors.empty()) out += "<path class=\"anchor\" d=\"" + anchors + "\"/>";
  append_text(out, "num", (last - first + 1) * kCellWidth + 6, kTextBaseline,
              std::to_string(residue_number(row, count)));
  out += "</g>";
}

void append_consensus(std::string& out, const AlignmentView& view, int first, int last, const PictureLayout& layout) {
  std::string xs;
  for (int c = first; c <= last; ++c) {
    if (c > first) xs += ' ';
    append_int(xs, column_x(layout, c) + kCellWidth / 2);
  }
  out += "<text class=\"res\" x=\"" + xs + "\" y=\"";
  append_int(out, layout.consensusY + kTextBaseline);
  out += "\">";
  const std::size_t from = static_cast<std::size_t>(first);
  const std::size_t length = static_cast<std::size_t>(last - first + 1);
  append_escaped(out, view.consensus.size() >= from + length ? view.consensus.substr(from, length) : "");
  out += "</text>";
}

// Per column, how many sequences hold its most frequent residue.
std::vector<int> calc_top_counts(const AlignmentView& view) {
  std::vector<int> top(static_cast<std::size_t>(view.width), 0);
  for (int c = 0; c < view.width; ++c) {
    std::array<int, 26> counts{};
    for (const ViewRow& row : view.rows) {
      const char ch = row.residues[static_cast<std::size_t>(c)];
      if (ch >= 'A' && ch <= 'Z') ++counts[static_cast<std::size_t>(ch - 'A')];
    }
    top[static_cast<std::size_t>(c)] = *std::max_element(counts.begin(), counts.end());
  }
  return top;
}

void append_conservation(std::string& out, const std::vector<int>& top, int rows, int first, int last,
                         const PictureLayout& layout) {
  std::string bars;
  const int base = layout.barY + kBarHeight - 1;
  for (int c = first; c <= last; ++c) {
    const int height = rows > 0 ? (top[static_cast<std::size_t>(c)] * (kBarHeight - 2) + rows / 2) / rows : 0;
    if (height == 0) continue;
    bars += 'M';
    append_int(bars, column_x(layout, c) + 1);
    bars += ' ';
    append_int(bars, base);
    bars += "h8v-";
    append_int(bars, height);
    bars += "h-8z";
  }
  if (bars.empty()) return;
  out += "<path class=\"bar\" d=\"" + bars +
         "\"><title>share of the sequences that hold the column's most "
         "frequent residue</title></path>";
}

void append_blocks_pane(std::FILE* stream, std::string& out, const AlignmentView& view, const PictureOptions& options,
                        const PictureLayout& layout) {
  const std::vector<std::string> colours = calc_residue_colours(view, options.colour);
  const std::vector<int> top = calc_top_counts(view);
  std::vector<int> counts(view.rows.size(), 0);
  for (int b = 0; b < layout.blocks; ++b) {
    const int first = b * layout.blockWidth;
    const int last = std::min(view.width, first + layout.blockWidth) - 1;
    out += "<g transform=\"translate(0,";
    append_int(out, block_top(layout, b));
    out += ")\">";
    append_ruler(out, first, last, layout);
    for (std::size_t r = 0; r < view.rows.size(); ++r) {
      append_residue_row(out, view.rows[r], colours[r], layout.rowY[r], first, last, counts[r], layout);
      if (out.size() > kFlushSize) flush_text(stream, out);
    }
    append_consensus(out, view, first, last, layout);
    append_conservation(out, top, static_cast<int>(view.rows.size()), first, last, layout);
    out += "</g>";
  }
  for (std::size_t r = 0; r < view.rows.size(); ++r) {
    append_structure_track(out, view.rows[r], static_cast<int>(r), layout);
    if (out.size() > kFlushSize) flush_text(stream, out);
  }
}

// ---- ids ----

void append_id_pane(std::string& out, const AlignmentView& view, const PictureLayout& layout) {
  for (int b = 0; b < layout.blocks; ++b) {
    out += "<g transform=\"translate(0,";
    append_int(out, block_top(layout, b));
    out += ")\">";
    for (std::size_t r = 0; r < view.rows.size(); ++r) {
      out += "<text class=\"id\" x=\"";
      append_int(out, kIdX);
      out += "\" y=\"";
      append_int(out, layout.rowY[r] + kTextBaseline);
      out += "\">";
      append_escaped(out, shown_id(view.rows[r].id));
      out += "<title>";
      append_escaped(out, view.rows[r].header);
      out += "</title></text>";
    }
    append_text(out, "lab", kIdX, layout.consensusY + kTextBaseline, "consensus");
    append_text(out, "lab", kIdX, layout.barY + kTextBaseline, "conservation");
    out += "</g>";
  }
}

void append_svg_open(std::string& out, std::string_view cls, int width, int height) {
  out += "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"";
  out += cls;
  out += "\" width=\"";
  append_int(out, width);
  out += "\" height=\"";
  append_int(out, height);
  out += "\" viewBox=\"0 0 ";
  append_int(out, width);
  out += ' ';
  append_int(out, height);
  out += "\">\n";
}

}  // namespace

void write_html_picture(std::FILE* stream, const AlignmentView& view, const PictureOptions& options) {
  const PictureLayout layout = calc_picture_layout(view, options.blockWidth);
  const int height = layout.blocks * layout.blockHeight;
  std::string out = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>";
  append_escaped(out, summary_text(view));
  out += "</title>\n<style>\n";
  out += kPageStyle;
  out += kPictureStyle;
  out += "</style>\n</head>\n<body>\n<h1>";
  append_escaped(out, summary_text(view));
  out += "</h1>\n<p>ravlin-align ";
  out += kVersion;
  if (!options.date.empty()) out += ", " + options.date;
  out += "</p>\n<p>";
  append_escaped(out, settings_text(options));
  out += "</p>\n<p>";
  out += kKeyText;
  out += "</p>\n<div class=\"wrap\">\n";
  append_svg_open(out, "pic ids", layout.idWidth, height);
  append_id_pane(out, view, layout);
  out += "</svg>\n";
  append_svg_open(out, "pic body", layout.bodyWidth, height);
  append_palette(out, options.colour);
  append_blocks_pane(stream, out, view, options, layout);
  out += "</svg>\n</div>\n</body>\n</html>\n";
  flush_text(stream, out);
}

void write_svg_picture(std::FILE* stream, const AlignmentView& view, const PictureOptions& options) {
  const PictureLayout layout = calc_picture_layout(view, options.blockWidth);
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  append_svg_open(out, "pic", layout.idWidth + layout.bodyWidth, layout.blocks * layout.blockHeight);
  out += "<title>";
  append_escaped(out, summary_text(view));
  out += "</title>\n<desc>ravlin-align ";
  out += kVersion;
  out += ". ";
  append_escaped(out, settings_text(options));
  out += "</desc>\n<style>\n";
  out += kPictureStyle;
  out += "</style>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
  append_palette(out, options.colour);
  append_id_pane(out, view, layout);
  out += "\n<g transform=\"translate(";
  append_int(out, layout.idWidth);
  out += ",0)\">";
  append_blocks_pane(stream, out, view, options, layout);
  out += "</g>\n</svg>\n";
  flush_text(stream, out);
}
