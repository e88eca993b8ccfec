// The program's fixed limits, in one place.
#pragma once

#include <cstddef>

inline constexpr int kMaxSeqs = 500;           // sequences in one run
inline constexpr int kMinRes = 3;              // residues a sequence needs at least
inline constexpr int kMaxRes = 4000;           // residues a sequence may have at most
inline constexpr int kResNumsLen = 4000;       // entries of a residue numbering table
inline constexpr int kMaxAlignLen = 3500;      // columns of an aligned string
inline constexpr std::size_t kFnameLen = 256;  // file name buffers, terminator included
inline constexpr int kLineRead = 254;          // characters of one bounded line read
inline constexpr int kSeqSelectMax = kMaxSeqs + 2;
