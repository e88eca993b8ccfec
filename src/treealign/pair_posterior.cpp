// Sections: the portable exponential and logarithm, the model's weights, the forward and
// backward passes (a row that drifts far from 1 is scaled by a power of two,
// which is exact), the sparse maps.
#include "treealign/pair_posterior.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>

#include "align/score_codes.hpp"

double portable_exp(double x) {
  if (x > 709.0) return HUGE_VAL;
  if (x < -745.0) return 0.0;
  // x = n ln2 + r with |r| <= ln2 / 2; ln2 in two parts keeps r exact enough.
  constexpr double kLn2Hi = 0.693147180369123816490, kLn2Lo = 1.90821492927058770002e-10;
  const double n = std::nearbyint(x / 0.693147180559945309417);
  const double r = (x - n * kLn2Hi) - n * kLn2Lo;
  double term = 1.0, sum = 1.0;
  for (int k = 1; k <= 16; ++k) {
    term = term * r / k;
    sum = sum + term;
  }
  return std::ldexp(sum, static_cast<int>(n));
}

double portable_log2(double x) {
  constexpr double kSqrtHalf = 0.70710678118654752, kLn2 = 0.69314718055994531;
  int exponent = 0;
  double mantissa = std::frexp(x, &exponent);
  if (mantissa < kSqrtHalf) {
    mantissa *= 2;
    --exponent;
  }
  // ln m = 2 (u + u^3/3 + u^5/5 + ...), |u| < 0.18: seven terms reach 1e-12.
  const double u = (mantissa - 1) / (mantissa + 1), u2 = u * u;
  double series = 0, power = u;
  for (int k = 1; k <= 13; k += 2) {
    series += power / k;
    power *= u2;
  }
  return exponent + 2 * series / kLn2;
}

