"""Reads an alignment with Biopython and checks its ids, ungapped residues
and, in the formats that carry them, descriptions against the FASTA input; a
Stockholm column confidence line against the column annotations; and the
checksums of an MSF file against GCG's rule and, where EMBOSS is installed,
against those its seqret writes for the same rows:
read_back.py ALIGNMENT FORMAT INPUT, FORMAT as Biopython names it."""
import re
import shutil
import subprocess
import sys

from Bio import Align, AlignIO, SeqIO

path, fmt, input_path = sys.argv[1:4]
described = fmt in ("fasta", "stockholm", "a2m")


def description(record):
    if not described:
        return ""
    text = record.description
    if text.startswith(record.id):
        text = text[len(record.id):]
    return "" if text == "<unknown description>" else text.strip()


# Only the newer reader takes A2M; it checks that every row keeps the first
# row's match and insert columns.
alignment = Align.read(path, fmt) if fmt == "a2m" else AlignIO.read(path, fmt)
records = alignment.sequences if fmt == "a2m" else list(alignment)
expected = [(r.id, str(r.seq).upper(), description(r)) for r in SeqIO.parse(input_path, "fasta")]
found = [(r.id, str(r.seq).replace("-", ""), description(r)) for r in records]
if found != expected:
    sys.exit(f"read back {found}, expected {expected}")
confidence = [line.split()[2] for line in open(path) if line.startswith("#=GC confidence ")]
if confidence and confidence[0] not in getattr(alignment, "column_annotations", {}).values():
    sys.exit(f"confidence {confidence[0]} not read back")

if fmt == "msf":
    text = open(path).read()
    written = [int(n) for n in re.findall(r"Check:\s*(\d+)", text)]
    rows = {r.id: "" for r in records}
    for line in text.split("//", 1)[1].splitlines():
        words = line.split()
        if words and words[0] in rows:
            rows[words[0]] += "".join(words[1:])
    sums = [sum((k % 57 + 1) * ord(ch.upper()) for k, ch in enumerate(row)) % 10000 for row in rows.values()]
    if written != [sum(sums) % 10000] + sums:
        sys.exit(f"checksums {written}, GCG's rule gives {[sum(sums) % 10000] + sums}")
    if shutil.which("seqret"):
        emboss = subprocess.run(["seqret", "-auto", "msf::" + path, "msf::stdout"], capture_output=True, text=True)
        if [int(n) for n in re.findall(r"Check:\s*(\d+)", emboss.stdout)] != written:
            sys.exit(f"checksums {written}, EMBOSS writes:\n{emboss.stdout}{emboss.stderr}")
    else:
        print("EMBOSS seqret is not installed: checksums checked against GCG's rule only", file=sys.stderr)
print(f"{len(found)} sequences read back with their ids and residues")
