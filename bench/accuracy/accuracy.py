#!/usr/bin/env python3
"""Accuracy of ravlin (and of other aligners) on reference alignments.

    bench/accuracy/accuracy.py DATA_DIR [options]

DATA_DIR holds one folder per reference set, each with <case>.ref.fa (the
reference alignment; core columns in upper case when the set marks them) and
optionally <case>.ss.fa (DSSP letters of some or all sequences). Every case is
aligned from its ungapped sequences, with and/or without the structure file,
and scored against the reference; the table gives each set's mean
sum-of-pairs (SP) and total-column (TC) scores. Cases an aligner refuses are
listed by name and reason and count as 0 in the "SP all" column.

The cases of a set, sorted by name, are split into halves: those at even
positions (0, 2, ...) train the shipped defaults, those at odd positions are
held out for reporting them.
"""
import argparse
import concurrent.futures
import os
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from aligners import BACK_ENDS, Refused  # noqa: E402
from scoring import AlignmentMismatch, read_fasta, score_alignment, ungapped  # noqa: E402

REPO = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DEFAULT_SETS = ["homstrad", "balibase3/RV11", "balibase3/RV12"]
# short names of the sets, for --sets; any other folder under DATA_DIR may be named too
SET_NAMES = {"homstrad": "homstrad", "RV11": "balibase3/RV11", "RV12": "balibase3/RV12",
             "RV20": "balibase3/RV20", "RV40": "balibase3/RV40"}


class Options:
    """How ravlin is run: binary, weight files by structure coverage, and the
    two parameter-file settings that belong to the weights."""

    def __init__(self, binary=None, weights=None, weights_some=None, weights_none=None,
                 struct_bias=10, inc_gap_pen=5, params=None, settings=None, mode=None,
                 threads=None, timeout=None):
        self.binary = binary
        self.weights = weights
        self.weights_some = weights_some
        self.weights_none = weights_none
        self.struct_bias = struct_bias
        self.inc_gap_pen = inc_gap_pen
        self.params = params
        # {coverage: (weights, struct bias, inc gap pen)} overrides the above
        self.settings = settings or {}
        self.mode = mode  # ravlin-align --mode; None passes no option
        self.threads = threads  # ravlin-align --threads; None passes no option
        self.timeout = timeout  # seconds a case may take (None: an hour)

    def weights_for(self, sequences, structure):
        coverage = structure_coverage(sequences, structure)
        if coverage in self.settings:
            return self.settings[coverage][0]
        chosen = {"some": self.weights_some, "none": self.weights_none}.get(coverage)
        return chosen or self.weights

    def parms_for(self, sequences, structure):
        coverage = structure_coverage(sequences, structure)
        if coverage in self.settings:
            return self.settings[coverage][1:]
        return self.struct_bias, self.inc_gap_pen


def structure_coverage(sequences, structure):
    count = sum(1 for name, _ in sequences if name in structure)
    return "all" if count == len(sequences) else "some" if count else "none"


def case_names(set_dir):
    return sorted(name[:-len(".ref.fa")] for name in os.listdir(set_dir)
                  if name.endswith(".ref.fa"))


def in_half(position, half):
    return half == "all" or (position % 2 == 0) == (half == "train")


def load_case(set_dir, case):
    reference = read_fasta(os.path.join(set_dir, case + ".ref.fa"))
    sequences = [(name, ungapped(text).upper()) for name, text in reference]
    ss_path = os.path.join(set_dir, case + ".ss.fa")
    structure = dict(read_fasta(ss_path)) if os.path.exists(ss_path) else {}
    return reference, sequences, structure


def align_and_score(set_dir, case, with_structure, aligner, opts):
    """One case: returns a dict with the case's name and its scores, or its
    refusal."""
    reference, sequences, structure = load_case(set_dir, case)
    result = {"case": case, "seqs": len(sequences),
              "coverage": structure_coverage(sequences, structure if with_structure else {})}
    with tempfile.TemporaryDirectory(prefix="ravlin-acc-") as workdir:
        try:
            test = BACK_ENDS[aligner](sequences, structure if with_structure else {}, workdir, opts)
            result.update(score_alignment(reference, test))
            result["width"] = max(len(text) for _, text in test) / len(reference[0][1])
        except (Refused, AlignmentMismatch) as err:
            result["refused"] = str(err)
    return result


def evaluate(data_dir, set_name, with_structure, half, aligner, opts, jobs=1, cases=None):
    set_dir = os.path.join(data_dir, set_name)
    chosen = [case for pos, case in enumerate(case_names(set_dir))
              if in_half(pos, half) and (not cases or case in cases)]
    with concurrent.futures.ThreadPoolExecutor(max_workers=jobs) as pool:
        return list(pool.map(
            lambda case: align_and_score(set_dir, case, with_structure, aligner, opts), chosen))


def summarise(results):
    scored = [r for r in results if "refused" not in r and r.get("sp") is not None]
    refused = [r for r in results if "refused" in r]
    n = len(scored)
    return {
        "cases": len(results),
        "refused": len(refused),
        "sp": sum(r["sp"] for r in scored) / n if n else float("nan"),
        "sp_all": sum(r["sp"] for r in scored) / len(results) if results else float("nan"),
        "tc": sum(r["tc"] for r in scored) / n if n else float("nan"),
        "width": sum(r["width"] for r in scored) / n if n else float("nan"),
    }


