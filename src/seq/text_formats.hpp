// Sequence files as other tools write them: FASTA (plain or aligned), the PIR
// layout of ">P1;ID" entries, and Stockholm alignments. Each parser takes a
// whole file's text and returns its entries, or the first fault it finds
// with the line it stands on. Nothing here ends the process.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct TextEntry {
  std::string id;           // first word of the header
  std::string description;  // the rest of the header, blanks around it removed
  std::string header;       // the whole header line as written, without '>' and line end
  std::string residues;     // upper case, gaps and a final '*' removed
  std::string structure;    // Stockholm's #=GR SS, on the residues only; empty when absent
  int line = 0;             // the header's line, from 1
};

struct TextFault {
  int line = 0;
  std::string message;  // names the sequence and says what to do
};

bool read_fasta_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault);
bool read_pir_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault);
bool read_stockholm_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault);
