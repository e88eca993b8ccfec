// Anchor files: FASTA-style symbol strings matched to the input by id.
#include "structure/anchor_file.hpp"

#include "structure/placement.hpp"
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
  std::vector<const AnchorEntry*> matched;
  if (!match_by_id(entries, ids, {"anchors", "are", "give them once", ""}, matched, error)) return false;
  uRes.assign(ids.size(), std::string());
  for (std::size_t k = 0; k < ids.size() && k < sequences.size(); ++k) {
    if (matched[k] == nullptr) {
      uRes[k].assign(sequences[k].size(), '-');
      continue;
    }
    const std::string& symbols = matched[k]->symbols;
    if (symbols.size() != sequences[k].size()) {
      error = "anchors for " + ids[k] + " in " + matched[k]->origin + " have " + std::to_string(symbols.size()) +
              " symbols but the sequence has " + std::to_string(sequences[k].size()) +
              " residues; give one symbol per residue";
      return false;
    }
    uRes[k] = symbols;
  }
  return true;
}
