// A sequence's secondary structure as drawn above its residues: each helix
// a cylinder, each strand an arrow, turns and coil a thin line, gaps and
// unknown states nothing. Every helix or strand is one SVG element (class
// "helix" or "strand", with data-seq, data-start and data-end) even where
// gaps or block ends cut it into pieces.
#pragma once

#include <string>

#include "report/picture_layout.hpp"

// Appends the track of row `rowIndex` of the view, in the coordinates of the
// blocks' pane.
void append_structure_track(std::string& out, const ViewRow& row, int rowIndex, const PictureLayout& layout);
