// Anchor files: read, then matched to sequences as long as their symbols.
#include "fuzz/fuzz_support.hpp"
#include "structure/anchor_file.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzz::file_holding(fuzz::text_of(data, size), "anchors");
  std::vector<AnchorEntry> entries;
  std::string error;
  if (!read_anchor_file(path, entries, error)) return 0;
  std::vector<std::string> ids, sequences, uRes;
  for (const AnchorEntry& entry : entries) {
    ids.push_back(entry.id);
    sequences.push_back(std::string(entry.symbols.size(), 'A'));
  }
  assign_anchors(entries, ids, sequences, uRes, error);
  return 0;
}
