// Anchor files: read, then matched to sequences as long as their symbols.
#include "fuzz/fuzz_support.hpp"
#include "structure/anchor_file.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<AnchorEntry> entries;
  if (!fuzz::read_as_file(data, size, "anchors", read_anchor_file, entries)) return 0;
  std::vector<std::string> ids, sequences, uRes;
  fuzz::ids_and_sequences(
      entries, [](const AnchorEntry& entry) { return std::string(entry.symbols.size(), 'A'); }, ids, sequences);
  std::string error;
  assign_anchors(entries, ids, sequences, uRes, error);
  return 0;
}
