// Where a run's progress goes. By default it is the designed text on standard
// output: a heading per stage and one '.' per aligned pair; another program
// may send it elsewhere.
#pragma once

#include <cstddef>

struct ProgressSink {
  void (*stageText)(const char* text);                    // a stage's heading, as printed
  void (*pairDone)(std::size_t done, std::size_t total);  // after each pair, in pair order
};

void set_progress_sink(const ProgressSink& sink);
void progress_text(const char* text);
void progress_pair(std::size_t done, std::size_t total);
