// The weight file's score tables: residues (wtMatrix) and secondary
// structure (ssMatrix), 32 x 32 signed integers indexed row * 32 + column.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

inline constexpr int kTableDim = 32;  // score tables are kTableDim x kTableDim
inline constexpr int kTableSize = kTableDim * kTableDim;

using ScoreTable = std::array<std::int32_t, kTableSize>;

extern ScoreTable wtMatrix;
extern ScoreTable ssMatrix;
extern std::string wtMatFname;

// Reads one lower-triangle section into matrix; every fault is fatal.
int read_matrix_file(std::FILE* stream, ScoreTable& matrix);
