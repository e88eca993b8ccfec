// The alignment as a picture: residues coloured by a scheme, each
// sequence's helices, strands and coil above its residues, anchored
// residues boxed and gap-free groups underlined, a ruler above every block
// and the consensus and a conservation bar per column below it. Hovering
// over a residue names its sequence, number and structure state.
#pragma once

#include <cstdio>
#include <string>

#include "report/alignment_view.hpp"
#include "report/residue_colours.hpp"

struct PictureOptions {
  int blockWidth = 60;  // columns a block
  ColourScheme colour = ColourScheme::kClustal;
  PrintOptions settings;  // the run's settings, named in the heading
  std::string date;       // the run's date for the heading; empty: none
};

// One self-contained page: a heading with the settings and the date, then
// the drawing, its ids kept in view when the page scrolls sideways.
void write_html_picture(std::FILE* stream, const AlignmentView& view, const PictureOptions& options);
// The drawing alone, with the settings as its description and no date.
void write_svg_picture(std::FILE* stream, const AlignmentView& view, const PictureOptions& options);
