// Traceback: follows the links of a summed matrix and writes two templates,
// 'X' where an operand's next position stands and ' ' where it has a gap.
#pragma once

#include <cstdint>
#include <span>

#include "align/sum_matrix.hpp"

// Writes stop at the end of the buffers; the length still counts every
// column, so an over-long alignment is caught by find_best_align's limit.
int insert_dSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second);
int insert_mSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second);
int find_best_align(std::int32_t start, const SumCell* matrix, int rows, int cols, std::span<char> first,
                    std::span<char> second, int maxLen);
