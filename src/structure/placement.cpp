// Placing a structure's residues on a sequence by matching residues, and
// giving each input sequence its structure string.
//
// Sections: matching residues; public routines.
#include "structure/placement.hpp"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>

namespace {

// Match scores: an identity is worth more than a substitution loses, so a
// point mutant stays in place; a run of unmatched residues costs one opening
// whatever its length, so a missing loop or tag is skipped in one piece.
constexpr int kIdentity = 5;
constexpr int kSubstitution = -4;
constexpr int kGapOpen = 10;
// A matching table larger than this would cost too much memory.
constexpr std::int64_t kMaxCells = std::int64_t{1} << 27;
constexpr int kNone = std::numeric_limits<int>::min() / 4;

// An unknown residue in the structure (X: a modified or unidentified one) sits
// wherever its neighbours put it but proves nothing about the match.
int match_score(char structRes, char seqRes) {
  if (structRes == 'X') return 0;
  return structRes == seqRes ? kIdentity : kSubstitution;
}

// Traceback byte per cell: bits 0-1 where a pair came from, bits 2-3 where a
// structure residue without partner came from, bits 4-5 likewise for a
// sequence residue; 0 pair, 1 structure skip, 2 sequence skip, 3 start.
enum : std::uint8_t { kFromPair = 0, kFromStruct = 1, kFromSeq = 2, kFromStart = 3 };

struct Best {
  int score;
  std::uint8_t from;
};

// Prefers a pair, then a structure skip, then a sequence skip on ties.
Best best_of(int pair, int structSkip, int seqSkip) {
  Best best{pair, kFromPair};
  if (structSkip > best.score) best = {structSkip, kFromStruct};
  if (seqSkip > best.score) best = {seqSkip, kFromSeq};
  return best;
}

// partner[i] is the sequence position paired with structure residue i, or -1.
// Semi-global: residues before and after the matched stretch are free on both
// sides; inside it a run of unmatched residues costs kGapOpen. With s the
// structure and q the sequence, for i, j >= 1:
//   pair(i,j)  = best(pair, sskip, qskip at i-1,j-1) + match_score(s[i-1], q[j-1])
//   sskip(i,j) = best(pair(i-1,j) - open, sskip(i-1,j), qskip(i-1,j) - open)   s[i-1] has no partner
//   qskip(i,j) = best(pair(i,j-1) - open, sskip(i,j-1) - open, qskip(i,j-1))   q[j-1] has no partner
// Row 0 starts with free qskip, column 0 with free sskip; the end is the best
// cell of the last row or column. Ties prefer pair, then sskip, then qskip.
std::vector<int> match_residues(const std::string& s, const std::string& q) {
  const std::size_t m = s.size(), n = q.size(), w = n + 1;
  std::vector<std::uint8_t> trace((m + 1) * w, 0);
  std::vector<int> pair(w, kNone), sskip(w, kNone), qskip(w, 0), prevPair(w), prevS(w), prevQ(w);
  pair[0] = 0;
  for (std::size_t j = 0; j <= n; ++j) trace[j] = static_cast<std::uint8_t>(kFromStart << 4);
  int endScore = kNone;
  std::size_t endI = 0, endJ = 0;
  std::uint8_t endState = kFromSeq;
  auto consider_end = [&](int score, std::size_t i, std::size_t j, std::uint8_t state) {
    if (score > endScore) endScore = score, endI = i, endJ = j, endState = state;
  };
  for (std::size_t i = 1; i <= m; ++i) {
    prevPair.swap(pair), prevS.swap(sskip), prevQ.swap(qskip);
    pair[0] = kNone, qskip[0] = kNone, sskip[0] = 0;
    trace[i * w] = static_cast<std::uint8_t>(kFromStart << 2);
    for (std::size_t j = 1; j <= n; ++j) {
      const int sub = match_score(s[i - 1], q[j - 1]);
      const Best p = best_of(prevPair[j - 1], prevS[j - 1], prevQ[j - 1]);
      const Best a = best_of(prevPair[j] - kGapOpen, prevS[j], prevQ[j] - kGapOpen);
      const Best b = best_of(pair[j - 1] - kGapOpen, sskip[j - 1] - kGapOpen, qskip[j - 1]);
      pair[j] = p.score + sub, sskip[j] = a.score, qskip[j] = b.score;
      trace[i * w + j] = static_cast<std::uint8_t>(p.from | a.from << 2 | b.from << 4);
    }
    const Best last = best_of(pair[n], sskip[n], qskip[n]);
    consider_end(last.score, i, n, last.from);
  }
  for (std::size_t j = 0; j <= n; ++j) {
    const Best last = best_of(pair[j], sskip[j], qskip[j]);
    consider_end(last.score, m, j, last.from);
  }
  std::vector<int> partner(m, -1);
  std::size_t i = endI, j = endJ;
  std::uint8_t state = endState;
  while (i > 0 && j > 0 && state != kFromStart) {
    const std::uint8_t cell = trace[i * w + j];
    if (state == kFromPair) {
      partner[i - 1] = static_cast<int>(j - 1);
      state = cell & 3, --i, --j;
    } else if (state == kFromStruct) {
      state = cell >> 2 & 3, --i;
    } else {
      state = cell >> 4 & 3, --j;
    }
  }
  return partner;
}

std::string count_text(std::size_t count, const char* what) { return std::to_string(count) + " " + what; }

std::size_t known_residues(const std::string& residues) {
  return residues.size() - static_cast<std::size_t>(std::count(residues.begin(), residues.end(), 'X'));
}

// Which residues of the structure lie on the sequence, by the file's own
// numbers where it has them.
std::string part_used_note(const StructEntry& entry, const std::string& seqId, const std::vector<int>& partner) {
  std::size_t first = partner.size(), last = 0;
  for (std::size_t i = 0; i < partner.size(); ++i)
    if (partner[i] >= 0) first = std::min(first, i), last = i;
  if (first > last) return "";
  const auto number = [&](std::size_t i) {
    return i < entry.numbers.size() ? entry.numbers[i] : std::to_string(i + 1);
  };
  return "structure for " + seqId + ": residues " + number(first) + "-" + number(last) + " of " + entry.origin +
         " lie on the sequence (" + std::to_string(last - first + 1) + " of its " +
         count_text(entry.residues.size(), "residues with states") + ")" +
         (entry.numbers.empty() ? "" : "; to use another part, give ID=FILE:CHAIN:FROM-TO");
}

}  // namespace

