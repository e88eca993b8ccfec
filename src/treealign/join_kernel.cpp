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
  std::int32_t level;
};

StepCost gap_step(const SideGapCosts& gapped, int position, bool atEnd, const SideGapCosts& skipped, int column) {
  if (atEnd) return {0, 0, 0};
  const std::size_t g = static_cast<std::size_t>(position), c = static_cast<std::size_t>(column);
  const std::int32_t opening =
      static_cast<std::int32_t>((std::int64_t{gapped.opening[g]} * skipped.filled[c] + 512) >> 10);
  return {gapped.open[g], skipped.skip[c], opening + skipped.skipLevel[c]};
}

// The best way into a gap cell: opened after a pair, carried on (own state
// code ownCode), or opened after a gap in the other side (otherCode); ties go
// to the earlier of these.
GapCell best_gap(std::int64_t afterBoth, const GapCell& along, const GapCell& afterOther, const StepCost& step,
                 unsigned char ownCode, unsigned char otherCode, unsigned char& from) {
  GapCell best;
  from = kFromBoth;
  if (afterBoth > kNone) best = {afterBoth - step.open - step.skip - step.level, step.level};
  if (along.score > kNone) {
    GapCell carried{along.score - step.skip, along.level};
    if (step.level > carried.level) {
      carried.score -= step.level - carried.level;
      carried.level = step.level;
    }
    if (carried.score > best.score) {
      best = carried;
      from = ownCode;
    }
  }
  if (afterOther.score > kNone) {
    const std::int64_t opened = afterOther.score - step.open - step.skip - step.level;
    if (opened > best.score) {
      best = {opened, step.level};
      from = otherCode;
    }
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

  for (int p = 0; p <= colsA; ++p) {
    for (int q = 0; q <= colsB; ++q) {
      const std::size_t k = static_cast<std::size_t>(q);
      unsigned char& cell = trace[static_cast<std::size_t>(p) * width + k];
      cell = 0;
      curBoth[k] = kNone;
      curFirst[k] = GapCell();
      curSecond[k] = GapCell();
      if (p == 0 && q == 0) {
        curBoth[k] = 0;  // the start
        continue;
      }
      if (p > 0 && q > 0) {
        std::int64_t best = prevBoth[k - 1];
        unsigned char from = kFromBoth;
        if (prevFirst[k - 1].score > best) best = prevFirst[k - 1].score, from = kFromFirst;
        if (prevSecond[k - 1].score > best) best = prevSecond[k - 1].score, from = kFromSecond;
        if (best > kNone) {
          curBoth[k] = best + scores[static_cast<std::size_t>(p - 1) * static_cast<std::size_t>(colsB) + k - 1];
          cell |= from;
        }
      }
      if (p > 0) {
        // The first side's column p - 1 against a gap at the second's position q.
        const StepCost step = gap_step(b, q, q == 0 || q == colsB, a, p - 1);
        unsigned char from = kFromBoth;
        curFirst[k] = best_gap(prevBoth[k], prevFirst[k], prevSecond[k], step, kFromFirst, kFromSecond, from);
        cell |= static_cast<unsigned char>(from << 2);
      }
      if (q > 0) {
        // The second side's column q - 1 against a gap at the first's position p.
        const StepCost step = gap_step(a, p, p == 0 || p == colsA, b, q - 1);
        unsigned char from = kFromBoth;
        curSecond[k] = best_gap(curBoth[k - 1], curSecond[k - 1], curFirst[k - 1], step, kFromSecond, kFromFirst, from);
        cell |= static_cast<unsigned char>(from << 4);
      }
    }
    std::swap(prevBoth, curBoth);
    std::swap(prevFirst, curFirst);
    std::swap(prevSecond, curSecond);
  }

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
