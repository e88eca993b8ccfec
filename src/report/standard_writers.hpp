// The alignment in the formats other tools read: FASTA, Clustal and
// Stockholm. Each writes the rows of the view as they stand, with the names
// and headers the input gave, '-' for gaps, and nothing that changes from
// run to run.
#pragma once

#include <cstdio>

#include "report/alignment_view.hpp"

void write_fasta_alignment(std::FILE* stream, const AlignmentView& view);
// Header "CLUSTAL ...", blocks of 60 columns and the conservation line.
void write_clustal_alignment(std::FILE* stream, const AlignmentView& view);
// With #=GR SS for every row with structure and #=GC SS_cons where any is known.
void write_stockholm_alignment(std::FILE* stream, const AlignmentView& view);

// The Clustal conservation mark of one column of residues: '*' all the same,
// ':' all in one strong group, '.' all in one weak group, ' ' otherwise (and
// wherever a gap stands).
char conservation_mark(const std::string& column);
