#include "shell/parms.hpp"

#include <cstring>

#include "shell/errors.hpp"
#include "shell/limits.hpp"

UniqueFile get_parms_file(const std::string& path) {
  UniqueFile stream = open_file(path, "r");
  if (!stream) raise_failure("get_parms_file", "Cannot open parameter file: %s\n", path.c_str());
  return stream;
}

int read_parm_key(std::FILE* stream, const char* prefix, int n, std::string& keyBuf) {
  const std::size_t width = static_cast<std::size_t>(n);
  while (read_word(stream, keyBuf)) {
    // strncmp semantics: a word shorter than n matches only a prefix as short.
    if (std::strncmp(keyBuf.c_str(), prefix, width) == 0) return 1;
    // Keep the bounded skip: the rest of an over-long line is scanned again.
    skip_line(stream, kLineRead);
  }
  return 0;
}

int read_parm_int(std::FILE* stream, int* value, int min, int max, const std::string& key) {
  int read = 0;
  if (!scan_int(stream, read))
    raise_failure("read_parm_int", "Parm key = '%s' Missing or non-numeric value\n", key.c_str());
  if (read < min)
    raise_failure("read_parm_int", "Parm key = '%s' Lower bound exceeded: %d < %d\n", key.c_str(), read, min);
  if (read > max)
    raise_failure("read_parm_int", "Parm key = '%s' Upper bound exceeded: %d > %d\n", key.c_str(), read, max);
  *value = read;
  return 1;
}

int read_parm_string(std::FILE* stream, std::string& buffer) { return read_word(stream, buffer) ? 1 : EOF; }

UniqueFile read_parm_fname2(std::FILE* stream, std::string& path, const std::string& key) {
  read_word(stream, path);
  UniqueFile opened = open_file(path, "r");
  if (!opened) raise_failure("read_parm_fname2", "Parmkey = '%s' Cannot open file: '%s'.\n", key.c_str(), path.c_str());
  return opened;
}
