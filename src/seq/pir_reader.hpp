// PIR (NBRF) text format.
#pragma once

#include <cstdio>

#include "seq/seq_record.hpp"

int read_seq_pir(std::FILE* stream, SeqRecord& seq, int minRes, int maxRes, const WarningSink& warnings);
