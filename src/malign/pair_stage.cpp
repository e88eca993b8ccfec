// Sections: public routines (thread count, align_all_pairs), then the stage's
// private helpers (batches, workers, ordered progress).
#include "malign/pair_stage.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "align/kernel_select.hpp"
#include "align/lane_align.hpp"
#include "seq/seq_record.hpp"
#include "shell/errors.hpp"

namespace {

constexpr int kMaxThreads = 1024;

// A whole number from 1 up, or 0 when the text is not one.
int parse_thread_count(const char* text) {
  if (text == nullptr || *text == '\0') return 0;
  char* end = nullptr;
  const long value = std::strtol(text, &end, 10);
  if (*end != '\0' || value < 1) return 0;
  return static_cast<int>(std::min<long>(value, kMaxThreads));
}

// The pairs of one row sequence that one worker aligns in one go.
struct PairBatch {
  int row;                // index of the row sequence
  std::size_t firstPair;  // pair number of (row, 0)
  std::vector<int> cols;  // column sequences
  KernelKind kernel;      // the narrowest kernel of the run's family that holds them
};

// A batch of few pairs runs on a narrower vector kernel when the machine has
// one: the results are the same, and fewer lanes sit idle.
KernelKind kernel_for(KernelKind chosen, std::size_t pairs) {
  if (chosen == KernelKind::scalar) return chosen;
  KernelKind best = chosen;
  for (KernelKind narrower : {KernelKind::avx2, KernelKind::sse41})
    if (static_cast<int>(pairs) <= kernel_lanes(narrower) && kernel_lanes(narrower) < kernel_lanes(best) &&
        kernel_supported(narrower))
      best = narrower;
  return best;
}

std::size_t pair_number(int i, int j) { return static_cast<std::size_t>(i) * (i - 1) / 2 + j; }

// Each row sequence's partners, grouped by length so that a vector batch
// pads little; one partner per batch for the scalar kernel.
std::vector<PairBatch> make_batches(std::span<const SeqRecord> seqs, KernelKind kernel) {
  const int n = static_cast<int>(seqs.size());
  const int lanes = kernel_lanes(kernel);
  std::vector<PairBatch> batches;
  std::vector<int> partners;
  for (int i = 1; i < n; ++i) {
    partners.resize(static_cast<std::size_t>(i));
    for (int j = 0; j < i; ++j) partners[static_cast<std::size_t>(j)] = j;
    if (lanes > 1)
      std::stable_sort(partners.begin(), partners.end(), [&](int x, int y) {
        return seqs[static_cast<std::size_t>(x)].numRes < seqs[static_cast<std::size_t>(y)].numRes;
      });
    for (std::size_t from = 0; from < partners.size(); from += static_cast<std::size_t>(lanes)) {
      const std::size_t to = std::min(partners.size(), from + static_cast<std::size_t>(lanes));
      batches.push_back({i, pair_number(i, 0), std::vector<int>(partners.begin() + from, partners.begin() + to),
                         kernel_for(kernel, to - from)});
    }
  }
  return batches;
}

// The scratch one worker needs for either kind of kernel.
struct Workspace {
  AlignWorkspace scalar;
  LaneWorkspace lanes;
};

// What the workers share. A pair's record and status belong to the worker
// that claimed its batch until the pair's done flag is raised.
struct Stage {
  std::span<AlignRecord> pairs;
  std::span<const SeqRecord> seqs;
  const PairParams* params;
  std::vector<PairBatch> batches;
  std::vector<AlignStatus> statuses;
  std::unique_ptr<std::atomic<bool>[]> done;
  std::atomic<std::size_t> nextBatch{0};
  std::atomic<bool> stop{false};
  std::mutex mutex;
  std::condition_variable progress;
};

void run_batch(Stage& stage, Workspace& ws, const PairBatch& batch) {
  const SeqRecord& A = stage.seqs[static_cast<std::size_t>(batch.row)];
  if (batch.kernel == KernelKind::scalar) {
    for (int j : batch.cols) {
      const std::size_t k = batch.firstPair + static_cast<std::size_t>(j);
      stage.statuses[k] =
          align_pair(ws.scalar, stage.pairs[k], A, stage.seqs[static_cast<std::size_t>(j)], *stage.params);
    }
  } else {
    std::array<const SeqRecord*, kMaxLanes> Bs{};
    std::array<AlignRecord*, kMaxLanes> records{};
    std::array<AlignStatus, kMaxLanes> statuses{};
    const std::size_t count = batch.cols.size();
    for (std::size_t p = 0; p < count; ++p) {
      const std::size_t j = static_cast<std::size_t>(batch.cols[p]);
      Bs[p] = &stage.seqs[j];
      records[p] = &stage.pairs[batch.firstPair + j];
    }
    align_pairs_lanes(ws.lanes, batch.kernel, A, std::span(Bs.data(), count), std::span(records.data(), count),
                      std::span(statuses.data(), count), *stage.params);
    for (std::size_t p = 0; p < count; ++p)
      stage.statuses[batch.firstPair + static_cast<std::size_t>(batch.cols[p])] = statuses[p];
  }
  for (int j : batch.cols)
    stage.done[batch.firstPair + static_cast<std::size_t>(j)].store(true, std::memory_order_release);
  // Taking the lock before notifying means the waiting reader cannot miss it.
  { std::lock_guard<std::mutex> lock(stage.mutex); }
  stage.progress.notify_all();
}

// Claims the next batch; false when none is left or the stage stops.
bool run_next_batch(Stage& stage, Workspace& ws) {
  if (stage.stop.load(std::memory_order_relaxed)) return false;
  const std::size_t b = stage.nextBatch.fetch_add(1);
  if (b >= stage.batches.size()) return false;
  run_batch(stage, ws, stage.batches[b]);
  return true;
}

void worker(Stage& stage) {
  Workspace ws;
  while (run_next_batch(stage, ws)) {
  }
}

void stop_workers(Stage& stage, std::vector<std::thread>& workers) {
  stage.stop.store(true);
  for (std::thread& t : workers) t.join();
  workers.clear();
}

}  // namespace

