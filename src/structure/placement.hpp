// Puts a structure read from a file onto the sequence it belongs to, and
// gives every input sequence its structure string (X where none is known).
#pragma once

#include <string>
#include <vector>

#include "structure/structure_source.hpp"

// At least this share of a structure's known residues (all but X) must find
// an identical residue in the sequence, or the two are taken to be different
// proteins.
inline constexpr int kMinPlacedPercent = 90;

// One structure letter (H, B, T, C, X) per residue of sequence (upper-case
// letters). With the structure's own residues known, they are matched to the
// sequence, free to skip residues on either side, and sequence residues left
// without a partner get X; otherwise the states must be exactly as many as
// the residues.
bool place_structure(const StructEntry& entry, const std::string& seqId, const std::string& sequence, std::string& sRes,
                     std::string& error);

// Structure strings for all input sequences, matched by id. A sequence with
// no entry gets all X; an entry whose id is not an input id, or an id given
// twice, is an error.
bool assign_structures(const std::vector<StructEntry>& entries, const std::vector<std::string>& ids,
                       const std::vector<std::string>& sequences, std::vector<std::string>& sRes, std::string& error);
