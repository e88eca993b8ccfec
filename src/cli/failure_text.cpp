#include "cli/failure_text.hpp"

#include <cstdio>

namespace {

std::string trimmed_message(const std::string& message) {
  std::string text = message;
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  while (!text.empty() && text.front() == '\n') text.erase(text.begin());
  return text;
}

}  // namespace

std::string failure_text(const Failure& failure, const std::string& context) {
  std::string text = trimmed_message(failure.message);
  if (failure.kind == FailureKind::kProgramCheck) text += " (in " + failure.module + ")";
  // The engine names only the limit; say what it means and what to do.
  if (failure.kind == FailureKind::kAlignTooLong)
    text += ": an alignment holds at most 3,500 columns; align shorter sequences, or fewer at a time";
  return context.empty() ? text : context + ": " + text;
}

void print_warning(const Failure& warning, const std::string& context) {
  std::fprintf(stderr, "ravlin-align: warning: %s\n", failure_text(warning, context).c_str());
}
