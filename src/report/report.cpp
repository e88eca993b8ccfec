#include "report/report.hpp"

#include "shell/errors.hpp"

void print_seq_id(std::FILE* stream, const char* id) {
  fatal_err("print_seq_id", "not built yet");
}

void print_divide(std::FILE* stream, char ch) {
  fatal_err("print_divide", "not built yet");
}

void print_res_line(std::FILE* stream, int seqIndex, const char* alignedText, int start, int len, int* count) {
  fatal_err("print_res_line", "not built yet");
}

void print_struct_line(std::FILE* stream, const char* structText, int start, int len) {
  fatal_err("print_struct_line", "not built yet");
}

void print_seq_lumark(std::FILE* stream, const SeqRecord& record) {
  fatal_err("print_seq_lumark", "not built yet");
}

void set_seq_id_str(std::span<const int> alignOrder) {
  fatal_err("set_seq_id_str", "not built yet");
}

std::string get_date() {
  fatal_err("get_date", "not built yet");
}

int get_malign_index(std::span<const int> alignOrder, int index, int byInput) {
  fatal_err("get_malign_index", "not built yet");
}

void print_report_header(std::FILE* stream) {
  fatal_err("print_report_header", "not built yet");
}

void print_pairwise_section(std::FILE* stream, std::span<const AlignRecord> pairs) {
  fatal_err("print_pairwise_section", "not built yet");
}

void print_sequences_section(std::FILE* stream, std::span<const int> alignOrder) {
  fatal_err("print_sequences_section", "not built yet");
}

void print_pct_hom_section(std::FILE* stream, std::span<const int> alignOrder, const PctHomTable& pctHom) {
  fatal_err("print_pct_hom_section", "not built yet");
}

void print_statistics(std::FILE* stream, const AlignRecord& malign) {
  fatal_err("print_statistics", "not built yet");
}

void print_mult_align(std::FILE* stream, const AlignRecord& malign, std::span<const int> alignOrder) {
  fatal_err("print_mult_align", "not built yet");
}
