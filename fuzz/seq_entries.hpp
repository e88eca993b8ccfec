// Reading every entry of one input with a designed sequence reader, as the
// programs' reading loop does, and checking what the records promise their
// users: the residue, structure and anchor texts hold numRes characters.
#pragma once

#include <cstdlib>
#include <vector>

#include "fuzz/fuzz_support.hpp"
#include "seq/seq_record.hpp"

namespace fuzz {

inline void check_record(const SeqRecord& record) {
  const auto n = static_cast<std::size_t>(record.numRes < 0 ? 0 : record.numRes);
  if (record.numRes < 0 || record.pRes.size() < n) std::abort();
  if (record.sRes && record.sRes->size() < n) std::abort();
  if (record.uRes && record.uRes->size() < n) std::abort();
}

inline void read_all_entries(const std::uint8_t* data, std::size_t size, int format) {
  std::string bytes = text_of(data, size);
  UniqueFile input = stream_over(bytes);
  if (!input) return;
  static UniqueFile quiet = open_file("/dev/null", "w");
  std::vector<SeqRecord> table(static_cast<std::size_t>(kMaxSeqs) + 1);
  int count = 0, result = 0;
  const SeqReading how{format, kMinRes, kMaxRes, quiet.get(), nullptr};
  mread_seq(input.get(), table, count, kMaxSeqs + 1, how, result);
  for (int k = 0; k < count && k < static_cast<int>(table.size()); ++k) check_record(table[k]);
}

}  // namespace fuzz
