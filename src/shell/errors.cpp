#include "shell/errors.hpp"

#include <cstdarg>
#include <cstdio>

namespace {

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

std::string format_text(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = vformat_text(format, args);
  va_end(args);
  return text;
}

Failure make_failure(FailureKind kind, const char* module, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Failure failure{kind, module, vformat_text(format, args), {}, 0};
  va_end(args);
  return failure;
}

void raise_failure(const char* module, const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = vformat_text(format, args);
  va_end(args);
  const FailureKind kind = text.starts_with("Program check") ? FailureKind::kProgramCheck : FailureKind::kFault;
  throw RunFailure(Failure{kind, module, std::move(text), {}, 0});
}

void raise_out_of_memory(const char* module) {
  throw RunFailure(Failure{FailureKind::kOutOfMemory, module, "Out of memory", {}, 0});
}

void warn(const WarningSink& sink, const char* module, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Failure warning{FailureKind::kFault, module, vformat_text(format, args), {}, 0};
  va_end(args);
  if (sink) sink(warning);
}

std::string checked_string(std::size_t count, char fill, const char* module) {
  return checked_alloc(module, [&] { return std::string(count, fill); });
}