// ---- public routines ----

bool place_structure(const StructEntry& entry, const std::string& seqId, const std::string& sequence, std::string& sRes,
                     std::string& note, std::string& error) {
  const std::string where = "structure for " + seqId + " in " + entry.origin;
  note.clear();
  std::string mapped;
  for (const char raw : entry.states) {
    const char state = map_structure_state(raw);
    mapped += state != 0 ? state : 'X';
  }
  if (entry.residues.empty()) {
    if (mapped.size() != sequence.size()) {
      error = where + " has " + count_text(mapped.size(), "states") + " but the sequence has " +
              count_text(sequence.size(), "residues") + "; give one state per residue";
      return false;
    }
    sRes = mapped;
    return true;
  }
  if (entry.residues == sequence) {
    sRes = mapped;
    return true;
  }
  if (static_cast<std::int64_t>(entry.residues.size() + 1) * static_cast<std::int64_t>(sequence.size() + 1) >
      kMaxCells) {
    error = where + " is too long (" + count_text(entry.residues.size(), "residues") +
            ") to match to the sequence; give only the chain that belongs to it";
    return false;
  }
  const std::size_t known = known_residues(entry.residues), seqKnown = known_residues(sequence);
  const std::vector<int> partner = match_residues(entry.residues, sequence);
  sRes.assign(sequence.size(), 'X');
  std::size_t identical = 0;
  for (std::size_t i = 0; i < partner.size(); ++i) {
    if (partner[i] < 0) continue;
    sRes[static_cast<std::size_t>(partner[i])] = mapped[i];
    identical += match_score(entry.residues[i], sequence[static_cast<std::size_t>(partner[i])]) == kIdentity;
  }
  if (known == 0) {
    error = where + " has only unknown residues (X), which cannot be matched to the sequence; check the file";
    return false;
  }
  const std::size_t minPercent = static_cast<std::size_t>(kMinPlacedPercent);
  const bool structureLies = identical * 100 >= known * minPercent;
  const bool sequenceLies = identical > 0 && identical * 100 >= seqKnown * minPercent;
  if (!structureLies && !sequenceLies) {
    error = where + " matches only " + std::to_string(identical) + " of its " + count_text(known, "known residues") +
            " to sequence " + seqId + " (" + count_text(sequence.size(), "residues") + "); at least " +
            std::to_string(kMinPlacedPercent) +
            "% of the structure's or of the sequence's residues must match: check that the file and chain are this "
            "protein's";
    return false;
  }
  if (!structureLies) note = part_used_note(entry, seqId, partner);
  return true;
}

bool assign_structures(const std::vector<StructEntry>& entries, const std::vector<std::string>& ids,
                       const std::vector<std::string>& sequences, std::vector<std::string>& sRes, StructureNotes& told,
                       std::string& error) {
  const EntryWords words{"structure", "is", "give one", " or name it as ID=FILE"};
  std::vector<const StructEntry*> matched, unused;
  if (!match_by_id(entries, ids, words, matched, error, &unused)) return false;
  // A family's structure file may list a sequence left out of this run; a
  // file none of whose structures fits is a mistake.
  if (!unused.empty() && unused.size() == entries.size()) {
    error = (unused.size() > 1 ? "no structure given is for an input sequence; " : "") +
            not_an_input_message(*unused[0], words);
    return false;
  }
  told = StructureNotes{};
  for (const StructEntry* entry : unused)
    told.unused += (told.unused.empty() ? "" : ", ") + entry->id + " (" + entry->origin + ")";
  if (!unused.empty())
    told.unused = (unused.size() == 1 ? "structure for " : "structures for ") + told.unused +
                  " not used: no input sequence has " + (unused.size() == 1 ? "this id" : "these ids");
  sRes.assign(ids.size(), std::string());
  for (std::size_t k = 0; k < ids.size() && k < sequences.size(); ++k) {
    std::string note;
    if (matched[k] == nullptr) {
      sRes[k].assign(sequences[k].size(), 'X');
      continue;
    }
    if (!place_structure(*matched[k], ids[k], sequences[k], sRes[k], note, error)) return false;
    for (const std::string& text : {matched[k]->note, note})
      if (!text.empty() && std::find(told.notes.begin(), told.notes.end(), text) == told.notes.end())
        told.notes.push_back(text);
  }
  return true;
}
