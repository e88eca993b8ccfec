// Sections: the cell records, the forward pass, the walk back.
#include "treealign/join_kernel.hpp"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "shell/errors.hpp"

namespace {

constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::min() / 4;

// The state a cell's best path came from, two bits per state of the cell:
// the pair's in bits 0-1, the first side's gap's in 2-3, the second's in 4-5.
enum From : unsigned char { kFromBoth = 0, kFromFirst = 1, kFromSecond = 2 };

struct GapCell {
  std::int64_t score = kNone;
  std::int32_t level = 0;  // structure charge already paid along the gap
};

// What one gap step costs: a gap in the other side at its position, and the
// side's column put against it.
struct StepCost {
  std::int64_t open, skip;
  std::int64_t level;
};

// A gap step's costs: at an end, nothing.
inline StepCost gap_step(bool atEnd, std::int32_t open, std::int32_t opening, std::int32_t filled, std::int32_t skip,
                         std::int32_t skipLevel) {
  if (atEnd) return {0, 0, 0};
  return {open, skip, ((std::int64_t{opening} * filled + 512) >> 10) + skipLevel};
}

// The best way into a gap cell: opened after a pair, carried on (own state
// code ownCode), or opened after a gap in the other side (otherCode); ties go
// to the earlier of these. Cells no path reaches hold about kNone, far below
// any reachable one, so they never win.
[[gnu::always_inline]] inline GapCell best_gap(std::int64_t afterBoth, const GapCell& along, const GapCell& afterOther,
                                               const StepCost& step, unsigned char ownCode, unsigned char otherCode,
                                               unsigned char& from) {
  const std::int64_t opened = -step.open - step.skip - step.level;
  GapCell best{afterBoth + opened, static_cast<std::int32_t>(step.level)};
  from = kFromBoth;
  GapCell carried{along.score - step.skip, along.level};
  if (step.level > carried.level) {
    carried.score -= step.level - carried.level;
    carried.level = static_cast<std::int32_t>(step.level);
  }
  if (carried.score > best.score) {
    best = carried;
    from = ownCode;
  }
  if (afterOther.score + opened > best.score) {
    best = {afterOther.score + opened, static_cast<std::int32_t>(step.level)};
    from = otherCode;
  }
  return best;
}

}  // namespace

std::vector<JoinStep> join_path(std::span<const std::int32_t> scores, int colsA, int colsB, const SideGapCosts& a,
                                const SideGapCosts& b) {
  const std::size_t width = static_cast<std::size_t>(colsB) + 1;
  std::vector<unsigned char> trace =
      checked_vector<unsigned char>((static_cast<std::size_t>(colsA) + 1) * width, "join trace");
  std::vector<std::int64_t> prevBoth(width, kNone), curBoth(width, kNone);
  std::vector<GapCell> prevFirst(width), curFirst(width), prevSecond(width), curSecond(width);

  // Row 0: the start, then the second side's leading columns against the
  // first's start (free).
  curBoth[0] = 0;
  for (std::size_t q = 1; q < width; ++q) {
    curSecond[q] = {0, 0};
    trace[q] = static_cast<unsigned char>((q == 1 ? kFromBoth : kFromSecond) << 4);
  }
  for (int p = 1; p <= colsA; ++p) {
    std::swap(prevBoth, curBoth);
    std::swap(prevFirst, curFirst);
    std::swap(prevSecond, curSecond);
    unsigned char* row = trace.data() + static_cast<std::size_t>(p) * width;
    const std::int32_t* rowScores = scores.data() + static_cast<std::size_t>(p - 1) * static_cast<std::size_t>(colsB);
    const std::size_t column = static_cast<std::size_t>(p - 1);  // the first side's column of this row
    const bool rowAtEnd = p == colsA;
    const std::size_t position = static_cast<std::size_t>(p);  // the first side's gap position after it

    // Column 0: the first side's column against the second's start (free).
    unsigned char from = kFromBoth;
    curBoth[0] = kNone;
    curSecond[0] = GapCell();
    curFirst[0] = best_gap(prevBoth[0], prevFirst[0], prevSecond[0], {0, 0, 0}, kFromFirst, kFromSecond, from);
    row[0] = static_cast<unsigned char>(from << 2);

    for (std::size_t q = 1; q < width; ++q) {
      unsigned char cell = kFromBoth;
      std::int64_t best = prevBoth[q - 1];
      if (prevFirst[q - 1].score > best) best = prevFirst[q - 1].score, cell = kFromFirst;
      if (prevSecond[q - 1].score > best) best = prevSecond[q - 1].score, cell = kFromSecond;
      curBoth[q] = best + rowScores[q - 1];

      // The first side's column against a gap at the second's position q.
      const StepCost first =
          gap_step(q == width - 1, b.open[q], b.opening[q], a.filled[column], a.skip[column], a.skipLevel[column]);
      curFirst[q] = best_gap(prevBoth[q], prevFirst[q], prevSecond[q], first, kFromFirst, kFromSecond, from);
      cell |= static_cast<unsigned char>(from << 2);

      // The second side's column q - 1 against a gap at the first's position p.
      const StepCost second =
          gap_step(rowAtEnd, a.open[position], a.opening[position], b.filled[q - 1], b.skip[q - 1], b.skipLevel[q - 1]);
      curSecond[q] = best_gap(curBoth[q - 1], curSecond[q - 1], curFirst[q - 1], second, kFromSecond, kFromFirst, from);
      row[q] = static_cast<unsigned char>(cell | (from << 4));
    }
  }
  std::swap(prevBoth, curBoth);
  std::swap(prevFirst, curFirst);
  std::swap(prevSecond, curSecond);

  const std::size_t end = static_cast<std::size_t>(colsB);
  unsigned char state = kFromBoth;
  std::int64_t best = prevBoth[end];
  if (prevFirst[end].score > best) best = prevFirst[end].score, state = kFromFirst;
  if (prevSecond[end].score > best) state = kFromSecond;

  std::vector<JoinStep> path;
  int p = colsA, q = colsB;
  while (p > 0 || q > 0) {
    const unsigned char cell = trace[static_cast<std::size_t>(p) * width + static_cast<std::size_t>(q)];
    if (state == kFromBoth) {
      path.push_back(JoinStep::kBoth);
      state = cell & 3;
      --p, --q;
    } else if (state == kFromFirst) {
      path.push_back(JoinStep::kFirstOnly);
      state = (cell >> 2) & 3;
      --p;
    } else {
      path.push_back(JoinStep::kSecondOnly);
      state = (cell >> 4) & 3;
      --q;
    }
  }
  std::reverse(path.begin(), path.end());
  return path;
}
