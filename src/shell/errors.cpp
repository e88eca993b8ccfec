#include "shell/errors.hpp"

#include <cstdarg>

namespace {

const char* const kStars = "**************************************************\n";

ErrorHook errorHook = nullptr;

std::string vformat_text(const char* format, va_list args) {
  va_list copy;
  va_copy(copy, args);
  const int needed = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  if (needed <= 0) return std::string();
  std::string text(static_cast<std::size_t>(needed), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, args);
  return text;
}

}  // namespace

void set_error_hook(ErrorHook hook) { errorHook = hook; }

void show_err(int level, const char* module, const char* message) {
  if (errorHook != nullptr) {
    errorHook(level, module, message);
    if (level == 1) std::exit(1);
    return;
  }
  std::printf("\n%s\n", kStars);
  std::printf("%s\n\n", level == 1 ? " Fatal Error Detected!" : " Warning, Error Detected!");
  std::printf(" Module.: %s\n", module);
  std::printf(" Message: %s\n", message);
  std::printf("\n%s\n", kStars);
  if (level == 1) std::exit(1);
}

void show_err_mem(const char* module) {
  if (errorHook != nullptr) {
    errorHook(1, module, "Out of memory");
    return;
  }
  std::printf("\n%s\n", kStars);
  std::printf(" Fatal Error: Out of memory...aborting\n");
  std::printf(" Module: %s\n", module);
  std::printf("\n%s\n", kStars);
}

void out_of_memory(const char* module) {
  show_err_mem(module);
  std::exit(1);
}

void* emalloc(std::size_t size, const char* module) {
  void* block = std::malloc(size);
  if (block == nullptr) out_of_memory(module);
  return block;
}

void* ecalloc(std::size_t count, std::size_t size, const char* module) {
  void* block = std::calloc(count, size);
  if (block == nullptr) out_of_memory(module);
  return block;
}

void show_prompt(std::FILE* stream, const char* text) { std::fprintf(stream, "%s%s", text, "\n>> "); }

int show_msg(std::FILE* stream, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int written = std::vfprintf(stream, format, args);
  va_end(args);
  return written;
}

std::string format_text(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = vformat_text(format, args);
  va_end(args);
  return text;
}

void fatal_err(const char* module, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const std::string text = vformat_text(format, args);
  va_end(args);
  show_err(1, module, text.c_str());
  std::exit(1);  // not reached: level 1 ends the process
}

void warn_err(const char* module, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const std::string text = vformat_text(format, args);
  va_end(args);
  show_err(0, module, text.c_str());
}

std::string checked_string(std::size_t count, char fill, const char* module) {
  return checked_alloc(module, [&] { return std::string(count, fill); });
}
