// Where everything of the alignment's picture stands, and the small helpers
// that write SVG text. The picture is a stack of blocks, each `blockWidth`
// columns wide: a ruler, per sequence its structure track (when it has
// structure) and its residue row, then the consensus, the conservation
// bars and, when the run gives one, the column confidence. The ids stand
// in a pane of their own at the left.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "report/alignment_view.hpp"

constexpr int kCellWidth = 10;    // one column
constexpr int kRowHeight = 14;    // a residue row
constexpr int kTrackHeight = 10;  // a structure track
constexpr int kTrackSpace = 5;    // above a structure track: it sits on its own row, apart from the row above
constexpr int kRulerHeight = 16;
constexpr int kBarHeight = 16;  // the conservation bars
constexpr int kMinPictureWidth = 10;
constexpr int kMaxPictureWidth = 3500;

struct PictureLayout {
  int blockWidth = 0;  // columns a block
  int blocks = 0;
  int blockHeight = 0;
  int idWidth = 0;                    // the id pane
  std::vector<std::string> shownIds;  // per row: its id as the id pane shows it
  int bodyWidth = 0;                  // the blocks, with the residue numbers at their right
  std::vector<int> trackY;            // per row: top of its structure track within a block, -1 for none
  std::vector<int> rowY;              // per row: top of its residue row within a block
  int consensusY = 0;
  int barY = 0;
  int confidenceY = -1;  // top of the confidence track within a block, -1 for none
};

PictureLayout calc_picture_layout(const AlignmentView& view, int blockWidth);

inline int block_of(const PictureLayout& layout, int column) { return column / layout.blockWidth; }
inline int block_top(const PictureLayout& layout, int block) { return block * layout.blockHeight; }
// Left edge of a column's cell within its block.
inline int column_x(const PictureLayout& layout, int column) { return column % layout.blockWidth * kCellWidth; }

// The residue number of a row's count-th residue (counted from 1), as the
// report numbers it: the input's numbering where it has one.
int residue_number(const ViewRow& row, int count);
// The word for a structure code in hover texts; empty for none known.
std::string_view state_word(char state);
// Helix and strand codes; everything else known is turn or coil.
bool is_helix(char state);
bool is_strand(char state);

// The last column, at most `last`, of the stretch from `column` on that
// holds the same byte as `column` in `line`.
int same_run_end(std::string_view line, int column, int last);

void append_int(std::string& out, long value);
// Text for an SVG or HTML text node or attribute value.
void append_escaped(std::string& out, std::string_view text);
// Text for a double-quoted string of a script inside the drawing: no
// character that would end the string, the script or its CDATA section.
void append_script_text(std::string& out, std::string_view text);
// The sequence's id as the input gives it, whatever its length: what the
// id pane, the hover texts and data-seq name it by (the report's ids are
// cut to 12 characters, which can make two sequences look the same).
const std::string& full_id(const ViewRow& row);
