// The Molvane format: entries read one after another as a run reads a file.
#include "fuzz/seq_entries.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::read_all_entries(data, size, kFormatMolvane);
  return 0;
}
