// Sections: words and their distance; the seeds and each sequence's place
// among them; the splits; the tree put together from the parts.
#include "treealign/kmer_tree.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <string_view>
#include <thread>

#include "malign/pair_stage.hpp"

namespace {

// Parts this small are joined by average linkage on their own distances.
constexpr std::size_t kPartMost = 1000;
// Members of each side whose distances estimate the height of a split.
constexpr std::size_t kSplitSamples = 8;
constexpr int kSplitRounds = 12;
// Each sequence is aligned to at most this many seeds: a thousand sequences'
// own log2(n) squared, beyond which more seeds cost time and place no better.
constexpr std::size_t kAlignedSeedsMost = 100;

int residue_class(char c) {
  switch (c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) {
    case 'A':
    case 'G':
    case 'P':
    case 'S':
    case 'T':
      return 0;
    case 'C':
      return 1;
    case 'D':
    case 'E':
    case 'N':
    case 'Q':
      return 2;
    case 'H':
    case 'K':
    case 'R':
      return 3;
    case 'I':
    case 'L':
    case 'M':
    case 'V':
      return 4;
    case 'F':
    case 'W':
    case 'Y':
      return 5;
    default:
      return -1;
  }
}

constexpr std::string_view kLetters = "ACDEFGHIKLMNPQRSTVWY";
constexpr std::uint32_t words_of_length(std::uint32_t letters, int length) {
  std::uint32_t count = 1;
  for (int k = 0; k < length; ++k) count *= letters;
  return count;
}
// Letter words are numbered after every class word.
constexpr std::uint32_t kClassWords = words_of_length(6, kClassWordLength);

int residue_letter(char c) {
  const std::size_t at = kLetters.find(c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c);
  return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

// Appends the words of length residues over an alphabet of size letters
// (code gives a residue's letter, -1 to end a word), numbered from first.
void append_words(const std::string& residues, int (*code)(char), std::uint32_t letters, int length,
                  std::uint32_t first, std::vector<std::uint32_t>& words) {
  const std::uint32_t span = words_of_length(letters, length);
  std::uint32_t word = 0;
  int run = 0;  // letters read since the last break
  for (const char c : residues) {
    const int letter = code(c);
    if (letter < 0) {
      run = 0;
      continue;
    }
    word = (word * letters + static_cast<std::uint32_t>(letter)) % span;
    if (++run >= length) words.push_back(first + word);
  }
}

// Runs body(i) for i in [0, count) on up to workers threads; each i writes
// only its own results, so the outcome does not depend on the workers.
template <typename Body>
void for_each_index(std::size_t count, int workers, const Body& body) {
  const std::size_t threads = std::min<std::size_t>(static_cast<std::size_t>(std::max(workers, 1)), count);
  if (threads <= 1) {
    for (std::size_t i = 0; i < count; ++i) body(i);
    return;
  }
  std::vector<std::exception_ptr> failures(threads);
  std::vector<std::thread> pool;
  for (std::size_t t = 0; t < threads; ++t)
    pool.emplace_back([&, t] {
      try {
        for (std::size_t i = t; i < count; i += threads) body(i);
      } catch (...) {
        failures[t] = std::current_exception();
      }
    });
  for (std::thread& thread : pool) thread.join();
  for (const std::exception_ptr& failure : failures)
    if (failure) std::rethrow_exception(failure);
}

// ---- seeds and places ----

// About log2(n) squared seeds (at most `most`), spread evenly over the
// sequences by length.
std::vector<int> seed_sequences(std::span<const SeqRecord> seqs, std::size_t most) {
  const std::size_t n = seqs.size();
  const double bits = std::ceil(std::log2(static_cast<double>(std::max<std::size_t>(n, 2))));
  const std::size_t count = std::min({n, static_cast<std::size_t>(bits * bits), most});
  std::vector<int> byLength(n);
  for (std::size_t k = 0; k < n; ++k) byLength[k] = static_cast<int>(k);
  std::stable_sort(byLength.begin(), byLength.end(), [&](int a, int b) {
    return seqs[static_cast<std::size_t>(a)].numRes < seqs[static_cast<std::size_t>(b)].numRes;
  });
  std::vector<int> seeds;
  for (std::size_t k = 0; k < count; ++k) seeds.push_back(byLength[k * n / count]);
  return seeds;
}

// Each sequence's distances to the seeds, n x seeds row by row.
std::vector<float> seed_places(const std::vector<std::vector<KmerCount>>& words, const std::vector<int>& seeds,
                               int threads) {
  const std::size_t width = seeds.size();
  std::vector<float> places(words.size() * width, 0.0f);
  for_each_index(words.size(), threads, [&](std::size_t k) {
    for (std::size_t s = 0; s < width; ++s)
      places[k * width + s] = static_cast<float>(kmer_distance(words[k], words[static_cast<std::size_t>(seeds[s])]));
  });
  return places;
}

// ---- splits ----

struct Split {
  int left = -1, right = -1;  // splits; -1 for a part
  int part = -1;              // index of a part
  std::vector<int> samplesLeft, samplesRight;
};

struct Places {
  const std::vector<float>& values;
  std::size_t width;
  const float* of(int seq) const { return values.data() + static_cast<std::size_t>(seq) * width; }
};

double squared_gap(const float* a, const std::vector<double>& centre) {
  double sum = 0;
  for (std::size_t s = 0; s < centre.size(); ++s) sum += (a[s] - centre[s]) * (a[s] - centre[s]);
  return sum;
}

std::vector<double> place_of(const Places& places, int seq) {
  const float* p = places.of(seq);
  return std::vector<double>(p, p + places.width);
}

int farthest(const Places& places, const std::vector<int>& members, const std::vector<double>& from) {
  int best = members.front();
  double bestGap = -1;
  for (const int seq : members) {
    const double gap = squared_gap(places.of(seq), from);
    if (gap > bestGap) {
      bestGap = gap;
      best = seq;
    }
  }
  return best;
}

// In: members (more than one). Out: which side each member goes to, by two
// centres moved to their sides' means; halves where the places cannot split.
std::vector<int> two_sides(const Places& places, const std::vector<int>& members) {
  const std::size_t n = members.size();
  std::vector<int> side(n, 0);
  const int a = farthest(places, members, place_of(places, members.front()));
  const int b = farthest(places, members, place_of(places, a));
  std::vector<double> centres[2] = {place_of(places, a), place_of(places, b)};
  bool split = squared_gap(places.of(a), centres[1]) > 0;
  for (int round = 0; split && round < kSplitRounds; ++round) {
    bool moved = round == 0;
    std::size_t counts[2] = {0, 0};
    for (std::size_t k = 0; k < n; ++k) {
      const float* p = places.of(members[k]);
      const int s = squared_gap(p, centres[1]) < squared_gap(p, centres[0]) ? 1 : 0;
      moved = moved || s != side[k];
      side[k] = s;
      ++counts[s];
    }
    if (counts[0] == 0 || counts[1] == 0) {
      split = false;
      break;
    }
    if (!moved) break;
    for (int s = 0; s < 2; ++s) std::fill(centres[s].begin(), centres[s].end(), 0.0);
    for (std::size_t k = 0; k < n; ++k) {
      const float* p = places.of(members[k]);
      for (std::size_t d = 0; d < places.width; ++d) centres[side[k]][d] += p[d];
    }
    for (int s = 0; s < 2; ++s)
      for (double& v : centres[s]) v /= static_cast<double>(counts[s]);
  }
  if (!split)
    for (std::size_t k = 0; k < n; ++k) side[k] = k < n / 2 ? 0 : 1;
  return side;
}

std::vector<int> samples(const std::vector<int>& members) {
  const std::size_t count = std::min(members.size(), kSplitSamples);
  std::vector<int> out;
  for (std::size_t k = 0; k < count; ++k) out.push_back(members[k * members.size() / count]);
  return out;
}

// The splits, root first (a split's sides come after it), and the parts.
void split_family(const Places& places, std::vector<int> all, std::vector<Split>& splits,
                  std::vector<std::vector<int>>& parts) {
  std::vector<std::pair<int, std::vector<int>>> pending;  // split to fill, its members
  splits.emplace_back();
  pending.emplace_back(0, std::move(all));
  while (!pending.empty()) {
    auto [at, members] = std::move(pending.back());
    pending.pop_back();
    if (members.size() <= kPartMost) {
      splits[static_cast<std::size_t>(at)].part = static_cast<int>(parts.size());
      parts.push_back(std::move(members));
      continue;
    }
    const std::vector<int> side = two_sides(places, members);
    std::vector<int> sides[2];
    for (std::size_t k = 0; k < members.size(); ++k) sides[side[k]].push_back(members[k]);
    const int left = static_cast<int>(splits.size());
    Split& split = splits[static_cast<std::size_t>(at)];
    split.samplesLeft = samples(sides[0]);
    split.samplesRight = samples(sides[1]);
    split.left = left;
    split.right = left + 1;
    splits.resize(splits.size() + 2);  // split is not read after this
    pending.emplace_back(left, std::move(sides[0]));
    pending.emplace_back(left + 1, std::move(sides[1]));
  }
}

// ---- the tree ----

GuideTree part_tree(const std::vector<std::vector<KmerCount>>& words, const std::vector<int>& members) {
  const std::size_t m = members.size();
  std::vector<double> d(m * m, 0.0);
  for (std::size_t i = 1; i < m; ++i)
    for (std::size_t j = 0; j < i; ++j)
      d[i * m + j] = d[j * m + i] =
          kmer_distance(words[static_cast<std::size_t>(members[i])], words[static_cast<std::size_t>(members[j])]);
  return upgma_tree(static_cast<int>(m), std::move(d));
}

// The root mean square of the differences of two places.
double place_distance(const Places& places, int a, int b) {
  const float *pa = places.of(a), *pb = places.of(b);
  double sum = 0;
  for (std::size_t s = 0; s < places.width; ++s) sum += (pa[s] - pb[s]) * (pa[s] - pb[s]);
  return std::sqrt(sum / static_cast<double>(std::max<std::size_t>(places.width, 1)));
}

GuideTree place_tree(const Places& places, const std::vector<int>& members) {
  const std::size_t m = members.size();
  std::vector<double> d(m * m, 0.0);
  for (std::size_t i = 1; i < m; ++i)
    for (std::size_t j = 0; j < i; ++j) d[i * m + j] = d[j * m + i] = place_distance(places, members[i], members[j]);
  return upgma_tree(static_cast<int>(m), std::move(d));
}

// Adds a part's joins to the tree; returns the node of its root.
int graft(GuideTree& tree, const GuideTree& part, const std::vector<int>& members) {
  std::vector<int> node(part.nodes.size());
  for (std::size_t k = 0; k < part.nodes.size(); ++k) {
    const TreeNode& t = part.nodes[k];
    if (t.left < 0) {
      node[k] = members[static_cast<std::size_t>(t.seq)];
      continue;
    }
    TreeNode joined = t;
    joined.left = node[static_cast<std::size_t>(t.left)];
    joined.right = node[static_cast<std::size_t>(t.right)];
    tree.nodes.push_back(joined);
    node[k] = static_cast<int>(tree.nodes.size()) - 1;
  }
  return node[static_cast<std::size_t>(part.root)];
}

// Half the mean distance between the two sides' samples: by their places
// when those come from aligned distances, as the parts were joined, else
// by their words.
double split_height(const std::vector<std::vector<KmerCount>>& words, const Places* places, const Split& split) {
  double sum = 0;
  for (const int a : split.samplesLeft)
    for (const int b : split.samplesRight)
      sum += places ? place_distance(*places, a, b)
                    : kmer_distance(words[static_cast<std::size_t>(a)], words[static_cast<std::size_t>(b)]);
  return sum / static_cast<double>(split.samplesLeft.size() * split.samplesRight.size()) / 2;
}

}  // namespace

std::vector<KmerCount> kmer_counts(const std::string& residues) {
  std::vector<std::uint32_t> words;
  append_words(residues, residue_class, 6, kClassWordLength, 0, words);
  append_words(residues, residue_letter, 20, kLetterWordLength, kClassWords, words);
  std::sort(words.begin(), words.end());
  std::vector<KmerCount> counts;
  for (const std::uint32_t w : words) {
    if (!counts.empty() && counts.back().word == w)
      ++counts.back().count;
    else
      counts.push_back({w, 1});
  }
  return counts;
}

double kmer_distance(std::span<const KmerCount> a, std::span<const KmerCount> b) {
  std::uint64_t totalA = 0, totalB = 0, shared = 0;
  for (const KmerCount& k : a) totalA += k.count;
  for (const KmerCount& k : b) totalB += k.count;
  if (totalA == 0 || totalB == 0) return 1.0;
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    if (a[i].word < b[j].word) {
      ++i;
    } else if (b[j].word < a[i].word) {
      ++j;
    } else {
      shared += std::min(a[i].count, b[j].count);
      ++i;
      ++j;
    }
  }
  return 1.0 - static_cast<double>(shared) / static_cast<double>(std::min(totalA, totalB));
}

