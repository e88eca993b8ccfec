// The designed job of ravlin and ravlin-batch: a parameter file in, a report
// out, progress on standard output, a failure shown in the designed frame.
#pragma once

#include <string>

// Returns the program's exit status: 0, or 1 after the fatal frame.
int ravlin_main(const std::string& parmsPath, const std::string& outPath);
