// Swiss-Prot flat files: refused in this version; the parser stands behind
// the refusal so that the format can be switched on.
#pragma once

#include <cstdio>

#include "seq/seq_record.hpp"

int read_seq_sprot(std::FILE* stream, SeqRecord& seq, const WarningSink& warnings);
int parse_seq_sprot(std::FILE* stream, SeqRecord& seq, const WarningSink& warnings);
