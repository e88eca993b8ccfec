// Parameter files: a loose stream of words in which a key is any word that
// begins with the caller's prefix and its value is the word that follows.
// Any other word starts a comment that runs to the end of its line. Faults
// (an unopenable file, a value out of bounds) are raised as RunFailure.
#pragma once

#include <cstdio>
#include <string>

#include "shell/text_input.hpp"

UniqueFile get_parms_file(const std::string& path);
int read_parm_key(std::FILE* stream, const char* prefix, int n, std::string& keyBuf);
int read_parm_int(std::FILE* stream, int* value, int min, int max, const std::string& key);
int read_parm_string(std::FILE* stream, std::string& buffer);
UniqueFile read_parm_fname2(std::FILE* stream, std::string& path, const std::string& key);
