// ravlin-align's sequence file as a whole: the format recognised from the
// content, then read by the text parsers or ravlin's own entry readers, and
// every sequence checked. Faults come back as messages.
#include "cli/input_reading.hpp"
#include "fuzz/fuzz_support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = fuzz::file_holding(fuzz::text_of(data, size), "input");
  InputSeqs input;
  std::string error;
  read_input_seqs(path, "", true, input, error);
  return 0;
}
