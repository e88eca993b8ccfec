// The colour of every residue of an alignment under one of the usual
// schemes: Clustal X (by residue class and how the column agrees), Zappo
// (by physico-chemical class), hydrophobicity (Kyte-Doolittle) or none.
#pragma once

#include <string>
#include <vector>

#include "report/alignment_view.hpp"

enum class ColourScheme { kNone, kClustal, kZappo, kHydrophobicity };

// The scheme's colours as "#rrggbb"; entry 0 is the uncoloured cell.
std::vector<std::string> scheme_palette(ColourScheme scheme);

// Per row of the view, one byte per column: the palette entry of that
// residue's colour (0 for gaps and uncoloured residues).
std::vector<std::string> calc_residue_colours(const AlignmentView& view, ColourScheme scheme);
