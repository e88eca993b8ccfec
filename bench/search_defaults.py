#!/usr/bin/env python3
"""Searches ravlin's defaults (residue table, gap and structure penalties,
structure table, blank-match value, structure bias, gap growth) for the best
mean sum-of-pairs score on the training half of reference sets.

    nice bench/search_defaults.py DATA_DIR MATRIX_DIR --bin build/apps/ravlin-batch \\
        --target all|some|none --budget SECONDS --log bench/search_defaults.log \\
        --out data/ravlin-struct.wts [--start START.json]
    bench/search_defaults.py DATA_DIR MATRIX_DIR --write POINT.json --notes NOTES.txt \\
        --out data/ravlin-struct.wts

DATA_DIR is laid out as for bench/accuracy/accuracy.py. MATRIX_DIR holds
substitution matrices in the NCBI layout under their usual names (BLOSUM62,
PAM250, ...); Debian's python3-biopython installs a set of them in
/usr/lib/python3/dist-packages/Bio/Align/substitution_matrices/data.

Targets: "all" tunes for inputs where every sequence carries structure
(HOMSTRAD and RV11 with structure), "some" for inputs where only some do
(RV12 with structure), "none" for inputs without structure (HOMSTRAD, RV11
and RV12 without). The objective is the mean over those sets of each set's
mean SP, a refused case counting 0, on the cases at even positions of each
set's sorted list only; the odd ones are never looked at here.

The search is a coordinate descent from a start point: each parameter in
turn is moved by its step in both directions while that improves the
objective; when a whole round brings nothing the steps are halved. Once
it settles, the best point is kicked (three parameters moved at random,
sometimes another matrix; fixed seed) and the descent starts again from
there, until the time budget is spent. Every
evaluation is one line of the log (JSON), so a run can be followed and
repeated. The search is deterministic: same data, same program, same
result.
"""
import argparse
import json
import os
import random
import statistics
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "accuracy"))
from accuracy import Options, evaluate, summarise  # noqa: E402

LETTERS = "ARNDCQEGHILKMFPSTWYVBZX"
CORE_LETTERS = "ARNDCQEGHILKMFPSTWYV"
MATRICES = ["BLOSUM62", "BLOSUM45", "BLOSUM50", "BLOSUM80", "PAM250", "GONNET1992"]
TABLE_SCALE = 3.0  # BLOSUM62 (half bits) times 3: sixth-bit units, fine enough for integer gaps

TARGETS = {
    "all": [("homstrad", True), ("balibase3/RV11", True)],
    "some": [("balibase3/RV12", True)],
    "none": [("homstrad", False), ("balibase3/RV11", False), ("balibase3/RV12", False)],
}

# name: (low, high, first step); all in the units of the written file
BOUNDS = {
    "shift": (-30, 30, 6),
    "gap_open": (0, 500, 12),
    "gap_ext": (0, 50, 2),
    "mid_struct": (0, 500, 12),
    "end_struct": (0, 500, 6),
    "blank_match": (0, 500, 4),
    "struct_bias": (-100, 100, 10),
    "inc_gap": (0, 100, 20),
    "ss_hh": (-50, 50, 6),
    "ss_bb": (-50, 50, 6),
    "ss_cc": (-50, 50, 3),
    "ss_tt": (-50, 50, 3),
    "ss_hb": (-50, 50, 6),
    "ss_sl": (-50, 50, 3),
    "ss_ct": (-50, 50, 3),
}
STRUCTURE_PARAMS = ["mid_struct", "end_struct", "struct_bias", "ss_hh", "ss_bb", "ss_cc",
                    "ss_tt", "ss_hb", "ss_sl", "ss_ct"]

START = {
    "matrix": "BLOSUM62", "shift": 12, "gap_open": 60, "gap_ext": 6, "mid_struct": 30,
    "end_struct": 12, "blank_match": 0, "struct_bias": 10, "inc_gap": 10,
    "ss_hh": 9, "ss_bb": 9, "ss_cc": 3, "ss_tt": 3, "ss_hb": -9, "ss_sl": -3, "ss_ct": 0,
}


# matrices -------------------------------------------------------------------

def read_ncbi_matrix(path):
    """{(a, b): value} of an NCBI-layout matrix file."""
    rows = [line.split() for line in open(path) if line.strip() and not line.startswith("#")]
    header = rows[0]
    table = {}
    for row in rows[1:]:
        for col, value in zip(header, row[1:]):
            table[(row[0], col)] = float(value)
    return table


