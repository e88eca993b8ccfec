// Secondary structure for input sequences, read from the files users have:
// FASTA-style state strings, classic DSSP and mmCIF written by mkdssp,
// PSIPRED predictions (.ss2, .horiz) and Stockholm #=GR SS lines. The format
// is recognised from the content. Nothing here prints or exits: every
// failure comes back as a message that names the file, the line where one
// applies and the sequence, and says what to do.
#pragma once

#include <string>
#include <vector>

// One structure as read from a file: the raw state letters as written there,
// and the structure's own residues when the format has them (DSSP, mmCIF,
// PSIPRED); residues is empty for FASTA-style and Stockholm, whose states
// must then match their sequence one for one.
struct StructEntry {
  std::string id;
  std::string residues;
  std::string states;
  std::string origin;                  // the file, and chain where chosen, for messages
  std::vector<std::string> numbers{};  // the file's residue numbers (DSSP, mmCIF), one per residue
  std::string note{};                  // what a user should know about where the states came from
};

// What a source argument names: FILE, ID=FILE, ID=FILE:CHAIN, ID=FILE:FROM-TO
// or ID=FILE:CHAIN:FROM-TO (ID= optional throughout).
struct StructSource {
  std::string id;  // empty: taken from the file
  std::string path;
  std::string chain;  // empty: the first chain
  bool hasRange = false;
  int from = 0, to = 0;  // residue numbers of the file, both kept
};

// Splits a source argument. A whole argument that names an existing file is
// that file, so names holding '=' or ':' still work. After the file, a part
// made of two residue numbers joined by '-' is a residue range, any other
// part the chain.
bool parse_structure_source(const std::string& text, StructSource& source, std::string& error);

// Reads every structure the source holds and appends them to out.
bool read_structure_source(const std::string& text, std::vector<StructEntry>& out, std::string& error);

// ravlin's state for a raw letter: H, G, I -> H; E, B -> B; T, S -> T;
// P, C, '-', blank -> C; X -> X (no information). Lower case counts as upper
// case. Returns 0 for a letter that is no state.
char map_structure_state(char raw);
