// The sequence record, the format dispatcher and the loops that read many
// sequences from one source.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "seq/formats.hpp"
#include "shell/errors.hpp"
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

// How entries are read: their format and length limits, where the keyboard's
// prompts and the count of sequences go, and where warnings about faulty
// entries go.
struct SeqReading {
  int format = kFormatText;
  int minRes = kMinRes;
  int maxRes = kMaxRes;
  std::FILE* output = nullptr;
  WarningSink warnings;
};

// Reads one entry (codes and results: seq/formats.hpp). A fault that ends the
// reading is raised as RunFailure.
int read_seq(std::FILE* input, SeqRecord& record, const SeqReading& how);

// Reads entries into records from count on until the input ends, an entry is
// refused, or maxSeqs are read; result is the last reader result. A fault
// that ends the reading comes back as the failure.
std::optional<Failure> mread_seq(std::FILE* input, std::span<SeqRecord> records, int& count, int maxSeqs,
                                 const SeqReading& how, int& result);
// Reads the file fname whole into records (at most maxSeqs) and writes the
// count to how.output. Fewer than two sequences, an unreadable file or a
// faulty entry come back as the failure.
std::optional<Failure> mget_seqs(const std::string& fname, std::vector<SeqRecord>& records, int maxSeqs,
                                 const SeqReading& how);

// Gives a record what the alignment needs and a reader may have left out:
// the default residue numbering and the 'X' / '-' fillers (flags 0).
void fill_missing_fields(SeqRecord& record);
