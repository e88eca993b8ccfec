// How ravlin-align words the engine's failures and warnings: one line on
// standard error, naming the file being read when there is one.
#pragma once

#include <string>

#include "shell/errors.hpp"

// The failure's message as one line, with what it means for the user;
// context (a file, or empty) goes in front.
std::string failure_text(const Failure& failure, const std::string& context);

// "ravlin-align: warning: ..." on standard error.
void print_warning(const Failure& warning, const std::string& context);
