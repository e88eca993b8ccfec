// One alignment job from a parameter file to a finished report.
#pragma once

#include <cstdio>
#include <string>

#include "align/align_score.hpp"

extern PctHomTable pctHomMatrix;  // percent homology of every pair

int ravlin_main(const std::string& parmsPath, const std::string& outPath);
