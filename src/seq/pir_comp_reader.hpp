// Compressed PIR records: 5-bit packed residues with run lengths, and text
// coded with escapes, number ranges and two dictionaries.
#pragma once

#include <cstdio>

#include "seq/seq_record.hpp"

inline constexpr int kJournalSlots = 528;
inline constexpr int kJournalRows = 521;
inline constexpr int kRepWordRows = 257;

extern const char* const journals[kJournalSlots];  // rows 521.. are absent (null)
extern const char* const rep_words[kRepWordRows];

int read_seq_pir_comp(std::FILE* stream, SeqRecord& seq);
