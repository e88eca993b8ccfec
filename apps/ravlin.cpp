// ravlin: interactive multiple alignment of protein sequences.
#include "error_frame.hpp"
#include "run_setup.hpp"

int main(int argc, char** argv) {
  // Texts grow with their input; running out of memory for one still ends
  // the run with the out-of-memory frame rather than an abort.
  if (std::optional<Failure> failure = capture_failure("main", [&] { ravlin_setup(argc, argv); }))
    exit_on_failure(*failure);
}
