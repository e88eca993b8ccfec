#!/usr/bin/env python3
"""Aligns large families with ravlin-align and its peers and scores each on the
true (or reference) alignment, with wall-clock time and peak memory.

    run.py RAVLIN_ALIGN PREFIX... [--aligners ravlin,clustalo,mafft,kalign]
           [--threads 1] [--timeout 3600] [--tsv results.tsv] [--no-structure]

Each PREFIX names PREFIX.fa (the input), PREFIX.ref.fa (the alignment to
score against; only its members are scored) and, if present, PREFIX.ss.fa
(structure for some members, given to ravlin-align only). Every run goes
through /usr/bin/time -v. SP: the share of the reference's residue pairs put
in one column, over all pairs of its members; TC: the share of its columns
aligned entirely (bench/accuracy/scoring.py). A failed or timed-out run gets
its row with its status.
"""
import argparse
import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "accuracy"))
from scoring import read_fasta, score_alignment  # noqa: E402


def commands(aligner, program, fasta, ss, out, threads):
    if aligner == "ravlin":
        cmd = [program, "-q", "-t", str(threads), "-o", out, "--force"]
        if ss:
            cmd += ["-s", ss]
        return cmd + [fasta], None
    if aligner == "clustalo":
        return ["clustalo", "-i", fasta, "-o", out, "--outfmt=fa", "--threads=%d" % threads, "--force"], None
    if aligner == "mafft":
        return ["mafft", "--auto", "--thread", str(threads), fasta], out
    if aligner == "kalign":
        return ["kalign", "-i", fasta, "-o", out, "-n", str(threads)], None
    raise SystemExit("unknown aligner " + aligner)


def time_fields(path):
    wall = rss = None
    with open(path, encoding="utf-8", errors="replace") as stream:
        for line in stream:
            line = line.strip()
            if line.startswith("Elapsed (wall clock)"):
                parts = line.rsplit(": ", 1)[1].split(":")
                wall = 0.0
                for p in parts:
                    wall = wall * 60 + float(p)
            elif line.startswith("Maximum resident set size"):
                rss = int(line.rsplit(": ", 1)[1]) / 1024
    return wall, rss


def run_one(aligner, program, prefix, threads, timeout, use_structure):
    fasta = prefix + ".fa"
    ss = prefix + ".ss.fa" if use_structure and os.path.exists(prefix + ".ss.fa") else None
    with tempfile.TemporaryDirectory() as work:
        out = os.path.join(work, "out.fa")
        cmd, stdout_to = commands(aligner, program, fasta, ss, out, threads)
        timing = os.path.join(work, "time")
        full = ["/usr/bin/time", "-v", "-o", timing, "timeout", str(timeout)] + cmd
        with open(stdout_to or os.devnull, "w") as sink, open(os.path.join(work, "err"), "w") as err:
            code = subprocess.call(full, stdout=sink, stderr=err)
        wall, rss = time_fields(timing)
        row = {"aligner": aligner, "family": os.path.basename(prefix), "status": "ok" if code == 0 else
               ("timed out" if code == 124 else "exit %d" % code), "wall": wall, "rss": rss,
               "sp": None, "tc": None, "width": None}
        if code == 0:
            test = read_fasta(out)
            scores = score_alignment(read_fasta(prefix + ".ref.fa"), test)
            row.update(sp=scores["sp"], tc=scores["tc"], width=len(test[0][1]) if test else 0)
        return row


def shown(value, layout):
    return "-" if value is None else format(value, layout)


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("prefixes", nargs="+")
    parser.add_argument("--aligners", default="ravlin,clustalo,mafft,kalign")
    parser.add_argument("--threads", type=int, default=1)
    parser.add_argument("--timeout", type=int, default=3600)
    parser.add_argument("--tsv")
    parser.add_argument("--no-structure", action="store_true")
    args = parser.parse_args(argv)
    program = os.path.abspath(args.program)
    rows = []
    print("| Family | Aligner | Status | Wall s | Peak MB | SP | TC | Columns |")
    print("|---|---|---|---|---|---|---|---|", flush=True)
    for prefix in args.prefixes:
        for aligner in args.aligners.split(","):
            row = run_one(aligner, program, prefix, args.threads, args.timeout, not args.no_structure)
            rows.append(row)
            print("| %s | %s | %s | %s | %s | %s | %s | %s |" % (
                row["family"], aligner, row["status"], shown(row["wall"], ".1f"), shown(row["rss"], ".0f"),
                shown(row["sp"], ".3f"), shown(row["tc"], ".3f"), shown(row["width"], "d")), flush=True)
    if args.tsv:
        with open(args.tsv, "w", encoding="utf-8") as out:
            keys = ["family", "aligner", "status", "wall", "rss", "sp", "tc", "width"]
            out.write("\t".join(keys) + "\n")
            for row in rows:
                out.write("\t".join("" if row[k] is None else str(row[k]) for k in keys) + "\n")


if __name__ == "__main__":
    main(sys.argv[1:])
