// Parameter files as ravlin-align reads them: every key and value, with the
// shipped weight file standing for the one a file would name (so that no
// input can make the harness open files of its choosing).
#include "cli/shipped_defaults.hpp"
#include "fuzz/fuzz_support.hpp"
#include "malign/run_settings.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string bytes = fuzz::text_of(data, size);
  std::string weights(shipped_file("ravlin.wts"));
  UniqueFile parms = fuzz::stream_over(bytes);
  UniqueFile weightStream = fuzz::stream_over(weights);
  if (!parms || !weightStream) return 0;
  const WeightSource source{weightStream.get(), "ravlin.wts"};
  RunSettings settings;
  ParmsRead read;
  if (!read_parms_file(parms.get(), &source, settings, read)) check_ravlin_parms(settings, read, false);
  return 0;
}
