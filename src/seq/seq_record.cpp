#include "seq/seq_record.hpp"

#include "shell/errors.hpp"

std::vector<SeqRecord> mySeq(kMaxSeqs);
int multAlignNum = 0;

int read_seq(std::FILE* input, std::FILE* output, SeqRecord& record, int format, int minRes, int maxRes) {
  fatal_err("read_seq", "not built yet");
}

int mread_seq(std::FILE* input, std::FILE* output, std::span<SeqRecord> records, int& count, int maxSeqs, int format, int minRes, int maxRes) {
  fatal_err("mread_seq", "not built yet");
}

int mget_seqs(const std::string& fname, std::FILE* output, std::span<SeqRecord> records, int format, int maxSeqs, int minRes, int maxRes, int& numSeqs) {
  fatal_err("mget_seqs", "not built yet");
}

void free_seq(SeqRecord& record) {
  fatal_err("free_seq", "not built yet");
}

void fill_missing_fields(SeqRecord& record) {
  fatal_err("fill_missing_fields", "not built yet");
}

int get_seq(std::FILE* input, std::FILE* output, SeqRecord& record, int format, int minRes, int maxRes) {
  fatal_err("get_seq", "not built yet");
}

int get_top_num(std::FILE* input, std::FILE* output, int min, int max) {
  fatal_err("get_top_num", "not built yet");
}
