// Sections: the portable exponential, the model's weights, the forward and
// backward passes (each row scaled by a power of two, which is exact), the
// sparse maps.
#include "treealign/pair_posterior.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

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

namespace {

// Weights below this share of their row's largest are dropped: they cannot
// matter, and arithmetic on numbers near a double's smallest is very slow.
constexpr int kNegligiblePower = 300;

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

// Scales a row so that its largest match weight lies in [0.5, 1); returns
// the power of two taken out. The gap states follow the same factor (they
// stay within a few rows' growth of the matches, far from overflow).
int rescale(double* m, double* x, double* y, std::size_t n) {
  double most[4] = {0, 0, 0, 0};  // four running maxima: no chain of dependent compares
  std::size_t j = 0;
  for (; j + 4 <= n; j += 4)
    for (std::size_t k = 0; k < 4; ++k) most[k] = m[j + k] > most[k] ? m[j + k] : most[k];
  for (; j < n; ++j) most[0] = m[j] > most[0] ? m[j] : most[0];
  const double top = std::max(std::max(most[0], most[1]), std::max(most[2], most[3]));
  if (top == 0 || !std::isfinite(top)) return 0;
  int e = 0;
  std::frexp(top, &e);
  const double factor = std::ldexp(1.0, -e);  // a power of two: exact
  const double tiny = std::ldexp(1.0, -kNegligiblePower);
  for (double* row : {m, x, y})
    for (std::size_t k = 0; k < n; ++k) {
      const double v = row[k] * factor;
      row[k] = v < tiny ? 0.0 : v;
    }
  return e;
}

// Forward pass: ws.forward holds M (scaled) for rows 1..rows, ws.forwardExp
// each row's power of two. Returns the total weight as (mantissa, power).
std::pair<double, int> forward_pass(PosteriorWorkspace& ws, const PairWeights& w) {
  const std::size_t rows = static_cast<std::size_t>(w.rows), cols = static_cast<std::size_t>(w.cols);
  const std::size_t width = cols + 1;
  ws.thisM.assign(width, 0.0);
  ws.thisX.assign(width, 0.0);
  ws.thisY.assign(width, 0.0);
  ws.nextM.assign(width, 0.0);
  ws.nextX.assign(width, 0.0);
  ws.nextY.assign(width, 0.0);
  ws.forwardExp.assign(rows + 1, 0);
  std::vector<double>&pm = ws.nextM, &px = ws.nextX, &py = ws.nextY;  // the row before
  std::vector<double>&m = ws.thisM, &x = ws.thisX, &y = ws.thisY;
  std::vector<double> rowSum(rows + 1, 0.0);
  int power = 0;  // the row before, unscaled = scaled * 2^power
  for (std::size_t i = 1; i <= rows; ++i) {
    const double start = negligible_cut(power);
    const double* e = ws.emission.data() + (i - 1) * cols;
    const double openY = w.openInA[i];
    m[0] = x[0] = y[0] = 0;
    for (std::size_t j = 1; j <= cols; ++j) {
      m[j] = e[j - 1] * (start + pm[j - 1] + px[j - 1] + py[j - 1]);
      x[j] = pm[j] * w.openInB[j] + px[j] * w.extend;
    }
    for (std::size_t j = 1; j <= cols; ++j) y[j] = (m[j - 1] + x[j - 1]) * openY + y[j - 1] * w.extend;
    power += rescale(m.data(), x.data(), y.data(), width);
    ws.forwardExp[i] = power;
    std::copy(m.begin(), m.end(), ws.forward.begin() + static_cast<std::ptrdiff_t>(i * width));
    double sum = 0;
    for (std::size_t j = 1; j <= cols; ++j) sum += m[j];
    rowSum[i] = sum;
    std::swap(pm, m);
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
  std::vector<double>&nm = ws.nextM, &nx = ws.nextX, &ny = ws.nextY;  // the row after
  std::vector<double>&m = ws.thisM, &x = ws.thisX, &y = ws.thisY;
  for (std::vector<double>* v : {&nm, &nx, &ny, &m, &x, &y}) v->assign(width, 0.0);
  const double least = model.leastProb / 1000.0;
  int power = 0;  // the row after, unscaled = scaled * 2^power
  for (std::size_t i = rows; i >= 1; --i) {
    const double end = negligible_cut(power);
    const double openY = w.openInA[i];
    // em[j] = e(i + 1, j + 1) * M(i + 1, j + 1), zero past the last row.
    std::vector<double>& em = ws.intoMatch;
    em.assign(width, 0.0);
    if (i < rows) {
      const double* e = ws.emission.data() + i * cols;
      for (std::size_t j = 1; j < cols; ++j) em[j] = e[j] * nm[j + 1];
    }
    y[cols + 1] = 0;
    for (std::size_t j = cols; j >= 1; --j) y[j] = em[j] + w.extend * y[j + 1];
    for (std::size_t j = 1; j <= cols; ++j) {
      m[j] = end + em[j] + w.openInB[j] * nx[j] + openY * y[j + 1];
      x[j] = em[j] + w.extend * nx[j] + openY * y[j + 1];
    }
    const double* f = ws.forward.data() + i * (cols + 1);
    const int shift = ws.forwardExp[i] + power - total.second;
    // A row so far below the total holds no likely pair.
    const double factor = shift < -200 ? 0.0 : std::ldexp(1.0 / total.first, std::min(shift, 1000));
    for (std::size_t j = cols; factor > 0 && j >= 1; --j) {
      const double p = f[j] * m[j] * factor;
      if (p >= least)
        links.push_back({static_cast<std::int32_t>(i - 1), static_cast<std::int32_t>(j - 1),
                         static_cast<std::int16_t>(std::min(1000L, std::lround(p * 1000.0)))});
    }
    power += rescale(m.data() + 1, x.data() + 1, y.data() + 1, cols);
    std::swap(nm, m);
    std::swap(nx, x);
    std::swap(ny, y);
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

void pair_posteriors(PosteriorWorkspace& ws, const SeqCodes& a, const SeqCodes& b, const PosteriorModel& model,
                     SparseMap& aToB, SparseMap& bToA) {
  PairWeights w;
  w.rows = static_cast<int>(a.res.size());
  w.cols = static_cast<int>(b.res.size());
  const std::size_t rows = a.res.size(), cols = b.res.size();
  std::vector<Link> links;
  if (rows > 0 && cols > 0) {
    w.extend = portable_exp(-model.gapLength / model.temperature);
    w.openInA = opening_weights(model, a);
    w.openInB = opening_weights(model, b);
    ws.emission.resize(rows * cols);
    fill_emission(ws, model, a, b);
    ws.forward.resize((rows + 1) * (cols + 1));
    const std::pair<double, int> total = forward_pass(ws, w);
    backward_pass(ws, w, total, model, links);
  }
  aToB = sparse_map(links, rows, true);
  bToA = sparse_map(links, cols, false);
}
