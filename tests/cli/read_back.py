"""Reads an alignment with Biopython and checks its ids and ungapped residues
against the FASTA input, and a Stockholm column confidence line against the
column annotations: read_back.py ALIGNMENT FORMAT INPUT."""
import sys

from Bio import AlignIO, SeqIO

alignment = AlignIO.read(sys.argv[1], sys.argv[2])
expected = [(r.id, str(r.seq).upper()) for r in SeqIO.parse(sys.argv[3], "fasta")]
found = [(r.id, str(r.seq).replace("-", "")) for r in alignment]
if found != expected:
    sys.exit(f"read back {found}, expected {expected}")
confidence = [line.split()[2] for line in open(sys.argv[1]) if line.startswith("#=GC confidence ")]
if confidence and confidence[0] not in getattr(alignment, "column_annotations", {}).values():
    sys.exit(f"confidence {confidence[0]} not read back")
print(f"{len(found)} sequences read back with their ids and residues")