int pair_threads(int requested) {
  if (requested > 0) return std::min(requested, kMaxThreads);
  const int fromEnv = parse_thread_count(std::getenv("RAVLIN_THREADS"));
  if (fromEnv > 0) return fromEnv;
  const unsigned cores = std::thread::hardware_concurrency();
  return cores > 0 ? static_cast<int>(std::min<unsigned>(cores, kMaxThreads)) : 1;
}

void align_all_pairs(std::span<AlignRecord> pairs, std::span<const SeqRecord> seqs, const PairParams& params,
                     int threads, const PairDone& pairDone) {
  Stage stage;
  stage.pairs = pairs;
  stage.seqs = seqs;
  stage.params = &params;
  stage.batches = make_batches(seqs, active_kernel());
  stage.statuses = checked_vector<AlignStatus>(pairs.size(), "do_pairs");
  stage.done = std::make_unique<std::atomic<bool>[]>(pairs.size());

  // The calling thread is a worker too and the only one that prints.
  const std::size_t helpers = std::min(static_cast<std::size_t>(pair_threads(threads) - 1),
                                       stage.batches.empty() ? 0 : stage.batches.size() - 1);
  std::vector<std::thread> workers;
  for (std::size_t t = 0; t < helpers; ++t) workers.emplace_back(worker, std::ref(stage));

  Workspace ws;
  for (std::size_t k = 0; k < pairs.size(); ++k) {
    while (!stage.done[k].load(std::memory_order_acquire)) {
      if (run_next_batch(stage, ws)) continue;
      std::unique_lock<std::mutex> lock(stage.mutex);
      stage.progress.wait(lock, [&] { return stage.done[k].load(std::memory_order_acquire); });
    }
    if (align_failed(stage.statuses[k])) {
      stop_workers(stage, workers);
      report_align_fault(stage.statuses[k]);
    }
    if (pairDone) pairDone(k + 1, pairs.size());
  }
  stop_workers(stage, workers);
}
