// The vector kernel of the pairwise stage: one row sequence against up to
// `lanes` column sequences at once, one pair per lane. It computes exactly
// what sum_matrix_cells computes (same sums, same choices, same ties) but
// keeps only two score rows and, per cell, the bits the traceback needs.
//
// Lane layout: every per-column array holds `lanes` entries per column,
// lane l at [c * lanes + l]. A lane whose sequence is shorter than the batch
// width `cols` is padded at the start: its real column 0 is laneStart[l]. The
// summation runs from the right, so padded cells never feed a real one.
#pragma once

#include <cstddef>
#include <cstdint>

// What the traceback keeps per cell and lane, as four bit fields of one
// entry (field f of lane l is bit f * lanes + l):
inline constexpr int kTookColCarry = 0;  // the cell's successor came from its column carry
inline constexpr int kTookRowCarry = 1;  // ... from the row carry
inline constexpr int kRowRefreshed = 2;  // the row carry took this step's candidate
inline constexpr int kColRefreshed = 3;  // the column carry took this step's candidate

// Bytes of one cell entry: four fields of `lanes` bits.
inline constexpr std::size_t lane_entry_bytes(int lanes) { return static_cast<std::size_t>(lanes) / 2; }

// The fields of a column in LaneBatch::colState.
inline constexpr int kColStructMin = 0;  // min(colStruct[c - 1], colStruct[c])
inline constexpr int kColGapCharge = 1;  // gapPen + colGroup[c]
inline constexpr int kColScore = 2;      // the column carry: score,
inline constexpr int kColLevel = 3;      // structure level,
inline constexpr int kColUsable = 4;     // and whether a candidate has set it
inline constexpr int kColFields = 5;

struct LaneBatch {
  int rows = 0;   // positions of the row sequence
  int cols = 0;   // padded width of the column sequences
  int lanes = 0;  // pairs side by side (the kernel's width)
  std::int32_t gapSizePen = 0;

  // Per row i: codes selecting the profile rows; the row's step terms.
  const std::int32_t* rowWtCode = nullptr;     // [rows] 0..31
  const std::int32_t* rowSsCode = nullptr;     // [rows] 0..31, or null for no structure scores
  const std::int32_t* rowStructMin = nullptr;  // [rows] min(rowStruct[i], rowStruct[i+1])
  const std::int32_t* rowGapCharge = nullptr;  // [rows] gapPen + rowGroup[i+1]

  // Per column (lane-interleaved): pair scores by row code.
  const std::int32_t* wtProfile = nullptr;  // [32][cols][lanes]
  const std::int32_t* ssProfile = nullptr;  // [32][cols][lanes], used when rowSsCode is set
  const std::int32_t* laneStart = nullptr;  // [lanes] real column 0 of each lane
  const std::int32_t* zeroRow = nullptr;    // [cols][lanes] of 0: structure scores when there are none

  // Per column, kColFields groups of `lanes` entries side by side (one
  // pointer serves the whole column): the step terms, filled by the caller,
  // and the column carry, the kernel's scratch.
  std::int32_t* colState = nullptr;  // [cols][kColFields][lanes]

  // Scratch, [cols][lanes] each: two score rows.
  std::int32_t* rowA = nullptr;
  std::int32_t* rowB = nullptr;

  // Out: sums of each lane's real column 0 for every row, [rows][lanes];
  // the cell entries, [rows - 1][cols] entries of lane_entry_bytes(lanes).
  std::int32_t* colZeroSums = nullptr;
  unsigned char* bits = nullptr;
};

// In: a filled batch. Out: colZeroSums, bits, and the returned pointer to
// row 0's sums ([cols][lanes], inside rowA or rowB).
const std::int32_t* lane_sum_sse41(const LaneBatch& batch);
const std::int32_t* lane_sum_avx2(const LaneBatch& batch);
const std::int32_t* lane_sum_avx512(const LaneBatch& batch);

// The band kernel: one pair, `lanes` consecutive rows at once. Lane r of a
// band works on row i0 - r and lags r steps behind lane 0, so that each cell
// finds the row below it finished: at step t lane r is at column
// cols - 2 - (t - r). A column carry passes from lane to lane, from one step
// to the next; lane 0 takes the carries and the row below from memory, and
// what the last lane leaves becomes that memory for the next band.
struct BandBatch {
  int rows = 0;
  int cols = 0;
  int lanes = 0;
  std::int32_t gapSizePen = 0;
  const std::int32_t* scores = nullptr;        // [rows][cols] pair scores
  const std::int32_t* rowStructMin = nullptr;  // [rows] as in LaneBatch
  const std::int32_t* rowGapCharge = nullptr;  // [rows]
  // Column terms with `lanes` entries of padding on each side: entry c of the
  // column is at [lanes + c].
  const std::int32_t* colStructMin = nullptr;  // [cols + 2 lanes]
  const std::int32_t* colGapCharge = nullptr;  // [cols + 2 lanes]

  // Scratch: the row below a band and the column carries between bands
  // ([cols] each); the skewed pair scores and what each step leaves
  // ([steps][lanes] each, steps = cols + lanes - 2).
  std::int32_t* belowRow = nullptr;
  std::int32_t* carryScore = nullptr;
  std::int32_t* carryLevel = nullptr;
  std::int32_t* carryUsable = nullptr;
  std::int32_t* skewPairs = nullptr;
  std::int32_t* skewOut = nullptr;
  std::int32_t* skewScore = nullptr;
  std::int32_t* skewLevel = nullptr;
  std::int32_t* skewUsable = nullptr;

  // Out: the sums of column 0 [rows] and of row 0 [cols]; the cell entries,
  // [bands][steps] entries of lane_entry_bytes(lanes), bands = ceil((rows - 1) / lanes).
  std::int32_t* colZeroSums = nullptr;
  std::int32_t* firstRow = nullptr;
  unsigned char* bits = nullptr;
};

// In: a filled band batch with rows >= 2 and cols >= 2. Out: colZeroSums, firstRow, bits.
void band_sum_sse41(const BandBatch& batch);
void band_sum_avx2(const BandBatch& batch);
void band_sum_avx512(const BandBatch& batch);
