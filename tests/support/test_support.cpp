#include "support/test_support.hpp"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace testsupport {

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "ravlin-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TempDir::write(const std::string& name, const std::string& text) const {
  const auto full = path_ / name;
  std::ofstream(full, std::ios::binary) << text;
  return full;
}

std::string TempDir::read(const std::string& name) const { return read_file(path_ / name); }

std::string read_file(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

UniqueFile stream_of(const std::string& text) {
  UniqueFile stream(std::tmpfile());
  std::fwrite(text.data(), 1, text.size(), stream.get());
  std::rewind(stream.get());
  return stream;
}

std::string shell_quote(const std::string& word) {
  std::string quoted = "'";
  for (char ch : word) {
    if (ch == '\'')
      quoted += "'\\''";
    else
      quoted += ch;
  }
  return quoted + "'";
}

RunResult run_command(const std::string& commandLine, const std::string& stdinText,
                      const std::filesystem::path& workdir) {
  TempDir scratch;
  const auto inputPath = scratch.write("stdin", stdinText);
  const auto outputPath = scratch.file("stdout");
  const std::string full = "cd " + shell_quote(workdir.string()) + " && " + commandLine + " < " +
                           shell_quote(inputPath.string()) + " > " + shell_quote(outputPath.string());
  const int raw = std::system(full.c_str());
  RunResult result;
  if (raw != -1 && WIFEXITED(raw)) result.status = WEXITSTATUS(raw);
  result.out = read_file(outputPath);
  return result;
}

RunResult run_program(const std::string& program, const std::string& args, const std::string& stdinText,
                      const std::filesystem::path& workdir) {
  const TempDir errDir;
  const auto errFile = errDir.file("stderr");
  RunResult result =
      run_command(shell_quote(program) + " " + args + " 2>" + shell_quote(errFile.string()), stdinText, workdir);
  EXPECT_EQ(read_file(errFile), "") << program << " " << args;
  return result;
}

std::filesystem::path source_path(const std::string& relative) {
  return std::filesystem::path(RAVLIN_SOURCE_DIR) / relative;
}

std::string read_golden(const std::string& relative) {
  const auto path = source_path("tests/golden/" + relative);
  EXPECT_TRUE(std::filesystem::exists(path)) << path;
  return read_file(path);
}

std::string error_frame(int level, const std::string& module, const std::string& message) {
  const std::string stars(50, '*');
  return "\n" + stars + "\n\n" + (level == 1 ? " Fatal Error Detected!\n" : " Warning, Error Detected!\n") + "\n" +
         " Module.: " + module + "\n" + " Message: " + message + "\n" + "\n" + stars + "\n\n";
}

std::string raised(const std::function<void()>& work) {
  const std::optional<Failure> failure = capture_failure("main", work);
  if (!failure) return "(nothing raised)";
  if (failure->kind == FailureKind::kOutOfMemory) return "Out of memory in " + failure->module;
  return error_frame(1, failure->module, failure->message);
}

WarningSink frame_warnings(std::string& printed) {
  return [&printed](const Failure& warning) { printed += error_frame(0, warning.module, warning.message); };
}

std::string text_of(std::FILE* stream) {
  std::fflush(stream);
  std::rewind(stream);
  std::string text;
  for (int ch; (ch = std::fgetc(stream)) != EOF;) text.push_back(static_cast<char>(ch));
  return text;
}

int count_of(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

std::string mask_date(const std::string& report) {
  const std::string label = "   Date..........: ";
  const auto at = report.find(label);
  if (at == std::string::npos) return report;
  const auto end = report.find('\n', at);
  if (end == std::string::npos) return report;
  return report.substr(0, at) + label + "<date>" + report.substr(end);
}

}  // namespace testsupport
