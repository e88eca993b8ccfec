// Sections: append_structure_track at the end; before it the runs of
// helices and strands, the drawing of their pieces and of the coil line.
#include "report/structure_track.hpp"

#include <algorithm>
#include <cctype>

namespace {

// Geometry within a track of kTrackHeight.
constexpr int kHelixTop = 1;
constexpr int kHelixHeight = 8;
constexpr int kStrandTop = 3;
constexpr int kStrandHeight = 4;
constexpr int kArrowHead = 6;  // length of a strand's head
constexpr int kLineY = 5;

enum class Shape { kNone, kLine, kHelix, kStrand };

char state_at(const ViewRow& row, std::size_t c) {
  const char state = c < row.structure.size() ? row.structure[c] : 'X';
  return static_cast<char>(std::toupper(static_cast<unsigned char>(state)));
}

bool is_gap(const ViewRow& row, std::size_t c) { return row.residues[c] == ' '; }

Shape shape_at(const ViewRow& row, std::size_t c) {
  if (is_gap(row, c)) return Shape::kNone;
  const char state = state_at(row, c);
  if (is_helix(state)) return Shape::kHelix;
  if (is_strand(state)) return Shape::kStrand;
  return state == 'X' || state == ' ' ? Shape::kNone : Shape::kLine;
}

// A helix or strand: consecutive residues of one shape, whatever gaps stand
// between them in the alignment.
struct Run {
  Shape shape = Shape::kNone;
  int firstColumn = 0;
  int lastColumn = 0;
  int firstNumber = 0;
  int lastNumber = 0;
};

struct Piece {
  int x = 0;  // in the blocks' pane
  int y = 0;  // top of the track
  int width = 0;
};

void append_point(std::string& out, int x, int y) {
  append_int(out, x);
  out += ',';
  append_int(out, y);
  out += ' ';
}

void append_helix_piece(std::string& out, const Piece& piece) {
  out += "<rect x=\"";
  append_int(out, piece.x + 1);
  out += "\" y=\"";
  append_int(out, piece.y + kHelixTop);
  out += "\" width=\"";
  append_int(out, piece.width - 2);
  out += "\" height=\"";
  append_int(out, kHelixHeight);
  out += "\" rx=\"3\"/>";
}

// A bar; the piece that holds the strand's last residue ends in a head.
void append_strand_piece(std::string& out, const Piece& piece, bool withHead) {
  const int left = piece.x + 1;
  const int right = piece.x + piece.width - 1;
  const int neck = withHead ? std::max(left, right - kArrowHead) : right;
  const int top = piece.y + kStrandTop;
  const int bottom = top + kStrandHeight;
  out += "<polygon points=\"";
  append_point(out, left, top);
  append_point(out, neck, top);
  if (withHead) {
    append_point(out, neck, piece.y);
    append_point(out, right, piece.y + kLineY);
    append_point(out, neck, piece.y + kTrackHeight);
  }
  append_point(out, neck, bottom);
  append_point(out, left, bottom);
  out.back() = '"';
  out += "/>";
}

// Pieces are the run's stretches of residues without a gap or a block end.
void append_run(std::string& out, const ViewRow& row, const Run& run, int trackY, const PictureLayout& layout) {
  const bool helix = run.shape == Shape::kHelix;
  out += helix ? "<g class=\"helix\" data-seq=\"" : "<g class=\"strand\" data-seq=\"";
  append_escaped(out, full_id(row));
  out += "\" data-start=\"";
  append_int(out, run.firstNumber);
  out += "\" data-end=\"";
  append_int(out, run.lastNumber);
  out += "\"><title>";
  append_escaped(out, full_id(row));
  out += helix ? " helix " : " strand ";
  append_int(out, run.firstNumber);
  out += '-';
  append_int(out, run.lastNumber);
  out += "</title>";
  for (int c = run.firstColumn; c <= run.lastColumn;) {
    int end = c;
    while (end < run.lastColumn && !is_gap(row, static_cast<std::size_t>(end + 1)) &&
           block_of(layout, end + 1) == block_of(layout, c))
      ++end;
    const Piece piece{column_x(layout, c), block_top(layout, block_of(layout, c)) + trackY, (end - c + 1) * kCellWidth};
    if (helix) {
      append_helix_piece(out, piece);
    } else {
      append_strand_piece(out, piece, end == run.lastColumn);
    }
    c = end + 1;
    while (c <= run.lastColumn && is_gap(row, static_cast<std::size_t>(c))) ++c;
  }
  out += "</g>";
}

// One path for all the row's turns and coil: a segment per stretch of
// them without a gap or a block end.
void append_coil_line(std::string& out, const ViewRow& row, int trackY, const PictureLayout& layout, int width) {
  std::string path;
  for (int c = 0; c < width;) {
    if (shape_at(row, static_cast<std::size_t>(c)) != Shape::kLine) {
      ++c;
      continue;
    }
    int end = c;
    while (end + 1 < width && shape_at(row, static_cast<std::size_t>(end + 1)) == Shape::kLine &&
           block_of(layout, end + 1) == block_of(layout, c))
      ++end;
    path += 'M';
    append_int(path, column_x(layout, c));
    path += ' ';
    append_int(path, block_top(layout, block_of(layout, c)) + trackY + kLineY);
    path += 'h';
    append_int(path, (end - c + 1) * kCellWidth);
    c = end + 1;
  }
  if (path.empty()) return;
  out += "<path class=\"coil\" d=\"";
  out += path;
  out += "\"/>";
}

}  // namespace

void append_structure_track(std::string& out, const ViewRow& row, int rowIndex, const PictureLayout& layout) {
  const int trackY = layout.trackY[static_cast<std::size_t>(rowIndex)];
  if (trackY < 0) return;
  const int width = static_cast<int>(row.residues.size());
  append_coil_line(out, row, trackY, layout, width);
  Run run;
  int count = 0;
  for (int c = 0; c < width; ++c) {
    if (is_gap(row, static_cast<std::size_t>(c))) continue;
    ++count;
    const Shape shape = shape_at(row, static_cast<std::size_t>(c));
    const int number = residue_number(row, count);
    if (shape == run.shape && shape != Shape::kNone && shape != Shape::kLine) {
      run.lastColumn = c;
      run.lastNumber = number;
      continue;
    }
    if (run.shape == Shape::kHelix || run.shape == Shape::kStrand) append_run(out, row, run, trackY, layout);
    run = Run{shape, c, c, number, number};
  }
  if (run.shape == Shape::kHelix || run.shape == Shape::kStrand) append_run(out, row, run, trackY, layout);
}
