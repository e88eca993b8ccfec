// A structure file as ravlin-align is given it: the format recognised from
// the content and read, then every structure placed on a sequence of its own
// residues (or, for formats without residues, a sequence as long as its
// states), as assign_structures does for the input's sequences.
#include <cstdlib>

#include "fuzz/fuzz_support.hpp"
#include "structure/placement.hpp"
#include "structure/structure_source.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<StructEntry> entries;
  if (!fuzz::read_as_file(data, size, "structure", read_structure_source, entries)) return 0;
  std::vector<std::string> ids, sequences, sRes;
  fuzz::ids_and_sequences(
      entries,
      [](const StructEntry& entry) {
        std::string residues = entry.residues.empty() ? std::string(entry.states.size(), 'A') : entry.residues;
        for (char& c : residues)
          if (c < 'A' || c > 'Z') c = 'X';
        return residues;
      },
      ids, sequences);
  std::string error;
  StructureNotes told;
  if (!assign_structures(entries, ids, sequences, sRes, told, error)) return 0;
  for (std::size_t k = 0; k < sRes.size(); ++k)
    if (sRes[k].size() != sequences[k].size()) std::abort();
  return 0;
}
