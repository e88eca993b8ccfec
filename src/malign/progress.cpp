#include "malign/progress.hpp"

#include <cstdio>

namespace {

void print_stage_text(const char* text) {
  std::fputs(text, stdout);
  std::fflush(stdout);
}

void print_pair_dot(std::size_t, std::size_t) {
  std::fputc('.', stdout);
  std::fflush(stdout);
}

ProgressSink sink = {print_stage_text, print_pair_dot};

}  // namespace

void set_progress_sink(const ProgressSink& newSink) { sink = newSink; }

void progress_text(const char* text) { sink.stageText(text); }

void progress_pair(std::size_t done, std::size_t total) { sink.pairDone(done, total); }
