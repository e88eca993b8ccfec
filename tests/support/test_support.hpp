// Helpers shared by the tests.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include "shell/errors.hpp"
#include "shell/text_input.hpp"

namespace testsupport {

// A fresh directory under the system's temporary directory, removed with
// everything in it when the object goes.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path file(const std::string& name) const { return path_ / name; }
  // Writes text to name inside the directory and returns the full path.
  std::filesystem::path write(const std::string& name, const std::string& text) const;
  std::string read(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

std::string read_file(const std::filesystem::path& path);
// An open stream positioned at the start of text (which may hold any bytes).
UniqueFile stream_of(const std::string& text);

struct RunResult {
  int status = -1;  // exit status, or -1 when the program did not exit normally
  std::string out;  // everything written to standard output
};

// Runs a shell command line in workdir with stdinText on standard input.
RunResult run_command(const std::string& commandLine, const std::string& stdinText,
                      const std::filesystem::path& workdir);

// Runs program (quoted here) with args in workdir and expects nothing on
// standard error: that is where a sanitizer build reports a fault.
RunResult run_program(const std::string& program, const std::string& args, const std::string& stdinText,
                      const std::filesystem::path& workdir);

// Quotes a word for the shell.
std::string shell_quote(const std::string& word);

// Path of a file in the source tree.
std::filesystem::path source_path(const std::string& relative);

// Contents of tests/golden/<relative>; a missing file fails the test.
std::string read_golden(const std::string& relative);

// The framed report that ravlin and ravlin-batch print for an error.
std::string error_frame(int level, const std::string& module, const std::string& message);

// The frame of the failure that work raises, or "(nothing raised)".
std::string raised(const std::function<void()>& work);
// A sink that appends each warning's frame to printed.
WarningSink frame_warnings(std::string& printed);

// Everything written to stream, read from its start.
std::string text_of(std::FILE* stream);

// How many times part occurs in text (overlaps counted).
int count_of(const std::string& text, const std::string& part);

// Replaces the date line of a report with a fixed text.
std::string mask_date(const std::string& report);

}  // namespace testsupport

// Expects statement to raise the failure whose frame is expected.
#define EXPECT_RAISES(statement, expected) EXPECT_EQ(::testsupport::raised([&] { statement; }), std::string(expected))