namespace {

// Weights below 2^-kNegligiblePower (in a row's scaled units) are dropped:
// they cannot matter, and arithmetic near a double's smallest is very slow.
constexpr int kNegligiblePower = 400;

double negligible_cut(int power) { return power > kNegligiblePower ? 0.0 : std::ldexp(1.0, -power); }

struct PairWeights {
  int rows = 0, cols = 0;
  double extend = 0;            // a gap's every further residue
  std::vector<double> openInA;  // b's residues against a gap after a's residue i (1-based, 0..rows)
  std::vector<double> openInB;  // a's residues against a gap after b's residue j
};

std::vector<double> table_weights(const ScoreTable& table, double temperature) {
  std::vector<double> out(table.size());
  for (std::size_t k = 0; k < table.size(); ++k) out[k] = portable_exp(table[k] / temperature);
  return out;
}

void fill_emission(PosteriorWorkspace& ws, const PosteriorModel& model, const SeqCodes& a, const SeqCodes& b) {
  const std::size_t rows = a.res.size(), cols = b.res.size();
  const bool withSs = a.hasSs && b.hasSs;
  for (std::size_t x = 0; x < rows; ++x) {
    const double* wt = model.wtWeight.data() + static_cast<std::size_t>(a.res[x] & (kTableDim - 1)) * kTableDim;
    const double* ss = model.ssWeight.data() + static_cast<std::size_t>(a.ss[x] & (kTableDim - 1)) * kTableDim;
    double* out = ws.emission.data() + x * cols;
    for (std::size_t y = 0; y < cols; ++y) {
      out[y] = wt[b.res[y] & (kTableDim - 1)];
      if (withSs) out[y] *= ss[b.ss[y] & (kTableDim - 1)];
    }
  }
}

// Opening after residue k (1-based) of a sequence of n: the run's opening
// and first residue, dearer inside its helices and strands.
std::vector<double> opening_weights(const PosteriorModel& model, const SeqCodes& s) {
  const std::size_t n = s.structPen.size();
  std::vector<double> out(n + 1, 0.0);
  for (std::size_t k = 1; k < n; ++k) {
    const int cost = model.gapOpen + model.gapLength + std::min(s.structPen[k - 1], s.structPen[k]);
    out[k] = portable_exp(-cost / model.temperature);
  }
  return out;
}

// A run of gap weights along a row, y[k] = c[k] + g y[k - 1], is one serial
// chain of multiply-adds; unrolled three times by doubling it becomes eight
// interleaved chains, which the processor runs side by side.
struct GapRun {
  double g1 = 0, g2 = 0, g4 = 0, g8 = 0;
};

GapRun gap_run_powers(double g) {
  GapRun run;
  run.g1 = g;
  run.g2 = g * g;
  run.g4 = run.g2 * run.g2;
  run.g8 = run.g4 * run.g4;
  return run;
}

// Rows carry this many zeros before their first cell (and after their last,
// for the backward pass) where the chains look back.
constexpr std::size_t kPad = 8;

// y[k * Step] = c[k * Step] + g y[(k - 1) * Step] for k in [0, n); c and y
// read as zero at k in [-kPad, 0). s1 and s2 are scratch with kPad zeros
// before their index 0. Weights below `tiny` become zero.
template <int Step>
void gap_run(const double* c, double* y, std::size_t n, const GapRun& run, double tiny, double* s1, double* s2) {
  const auto at = [](std::size_t k) { return static_cast<std::ptrdiff_t>(k) * Step; };
  for (std::size_t k = 0; k < n; ++k) s1[k] = c[at(k)] + run.g1 * c[at(k) - Step];
  for (std::size_t k = 0; k < n; ++k) s2[k] = s1[k] + run.g2 * s1[static_cast<std::ptrdiff_t>(k) - 2];
  for (std::size_t k = 0; k < n; ++k) s1[k] = s2[k] + run.g4 * s2[static_cast<std::ptrdiff_t>(k) - 4];
  for (std::size_t k = 0; k < n; ++k) {
    const double v = s1[k] + run.g8 * y[at(k) - 8 * Step];
    y[at(k)] = v < tiny ? 0.0 : v;
  }
}

// Eight running partial results, so that no single chain of dependent
// additions or compares sets the pace; fixed order, so fixed bits.
double row_max(const double* v, std::size_t n) {
  double most[8] = {0, 0, 0, 0, 0, 0, 0, 0};
  std::size_t j = 0;
  for (; j + 8 <= n; j += 8)
    for (std::size_t k = 0; k < 8; ++k) most[k] = v[j + k] > most[k] ? v[j + k] : most[k];
  for (; j < n; ++j) most[0] = v[j] > most[0] ? v[j] : most[0];
  double top = 0;
  for (double m : most) top = m > top ? m : top;
  return top;
}

double row_sum(const double* v, std::size_t n) {
  double part[8] = {0, 0, 0, 0, 0, 0, 0, 0};
  std::size_t j = 0;
  for (; j + 8 <= n; j += 8)
    for (std::size_t k = 0; k < 8; ++k) part[k] += v[j + k];
  for (; j < n; ++j) part[0] += v[j];
  return ((part[0] + part[1]) + (part[2] + part[3])) + ((part[4] + part[5]) + (part[6] + part[7]));
}

// Rows are rescaled by a power of two (exact) only when their largest match
// weight leaves [2^-kDrift, 2^kDrift]: rarely, since a row grows by a few
// powers of two at most.
constexpr int kDrift = 100;

// Scales the n cells of each row given so that the largest of `m` lies in
// [0.5, 1) when it has drifted too far; returns the power of two taken out.
int rescale_if_drifted(std::initializer_list<double*> rowsToScale, const double* m, std::size_t n) {
  const double top = row_max(m, n);
  if (top == 0 || !std::isfinite(top)) return 0;
  int e = 0;
  std::frexp(top, &e);
  if (e >= -kDrift && e <= kDrift) return 0;
  const double factor = std::ldexp(1.0, -e);
  const double tiny = std::ldexp(1.0, -kNegligiblePower);
  for (double* row : rowsToScale)
    for (std::size_t k = 0; k < n; ++k) {
      const double v = row[k] * factor;
      row[k] = v < tiny ? 0.0 : v;
    }
  return e;
}

// Scratch rows of `cols` cells with kPad zeros either side; returns the
// address of cell 0.
double* padded_row(std::vector<double>& row, std::size_t cols) {
  row.assign(cols + 2 * kPad, 0.0);
  return row.data() + kPad;
}

// The row loops below read only the rows before (or after) and write only
// this one: restrict lets the compiler run them several cells at a time.
void forward_match_and_down(double* __restrict m, double* __restrict x, const double* __restrict pm,
                            const double* __restrict px, const double* __restrict py, const double* __restrict e,
                            const double* __restrict openInB, double start, double extend, double tiny,
                            std::size_t cols) {
  for (std::size_t j = 1; j <= cols; ++j) {
    const double vm = e[j - 1] * (start + pm[j - 1] + px[j - 1] + py[j - 1]);
    const double vx = pm[j] * openInB[j] + px[j] * extend;
    m[j] = vm < tiny ? 0.0 : vm;
    x[j] = vx < tiny ? 0.0 : vx;
  }
}

void into_gap_run(double* __restrict c, const double* __restrict m, const double* __restrict x, double open,
                  std::size_t cols) {
  for (std::size_t k = 0; k < cols; ++k) c[k] = (m[k] + x[k]) * open;
}

// em[j] = e(j + 1) * M(row after, j + 1) for j in [1, cols).
void into_match(double* __restrict em, const double* __restrict e, const double* __restrict nm, std::size_t cols) {
  for (std::size_t j = 1; j < cols; ++j) em[j] = e[j] * nm[j + 1];
}

void backward_match_and_down(double* __restrict m, double* __restrict x, const double* __restrict em,
                             const double* __restrict nx, const double* __restrict y, const double* __restrict openInB,
                             double end, double openY, double extend, double tiny, std::size_t cols) {
  for (std::size_t j = 1; j <= cols; ++j) {
    const double vm = end + em[j] + openInB[j] * nx[j] + openY * y[j + 1];
    const double vx = em[j] + extend * nx[j] + openY * y[j + 1];
    m[j] = vm < tiny ? 0.0 : vm;
    x[j] = vx < tiny ? 0.0 : vx;
  }
}

// Forward pass: ws.forward holds M (scaled) for rows 1..rows, ws.forwardExp
// each row's power of two. Returns the total weight as (mantissa, power).
std::pair<double, int> forward_pass(PosteriorWorkspace& ws, const PairWeights& w) {
  const std::size_t rows = static_cast<std::size_t>(w.rows), cols = static_cast<std::size_t>(w.cols);
  const std::size_t width = cols + 1;
  const GapRun run = gap_run_powers(w.extend);
  const double tiny = std::ldexp(1.0, -kNegligiblePower);
  double* x = padded_row(ws.thisX, width);
  double* y = padded_row(ws.thisY, width);
  double* px = padded_row(ws.nextX, width);  // the row before
  double* py = padded_row(ws.nextY, width);
  double* c = padded_row(ws.intoGap, cols);
  double* s1 = padded_row(ws.chainA, cols);
  double* s2 = padded_row(ws.chainB, cols);
  std::fill(ws.forward.begin(), ws.forward.begin() + static_cast<std::ptrdiff_t>(width), 0.0);
  ws.forwardExp.assign(rows + 1, 0);
  std::vector<double> rowSum(rows + 1, 0.0);
  int power = 0;  // unscaled = scaled * 2^power, for the row before and this one
  for (std::size_t i = 1; i <= rows; ++i) {
    const double start = negligible_cut(power);
    const double* e = ws.emission.data() + (i - 1) * cols;
    const double openY = w.openInA[i];
    double* m = ws.forward.data() + i * width;
    const double* pm = m - width;
    m[0] = x[0] = y[0] = 0;
    forward_match_and_down(m, x, pm, px, py, e, w.openInB.data(), start, w.extend, tiny, cols);
    into_gap_run(c, m, x, openY, cols);
    gap_run<1>(c, y + 1, cols, run, tiny, s1, s2);
    power += rescale_if_drifted({m, x, y}, m, width);
    ws.forwardExp[i] = power;
    rowSum[i] = row_sum(m + 1, cols);
    std::swap(px, x);
    std::swap(py, y);
  }
  // Total = 1 (nothing aligned) + every matched pair's forward weight.
  int top = 0;
  for (std::size_t i = 1; i <= rows; ++i)
    if (rowSum[i] > 0) {
      int e = 0;
      std::frexp(rowSum[i], &e);
      top = std::max(top, ws.forwardExp[i] + e);
    }
  double total = std::ldexp(1.0, -top);
  for (std::size_t i = 1; i <= rows; ++i) total += std::ldexp(rowSum[i], ws.forwardExp[i] - top);
  return {total, top};
}

struct Link {
  std::int32_t x, y;
  std::int16_t prob;
};

// Backward pass, row by row from the last, each pair's probability taken as
// its row is done. Links come out by rows descending, columns descending.
void backward_pass(PosteriorWorkspace& ws, const PairWeights& w, std::pair<double, int> total,
                   const PosteriorModel& model, std::vector<Link>& links) {
  const std::size_t rows = static_cast<std::size_t>(w.rows), cols = static_cast<std::size_t>(w.cols);
  const std::size_t width = cols + 2;
  const GapRun run = gap_run_powers(w.extend);
  const double tiny = std::ldexp(1.0, -kNegligiblePower);
  double* nm = padded_row(ws.nextM, width);  // the row after
  double* nx = padded_row(ws.nextX, width);
  double* m = padded_row(ws.thisM, width);
  double* x = padded_row(ws.thisX, width);
  double* y = padded_row(ws.thisY, width);
  double* em = padded_row(ws.intoGap, width);
  double* s1 = padded_row(ws.chainA, cols);
  double* s2 = padded_row(ws.chainB, cols);
  const double least = model.leastProb / 1000.0;
  int power = 0;  // unscaled = scaled * 2^power, for the row after and this one
  for (std::size_t i = rows; i >= 1; --i) {
    const double end = negligible_cut(power);
    const double openY = w.openInA[i];
    // em[j] = e(i + 1, j + 1) * M(i + 1, j + 1), zero past the last row and column.
    if (i < rows) {
      const double* e = ws.emission.data() + i * cols;
      into_match(em, e, nm, cols);
    }
    gap_run<-1>(em + cols, y + cols, cols, run, tiny, s1, s2);
    backward_match_and_down(m, x, em, nx, y, w.openInB.data(), end, openY, w.extend, tiny, cols);
    const double* f = ws.forward.data() + i * (cols + 1);
    const int shift = ws.forwardExp[i] + power - total.second;
    // A row so far below the total holds no likely pair.
    const double factor = shift < -200 ? 0.0 : std::ldexp(1.0 / total.first, std::min(shift, 1000));
    for (std::size_t j = cols; factor > 0 && j >= 1; --j) {
      const double p = f[j] * m[j] * factor;
      if (p >= least)
        links.push_back({static_cast<std::int32_t>(i - 1), static_cast<std::int32_t>(j - 1),
                         static_cast<std::int16_t>(std::min(1000L, static_cast<long>(p * 1000.0 + 0.5)))});
    }
    power += rescale_if_drifted({m + 1, x + 1}, m + 1, cols);
    std::swap(nm, m);
    std::swap(nx, x);
  }
}

// Links (any order) into one side's map, by residue then partner.
SparseMap sparse_map(const std::vector<Link>& links, std::size_t n, bool fromX) {
  SparseMap map;
  map.start.assign(n + 1, 0);
  for (const Link& link : links) ++map.start[static_cast<std::size_t>(fromX ? link.x : link.y) + 1];
  for (std::size_t k = 0; k < n; ++k) map.start[k + 1] += map.start[k];
  map.partner.resize(links.size());
  map.prob.resize(links.size());
  std::vector<std::int32_t> fill(map.start.begin(), map.start.end() - 1);
  for (const Link& link : links) {
    const std::size_t slot = static_cast<std::size_t>(fill[static_cast<std::size_t>(fromX ? link.x : link.y)]++);
    map.partner[slot] = fromX ? link.y : link.x;
    map.prob[slot] = link.prob;
  }
  // Each residue's links by partner ascending.
  for (std::size_t k = 0; k < n; ++k) {
    const auto from = static_cast<std::ptrdiff_t>(map.start[k]), to = static_cast<std::ptrdiff_t>(map.start[k + 1]);
    for (std::ptrdiff_t s = from + 1; s < to; ++s)
      for (std::ptrdiff_t t = s;
           t > from && map.partner[static_cast<std::size_t>(t - 1)] > map.partner[static_cast<std::size_t>(t)]; --t) {
        std::swap(map.partner[static_cast<std::size_t>(t - 1)], map.partner[static_cast<std::size_t>(t)]);
        std::swap(map.prob[static_cast<std::size_t>(t - 1)], map.prob[static_cast<std::size_t>(t)]);
      }
  }
  return map;
}

// One model's links between a and b.
void model_links(PosteriorWorkspace& ws, const SeqCodes& a, const SeqCodes& b, const PosteriorModel& model,
                 std::vector<Link>& links) {
  PairWeights w;
  w.rows = static_cast<int>(a.res.size());
  w.cols = static_cast<int>(b.res.size());
  const std::size_t rows = a.res.size(), cols = b.res.size();
  if (rows == 0 || cols == 0) return;
  w.extend = portable_exp(-model.gapLength / model.temperature);
  w.openInA = opening_weights(model, a);
  w.openInB = opening_weights(model, b);
  ws.emission.resize(rows * cols);
  fill_emission(ws, model, a, b);
  ws.forward.resize((rows + 1) * (cols + 1));
  const std::pair<double, int> total = forward_pass(ws, w);
  backward_pass(ws, w, total, model, links);
}

// The models' links averaged: a pair one model leaves out counts 0 there.
std::vector<Link> averaged_links(std::vector<Link> links, int models, int leastProb) {
  std::sort(links.begin(), links.end(),
            [](const Link& p, const Link& q) { return p.x != q.x ? p.x < q.x : p.y < q.y; });
  std::vector<Link> out;
  for (std::size_t s = 0; s < links.size();) {
    int sum = 0;
    std::size_t t = s;
    for (; t < links.size() && links[t].x == links[s].x && links[t].y == links[s].y; ++t) sum += links[t].prob;
    const int mean = (sum + models / 2) / models;
    if (mean >= leastProb) out.push_back({links[s].x, links[s].y, static_cast<std::int16_t>(mean)});
    s = t;
  }
  return out;
}

}  // namespace

PosteriorModel posterior_model(const ScoreTable& wtTable, const ScoreTable& ssTable, int gapOpen, int gapLength,
                               double temperature) {
  PosteriorModel model;
  model.wtWeight = table_weights(wtTable, temperature);
  model.ssWeight = table_weights(ssTable, temperature);
  model.gapOpen = gapOpen;
  model.gapLength = gapLength;
  model.temperature = temperature;
  return model;
}

void pair_posteriors(PosteriorWorkspace& ws, const SeqCodes& a, const SeqCodes& b,
                     std::span<const PosteriorModel> models, SparseMap& aToB, SparseMap& bToA) {
  std::vector<Link> links;
  for (const PosteriorModel& model : models) model_links(ws, a, b, model, links);
  if (models.size() > 1)
    links = averaged_links(std::move(links), static_cast<int>(models.size()), models[0].leastMeanProb);
  aToB = sparse_map(links, a.res.size(), true);
  bToA = sparse_map(links, b.res.size(), false);
}
