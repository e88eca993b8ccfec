// The alignment in the formats other tools read: FASTA, Clustal, Stockholm,
// GCG's MSF, relaxed PHYLIP and A2M. Each writes the rows of the view as they stand, with the names
// and headers the input gave, '-' for gaps, and nothing that changes from
// run to run.
#pragma once

#include <cstdio>

#include "report/alignment_view.hpp"

void write_fasta_alignment(std::FILE* stream, const AlignmentView& view);
// Header "CLUSTAL ...", blocks of 60 columns and the conservation line.
void write_clustal_alignment(std::FILE* stream, const AlignmentView& view);
// With #=GS DE for every row with a description, #=GR SS for every row with
// structure and #=GC SS_cons where any is known.
void write_stockholm_alignment(std::FILE* stream, const AlignmentView& view);
// GCG's layout: the checksums, blocks of 50 in groups of 10, '~' for end
// gaps and '.' for inner ones; ids only.
void write_msf_alignment(std::FILE* stream, const AlignmentView& view);
// Relaxed PHYLIP: "ROWS COLUMNS", then each id, a blank and its whole row on
// one line (which the interleaved and the sequential readers both take).
void write_phylip_alignment(std::FILE* stream, const AlignmentView& view);
// FASTA whose case marks the columns: where at least half the rows have a
// residue, a match column (upper case, '-' for gaps), elsewhere an insert
// column (lower case, '.').
void write_a2m_alignment(std::FILE* stream, const AlignmentView& view);

// The Clustal conservation mark of one column of residues: '*' all the same,
// ':' all in one strong group, '.' all in one weak group, ' ' otherwise (and
// wherever a gap stands).
char conservation_mark(const std::string& column);
