// Weight files: their keys, values and the two lower-triangle score tables.
#include "fuzz/fuzz_support.hpp"
#include "matrix/weight_file.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string bytes = fuzz::text_of(data, size);
  UniqueFile stream = fuzz::stream_over(bytes);
  if (!stream) return 0;
  WeightSettings settings;
  WeightKeysFound found{};
  fuzz::guarded([&] { read_weight_file(stream.get(), settings, found); });
  return 0;
}
