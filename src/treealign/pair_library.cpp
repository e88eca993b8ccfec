#include "treealign/pair_library.hpp"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <string>
#include <thread>

#include "align/kernel_select.hpp"
#include "align/profile_score.hpp"
#include "align/score_codes.hpp"
#include "shell/errors.hpp"

namespace {

// Scratch of one worker, grown as pairs need it.
struct PairWorkspace {
  StepWorkspace step;
  std::vector<std::int32_t> scores, zeros;
  std::vector<char> first, second;
  PosteriorWorkspace likely;
};

void fill_scores(PairWorkspace& ws, const ScoreTable& table, bool add, int rows, int cols,
                 const std::vector<std::int32_t>& rowCodes, const std::vector<std::int32_t>& colCodes) {
  for (int i = 0; i < rows; ++i) {
    const std::int32_t* tableRow = table.data() + (rowCodes[static_cast<std::size_t>(i)] & (kTableDim - 1)) * kTableDim;
    std::int32_t* out = ws.scores.data() + static_cast<std::size_t>(i) * static_cast<std::size_t>(cols);
    for (int j = 0; j < cols; ++j) {
      const std::int32_t s = tableRow[colCodes[static_cast<std::size_t>(j)] & (kTableDim - 1)];
      out[j] = add ? out[j] + s : s;
    }
  }
}

bool same_letter(char x, char y) { return (x & ~0x20) == (y & ~0x20); }

// The templates walked into residue maps and counts.
void record_pair(const SeqRecord& A, const SeqRecord& B, const std::vector<char>& first,
                 const std::vector<char>& second, int len, bool keepMaps, PairMap& pair) {
  if (keepMaps) {
    pair.iToJ.assign(static_cast<std::size_t>(A.numRes), -1);
    pair.jToI.assign(static_cast<std::size_t>(B.numRes), -1);
  }
  int x = 0, y = 0;
  for (int t = 0; t < len; ++t) {
    const bool inA = first[static_cast<std::size_t>(t)] == 'X', inB = second[static_cast<std::size_t>(t)] == 'X';
    if (inA && inB && x < A.numRes && y < B.numRes) {
      ++pair.aligned;
      if (same_letter(A.pRes[static_cast<std::size_t>(x)], B.pRes[static_cast<std::size_t>(y)])) ++pair.identical;
      if (keepMaps) {
        pair.iToJ[static_cast<std::size_t>(x)] = y;
        pair.jToI[static_cast<std::size_t>(y)] = x;
      }
    }
    x += inA ? 1 : 0;
    y += inB ? 1 : 0;
  }
}

void align_one_pair(PairWorkspace& ws, const SeqRecord& A, const SeqCodes& a, const SeqRecord& B, const SeqCodes& b,
                    const PairScoring& scoring, bool keepMaps, PairMap& pair) {
  const int rows = A.numRes, cols = B.numRes;
  const std::size_t cells = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
  if (ws.scores.size() < cells) ws.scores.resize(cells);
  fill_scores(ws, *scoring.wtTable, false, rows, cols, a.res, b.res);
  if (a.hasSs && b.hasSs) fill_scores(ws, *scoring.ssTable, true, rows, cols, a.ss, b.ss);
  ws.zeros.assign(static_cast<std::size_t>(std::max(rows, cols)), 0);
  const std::size_t room = static_cast<std::size_t>(rows) + static_cast<std::size_t>(cols) + 1;
  ws.first.assign(room, '\0');
  ws.second.assign(room, '\0');
  int len = 0;
  const AlignStatus status = align_profile_step(
      ws.step, active_kernel(), ws.scores.data(), rows, cols, a.structPen.data(), b.structPen.data(), ws.zeros.data(),
      ws.zeros.data(), scoring.gapOpen, scoring.gapLength, ws.first, ws.second, rows + cols, len);
  if (align_failed(status)) report_align_fault(status);
  record_pair(A, B, ws.first, ws.second, len, keepMaps, pair);
}

// Runs item(workspace, k) for every k below total on up to `threads`
// workers, each taking the next k; done(items finished) is called on the
// calling thread after each of its items. After a failure no new item
// starts, and the first failure is raised once all workers have stopped.
template <typename Item, typename Done>
void run_on_workers(std::size_t total, int threads, const Item& item, const Done& done) {
  std::atomic<std::size_t> next{0}, finished{0};
  std::exception_ptr firstError;
  std::mutex errorLock;
  auto work = [&](bool caller) {
    PairWorkspace ws;
    for (std::size_t k = next++; k < total; k = next++) {
      try {
        item(ws, k);
      } catch (...) {
        const std::lock_guard<std::mutex> hold(errorLock);
        if (!firstError) firstError = std::current_exception();
        next = total;
      }
      const std::size_t count = ++finished;
      if (caller) done(count);
    }
  };
  const int workers = std::max(1, std::min(pair_threads(threads), static_cast<int>(std::max<std::size_t>(total, 1))));
  std::vector<std::thread> helpers;
  for (int w = 1; w < workers; ++w) helpers.emplace_back(work, false);
  work(true);
  for (std::thread& helper : helpers) helper.join();
  if (firstError) std::rethrow_exception(firstError);
}

}  // namespace

