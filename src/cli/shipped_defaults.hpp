// The shipped parameter and weight files, compiled into the program from
// data/ at build time, so that ravlin-align needs no file beside its input.
#pragma once

#include <string_view>

struct ShippedFile {
  std::string_view name;  // as in data/
  std::string_view text;
};

// The file of that name, or an empty text when none is shipped.
std::string_view shipped_file(std::string_view name);
