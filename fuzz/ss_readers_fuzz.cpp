// Each structure reader (FASTA-style states, Stockholm, DSSP, mmCIF, PSIPRED)
// given every input, with and without a chain chosen, whatever the format
// recognition would have made of it.
#include "fuzz/fuzz_support.hpp"
#include "structure/structure_formats.hpp"

namespace {

using Reader = bool (*)(const StructSource&, std::string_view, std::vector<StructEntry>&, std::string&);

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::text_of(data, size);
  const StructSource sources[] = {{"", "in.ss", ""}, {"seq", "in.dssp", "B"}};
  for (const Reader read : {read_ss_fasta, read_ss_stockholm, read_ss_dssp, read_ss_mmcif, read_ss_psipred}) {
    for (const StructSource& source : sources) {
      std::vector<StructEntry> entries;
      std::string error;
      read(source, text, entries, error);
    }
  }
  return 0;
}
