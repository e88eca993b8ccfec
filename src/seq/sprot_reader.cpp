#include "seq/sprot_reader.hpp"

#include "shell/errors.hpp"

int read_seq_sprot(std::FILE* stream, SeqRecord& seq) {
  fatal_err("read_seq_sprot", "not built yet");
}

int parse_seq_sprot(std::FILE* stream, SeqRecord& seq) {
  fatal_err("parse_seq_sprot", "not built yet");
}
