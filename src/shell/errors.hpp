// Errors as values. Library code never prints an error or ends the process:
// a reader returns a Failure, and a fault deep inside a run (an internal
// inconsistency, exhausted memory) is raised as RunFailure and caught where
// the run or the reading was entered, which hands it back as a value. Only
// the programs decide how a failure is shown and with what exit status.
#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

enum class FailureKind {
  kFault,         // bad input or settings: the message says which
  kProgramCheck,  // the program's own inconsistency
  kOutOfMemory,   // module names the allocation
  kAlignTooLong,  // an alignment wider than the designed column limit
};

struct Failure {
  FailureKind kind = FailureKind::kFault;
  std::string module;   // the step that found it, as the designed frame names it
  std::string message;  // as the designed frame shows it
  std::string file;     // the file being read, when a reader knows it
  int line = 0;         // its line, from 1, when known
};

// A warning does not stop a reading; the program decides where it goes.
using WarningSink = std::function<void(const Failure&)>;

// Carries a Failure from deep inside a run to the routine that entered it.
struct RunFailure : std::exception {
  Failure failure;
  explicit RunFailure(Failure f) : failure(std::move(f)) {}
  const char* what() const noexcept override { return failure.message.c_str(); }
};

// printf-style formatting into a std::string, for building messages.
std::string format_text(const char* format, ...) __attribute__((format(printf, 1, 2)));

Failure make_failure(FailureKind kind, const char* module, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
// Raises a fault whose message starts "Program check" as kProgramCheck, any
// other as kFault.
[[noreturn]] void raise_failure(const char* module, const char* format, ...) __attribute__((format(printf, 2, 3)));
[[noreturn]] void raise_out_of_memory(const char* module);
void warn(const WarningSink& sink, const char* module, const char* format, ...) __attribute__((format(printf, 3, 4)));

// Runs work(); a failure raised inside comes back as the value, exhausted
// memory that no checked allocation named as one of module. The library's
// entry points name "main", as the programs' frame always has.
template <class Work>
std::optional<Failure> capture_failure(const char* module, Work&& work) {
  try {
    work();
  } catch (const RunFailure& raised) {
    return raised.failure;
  } catch (const std::bad_alloc&) {
    return Failure{FailureKind::kOutOfMemory, module, "Out of memory", {}, 0};
  } catch (const std::length_error&) {
    return Failure{FailureKind::kOutOfMemory, module, "Out of memory", {}, 0};
  }
  return std::nullopt;
}

// Runs make() and returns what it returns; running out of memory on the way
// raises the out-of-memory failure naming module.
template <class Make>
decltype(auto) checked_alloc(const char* module, Make&& make) {
  try {
    return make();
  } catch (const std::bad_alloc&) {
    raise_out_of_memory(module);
  } catch (const std::length_error&) {
    raise_out_of_memory(module);
  }
}

// A zero-filled (value-initialised) vector, allocated under checked_alloc.
template <class T>
std::vector<T> checked_vector(std::size_t count, const char* module) {
  return checked_alloc(module, [count] { return std::vector<T>(count); });
}

// A text of count copies of fill, with the same failure handling.
std::string checked_string(std::size_t count, char fill, const char* module);
