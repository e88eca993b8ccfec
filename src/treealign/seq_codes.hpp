// A sequence as table codes and per-residue penalties.
#pragma once

#include <cstdint>
#include <vector>

#include "seq/seq_record.hpp"

// Per sequence, what its pairs and joins read of it, computed once.
struct SeqCodes {
  std::vector<std::int32_t> res, ss;    // table codes 0 .. 26
  std::vector<std::int32_t> structPen;  // gap penalty inside its helices and strands (table units)
  std::vector<char> anchor;             // '1'..'5', or 0
  std::vector<char> inGroup;            // 1 where the residue and the one before belong to a gap-free group
  bool hasSs = false;
};

// Short or absent structure and grouping strings read as 'X' (no structure)
// and '-' (no mark).
SeqCodes seq_codes(const SeqRecord& seq, int midPen, int endPen);
