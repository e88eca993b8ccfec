// Anchor files: FASTA-style symbol strings matched to the input by id.
#include "structure/anchor_file.hpp"

#include <algorithm>
#include <map>

#include "structure/structure_formats.hpp"

bool read_anchor_file(const std::string& path, std::vector<AnchorEntry>& out, std::string& error) {
  std::string text;
  std::vector<FastaRecord> records;
  if (!read_text_file(path, text, error) ||
      !read_fasta_records(path, text, "-*12345", "an anchor symbol ('-', '*' or 1 to 5)", records, error))
    return false;
  for (const FastaRecord& record : records)
    out.push_back({record.id, record.data, path + " line " + std::to_string(record.line)});
  return true;
}

bool assign_anchors(const std::vector<AnchorEntry>& entries, const std::vector<std::string>& ids,
                    const std::vector<std::string>& sequences, std::vector<std::string>& uRes, std::string& error) {
  std::map<std::string, const AnchorEntry*> byId;
  for (const AnchorEntry& entry : entries) {
    const auto [it, added] = byId.emplace(entry.id, &entry);
    if (!added) {
      error = "anchors for " + entry.id + " are given twice (" + it->second->origin + " and " + entry.origin +
              "); give them once";
      return false;
    }
    if (std::find(ids.begin(), ids.end(), entry.id) == ids.end()) {
      error = entry.origin + " gives anchors for " + entry.id +
              ", which is not an input sequence; check the id (the first word of its header)";
      return false;
    }
  }
  uRes.assign(ids.size(), std::string());
  for (std::size_t k = 0; k < ids.size() && k < sequences.size(); ++k) {
    const auto found = byId.find(ids[k]);
    if (found == byId.end()) {
      uRes[k].assign(sequences[k].size(), '-');
      continue;
    }
    const std::string& symbols = found->second->symbols;
    if (symbols.size() != sequences[k].size()) {
      error = "anchors for " + ids[k] + " in " + found->second->origin + " have " + std::to_string(symbols.size()) +
              " symbols but the sequence has " + std::to_string(sequences[k].size()) +
              " residues; give one symbol per residue";
      return false;
    }
    uRes[k] = symbols;
  }
  return true;
}
