#include "shell/run_params.hpp"

int gapPen = 0;
int gapSizePen = 0;
int midStructPen = 0;
int endStructPen = 0;
int nearMatchScore = 0;
int blankMatch = 0;
int structBias = 0;
int incGapPen = 0;
int printPairsFlag = 0;
int printPctHomFlag = 0;
int printOrderFlag = 0;
int printFormat = 0;
int consensusPercent = 0;
int resLineLen = 0;
int asciiFlag = 0;
int mSeqSelect = 0;
