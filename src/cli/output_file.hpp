// Where ravlin-align's result goes: written aside and put in place only when
// the whole run succeeded, so that a failed run leaves nothing behind and
// never touches an existing file.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

struct OutputTarget {
  std::string path;      // empty: standard output
  std::string tempPath;  // the file being written beside path
  std::FILE* stream = nullptr;
  char* buffer = nullptr;  // standard output's text, until the run succeeds
  std::size_t bufferSize = 0;
};

// Checks the destination before any work (an existing file needs force; the
// input and the structure files are never overwritten) and opens the stream.
bool open_output(const std::string& path, bool force, const std::vector<std::string>& inputs, OutputTarget& target,
                 std::string& error);
// Puts the finished result in place.
bool commit_output(OutputTarget& target, std::string& error);
// Removes what was written; safe to call at any time, also from a signal handler.
void discard_output();
