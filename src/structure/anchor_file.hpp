// Anchors and gap-free groups given as a FASTA-style file: per sequence id
// one symbol per residue, '-' for none, '*' for a group member, '1' to '5'
// for the anchors.
#pragma once

#include <string>
#include <vector>

struct AnchorEntry {
  std::string id;
  std::string symbols;
  std::string origin;  // file and header line, for messages
};

bool read_anchor_file(const std::string& path, std::vector<AnchorEntry>& out, std::string& error);

// Anchor strings for all input sequences, matched by id: a sequence with no
// entry gets all '-'. Errors as for structure: an unknown or repeated id, or
// symbols not as many as the residues.
bool assign_anchors(const std::vector<AnchorEntry>& entries, const std::vector<std::string>& ids,
                    const std::vector<std::string>& sequences, std::vector<std::string>& uRes, std::string& error);
