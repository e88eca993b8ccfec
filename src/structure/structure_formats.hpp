// The readers behind read_structure_source, one per file format, and the
// small text helpers they share. Each reader gets the whole file as text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/text_input.hpp"
#include "structure/structure_source.hpp"

// The file name without directories and without any extension.
std::string id_from_path(const std::string& path);

// "FILE line N: " for messages.
std::string file_line(const std::string& path, int line);

// A FASTA-style record: the header's first word and the data lines joined.
struct FastaRecord {
  std::string id;
  std::string data;
  int line = 0;  // the header's line
};

// Reads FASTA-style records, laid out as seq/text_formats lays out FASTA.
// Within a data line, characters are kept as they stand (a blank may be
// data); blanks at the end of a line are dropped. Each character must be one
// of allowed, else the error names file, line and id.
bool read_fasta_records(const std::string& path, std::string_view text, std::string_view allowed, const char* what,
                        std::vector<FastaRecord>& out, std::string& error);

bool read_ss_fasta(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                   std::string& error);
bool read_ss_stockholm(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                       std::string& error);
bool read_ss_dssp(const StructSource& source, std::string_view text, std::vector<StructEntry>& out, std::string& error);
bool read_ss_mmcif(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                   std::string& error);
bool read_ss_psipred(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                     std::string& error);

// One-letter code of a three-letter residue name; 'X' for any other.
char residue_letter(std::string_view name);
