// Hovering over a residue of the picture names its sequence, the residue
// and its number, its structure state and its anchor or group. A small
// script inside the drawing finds the residue under the pointer from the
// layout and the rows' text, so the drawing needs no element per residue.
#pragma once

#include <string>

#include "report/picture_layout.hpp"

// The id of the element that holds the blocks; the hover script draws in it.
constexpr const char* kBlocksId = "blocks";

// Appends the script element; `out` must be inside the element of id
// kBlocksId, whose origin is the top left of the first block.
void append_hover_script(std::string& out, const AlignmentView& view, const PictureLayout& layout);
