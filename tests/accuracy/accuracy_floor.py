#!/usr/bin/env python3
"""Accuracy floor: three real families (tests/data/accuracy, sources in its
README.md) aligned by ravlin-batch with the shipped defaults, with and
without their secondary structure, must keep their sum-of-pairs score above
a floor. The floors sit well below what the defaults reach, so only a real
fault (a broken kernel, a bad default, a lost structure line) fails.

    accuracy_floor.py RAVLIN_BATCH SOURCE_DIR [RAVLIN_ALIGN [MODE]]

Given RAVLIN_ALIGN, two larger families (one of BAliBASE RV20, one of RV40)
are also aligned by that program (with --mode MODE when MODE is given) and
held to ALIGN_FLOORS.
"""
import os
import sys
import tempfile

# (family, with structure, lowest acceptable SP)
FLOORS = [
    ("PDZ", True, 0.75),
    ("PDZ", False, 0.55),
    ("Bac_DNA_binding", True, 0.85),
    ("Bac_DNA_binding", False, 0.75),
    ("BB12024", True, 0.85),
    ("BB12024", False, 0.80),
]

# Run through ravlin-align (its automatic mode, consistency at these sizes)
# when it is named on the command line. BB20029: 29 sequences of 64-167
# residues, 4 with structure; BB40045: 11 of 103-596, 5 with structure. The
# shipped defaults reach 0.833 / 0.805 and 0.709 / 0.758 with / without
# structure.
ALIGN_FLOORS = [
    ("BB20029", True, 0.74),
    ("BB20029", False, 0.72),
    ("BB40045", True, 0.62),
    ("BB40045", False, 0.66),
]


def shipped_settings(source_dir):
    """Weight file, structure bias and gap growth named by data/ravlin.parms."""
    data = os.path.join(source_dir, "data")
    values = {}
    with open(os.path.join(data, "ravlin.parms")) as stream:
        for line in stream:
            words = line.split()
            if len(words) >= 2 and words[0].startswith("RAVLIN:"):
                values[words[0]] = words[1]
    return (os.path.join(data, values["RAVLIN:SCOR_MATRIX"]),
            int(values["RAVLIN:STRUCT_BIAS"]), int(values["RAVLIN:INC_GAP_PEN"]))


def main(argv):
    binary, source_dir = os.path.abspath(argv[1]), os.path.abspath(argv[2])
    sys.path.insert(0, os.path.join(source_dir, "bench", "accuracy"))
    from aligners import align_ravlin_align, align_ravlin_batch
    from accuracy import Options

    weights, bias, inc = shipped_settings(source_dir)
    opts = Options(binary=binary, weights=weights, struct_bias=bias, inc_gap_pen=inc)
    data_dir = os.path.join(source_dir, "tests", "data", "accuracy")
    failures = check(FLOORS, align_ravlin_batch, opts, data_dir)
    if len(argv) > 3:
        # ravlin-align with its compiled-in settings
        align_opts = Options(binary=os.path.abspath(argv[3]),
                             mode=argv[4] if len(argv) > 4 else None)
        failures += check(ALIGN_FLOORS, align_ravlin_align, align_opts, data_dir)
    return 1 if failures else 0


def check(floors, align, opts, data_dir):
    """Aligns and scores every (family, with structure, floor); returns the
    number of families refused or below their floor."""
    from aligners import Refused
    from accuracy import load_case
    from scoring import score_alignment

    failures = 0
    for family, with_structure, floor in floors:
        reference, sequences, structure = load_case(data_dir, family)
        with tempfile.TemporaryDirectory(prefix="ravlin-floor-") as workdir:
            try:
                test = align(sequences, structure if with_structure else {}, workdir, opts)
                sp = score_alignment(reference, test)["sp"]
            except Refused as err:
                print("%s: refused: %s" % (family, err))
                failures += 1
                continue
        verdict = "ok" if sp >= floor else "BELOW FLOOR"
        failures += sp < floor
        print("%-16s %-17s SP %.3f floor %.2f %s" % (
            family, "with structure" if with_structure else "without structure", sp, floor,
            verdict))
    return failures


if __name__ == "__main__":
    sys.exit(main(sys.argv))