def scaled_table(matrix_dir, name, shift):
    """The residue table in file units: the matrix scaled to BLOSUM62's
    spread times TABLE_SCALE, rounded, plus shift, held within -50..50."""
    blosum = read_ncbi_matrix(os.path.join(matrix_dir, "BLOSUM62"))
    matrix = read_ncbi_matrix(os.path.join(matrix_dir, name))

    def spread(m):
        return statistics.pstdev(m[(a, b)] for a in CORE_LETTERS for b in CORE_LETTERS)

    factor = TABLE_SCALE * spread(blosum) / spread(matrix)
    table = {}
    for a in LETTERS:
        for b in LETTERS:
            if (a, b) in matrix:
                value = int(round(matrix[(a, b)] * factor)) + shift
                table[(a, b)] = max(-50, min(50, value))
    return table, factor


# weight files ---------------------------------------------------------------

def weight_file_text(point, matrix_dir, notes=()):
    """A weight file for point; notes (lines of text) open it."""
    table, factor = scaled_table(matrix_dir, point["matrix"], point["shift"])
    letters = [a for a in LETTERS if (a, a) in table]
    near = max(-50, min(50, int(round(factor)) + point["shift"]))
    out = ["# " + line if line else "#" for line in notes]
    out += [
        "",
        "# Gap opening penalty, charged once for every gap, in the units of the",
        "# residue table below.",
        "KEY:GAP_PEN %d" % point["gap_open"],
        "",
        "# Gap length penalty, charged for every position a gap spans.",
        "KEY:GAP_PEN_SIZE %d" % point["gap_ext"],
        "",
        "# Extra charge for a gap inside a helix (H) or strand (B), and for one at",
        "# the first or last residue of a helix or strand. In a multiple alignment",
        "# they are summed over the members that carry structure.",
        "KEY:MID_GAP_PEN %d" % point["mid_struct"],
        "KEY:END_GAP_PEN %d" % point["end_struct"],
        "",
        "# Lowest residue score shown as a similar pair on the match line: the",
        "# table's value for a score of +1 in %s. It does not change alignments." %
        point["matrix"],
        "KEY:NEAR_MATCH %d" % near,
        "",
        "# Score of a residue against a gap column of the growing alignment. Every",
        "# residue pair below scores more than this unless it is a clear mismatch,",
        "# so residues join the columns of their kind rather than the gaps.",
        "KEY:BLANK_MATCH %d" % point["blank_match"],
        "",
        "# Residue score table: %s scaled by %.3f (to %s's" % (
            point["matrix"], factor, "three times BLOSUM62"),
        "# spread of values), rounded, plus %d in every cell. The added constant" %
        point["shift"],
        "# makes an aligned pair worth more than a residue against a gap, and",
        "# keeps the free end gaps from pulling sequences apart at their ends.",
        "KEY:WT_PMAT %d" % len(letters),
        "# Lower triangle: each row holds its letter's scores against the rows",
        "# above it and itself. The line after the last row is skipped, so it",
        "# must stay blank.",
        "   " + "".join("%4s" % a for a in letters),
    ]
    for i, a in enumerate(letters):
        out.append(a + "  " + "".join("%4d" % table[(a, b)] for b in letters[:i + 1]))
    out += [
        "",
        "# Secondary structure score table, added to the residue score where both",
        "# sides carry a structure: H helix, B strand, C coil, T turn, X unknown",
        "# (neutral).",
        "KEY:WT_SMAT 5",
        "# Lower triangle, as above; the line after the last row must stay blank.",
        "   H   B   C   T   X"]
    ss = ss_table(point)
    codes = "HBCTX"
    for i, a in enumerate(codes):
        out.append(a + "  " + "".join("%4d" % ss[(a, b)] for b in codes[:i + 1]))
    out.append("")
    return "\n".join(out) + "\n"


def ss_table(point):
    """Structure table from its few free values: like states, helix against
    strand, a structured state against a loop state, coil against turn; X
    (unknown) is neutral."""
    values = {("H", "H"): point["ss_hh"], ("B", "B"): point["ss_bb"],
              ("C", "C"): point["ss_cc"], ("T", "T"): point["ss_tt"],
              ("B", "H"): point["ss_hb"], ("C", "H"): point["ss_sl"],
              ("T", "H"): point["ss_sl"], ("C", "B"): point["ss_sl"],
              ("T", "B"): point["ss_sl"], ("T", "C"): point["ss_ct"]}
    table = {}
    for a in "HBCTX":
        for b in "HBCTX":
            table[(a, b)] = values.get((a, b), values.get((b, a), 0))
    return table


# search ---------------------------------------------------------------------

