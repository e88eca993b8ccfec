#include "seq/pir_comp_reader.hpp"

#include "shell/errors.hpp"

const char* const journals[kJournalSlots] = {};
const char* const rep_words[kRepWordRows] = {};

int read_seq_pir_comp(std::FILE* stream, SeqRecord& seq) {
  fatal_err("read_seq_pir_comp", "not built yet");
}
