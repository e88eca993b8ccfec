#include "seq/text_reader.hpp"

#include "shell/errors.hpp"

int read_seq_text(std::FILE* input, SeqRecord& record, int minRes, int maxRes) {
  fatal_err("read_seq_text", "not built yet");
}
