#include "error_frame.hpp"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

const char* const kStars = "**************************************************\n";

void print_frame(int level, const char* module, const char* message) {
  std::printf("\n%s\n", kStars);
  std::printf("%s\n\n", level == 1 ? " Fatal Error Detected!" : " Warning, Error Detected!");
  std::printf(" Module.: %s\n", module);
  std::printf(" Message: %s\n", message);
  std::printf("\n%s\n", kStars);
}

}  // namespace

void show_err(int level, const char* module, const char* message) {
  print_frame(level, module, message);
  if (level == 1) std::exit(1);
}

void show_err_mem(const char* module) {
  std::printf("\n%s\n", kStars);
  std::printf(" Fatal Error: Out of memory...aborting\n");
  std::printf(" Module: %s\n", module);
  std::printf("\n%s\n", kStars);
}

void show_failure(const Failure& failure) {
  if (failure.kind == FailureKind::kOutOfMemory)
    show_err_mem(failure.module.c_str());
  else
    print_frame(1, failure.module.c_str(), failure.message.c_str());
  std::fflush(stdout);
}

void show_warning(const Failure& warning) { show_err(0, warning.module.c_str(), warning.message.c_str()); }

void fatal_err(const char* module, const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  const int needed = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  std::string text(static_cast<std::size_t>(needed > 0 ? needed : 0), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, args);
  va_end(args);
  show_err(1, module, text.c_str());
  std::exit(1);  // not reached: level 1 ends the program
}

void exit_on_failure(const Failure& failure) {
  show_failure(failure);
  std::exit(1);
}
