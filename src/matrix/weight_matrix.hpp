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

// Reads one lower-triangle section into matrix; a fault is raised as
// RunFailure naming the line.
int read_matrix_file(std::FILE* stream, ScoreTable& matrix);