int pair_identity(const PairLibrary& library, int a, int b) {
  const PairMap& pair = library.pairs[pair_index(a, b)];
  return pair.aligned > 0 ? static_cast<int>(1000LL * pair.identical / pair.aligned) : 0;
}

const SparseMap* likely_partners(const PairLibrary& library, int a, int b) {
  if (!library.keepsLikely) return nullptr;
  const PairMap& pair = library.pairs[pair_index(a, b)];
  return a > b ? &pair.iLikely : &pair.jLikely;
}

const std::int32_t* pair_partners(const PairLibrary& library, int a, int b) {
  if (!library.keepsMaps) return nullptr;
  const PairMap& pair = library.pairs[pair_index(a, b)];
  return a > b ? pair.iToJ.data() : pair.jToI.data();
}

std::vector<float> seed_distances(std::span<const SeqRecord> seqs, std::span<const SeqCodes> codes,
                                  const PairScoring& scoring, std::span<const int> seeds, int threads) {
  const std::size_t width = seeds.size();
  std::vector<float> distances = checked_vector<float>(seqs.size() * width, "seed distances");
  run_on_workers(
      seqs.size(), threads,
      [&](PairWorkspace& ws, std::size_t k) {
        for (std::size_t s = 0; s < width; ++s) {
          const std::size_t seed = static_cast<std::size_t>(seeds[s]);
          if (seed == k) continue;
          PairMap pair;
          align_one_pair(ws, seqs[k], codes[k], seqs[seed], codes[seed], scoring, false, pair);
          const double identity = pair.aligned > 0 ? static_cast<double>(pair.identical) / pair.aligned : 0.0;
          distances[k * width + s] = static_cast<float>(1.0 - identity);
        }
      },
      [](std::size_t) {});
  return distances;
}

PairLibrary build_pair_library(std::span<const SeqRecord> seqs, std::span<const SeqCodes> codes,
                               const PairScoring& scoring, bool keepMaps, std::span<const PosteriorModel> likely,
                               int threads, const PairDone& progress) {
  PairLibrary library;
  library.keepsLikely = !likely.empty();
  library.n = static_cast<int>(seqs.size());
  library.keepsMaps = keepMaps;
  const std::size_t total = library.n > 1 ? pair_index(library.n - 1, library.n - 2) + 1 : 0;
  library.pairs = checked_vector<PairMap>(total, "pair library");
  // Pair k is (i, j) with i(i-1)/2 + j = k: each worker takes the next k.
  std::vector<std::pair<int, int>> order;
  order.reserve(total);
  for (int i = 1; i < library.n; ++i)
    for (int j = 0; j < i; ++j) order.emplace_back(i, j);

  run_on_workers(
      total, threads,
      [&](PairWorkspace& ws, std::size_t k) {
        const auto [i, j] = order[k];
        const auto si = static_cast<std::size_t>(i), sj = static_cast<std::size_t>(j);
        align_one_pair(ws, seqs[si], codes[si], seqs[sj], codes[sj], scoring, keepMaps, library.pairs[k]);
        if (!likely.empty())
          pair_posteriors(ws.likely, codes[si], codes[sj], likely, library.pairs[k].iLikely, library.pairs[k].jLikely);
      },
      [&](std::size_t finished) {
        if (progress) progress(finished, total);
      });
  if (progress) progress(total, total);
  return library;
}
