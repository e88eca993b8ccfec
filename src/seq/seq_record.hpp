// The sequence record, the global sequence table, the format dispatcher and
// the loops that read many sequences from one source.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "seq/formats.hpp"
#include "shell/limits.hpp"

// One sequence. pRes, sRes and uRes are position-aligned and are read by
// numRes, never by a terminator.
struct SeqRecord {
  std::optional<std::string> acc;
  std::optional<std::string> title;
  std::int32_t hasSRes = 0;  // 1 when sRes came from the input
  std::int32_t hasURes = 0;  // 1 when uRes came from the input
  std::string pRes;
  std::optional<std::string> sRes;
  std::optional<std::string> uRes;
  std::optional<std::string> organism;
  std::optional<std::string> reference;
  std::int32_t numRes = 0;
  std::vector<std::int32_t> resNums;  // empty when absent, else kResNumsLen entries
  // The whole header line as the input wrote it, for formats with one whose
  // ids and descriptions the standard alignment formats give back unchanged.
  std::optional<std::string> header;
};

extern std::vector<SeqRecord> mySeq;  // kMaxSeqs records, all empty at start
extern int multAlignNum;

// Reads one entry of format (codes and results: seq/formats.hpp).
int read_seq(std::FILE* input, std::FILE* output, SeqRecord& record, int format, int minRes, int maxRes);
int mread_seq(std::FILE* input, std::FILE* output, std::span<SeqRecord> records, int& count, int maxSeqs, int format,
              int minRes, int maxRes);
int mget_seqs(const std::string& fname, std::FILE* output, std::span<SeqRecord> records, int format, int maxSeqs,
              int minRes, int maxRes, int& numSeqs);
void free_seq(SeqRecord& record);

// Gives a record what the alignment needs and a reader may have left out:
// the default residue numbering and the 'X' / '-' fillers (flags 0).
void fill_missing_fields(SeqRecord& record);

// The sequence library's single-sequence reader and number prompt.
int get_seq(std::FILE* input, std::FILE* output, SeqRecord& record, int format, int minRes, int maxRes);
int get_top_num(std::FILE* input, std::FILE* output, int min, int max);