def parse_args(argv):
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0],
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("data_dir", help="folder of reference sets")
    parser.add_argument("--sets", default=",".join(DEFAULT_SETS),
                        help="comma-separated set folders under DATA_DIR, or their short names "
                        + ", ".join(SET_NAMES) + " (default %(default)s)")
    parser.add_argument("--structure", choices=["with", "without", "both"], default="both")
    parser.add_argument("--half", choices=["train", "test", "all"], default="all",
                        help="even-numbered cases (train), odd ones (test) or all")
    parser.add_argument("--aligner", default="ravlin-batch",
                        help="ravlin-batch, ravlin-align or a peer: " + ", ".join(
                            n for n in BACK_ENDS if not n.startswith("ravlin")) +
                        "; several may be given separated by commas")
    parser.add_argument("--bin", help="the ravlin program to run (default: from PATH)")
    parser.add_argument("--weights", help="weight file (ravlin-batch default: data/ravlin.wts)")
    parser.add_argument("--weights-some", help="weight file for cases where only some "
                        "sequences carry structure")
    parser.add_argument("--weights-none", help="weight file for cases without structure")
    parser.add_argument("--struct-bias", type=int, default=10)
    parser.add_argument("--inc-gap-pen", type=int, default=5)
    parser.add_argument("--use", action="append", default=[], metavar="COVERAGE=WTS:BIAS:INC",
                        help="for ravlin-batch: inputs whose sequences carry structure all, some "
                        "or none use this weight file, structure bias and gap growth; overrides "
                        "the three options above (may be repeated)")
    parser.add_argument("--params", help="parameter file passed to ravlin-align")
    parser.add_argument("--mode", help="passed to ravlin-align as --mode MODE (by default no "
                        "--mode is given)")
    parser.add_argument("--threads", type=int, help="passed to ravlin-align as --threads N")
    parser.add_argument("--timeout", type=float, default=3600,
                        help="seconds one case may take before the aligner is stopped and the "
                        "case counted as refused (default %(default)s)")
    parser.add_argument("--cases", help="comma-separated case names to run (default all)")
    parser.add_argument("--jobs", type=int, default=1, help="cases aligned at once")
    parser.add_argument("--tsv", help="write one line per case and run to this file")
    return parser.parse_args(argv)


def main(argv):
    args = parse_args(argv)
    if args.bin:
        args.bin = os.path.abspath(args.bin)
        if not os.access(args.bin, os.X_OK):
            sys.exit("accuracy.py: cannot run %s" % args.bin)
    weights = args.weights
    if weights is None and args.aligner == "ravlin-batch":
        weights = os.path.join(REPO, "data", "ravlin.wts")
    opts = Options(binary=args.bin, weights=weights, weights_some=args.weights_some,
                   weights_none=args.weights_none, struct_bias=args.struct_bias,
                   inc_gap_pen=args.inc_gap_pen, params=args.params,
                   settings=parse_settings(args.use), mode=args.mode, threads=args.threads,
                   timeout=args.timeout)
    sets = [SET_NAMES.get(name, name) for name in args.sets.split(",")]
    for set_name in sets:
        if not os.path.isdir(os.path.join(args.data_dir, set_name)):
            sys.exit("accuracy.py: no set %s under %s" % (set_name, args.data_dir))
    conditions = {"with": [True], "without": [False], "both": [True, False]}[args.structure]
    cases = set(args.cases.split(",")) if args.cases else None
    tsv = open(args.tsv, "w") if args.tsv else None
    if tsv:
        tsv.write("aligner\tset\tstructure\tcase\tseqs\tcoverage\tsp\ttc\twidth\trefused\n")
    print("%-14s %-16s %-9s %-5s %5s %7s %7s %7s %6s %6s" % (
        "aligner", "set", "structure", "half", "cases", "refused", "SP", "SP all", "TC", "width"))
    for aligner in args.aligner.split(","):
        for set_name in sets:
            for with_structure in conditions:
                if with_structure and aligner not in ("ravlin-batch", "ravlin-align"):
                    continue  # peers take no structure
                results = evaluate(args.data_dir, set_name, with_structure, args.half,
                                   aligner, opts, args.jobs, cases)
                s = summarise(results)
                label = "with" if with_structure else "without"
                if aligner not in ("ravlin-batch", "ravlin-align"):
                    label = "-"
                print("%-14s %-16s %-9s %-5s %5d %7d %7.3f %7.3f %7.3f %6.2f" % (
                    aligner, set_name, label, args.half, s["cases"], s["refused"], s["sp"],
                    s["sp_all"], s["tc"], s["width"]), flush=True)
                for r in results:
                    if "refused" in r:
                        print("    refused %s: %s" % (r["case"], r["refused"]), flush=True)
                    if tsv:
                        tsv.write("%s\t%s\t%s\t%s\t%d\t%s\t%s\t%s\t%s\t%s\n" % (
                            aligner, set_name, label, r["case"], r["seqs"], r["coverage"],
                            fmt(r.get("sp")), fmt(r.get("tc")), fmt(r.get("width")),
                            r.get("refused", "")))
    if tsv:
        tsv.close()
    return 0


def parse_settings(uses):
    settings = {}
    for use in uses:
        coverage, _, rest = use.partition("=")
        weights, bias, inc = rest.rsplit(":", 2)
        if coverage not in ("all", "some", "none"):
            sys.exit("accuracy.py: --use wants all=, some= or none=, not %s" % use)
        settings[coverage] = (os.path.abspath(weights), int(bias), int(inc))
    return settings


def fmt(value):
    return "" if value is None else "%.4f" % value


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
