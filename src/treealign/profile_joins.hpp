// Joins up a guide tree for large families: each group keeps only its
// profile and each join the path it took, so a join costs time in its
// columns alone, whatever the number of members; independent subtrees are
// joined on separate workers. The members' columns are put together once, at
// the end.
#pragma once

#include <span>

#include "seq/seq_record.hpp"
#include "treealign/group_align.hpp"
#include "treealign/guide_tree.hpp"

// In: the run's join context (without a library), the tree, the sequences,
// workers. Out: the same alignment join_groups gives up the same tree, on
// any worker count; a kernel fault is raised.
Group join_profiles_up_tree(const JoinContext& context, const GuideTree& tree, std::span<const SeqRecord> seqs,
                            int threads);
