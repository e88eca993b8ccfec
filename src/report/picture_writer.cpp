// Sections: the two public writers at the end; before them the style
// sheet and the settings text, the blocks (ruler, residue rows, consensus,
// conservation and confidence bars), the id pane and the structure tracks.
#include "report/picture_writer.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "report/picture_hover.hpp"
#include "report/picture_layout.hpp"
#include "report/structure_track.hpp"
#include "shell/version.hpp"

namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 20;
constexpr int kTextBaseline = 11;  // of a 12 px line in a kRowHeight row
constexpr int kIdX = 8;
constexpr int kRulerDigitWidth = 6;  // of the 10 px monospace font

constexpr std::string_view kPictureStyle =
    ".pic text{font-family:\"DejaVu Sans Mono\",\"Liberation Mono\",Menlo,Consolas,monospace;font-size:12px;"
    "fill:#000}\n"
    ".pic .res{font-size:14px;pointer-events:none}\n"
    ".pic .num{font-size:10px;fill:#666}\n"
    ".pic .rul{font-size:10px;fill:#666;text-anchor:middle}\n"
    ".pic .rul.first{text-anchor:start}\n"
    ".pic .lab{font-style:italic;fill:#666}\n"
    ".pic .tick{fill:none;stroke:#777;stroke-width:1}\n"
    ".pic .coil{fill:none;stroke:#444;stroke-width:1.5}\n"
    ".pic .helix{fill:#e0403a;stroke:#8a1c18;stroke-width:.6}\n"
    ".pic .strand{fill:#f2b52b;stroke:#8a6200;stroke-width:.6}\n"
    ".pic .grp,.pic .anchor{fill:none;stroke:#000;stroke-width:1.5}\n"
    ".pic .bar{fill:#7a8fc0}\n"
    ".pic .cells path{fill:none;stroke-width:14px}\n"
    ".pic .tip{pointer-events:none}\n"
    ".pic .tip rect{fill:#ffffe8;stroke:#888}\n"
    ".pic .tip text{font-size:11px}\n";

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
constexpr std::string_view kConfidenceKeyText =
    " Under the conservation bars, the confidence of each column: how far the pairwise alignments support "
    "it, from 0 to 9, the taller and darker the more; hover over it for its value.";

// Paler to darker green with the confidence digit; inline fills, so that
// the style sheet stays as it is for pictures without confidence.
constexpr std::array<std::string_view, 10> kConfidenceShades = {"#b5deab", "#a2d597", "#8ecb84", "#7abf72", "#65b262",
                                                                "#50a353", "#3b9245", "#278038", "#146b2c", "#00501f"};

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

// ---- blocks ----

// The number of every tenth column, centred over it, and of the block's
// first column, from its left edge (centred, its first digits would stand
// outside the block); a tenth column's number that would touch that one is
// left out, its tick kept.
void append_ruler(std::string& out, int first, int last, const PictureLayout& layout) {
  const std::string firstNumber = std::to_string(first + 1);
  const int firstEnd = static_cast<int>(firstNumber.size()) * kRulerDigitWidth;
  append_text(out, "rul first", 0, kTextBaseline, firstNumber);
  std::string ticks;
  for (int c = first; c <= last; ++c) {
    if ((c + 1) % 10 != 0) continue;
    const int centre = column_x(layout, c) + kCellWidth / 2;
    const std::string number = std::to_string(c + 1);
    if (c != first && centre - static_cast<int>(number.size()) * kRulerDigitWidth / 2 >= firstEnd + kRulerDigitWidth)
      append_text(out, "rul", centre, kTextBaseline, number);
    ticks += 'M';
    append_int(ticks, centre);
    ticks += " 12v4";
  }
  if (!ticks.empty()) out += "<path class=\"tick\" d=\"" + ticks + "\"/>";
}

// The residues' colours: one path per colour for the whole block, a
// horizontal stroke the height of a row through each run of cells of that
// colour. A cell of its own would cost an element per residue, more than a
// browser can draw for the largest alignments.
void append_cell_colours(std::string& out, const std::vector<std::string>& colours,
                         const std::vector<std::string>& palette, int first, int last, const PictureLayout& layout) {
  std::vector<std::string> paths(palette.size());
  std::vector<int> penX(palette.size(), -1);  // where each colour's pen stands in the current row, -1 off the row
  for (std::size_t r = 0; r < colours.size(); ++r) {
    std::fill(penX.begin(), penX.end(), -1);
    for (int c = first; c <= last;) {
      const unsigned char colour = static_cast<unsigned char>(colours[r][static_cast<std::size_t>(c)]);
      const int end = same_run_end(colours[r], c, last);
      if (colour != 0 && colour < palette.size()) {
        std::string& path = paths[colour];
        const int x = column_x(layout, c);
        if (penX[colour] < 0) {
          path += 'M';
          append_int(path, x);
          path += ' ';
          append_int(path, layout.rowY[r] + kRowHeight / 2);
        } else {
          path += 'm';
          append_int(path, x - penX[colour]);
          path += " 0";
        }
        path += 'h';
        append_int(path, (end - c + 1) * kCellWidth);
        penX[colour] = column_x(layout, end) + kCellWidth;
      }
      c = end + 1;
    }
  }
  std::string layer;
  for (std::size_t k = 1; k < paths.size(); ++k) {
    if (paths[k].empty()) continue;
    layer += "<path stroke=\"" + palette[k] + "\" d=\"";
    layer += paths[k];
    layer += "\"/>";
  }
  if (!layer.empty()) out += "<g class=\"cells\">" + layer + "</g>";
}

