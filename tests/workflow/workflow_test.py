"""Runs workflow/Snakefile on three small families in a temporary folder: one
with a structure file, one with a folder of DSSP output, one with a bad
residue. Checks the alignments, the summary and that reruns do only what
changed.

    workflow_test.py SOURCE_DIR RAVLIN_ALIGN

Exits 77 (reported by CTest as skipped) when snakemake is not installed.
"""

import os
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77
BROKEN_MESSAGE = ("families/broken.fa line 4: '1' in sequence b is not a residue letter; "
                  "protein sequences hold letters only")


def fasta_entries(path, keep):
    """The entries of a FASTA file whose headers keep() accepts, as text."""
    with open(path) as fasta:
        entries = fasta.read().split("\n>")
    return "".join((">" if k else "") + e + "\n" for k, e in enumerate(entries) if keep(k, e.lstrip(">").split()[0]))


def make_families(examples, folder):
    os.makedirs(os.path.join(folder, "lyso"))
    for name in ("gst.fa", "gst.ss.fa"):
        with open(os.path.join(folder, name), "w") as out:
            out.write(fasta_entries(os.path.join(examples, name.replace("gst", "gluts")), lambda k, _: k < 4))
    wanted = {"1lzt", "1lz3", "1hhl", "1ghla"}
    with open(os.path.join(folder, "lyso.fa"), "w") as out:
        out.write(fasta_entries(os.path.join(examples, "lysozyme.fa"), lambda _, name: name in wanted))
    # mkdssp's output for hen lysozyme, named after the sequence it belongs to.
    shutil.copy(os.path.join(examples, "1dpx.dssp"), os.path.join(folder, "lyso", "1lzt.dssp"))
    with open(os.path.join(folder, "broken.fa"), "w") as broken:
        broken.write(">a first\nMKVLAAGIVG\n>b second\nMKV1AAGIVG\n")


def run_workflow(source, work, program):
    command = ["snakemake", "-s", os.path.join(source, "workflow", "Snakefile"), "--cores", "2",
               "--directory", work, "--config", "families=families", "results=results",
               f"ravlin_align={program}"]
    run = subprocess.run(command, capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(f"snakemake failed ({run.returncode}):\n{run.stdout}{run.stderr}")
    return run.stdout + run.stderr


def aligned_families(log):
    """The families that a run aligned, from Snakemake's job listings."""
    return sorted(line.split()[-1] for line in log.splitlines() if line.strip().startswith("wildcards: family="))


def stockholm_rows(path):
    with open(path) as aligned:
        lines = aligned.read().splitlines()
    check(lines[0] == "# STOCKHOLM 1.0" and lines[-1] == "//", f"{path} is not a Stockholm file")
    rows = {}
    for line in lines[1:-1]:
        fields = line.split()
        if line.startswith("#=GR"):
            rows.setdefault("structure", []).append(fields[1])
        elif fields and not line.startswith("#"):
            rows[fields[0]] = fields[1]
    return rows


def read_summary(path):
    with open(path) as summary:
        lines = summary.read().splitlines()
    check(lines[0] == "family\tsequences\tcolumns\tseconds\texit_status\tmessage", f"summary header: {lines[0]}")
    return {line.split("\t")[0]: line.split("\t") for line in lines[1:]}


def check(condition, what):
    if not condition:
        sys.exit("FAILED: " + what)


def check_first_run(results, log):
    check(aligned_families(log) == ["family=broken", "family=gst", "family=lyso"], "first run aligns every family")
    check(not os.path.exists(os.path.join(results, "broken.aln")), "a failed family leaves no alignment")
    with open(os.path.join(results, "logs", "broken.log")) as broken_log:
        check("ravlin-align: error: " + BROKEN_MESSAGE in broken_log.read(), "the log keeps ravlin-align's error")
    summary = read_summary(os.path.join(results, "summary.tsv"))
    check(list(summary) == ["broken", "gst", "lyso"], f"summary rows: {list(summary)}")
    check(summary["broken"][1:3] == ["2", ""] and summary["broken"][4:] == ["1", BROKEN_MESSAGE],
          f"broken row: {summary['broken']}")
    # gst's structure comes from gst.ss.fa for all four; lyso's from the DSSP file for 1lzt only.
    for family, with_structure in (("gst", ["1hna", "5gsta", "1gsua", "1gta"]), ("lyso", ["1lzt"])):
        rows = stockholm_rows(os.path.join(results, family + ".aln"))
        check(rows.pop("structure") == with_structure, f"{family}: structure rows")
        widths = {len(row) for row in rows.values()}
        check(len(rows) == 4 and len(widths) == 1, f"{family}: four rows of one width")
        row = summary[family]
        check(row[1:3] == ["4", str(widths.pop())] and float(row[3]) >= 0 and row[4:] == ["0", ""],
              f"{family} row: {row}")


def main():
    source, program = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    if shutil.which("snakemake") is None:
        print("snakemake is not installed (Debian package snakemake): the workflow test cannot run")
        return SKIPPED
    with tempfile.TemporaryDirectory(prefix="ravlin-workflow-") as work:
        make_families(os.path.join(source, "examples"), os.path.join(work, "families"))
        results = os.path.join(work, "results")
        check_first_run(results, run_workflow(source, work, program))

        check("Nothing to be done" in run_workflow(source, work, program), "a second run does nothing")

        # Mending the bad family redoes it alone.
        with open(os.path.join(work, "families", "broken.fa"), "w") as mended:
            mended.write(">a first\nMKVLAAGIVG\n>b second\nMKVLAAGIVG\n")
        check(aligned_families(run_workflow(source, work, program)) == ["family=broken"], "rerun redoes the changed family only")
        summary = read_summary(os.path.join(results, "summary.tsv"))
        check(summary["broken"][1:3] == ["2", "10"] and summary["broken"][4:] == ["0", ""], f"mended row: {summary['broken']}")
        check(len(stockholm_rows(os.path.join(results, "broken.aln"))) == 2, "the mended family is aligned")
    print("workflow: three families aligned, summary and reruns as expected")
    return 0


if __name__ == "__main__":
    sys.exit(main())
