// ravlin-align's input: the sequence file read whole, its format recognised
// from the content, every sequence checked and put into the run's sequence
// table. Faults come back as messages; nothing here ends the process.
#pragma once

#include <string>
#include <vector>

#include "seq/seq_record.hpp"

struct InputSeqs {
  std::string format;                  // the format the file was read as
  std::string note;                    // why, when the guess was close; empty otherwise
  std::vector<std::string> ids;        // the ids as the input gives them
  std::vector<std::string> residues;   // ungapped, upper case
  std::vector<std::string> aligned;    // the rows as the file aligns them ('-' gaps); else the residues
  std::vector<std::string> structure;  // per sequence: states from the input itself, or empty
  std::vector<SeqRecord> records;      // the run's records, ids cut to the report's 12 characters
};

// Reads path ("-" for standard input) as format (empty: recognised) into
// input. False with a message naming the file, the line and the
// sequence, and what to do. designedLimits: at most 500 sequences of 3 to
// 4,000 residues (else only the 3-residue minimum holds).
bool read_input_seqs(const std::string& path, const std::string& format, bool designedLimits, InputSeqs& input,
                     std::string& error);

// Adds the sequences of more (read from moreFile) after those of input
// (from inputFile). False, with a message naming both files, when an id is in both.
bool append_input_seqs(InputSeqs& input, InputSeqs&& more, const std::string& inputFile, const std::string& moreFile,
                       std::string& error);

// The id shown in the report and the Molvane layout for the n-th sequence
// (from 1): the id itself when it has at most 12 characters and no other
// sequence shows it, else its first 8 characters, '~' and n.
std::string short_id(const std::string& id, int n);
