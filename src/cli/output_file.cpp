#include "cli/output_file.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

// The temporary file's name where a signal handler can reach it.
char pendingPath[4096] = "";

// Only async-signal-safe calls here: a fixed text and write().
void say_stopped(int signal) {
  const char* text = signal == SIGINT    ? "ravlin-align: error: interrupted; no output was written\n"
                     : signal == SIGTERM ? "ravlin-align: error: terminated; no output was written\n"
                                         : "ravlin-align: error: hung up; no output was written\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, std::strlen(text));
}

void on_signal(int signal) {
  discard_output();
  say_stopped(signal);
  _exit(128 + signal);
}

void catch_interrupts() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, on_signal);
}

bool same_file(const std::string& a, const std::string& b) {
  std::error_code ec;
  if (fs::equivalent(a, b, ec)) return true;
  return fs::weakly_canonical(a, ec) == fs::weakly_canonical(b, ec) && !ec;
}

std::string system_error() { return std::strerror(errno); }

bool open_temp_beside(OutputTarget& target, std::string& error) {
  const fs::path dest(target.path);
  const fs::path dir = dest.has_parent_path() ? dest.parent_path() : fs::path(".");
  std::string pattern = (dir / ("." + dest.filename().string() + ".ravlin-XXXXXX")).string();
  if (pattern.size() >= sizeof pendingPath) {
    error = "the output name " + target.path + " is too long";
    return false;
  }
  const int fd = mkstemp(pattern.data());
  if (fd < 0) {
    error = "cannot write " + target.path + " (" + system_error() + ")";
    return false;
  }
  std::strcpy(pendingPath, pattern.c_str());
  // A new file gets the permissions any other new file would.
  const mode_t mask = umask(0);
  umask(mask);
  fchmod(fd, 0666 & ~mask);
  target.tempPath = pattern;
  target.stream = fdopen(fd, "w");
  if (target.stream == nullptr) {
    close(fd);
    discard_output();
    error = "cannot write " + target.path + " (" + system_error() + ")";
    return false;
  }
  return true;
}

}  // namespace

bool open_output(const std::string& path, bool force, const std::vector<std::string>& inputs, OutputTarget& target,
                 std::string& error) {
  target.path = path;
  if (path.empty() || path == "-") {
    catch_interrupts();  // the alignment kept in memory is lost: say so
    target.path.clear();
    target.stream = open_memstream(&target.buffer, &target.bufferSize);
    if (target.stream == nullptr) error = "cannot keep the alignment in memory (" + system_error() + ")";
    return target.stream != nullptr;
  }
  for (const std::string& input : inputs) {
    if (input != "-" && same_file(path, input)) {
      error = "the output " + path + " is also an input file; give another output name";
      return false;
    }
  }
  std::error_code ec;
  // A device or a pipe is written to as it is: there is no file to replace.
  if (fs::exists(path, ec) && !fs::is_regular_file(path, ec) && !fs::is_directory(path, ec)) {
    target.stream = std::fopen(path.c_str(), "w");
    if (target.stream == nullptr) error = "cannot write " + path + " (" + system_error() + ")";
    return target.stream != nullptr;
  }
  if (fs::exists(path, ec) && !force) {
    error = "the output " + path + " exists already; give --force to replace it";
    return false;
  }
  if (fs::is_directory(path, ec)) {
    error = "the output " + path + " is a directory; give a file name";
    return false;
  }
  catch_interrupts();
  return open_temp_beside(target, error);
}

bool commit_output(OutputTarget& target, std::string& error) {
  if (target.path.empty()) {
    const bool closed = std::fclose(target.stream) == 0;
    target.stream = nullptr;
    const bool written = closed && std::fwrite(target.buffer, 1, target.bufferSize, stdout) == target.bufferSize &&
                         std::fflush(stdout) == 0;
    std::free(target.buffer);
    target.buffer = nullptr;
    if (!written) error = "cannot write the alignment to standard output (" + system_error() + ")";
    return written;
  }
  const bool direct = target.tempPath.empty();
  const bool flushed = std::fflush(target.stream) == 0 && (direct || fsync(fileno(target.stream)) == 0);
  const int flushError = errno;
  const bool closed = std::fclose(target.stream) == 0;
  target.stream = nullptr;
  if (!flushed || !closed) {
    errno = flushed ? errno : flushError;
    error = "cannot write " + target.path + " (" + system_error() + ")";
    discard_output();
    return false;
  }
  if (direct) return true;
  if (std::rename(target.tempPath.c_str(), target.path.c_str()) != 0) {
    error = "cannot put the alignment in place as " + target.path + " (" + system_error() + ")";
    discard_output();
    return false;
  }
  pendingPath[0] = '\0';
  return true;
}

void discard_output() {
  if (pendingPath[0] != '\0') unlink(pendingPath);
  pendingPath[0] = '\0';
}
