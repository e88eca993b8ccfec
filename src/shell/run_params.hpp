// The run parameters: set only by the run driver from its keys, read by the
// alignment engine and the report printers.
#pragma once

extern int gapPen;
extern int gapSizePen;
extern int midStructPen;
extern int endStructPen;
extern int nearMatchScore;
extern int blankMatch;
extern int structBias;
extern int incGapPen;
extern int printPairsFlag;
extern int printPctHomFlag;
extern int printOrderFlag;
extern int printFormat;
extern int consensusPercent;
extern int resLineLen;
extern int asciiFlag;
extern int mSeqSelect;
