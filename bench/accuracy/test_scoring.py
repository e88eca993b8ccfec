"""Hand-made alignments whose SP and TC were counted on paper."""
import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from scoring import AlignmentMismatch, parse_fasta, score_alignment  # noqa: E402


def fasta(*rows):
    return parse_fasta("".join(">%s\n%s\n" % row for row in rows))


# (what it shows, reference, test, pairs, pairs found, columns, columns found)
CASES = [
    ("identical alignment",
     fasta(("a", "ACD-"), ("b", "A-DE"), ("c", "ACDE")),
     fasta(("a", "ACD-"), ("b", "A-DE"), ("c", "ACDE")), 8, 8, 4, 4),
    # columns: A of a and c together, b's A apart (1 of 3); C together (1 of 1);
    # D of a and c together (1 of 3); E of b and c apart (0 of 1)
    ("shifted residues",
     fasta(("a", "ACD-"), ("b", "A-DE"), ("c", "ACDE")),
     fasta(("a", "ACD--"), ("b", "-A-DE"), ("c", "ACDE-")), 8, 3, 4, 1),
    # the lower-case first column is outside the core and is not scored
    ("only upper-case columns are scored",
     fasta(("a", "aCD"), ("b", "aCE")),
     fasta(("a", "-ACD"), ("b", "A-CE")), 2, 2, 2, 2),
    ("a core column misaligned",
     fasta(("a", "aCD"), ("b", "aCE")),
     fasta(("a", "aCD-"), ("b", "aC-E")), 2, 1, 2, 1),
    # a column with a single residue has no pair and is no TC column
    ("single residues count for nothing",
     fasta(("a", "AC"), ("b", "A-")),
     fasta(("a", "-AC"), ("b", "A--")), 1, 0, 1, 0),
    ("test order, case and gap dots do not matter",
     fasta(("a", "MKV-L"), ("b", "MK-WL")),
     fasta(("b", "mk.wl"), ("a", "mkv.l")), 3, 3, 3, 3),
]


class ScoreAlignmentTest(unittest.TestCase):
    def test_hand_counted_cases(self):
        for name, ref, test, pairs, found, cols, cols_found in CASES:
            with self.subTest(name):
                score = score_alignment(ref, test)
                self.assertEqual((score["pairs"], score["pairs_found"]), (pairs, found))
                self.assertEqual((score["columns"], score["columns_found"]), (cols, cols_found))
                self.assertAlmostEqual(score["sp"], found / pairs)
                self.assertAlmostEqual(score["tc"], cols_found / cols)

    def test_foreign_alignments_are_refused(self):
        ref = fasta(("a", "ACD"), ("b", "AC-"))
        for name, test in [("missing sequence", fasta(("a", "ACD"))),
                           ("other residues", fasta(("a", "ACD"), ("b", "AD")))]:
            with self.subTest(name):
                with self.assertRaises(AlignmentMismatch):
                    score_alignment(ref, test)


if __name__ == "__main__":
    unittest.main()
