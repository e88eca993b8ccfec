// What every reader harness shares. The readers hand their faults back as
// values, so one input ends as a normal return and the fuzzer goes on.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "shell/text_input.hpp"

namespace fuzz {

inline std::string text_of(const std::uint8_t* data, std::size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

// A read-only stream over bytes (which must outlive it); fmemopen refuses
// an empty buffer, so an empty input is an empty file instead.
inline UniqueFile stream_over(std::string& bytes) {
  if (bytes.empty()) return UniqueFile(std::tmpfile());
  return UniqueFile(fmemopen(bytes.data(), bytes.size(), "r"));
}

// Scratch files made by this process, removed when it ends.
struct ScratchFiles {
  std::vector<std::string> paths;
  ~ScratchFiles() {
    for (const std::string& path : paths) std::remove(path.c_str());
  }
};

// The readers that take a path get this process's own scratch file.
inline std::string file_holding(const std::string& bytes, const char* name) {
  static ScratchFiles scratch;
  const char* tmp = std::getenv("TMPDIR");
  const std::string dir = tmp != nullptr && *tmp != '\0' ? tmp : "/tmp";
  const std::string path = dir + "/ravlin-fuzz-" + std::to_string(getpid()) + "-" + name;
  if (std::find(scratch.paths.begin(), scratch.paths.end(), path) == scratch.paths.end()) scratch.paths.push_back(path);
  UniqueFile file = open_file(path, "wb");
  if (file) std::fwrite(bytes.data(), 1, bytes.size(), file.get());
  return path;
}

// The input as a file given to a reader that takes a path (structure and
// anchor files); false when the reader refuses it.
template <class Entry, class Read>
bool read_as_file(const std::uint8_t* data, std::size_t size, const char* name, Read read,
                  std::vector<Entry>& entries) {
  std::string error;
  return read(file_holding(text_of(data, size), name), entries, error);
}

// What matching entries to input sequences by id takes: each entry's id as
// an input id, with the sequence sequenceOf(entry) made for it.
template <class Entry, class SequenceOf>
void ids_and_sequences(const std::vector<Entry>& entries, SequenceOf sequenceOf, std::vector<std::string>& ids,
                       std::vector<std::string>& sequences) {
  for (const Entry& entry : entries) {
    ids.push_back(entry.id);
    sequences.push_back(sequenceOf(entry));
  }
}

}  // namespace fuzz
