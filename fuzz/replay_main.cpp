// Replays saved inputs through one harness without fuzzing: each argument is
// a file or a folder of files. A reader fault found once stays found, in any
// build (the sanitizer build reports what a plain build may not notice).
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> inputs_of(const fs::path& arg) {
  std::vector<fs::path> files;
  if (!fs::is_directory(arg)) return {arg};
  for (const auto& entry : fs::directory_iterator(arg))
    if (entry.is_regular_file()) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t replayed = 0;
  for (int a = 1; a < argc; ++a) {
    for (const fs::path& file : inputs_of(argv[a])) {
      std::ifstream in(file, std::ios::binary);
      if (!in) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return 1;
      }
      const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++replayed;
    }
  }
  std::printf("%zu inputs replayed\n", replayed);
  return replayed > 0 ? 0 : 1;
}
