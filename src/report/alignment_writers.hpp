// Writers of a finished alignment: one function per layout, each reading
// only the alignment view and the print options.
#pragma once

#include <cstdio>

#include "report/alignment_view.hpp"

// Blocks of resLineLen columns: a residue line per row, its structure line
// when it has one, and the consensus line.
void write_blocks_layout(std::FILE* stream, const AlignmentView& view, const PrintOptions& options);
// One Molvane-format entry per row, with its gaps.
void write_molvane_layout(std::FILE* stream, const AlignmentView& view);
