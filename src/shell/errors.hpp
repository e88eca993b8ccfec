// Error reporting and checked allocation.
//
// Every error goes through show_err: level 1 prints the fatal frame and ends
// the process with status 1; any other level prints the warning frame and
// returns. Allocation failures print their own frame and end with status 1.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

void show_err(int level, const char* module, const char* message);

// A program other than the designed ones may take over how errors are shown:
// with a hook set, show_err and the out-of-memory report call it instead of
// printing their frames (message "Out of memory" for the latter). A fatal
// error still ends the process with status 1 if the hook returns.
using ErrorHook = void (*)(int level, const char* module, const char* message);
void set_error_hook(ErrorHook hook);
void show_err_mem(const char* module);
void* emalloc(std::size_t size, const char* module);
void* ecalloc(std::size_t count, std::size_t size, const char* module);
void show_prompt(std::FILE* stream, const char* text);
int show_msg(std::FILE* stream, const char* format, ...) __attribute__((format(printf, 2, 3)));

// printf-style formatting into a std::string, for building messages.
std::string format_text(const char* format, ...) __attribute__((format(printf, 1, 2)));

// show_err at level 1 with a formatted message; never returns.
[[noreturn]] void fatal_err(const char* module, const char* format, ...) __attribute__((format(printf, 2, 3)));
// show_err at level 0 with a formatted message.
void warn_err(const char* module, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Ends the process as emalloc does when memory is exhausted.
[[noreturn]] void out_of_memory(const char* module);

// Runs make() and returns what it returns; running out of memory on the way
// ends the run with the out-of-memory frame naming module.
template <class Make>
decltype(auto) checked_alloc(const char* module, Make&& make) {
  try {
    return make();
  } catch (const std::bad_alloc&) {
    out_of_memory(module);
  } catch (const std::length_error&) {
    out_of_memory(module);
  }
}

// A zero-filled (value-initialised) vector, allocated under checked_alloc.
template <class T>
std::vector<T> checked_vector(std::size_t count, const char* module) {
  return checked_alloc(module, [count] { return std::vector<T>(count); });
}

// A text of count copies of fill, with the same failure handling.
std::string checked_string(std::size_t count, char fill, const char* module);
