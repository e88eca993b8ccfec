// A sequence typed at the terminal, closed by '$'.
#pragma once

#include <cstdio>

#include "seq/seq_record.hpp"

int read_seq_kbd(std::FILE* input, std::FILE* output, SeqRecord& seq, int minRes, int maxRes,
                 const WarningSink& warnings);
void print_ruler(std::FILE* output, int indent);