// A segment under each stretch of a gap-free group, a box round each anchor.
void append_group_marks(std::string& groups, std::string& anchors, const ViewRow& row, int rowY, int first, int last,
                        const PictureLayout& layout) {
  for (int c = first; c <= last; ++c) {
    const char group = static_cast<std::size_t>(c) < row.groups.size() ? row.groups[static_cast<std::size_t>(c)] : '-';
    const int x = column_x(layout, c);
    if (group == '*') {
      const int end = same_run_end(row.groups, c, last);
      groups += 'M';
      append_int(groups, x);
      groups += ' ';
      append_int(groups, rowY + 13);
      groups += 'h';
      append_int(groups, (end - c + 1) * kCellWidth);
      c = end;
    } else if (group >= '1' && group <= '5') {
      anchors += 'M';
      append_int(anchors, x + 1);
      anchors += ' ';
      append_int(anchors, rowY + 1);
      anchors += "h8v12h-8z";
    }
  }
}

// Letters standing one a column from `column` on. The font is monospaced,
// so stretching the text to its columns puts every letter in its cell:
// a position per letter would cost the browser a layout per letter.
void append_letters(std::string& out, int column, int y, std::string_view letters, const PictureLayout& layout) {
  out += "<text class=\"res\" x=\"";
  append_int(out, column_x(layout, column));
  out += "\" y=\"";
  append_int(out, y);
  out += "\" textLength=\"";
  append_int(out, static_cast<long>(letters.size()) * kCellWidth);
  out += "\" lengthAdjust=\"spacingAndGlyphs\">";
  append_escaped(out, letters);
  out += "</text>";
}

// The row's residues, a text for each stretch without a gap, then the
// number of the block's last residue.
void append_residue_row(std::string& out, const ViewRow& row, int rowY, int first, int last, int& count,
                        const PictureLayout& layout) {
  for (int c = first; c <= last;) {
    if (row.residues[static_cast<std::size_t>(c)] == ' ') {
      ++c;
      continue;
    }
    int end = c;
    while (end < last && row.residues[static_cast<std::size_t>(end + 1)] != ' ') ++end;
    append_letters(
        out, c, rowY + kTextBaseline,
        std::string_view(row.residues).substr(static_cast<std::size_t>(c), static_cast<std::size_t>(end - c + 1)),
        layout);
    count += end - c + 1;
    c = end + 1;
  }
  append_text(out, "num", (last - first + 1) * kCellWidth + 6, rowY + kTextBaseline,
              std::to_string(residue_number(row, count)));
}

