// One alignment job from a parameter file to a finished report.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "align/align_score.hpp"

extern PctHomTable pctHomMatrix;  // percent homology of every pair

int ravlin_main(const std::string& parmsPath, const std::string& outPath);

// A weight file already open, standing in for the one a parameter file names.
struct WeightSource {
  std::FILE* stream;
  std::string name;  // as the report's header shows it
};

// Reads the run settings of a parameter file (its data keys are read but not
// used) and the weight file it names, or weights instead when given. Faults
// and missing keys end the run as in ravlin_main.
void read_run_settings(std::FILE* parms, const WeightSource* weights);

// Aligns the multAlignNum sequences of mySeq with the run parameters in
// force (mSeqSelect chooses the order) into mar; the report's sections go to
// report unless it is null. alignOrder receives the order in which the
// sequences joined the alignment.
void run_alignment(std::FILE* report, std::vector<int>& alignOrder);
