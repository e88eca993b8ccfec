// The program's own text-based sequence format: a '>' header with a code and
// a title, then residue, structure, anchor and comment lines.
#pragma once

#include <cstdio>

#include "seq/seq_record.hpp"

int read_seq_text(std::FILE* input, SeqRecord& record, int minRes, int maxRes);
