"""Aligns one family with ravlin-align for the workflow and writes its row of
the summary: family, sequences, columns, seconds, exit status, message.

A family that ravlin-align refuses (exit status 1) or that crashes it is a
result, recorded and not retried until its input changes. A usage error
(status 2, from the 'extra' setting), a missing program or an interrupted
run fails the job instead: those are not the family's fault, and Snakemake
then retries the family on the next run.
"""

import argparse
import os
import shlex
import signal
import subprocess
import sys
import time

ERROR_PREFIX = "ravlin-align: error: "
CRASH_SIGNALS = {signal.SIGSEGV, signal.SIGABRT, signal.SIGBUS, signal.SIGFPE, signal.SIGILL}


def parse_arguments():
    parser = argparse.ArgumentParser(description="Align one family for the workflow and write its summary row.")
    parser.add_argument("--family", required=True)
    parser.add_argument("--program", required=True)
    parser.add_argument("--outfmt", required=True)
    parser.add_argument("--threads", required=True)
    parser.add_argument("--extra", default="")
    parser.add_argument("--ss", action="append", default=[])
    parser.add_argument("--anchors", action="append", default=[])
    parser.add_argument("--alignment", required=True)
    parser.add_argument("--log", required=True)
    parser.add_argument("--status", required=True)
    parser.add_argument("sequences")
    return parser.parse_args()


def build_command(args):
    command = [args.program, "-o", args.alignment, "--force", "-f", args.outfmt, "-t", args.threads]
    for path in args.ss:
        command += ["--ss", path]
    for path in args.anchors:
        command += ["--anchors", path]
    command += shlex.split(args.extra)
    command.append(args.sequences)
    return command


def count_sequences(path):
    try:
        with open(path, errors="replace") as fasta:
            return sum(1 for line in fasta if line.startswith(">"))
    except OSError:
        return ""


def count_columns(path, outfmt):
    """Columns of the written alignment, read back from its own format."""
    with open(path, errors="replace") as aligned:
        lines = aligned.read().splitlines()
    outfmt = outfmt.lower()
    if outfmt in ("phylip", "phy"):
        return int(lines[0].split()[1]) if lines and len(lines[0].split()) == 2 else ""
    if outfmt in ("msf", "gcg"):
        header = [line.split() for line in lines if " MSF: " in line]
        return int(header[0][header[0].index("MSF:") + 1]) if header else ""
    # Every row of an A2M file spans every column, inserts in lower case.
    if outfmt in ("fasta", "fa", "fas", "a2m"):
        first = []
        for line in lines[1:]:
            if line.startswith(">"):
                break
            first.append(line.strip())
        return len("".join(first))
    if outfmt in ("stockholm", "sto", "st", "clustal", "aln", "clu"):
        rows = [line.split() for line in lines[1:] if line.strip() and not line.startswith(("#", "//", " "))]
        if not rows:
            return ""
        return sum(len(row[1]) for row in rows if row[0] == rows[0][0] and len(row) >= 2)
    if outfmt == "molvane":
        # Gaps are blanks there; the widest residue line reaches the last column.
        return max((len(line) - 1 for line in lines if line.startswith("r")), default="")
    for line in lines:
        if "Total length for the multiple alignment:" in line:
            return int(line.rsplit(":", 1)[1])
    return ""


def failure_message(stderr, status):
    errors = [line[len(ERROR_PREFIX):] for line in stderr.splitlines() if line.startswith(ERROR_PREFIX)]
    if errors:
        return errors[-1]
    if status < 0:
        return f"ravlin-align was killed by {signal.Signals(-status).name}"
    return f"ravlin-align exited with status {status}"


def is_family_result(status):
    return status in (0, 1) or (status < 0 and -status in CRASH_SIGNALS)


def main():
    args = parse_arguments()
    command = build_command(args)
    start = time.monotonic()
    try:
        run = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace")
    except OSError as error:
        sys.exit(f"cannot run {command[0]}: {error.strerror} (set 'ravlin_align' in workflow/config.yaml)")
    seconds = time.monotonic() - start
    with open(args.log, "w") as log:
        log.write("$ " + shlex.join(command) + "\n" + run.stderr)
        log.write(f"exit status {run.returncode} after {seconds:.2f} s\n")
    if not is_family_result(run.returncode):
        sys.stderr.write(run.stderr)
        sys.exit(f"ravlin-align failed with status {run.returncode}: see {args.log}")

    columns, message = "", ""
    if run.returncode == 0:
        columns = count_columns(args.alignment, args.outfmt)
    else:
        # An alignment left from an earlier input would no longer match it.
        if os.path.exists(args.alignment):
            os.remove(args.alignment)
        message = " ".join(failure_message(run.stderr, run.returncode).split())
    row = [args.family, count_sequences(args.sequences), columns, f"{seconds:.2f}", run.returncode, message]
    with open(args.status, "w") as status:
        status.write("\t".join(str(field) for field in row) + "\n")


if __name__ == "__main__":
    main()
