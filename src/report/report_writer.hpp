// The designed report, written as a run goes: its sections in the order the
// report holds them. The header comes before the run; the sections up to the
// table of percent homology once the order is decided (so that a run that
// fails in its multiple alignment leaves them behind); the statistics and
// the multiple alignment at the end.
#pragma once

#include <cstdio>

#include "malign/run.hpp"

void write_report_header(std::FILE* report, const RunSettings& settings);
void write_report_before_alignment(std::FILE* report, const RunSettings& settings, const RunInput& input,
                                   const RunResult& result);
void write_report_alignment(std::FILE* report, const RunSettings& settings, const RunInput& input,
                            const RunResult& result);
