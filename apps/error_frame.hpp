// How ravlin and ravlin-batch show errors: the framed reports on standard
// output. A fatal failure is shown here and the program then ends with
// status 1; a warning is shown and the run goes on.
#pragma once

#include "shell/errors.hpp"

// level 1: the fatal frame, then the end of the program with status 1; any
// other level: the warning frame.
void show_err(int level, const char* module, const char* message);
void show_err_mem(const char* module);

// The fatal frame for failure (the out-of-memory frame for exhausted memory).
void show_failure(const Failure& failure);
// The warning frame, for the readers' warnings.
void show_warning(const Failure& warning);

// The fatal frame with a formatted message, then the end of the program with
// status 1.
[[noreturn]] void fatal_err(const char* module, const char* format, ...) __attribute__((format(printf, 2, 3)));
// show_failure, then the end of the program with status 1.
[[noreturn]] void exit_on_failure(const Failure& failure);
