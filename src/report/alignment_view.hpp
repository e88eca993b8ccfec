// What every writer of an alignment reads: the finished alignment in print
// order and the options that shape its printing. Both are built by the run
// (malign/) from its own state, so the printers read no run state of their own.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "matrix/weight_matrix.hpp"

// One sequence as the writers show it.
struct ViewRow {
  int seqIndex = 0;                       // the sequence's position in the input, from 0
  std::string id;                         // shown id (the accession, or a default one)
  std::string title;                      // description
  std::string name;                       // the id as the input gives it, whatever its length
  std::string header;                     // the input's whole header line (name and description)
  bool hasStructure = false;              // structure came from the input
  bool hasGroups = false;                 // anchors or groups came from the input
  std::string residues;                   // aligned residues, exactly `width` columns, ' ' for gaps
  std::string structure;                  // aligned structure codes, same columns
  std::string groups;                     // aligned anchor and group symbols, same columns
  std::span<const std::int32_t> resNums;  // residue numbering; out of range shows the running count
};

struct AlignmentView {
  int width = 0;              // columns
  std::vector<ViewRow> rows;  // in print order
  std::string consensus;      // per column: the most frequent letter, or '-' below the threshold
  int overlapStart = 0;       // columns counted from 1
  int overlapEnd = 0;
  double pctHomol = 0.0;
  double alignScore = 0.0;
  // Per column a digit 0-9: how far the pairwise alignments support the
  // column (9 most); empty when the strategy gives none.
  std::string confidence;
};

struct PrintOptions {
  int resLineLen = 50;                       // residues a block line
  bool molvaneLayout = false;                // the multiple alignment as Molvane entries
  const ScoreTable* residueTable = nullptr;  // for the match marks of pairs
  int nearMatchScore = 0;
  // Shown in the header only.
  std::string scoreFile;
  int gapPen = 0;
  int gapSizePen = 0;
  int midStructPen = 0;
  int endStructPen = 0;
  int blankMatch = 0;
  int structBias = 0;
  int incGapPen = 0;
  int consensusPercent = 0;
  bool printPctHom = false;
  bool printSorted = false;  // rows in alignment order
  bool printPairs = false;
};
