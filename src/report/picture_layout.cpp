#include "report/picture_layout.hpp"

#include <algorithm>
#include <charconv>
#include <map>

namespace {

constexpr std::size_t kMaxShownId = 40;  // characters of an id in the id pane
constexpr std::size_t kShownHead = 19;   // of a longer id, before the ellipsis; the rest from its end
constexpr double kIdCharWidth = 7.3;     // of the 12 px monospace font
constexpr int kNumberWidth = 48;         // the residue numbers right of a block
constexpr int kConsensusHeight = 14;
constexpr int kConsensusSpace = 4;  // sets the consensus off the last sequence
constexpr int kBlockGap = 14;
constexpr int kTrackGap = 2;  // keeps the confidence bars off the conservation bars

bool starts_char(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) != 0x80; }

std::size_t char_count(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), starts_char));
}

// Where the character `chars` (from 0) of text starts.
std::size_t char_offset(std::string_view text, std::size_t chars) {
  std::size_t at = 0;
  for (; at < text.size(); ++at)
    if (starts_char(text[at]) && chars-- == 0) break;
  return at;
}

// An id too long for the pane keeps its start and its end, where ids of
// one source tell their sequences apart (a species, a range).
std::string shortened(const std::string& id) {
  const std::size_t chars = char_count(id);
  if (chars <= kMaxShownId) return id;
  return id.substr(0, char_offset(id, kShownHead)) + "\xe2\x80\xa6" +
         id.substr(char_offset(id, chars - (kMaxShownId - kShownHead - 1)));
}

// Every row's id as shown: whole, or shortened where that leaves it
// unlike every other row's; ids alike when shortened are shown whole.
std::vector<std::string> calc_shown_ids(const AlignmentView& view) {
  std::vector<std::string> ids;
  std::map<std::string, int> uses;
  for (const ViewRow& row : view.rows) ++uses[ids.emplace_back(shortened(full_id(row)))];
  for (std::size_t r = 0; r < ids.size(); ++r)
    if (uses[ids[r]] > 1) ids[r] = full_id(view.rows[r]);
  return ids;
}

std::size_t id_chars(const std::vector<std::string>& ids) {
  std::size_t longest = 12;  // room for the labels "conservation" and "consensus"
  for (const std::string& id : ids) longest = std::max(longest, char_count(id));
  return longest;
}

}  // namespace

PictureLayout calc_picture_layout(const AlignmentView& view, int blockWidth) {
  PictureLayout layout;
  layout.blockWidth = std::max(blockWidth, 1);
  const int width = std::max(view.width, 0);
  layout.blocks = (width + layout.blockWidth - 1) / layout.blockWidth;
  layout.shownIds = calc_shown_ids(view);
  layout.idWidth = 16 + static_cast<int>(static_cast<double>(id_chars(layout.shownIds)) * kIdCharWidth + 0.5);
  layout.bodyWidth = std::min(width, layout.blockWidth) * kCellWidth + kNumberWidth;
  int y = kRulerHeight;
  for (const ViewRow& row : view.rows) {
    if (row.hasStructure) y += kTrackSpace;
    layout.trackY.push_back(row.hasStructure ? y : -1);
    if (row.hasStructure) y += kTrackHeight;
    layout.rowY.push_back(y);
    y += kRowHeight;
  }
  layout.consensusY = y + kConsensusSpace;
  layout.barY = layout.consensusY + kConsensusHeight;
  y = layout.barY + kBarHeight;
  if (!view.confidence.empty()) {
    layout.confidenceY = y + kTrackGap;
    y = layout.confidenceY + kBarHeight;
  }
  layout.blockHeight = y + kBlockGap;
  return layout;
}

int residue_number(const ViewRow& row, int count) {
  if (count >= 0 && count < static_cast<int>(row.resNums.size())) return row.resNums[static_cast<std::size_t>(count)];
  return count;
}

std::string_view state_word(char state) {
  switch (state) {
    case 'H':
      return "helix";
    case 'B':
    case 'E':
      return "strand";
    case 'T':
      return "turn";
    case 'C':
      return "coil";
    default:
      return "";
  }
}

bool is_helix(char state) { return state == 'H'; }
bool is_strand(char state) { return state == 'B' || state == 'E'; }

int same_run_end(std::string_view line, int column, int last) {
  const int end = std::min(last, static_cast<int>(line.size()) - 1);
  while (column < end && line[static_cast<std::size_t>(column + 1)] == line[static_cast<std::size_t>(column)]) ++column;
  return column;
}

void append_int(std::string& out, long value) {
  char text[24];
  const auto result = std::to_chars(text, text + sizeof text, value);
  out.append(text, result.ptr);
}

namespace {

// Length of the well-formed UTF-8 sequence at text[at], 0 if there is none.
std::size_t utf8_length(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char lead = byte(at);
  const std::size_t length = lead >= 0xf0 && lead < 0xf5 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc2 && lead < 0xe0 ? 2 : 0;
  if (length == 0 || at + length > text.size()) return 0;
  for (std::size_t k = 1; k < length; ++k)
    if ((byte(at + k) & 0xc0) != 0x80) return 0;
  return length;
}

// Copies the character at text[at], '?' for a byte that is not UTF-8 (a
// Latin-1 header, say), which would make the file unreadable; returns the
// bytes taken.
std::size_t append_utf8_char(std::string& out, std::string_view text, std::size_t at) {
  const std::size_t length = utf8_length(text, at);
  out += length == 0 ? std::string_view("?") : text.substr(at, length);
  return std::max<std::size_t>(length, 1);
}

}  // namespace

void append_escaped(std::string& out, std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char ch = text[at];
    if (static_cast<unsigned char>(ch) >= 0x80) {
      at += append_utf8_char(out, text, at) - 1;
      continue;
    }
    switch (ch) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&#39;";
        break;
      default:
        // Control characters are not allowed in XML at all.
        if (static_cast<unsigned char>(ch) < 0x20) {
          out += ' ';
        } else {
          out += ch;
        }
    }
  }
}

void append_script_text(std::string& out, std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char ch = text[at];
    if (static_cast<unsigned char>(ch) >= 0x80) {
      at += append_utf8_char(out, text, at) - 1;
    } else if (ch == '"' || ch == '\\') {
      out += '\\';
      out += ch;
    } else if (ch == '<' || ch == '>' || ch == '&') {
      out += ch == '<' ? "\\u003c" : ch == '>' ? "\\u003e" : "\\u0026";
    } else {
      out += static_cast<unsigned char>(ch) < 0x20 ? ' ' : ch;
    }
  }
}

const std::string& full_id(const ViewRow& row) { return row.name.empty() ? row.id : row.name; }
