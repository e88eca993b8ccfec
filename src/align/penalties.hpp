// Converters that prepare the per-position arrays of the sum matrix: table
// indices, structure gap penalties, anchors and group penalties.
#pragma once

#include <cstdint>

// out[p] = str[p] - 'A' for an upper-case letter, else other.
void codes_to_indices(const char* str, int n, std::int32_t* out, int other);
void calc_struct_scores(const char* sRes, int n, std::int32_t* out, int midPen, int endPen, int reach);
void calc_anchor_group_pen(const char* uRes, int n, std::int32_t* codes, std::int32_t* groupPen, int pen);
