#include "seq/pir_reader.hpp"

#include "shell/errors.hpp"

int read_seq_pir(std::FILE* stream, SeqRecord& seq, int minRes, int maxRes) {
  fatal_err("read_seq_pir", "not built yet");
}