void append_consensus(std::string& out, const AlignmentView& view, int first, int last, const PictureLayout& layout) {
  const std::size_t from = static_cast<std::size_t>(first);
  const std::size_t length = static_cast<std::size_t>(last - first + 1);
  if (view.consensus.size() < from + length) return;
  append_letters(out, first, layout.consensusY + kTextBaseline, std::string_view(view.consensus).substr(from, length),
                 layout);
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

// One bar as a closed path: from its bottom-left corner (x, base), width wide
// and height tall.
void append_bar(std::string& path, int x, int base, int width, int height) {
  path += 'M';
  append_int(path, x);
  path += ' ';
  append_int(path, base);
  path += 'h';
  append_int(path, width);
  path += "v-";
  append_int(path, height);
  path += "h-";
  append_int(path, width);
  path += 'z';
}

void append_conservation(std::string& out, const std::vector<int>& top, int rows, int first, int last,
                         const PictureLayout& layout) {
  std::string bars;
  const int base = layout.barY + kBarHeight - 1;
  for (int c = first; c <= last; ++c) {
    const int height = rows > 0 ? (top[static_cast<std::size_t>(c)] * (kBarHeight - 2) + rows / 2) / rows : 0;
    if (height == 0) continue;
    append_bar(bars, column_x(layout, c) + 1, base, 8, height);
  }
  if (bars.empty()) return;
  out += "<path class=\"bar\" d=\"" + bars +
         "\"><title>share of the sequences that hold the column's most "
         "frequent residue</title></path>";
}

// The column confidence: a bar for each run of columns of one digit, taller
// (a stub for 0) and darker the higher the digit; one path per digit, so a
// block costs at most ten elements whatever its width.
void append_confidence(std::string& out, const std::string& confidence, int first, int last,
                       const PictureLayout& layout) {
  if (layout.confidenceY < 0 || confidence.size() <= static_cast<std::size_t>(last)) return;
  std::array<std::string, 10> paths;
  const int base = layout.confidenceY + kBarHeight - 1;
  for (int c = first; c <= last;) {
    const int end = same_run_end(confidence, c, last);
    const int digit = confidence[static_cast<std::size_t>(c)] - '0';
    if (digit >= 0 && digit <= 9) {
      const int width = (end - c + 1) * kCellWidth - 2;
      append_bar(paths[static_cast<std::size_t>(digit)], column_x(layout, c) + 1, base, width,
                 2 + (digit * (kBarHeight - 4) + 4) / 9);
    }
    c = end + 1;
  }
  std::string layer;
  for (std::size_t k = 0; k < paths.size(); ++k) {
    if (paths[k].empty()) continue;
    layer += "<path fill=\"";
    layer += kConfidenceShades[k];
    layer += "\" d=\"" + paths[k] + "\"/>";
  }
  if (!layer.empty()) out += "<g class=\"conf\">" + layer + "</g>";
}

void append_blocks_pane(std::FILE* stream, std::string& out, const AlignmentView& view, const PictureOptions& options,
                        const PictureLayout& layout) {
  const std::vector<std::string> colours = calc_residue_colours(view, options.colour);
  const std::vector<std::string> palette = scheme_palette(options.colour);
  const std::vector<int> top = calc_top_counts(view);
  std::vector<int> counts(view.rows.size(), 0);
  for (int b = 0; b < layout.blocks; ++b) {
    const int first = b * layout.blockWidth;
    const int last = std::min(view.width, first + layout.blockWidth) - 1;
    out += "<g transform=\"translate(0,";
    append_int(out, block_top(layout, b));
    out += ")\">";
    append_ruler(out, first, last, layout);
    append_cell_colours(out, colours, palette, first, last, layout);
    std::string groups, anchors;
    for (std::size_t r = 0; r < view.rows.size(); ++r) {
      append_residue_row(out, view.rows[r], layout.rowY[r], first, last, counts[r], layout);
      append_group_marks(groups, anchors, view.rows[r], layout.rowY[r], first, last, layout);
      if (out.size() > kFlushSize) flush_text(stream, out);
    }
    if (!groups.empty()) out += "<path class=\"grp\" d=\"" + groups + "\"/>";
    if (!anchors.empty()) out += "<path class=\"anchor\" d=\"" + anchors + "\"/>";
    append_consensus(out, view, first, last, layout);
    append_conservation(out, top, static_cast<int>(view.rows.size()), first, last, layout);
    append_confidence(out, view.confidence, first, last, layout);
    out += "</g>";
  }
  for (std::size_t r = 0; r < view.rows.size(); ++r) {
    append_structure_track(out, view.rows[r], static_cast<int>(r), layout);
    if (out.size() > kFlushSize) flush_text(stream, out);
  }
  append_hover_script(out, view, layout);
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
      append_escaped(out, layout.shownIds[r]);
      out += "<title>";
      append_escaped(out, view.rows[r].header);
      out += "</title></text>";
    }
    append_text(out, "lab", kIdX, layout.consensusY + kTextBaseline, "consensus");
    append_text(out, "lab", kIdX, layout.barY + kTextBaseline, "conservation");
    if (layout.confidenceY >= 0) append_text(out, "lab", kIdX, layout.confidenceY + kTextBaseline, "confidence");
    out += "</g>";
  }
}

void append_svg_open(std::string& out, std::string_view cls, int width, int height, std::string_view id = {}) {
  out += "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"";
  out += cls;
  if (!id.empty()) {
    out += "\" id=\"";
    out += id;
  }
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
  if (layout.confidenceY >= 0) out += kConfidenceKeyText;
  out += "</p>\n<div class=\"wrap\">\n";
  append_svg_open(out, "pic ids", layout.idWidth, height);
  append_id_pane(out, view, layout);
  out += "</svg>\n";
  append_svg_open(out, "pic body", layout.bodyWidth, height, kBlocksId);
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
  append_id_pane(out, view, layout);
  out += "\n<g id=\"";
  out += kBlocksId;
  out += "\" transform=\"translate(";
  append_int(out, layout.idWidth);
  out += ",0)\">";
  append_blocks_pane(stream, out, view, options, layout);
  out += "</g>\n</svg>\n";
  flush_text(stream, out);
}
