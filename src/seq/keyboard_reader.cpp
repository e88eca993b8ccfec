#include "seq/keyboard_reader.hpp"

#include "shell/errors.hpp"

int read_seq_kbd(std::FILE* input, std::FILE* output, SeqRecord& seq, int minRes, int maxRes) {
  fatal_err("read_seq_kbd", "not built yet");
}

void print_ruler(std::FILE* output, int indent) {
  fatal_err("print_ruler", "not built yet");
}
