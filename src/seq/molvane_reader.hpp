// Molvane format: line-tagged entries that start with "PSEQ" and end at an
// empty line.
#pragma once

#include <cstdio>

#include "seq/seq_record.hpp"

int read_seq_molvane(std::FILE* stream, SeqRecord& seq, int minRes, int maxRes, const WarningSink& warnings);
