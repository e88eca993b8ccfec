// Puts a structure read from a file onto the sequence it belongs to, and
// gives every input sequence its structure string (X where none is known).
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "structure/structure_source.hpp"

// At least this share of a structure's known residues (all but X) must find
// an identical residue in the sequence, or this share of the sequence's
// known residues one in the structure (a sequence of one domain of the
// chain); else the two are taken to be different proteins.
inline constexpr int kMinPlacedPercent = 90;

// One structure letter (H, B, T, C, X) per residue of sequence (upper-case
// letters). With the structure's own residues known, they are matched to the
// sequence, free to skip residues on either side, and sequence residues left
// without a partner get X; otherwise the states must be exactly as many as
// the residues. When only a part of the structure lies on the sequence,
// note says which part.
bool place_structure(const StructEntry& entry, const std::string& seqId, const std::string& sequence, std::string& sRes,
                     std::string& note, std::string& error);

// What assign_structures found worth telling the user.
struct StructureNotes {
  std::vector<std::string> notes;  // where the states came from, which part of a chain was used
  std::string unused;              // structures for ids that are no input sequence, or ""
};

// Structure strings for all input sequences, matched by id. A sequence with
// no entry gets all X; an id given twice is an error, and so is an entry for
// an id that is not an input id when no entry is for one (a typo); otherwise
// such entries are left unused and named in told.unused.
bool assign_structures(const std::vector<StructEntry>& entries, const std::vector<std::string>& ids,
                       const std::vector<std::string>& sequences, std::vector<std::string>& sRes, StructureNotes& told,
                       std::string& error);

// How match_by_id names a kind of entry in its faults.
struct EntryWords {
  const char* noun;    // "structure", "anchors"
  const char* verb;    // "is", "are"
  const char* once;    // what to do about an id given twice
  const char* idHint;  // what else than checking the id may help, or ""
};

// The fault of an entry whose id is not an input id.
template <class Entry>
std::string not_an_input_message(const Entry& entry, const EntryWords& words) {
  return entry.origin + " gives " + words.noun + " for " + entry.id +
         ", which is not an input sequence; check the id (the first word of its header)" + words.idHint;
}

// Matches entries (structure or anchors) to the input sequences by id.
// Out: per input id, its entry or null; or the fault of an id given twice.
// An entry whose id is not an input id is a fault too, unless unused is
// given: it then collects such entries.
template <class Entry>
bool match_by_id(const std::vector<Entry>& entries, const std::vector<std::string>& ids, const EntryWords& words,
                 std::vector<const Entry*>& matched, std::string& error, std::vector<const Entry*>* unused = nullptr) {
  std::map<std::string, const Entry*> byId;
  for (const Entry& entry : entries) {
    const auto [it, added] = byId.emplace(entry.id, &entry);
    if (!added) {
      error = std::string(words.noun) + " for " + entry.id + " " + words.verb + " given twice (" + it->second->origin +
              " and " + entry.origin + "); " + words.once;
      return false;
    }
    if (std::find(ids.begin(), ids.end(), entry.id) != ids.end()) continue;
    if (unused == nullptr) {
      error = not_an_input_message(entry, words);
      return false;
    }
    unused->push_back(&entry);
  }
  matched.assign(ids.size(), nullptr);
  for (std::size_t k = 0; k < ids.size(); ++k) {
    const auto found = byId.find(ids[k]);
    if (found != byId.end()) matched[k] = found->second;
  }
  return true;
}