GuideTree kmer_tree(std::span<const SeqRecord> seqs, int threads, const SeedDistances& aligned) {
  const int n = static_cast<int>(seqs.size());
  const int workers = pair_threads(threads);
  std::vector<std::vector<KmerCount>> words(seqs.size());
  if (!aligned) for_each_index(seqs.size(), workers, [&](std::size_t k) { words[k] = kmer_counts(seqs[k].pRes); });
  const std::vector<int> seeds = seed_sequences(seqs, aligned ? kAlignedSeedsMost : seqs.size());
  const std::vector<float> values = aligned ? aligned(seeds) : seed_places(words, seeds, workers);
  const Places places{values, seeds.size()};
  std::vector<Split> splits;
  std::vector<std::vector<int>> parts;
  std::vector<int> all(static_cast<std::size_t>(n));
  for (int k = 0; k < n; ++k) all[static_cast<std::size_t>(k)] = k;
  split_family(places, std::move(all), splits, parts);

  std::vector<GuideTree> partTrees(parts.size());
  for_each_index(parts.size(), workers, [&](std::size_t p) {
    partTrees[p] = aligned ? place_tree(places, parts[p]) : part_tree(words, parts[p]);
  });

  GuideTree tree;
  tree.nodes.resize(static_cast<std::size_t>(n));
  for (int k = 0; k < n; ++k) tree.nodes[static_cast<std::size_t>(k)].seq = k;
  // Splits are numbered before their sides: from the last, every side is done.
  std::vector<int> node(splits.size(), -1);
  for (std::size_t s = splits.size(); s-- > 0;) {
    const Split& split = splits[s];
    if (split.part >= 0) {
      const std::size_t p = static_cast<std::size_t>(split.part);
      node[s] = graft(tree, partTrees[p], parts[p]);
      continue;
    }
    TreeNode joined;
    joined.left = node[static_cast<std::size_t>(split.left)];
    joined.right = node[static_cast<std::size_t>(split.right)];
    const TreeNode& l = tree.nodes[static_cast<std::size_t>(joined.left)];
    const TreeNode& r = tree.nodes[static_cast<std::size_t>(joined.right)];
    joined.leaves = l.leaves + r.leaves;
    joined.height = std::max({split_height(words, aligned ? &places : nullptr, split), l.height, r.height});
    tree.nodes.push_back(joined);
    node[s] = static_cast<int>(tree.nodes.size()) - 1;
  }
  tree.root = node[0];
  return tree;
}