class Search:
    def __init__(self, args):
        self.args = args
        self.cache = {}
        self.started = time.time()
        self.log = open(args.log, "a")
        self.sets = TARGETS[args.target]
        self.params = [p for p in BOUNDS
                       if args.target != "none" or p not in STRUCTURE_PARAMS]

    def out_of_time(self):
        return time.time() - self.started > self.args.budget

    def score(self, point):
        key = json.dumps(point, sort_keys=True)
        if key in self.cache:
            return self.cache[key]
        with tempfile.TemporaryDirectory(prefix="ravlin-search-") as tmp:
            weights = os.path.join(tmp, "search.wts")
            with open(weights, "w") as out:
                out.write(weight_file_text(point, self.args.matrix_dir))
            opts = Options(binary=self.args.bin, weights=weights,
                           struct_bias=point["struct_bias"], inc_gap_pen=point["inc_gap"])
            per_set = {}
            for set_name, with_structure in self.sets:
                results = evaluate(self.args.data_dir, set_name, with_structure, "train",
                                   "ravlin-batch", opts)
                per_set["%s/%s" % (set_name, "with" if with_structure else "without")] = \
                    round(summarise(results)["sp_all"], 4)
        value = round(sum(per_set.values()) / len(per_set), 4)
        self.cache[key] = value
        self.log.write(json.dumps({"target": self.args.target, "objective": value,
                                   "sets": per_set, "point": point,
                                   "seconds": round(time.time() - self.started)}) + "\n")
        self.log.flush()
        return value

    def run(self, start):
        """Descends from start; once settled, kicks the best point (a few
        parameters moved at random, fixed seed) and descends again, keeping
        the best, until the budget is spent."""
        best, best_value = self.descend(dict(start), {p: BOUNDS[p][2] for p in self.params})
        kicks = random.Random(12)
        while not self.out_of_time():
            point = dict(best)
            for name in kicks.sample(self.params, 3):
                low, high, step = BOUNDS[name]
                point[name] = max(low, min(high, point[name] + kicks.choice([-2, -1, 1, 2]) * step))
            if kicks.random() < 0.3:
                point["matrix"] = kicks.choice(MATRICES)
            self.log.write(json.dumps({"target": self.args.target, "kick": point}) + "\n")
            found, value = self.descend(point, {p: max(1, BOUNDS[p][2] // 2) for p in self.params})
            if value > best_value:
                best, best_value = found, value
        return best, best_value

    def descend(self, best, steps):
        best_value = self.score(best)
        while not self.out_of_time():
            improved = False
            for name in ["matrix"] + self.params:
                if self.out_of_time():
                    break
                if name == "matrix":
                    candidates = [dict(best, matrix=m) for m in MATRICES if m != best["matrix"]]
                    for point in candidates:
                        value = self.score(point)
                        if value > best_value:
                            best, best_value, improved = point, value, True
                    continue
                for direction in (1, -1):
                    while not self.out_of_time():
                        low, high, _ = BOUNDS[name]
                        moved = max(low, min(high, best[name] + direction * steps[name]))
                        if moved == best[name]:
                            break
                        point = dict(best, **{name: moved})
                        value = self.score(point)
                        if value <= best_value:
                            break
                        best, best_value, improved = point, value, True
            self.log.write(json.dumps({"target": self.args.target, "round_best": best_value,
                                       "point": best, "steps": steps}) + "\n")
            self.log.flush()
            if not improved:
                if all(step == 1 for step in steps.values()):
                    break
                steps = {p: max(1, s // 2) for p, s in steps.items()}
        return best, best_value


def parse_args(argv):
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("data_dir")
    parser.add_argument("matrix_dir")
    parser.add_argument("--bin", help="ravlin-batch to run")
    parser.add_argument("--target", choices=sorted(TARGETS))
    parser.add_argument("--write", metavar="POINT.json",
                        help="no search: write the weight file of this point to --out")
    parser.add_argument("--notes", help="text file whose lines open the written weight file")
    parser.add_argument("--budget", type=float, default=1800, help="seconds to search")
    parser.add_argument("--log")
    parser.add_argument("--out", help="weight file to write with the best point")
    parser.add_argument("--start", help="JSON file with the start point (default built in)")
    return parser.parse_args(argv)


def main(argv):
    args = parse_args(argv)
    notes = open(args.notes).read().splitlines() if args.notes else ()
    if args.write:
        with open(args.write) as stream:
            point = dict(START, **json.load(stream))
        with open(args.out, "w") as out:
            out.write(weight_file_text(point, args.matrix_dir, notes))
        return 0
    if not (args.target and args.log):
        sys.exit("search_defaults.py: a search needs --target and --log")
    args.bin = os.path.abspath(args.bin)
    start = dict(START)
    if args.start:
        with open(args.start) as stream:
            start.update(json.load(stream))
    best, value = Search(args).run(start)
    print(json.dumps({"target": args.target, "objective": value, "point": best}))
    if args.out:
        with open(args.out, "w") as out:
            out.write(weight_file_text(best, args.matrix_dir, notes))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
