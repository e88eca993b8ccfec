#include "seq/molvane_reader.hpp"

#include "shell/errors.hpp"

int read_seq_molvane(std::FILE* stream, SeqRecord& seq, int minRes, int maxRes) {
  fatal_err("read_seq_molvane", "not built yet");
}
