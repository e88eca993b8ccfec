// Weight files: their keys, values and the two lower-triangle score tables.
#include "fuzz/fuzz_support.hpp"
#include "malign/run_settings.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string bytes = fuzz::text_of(data, size);
  UniqueFile stream = fuzz::stream_over(bytes);
  if (!stream) return 0;
  RunSettings settings;
  ParmsRead read;
  read_weight_file(stream.get(), settings, read);
  return 0;
}
