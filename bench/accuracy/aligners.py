"""Back ends that align one case: ravlin through ravlin-align or
ravlin-batch, and the peers installed from the system's packages.

Each back end takes the case's sequences [(id, residues)], its structure
{id: DSSP letters} (empty for a run without structure) and a scratch
directory, and returns the aligned [(id, text)] or raises Refused with the
program's own words.
"""
import os
import signal
import subprocess

from scoring import parse_fasta

# DSSP letters onto the structure codes of ravlin's text format.
DSSP_TO_RAVLIN = {"H": "H", "G": "H", "I": "H", "E": "B", "B": "B", "T": "T", "S": "T"}
# A text-format line made only of these letters is read as structure.
STRUCTURE_LETTERS = set("BCHTX")
LINE_LEN = 60
LINE_MAX = 254  # the text reader's longest data line


class Refused(Exception):
    """The aligner ended without an alignment; the message says why."""


def run(command, cwd, stdout=None, env=None, timeout=None):
    """Runs command in its own process group; a run that passes timeout
    seconds (default 3,600) is killed with everything it started (t_coffee
    starts helpers) and refused."""
    timeout = timeout or 3600
    try:
        child = subprocess.Popen(command, cwd=cwd, stdout=stdout or subprocess.PIPE,
                                 stderr=subprocess.PIPE, env=env, start_new_session=True)
    except OSError as err:
        raise Refused(str(err))
    try:
        out, err = child.communicate(timeout=timeout)
    except subprocess.TimeoutExpired:
        try:
            os.killpg(child.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        child.communicate()
        raise Refused("no answer within %d s" % timeout)
    if child.returncode != 0:
        text = (out or b"").decode(errors="replace") + err.decode(errors="replace")
        raise Refused(summarise_failure(text, child.returncode))
    return subprocess.CompletedProcess(command, child.returncode, out, err)


def summarise_failure(text, status):
    lines = [line.strip() for line in text.splitlines() if line.strip()]
    # ravlin's framed message: the line after "Fatal Error" names the fault
    useful = [line for line in lines if not set(line) <= set("*-=. ")]
    tail = " | ".join(useful[-3:]) if useful else "no message"
    return "exit status %d: %s" % (status, tail)


def write_fasta(path, records):
    with open(path, "w") as out:
        for name, text in records:
            out.write(">%s\n" % name)
            for start in range(0, len(text), LINE_LEN):
                out.write(text[start:start + LINE_LEN] + "\n")


# ravlin-batch ---------------------------------------------------------------

def residue_lines(residues):
    """Splits residues into text-format lines that cannot be mistaken for
    structure: every line holds a letter outside B, C, H, T, X."""
    lines = []
    pos = 0
    while pos < len(residues):
        end = min(pos + LINE_LEN, len(residues))
        while end < len(residues) and end - pos < LINE_MAX and \
                set(residues[pos:end]) <= STRUCTURE_LETTERS:
            end += 1
        lines.append(residues[pos:end])
        pos = end
    if len(lines) > 1 and set(lines[-1]) <= STRUCTURE_LETTERS:
        tail = lines.pop()
        lines[-1] += tail
    if any(set(line) <= STRUCTURE_LETTERS or len(line) > LINE_MAX for line in lines):
        raise Refused("residues that the text format would read as structure")
    return lines


def write_ravlin_text(path, sequences, structure):
    """Writes the case in ravlin's text format under short ids S1, S2, ...;
    returns those ids in input order."""
    ids = []
    with open(path, "w") as out:
        for k, (name, residues) in enumerate(sequences):
            short = "S%d" % (k + 1)
            ids.append(short)
            out.write(">%s %s\n" % (short, short))
            if not residues.isalpha():
                raise Refused("sequence %s holds characters other than letters" % name)
            for line in residue_lines(residues.upper()):
                out.write(line + "\n")
            if name in structure:
                codes = "".join(DSSP_TO_RAVLIN.get(ch, "C") for ch in structure[name])
                if len(codes) != len(residues):
                    raise Refused("structure of %s does not match its residues" % name)
                for start in range(0, len(codes), LINE_LEN):
                    out.write(codes[start:start + LINE_LEN] + "\n")
            out.write("\n")
    return ids


def write_batch_parms(path, data_file, weights, count, struct_bias, inc_gap_pen):
    keys = [
        ("RAVLIN:SCOR_MATRIX", os.path.abspath(weights)),
        ("RAVLIN:STRUCT_BIAS", struct_bias),
        ("RAVLIN:INC_GAP_PEN", inc_gap_pen),
        ("RAVLIN:PRINT_PAIRWISE", 0),
        ("RAVLIN:PRINT_PCT_HOM", 0),
        ("RAVLIN:PRINT_FORMAT", 1),
        ("RAVLIN:PRINT_ORDER", 1),
        ("RAVLIN:CONSENSUS_PCT", 50),
        ("RAVLIN:RES_LINE_LEN", 50),
        ("RAVLIN:ASCII_FLAG", 1),
        ("RAVLIN:DATA_FORMAT", 5),
        ("RAVLIN:DATA_FILE", data_file),
        ("RAVLIN:SEQ_SELECT", count + 1),  # the program decides the order
    ]
    with open(path, "w") as out:
        for key, value in keys:
            out.write("%s %s\n" % (key, value))


def read_molvane_alignment(path):
    """The aligned rows of a report printed in the Molvane layout, as
    [(id, text)] with '-' for gaps."""
    with open(path, encoding="ascii", errors="replace") as stream:
        text = stream.read()
    marker = "Multiple Alignment\n******************\n"
    if marker not in text:
        raise Refused("report without a multiple alignment")
    rows = []
    name = None
    for line in text.split(marker, 1)[1].split("\n"):
        if line == "PSEQ":
            name = None
        elif line.startswith("A"):
            name = line[1:]
        elif line.startswith("r") and name is not None:
            rows.append((name, line[1:].replace(" ", "-")))
    return rows


def align_ravlin_batch(sequences, structure, workdir, opts):
    data = os.path.join(workdir, "case.txt")
    ids = write_ravlin_text(data, sequences, structure)
    weights = opts.weights_for(sequences, structure)
    parms = os.path.join(workdir, "case.parms")
    bias, inc = opts.parms_for(sequences, structure)
    write_batch_parms(parms, data, weights, len(sequences), bias, inc)
    report = os.path.join(workdir, "case.report")
    run([opts.binary or "ravlin-batch", parms, report], workdir, timeout=opts.timeout)
    rows = read_molvane_alignment(report)
    names = dict(zip(ids, (name for name, _ in sequences)))
    return [(names.get(short, short), text) for short, text in rows]


# ravlin-align ---------------------------------------------------------------

def align_ravlin_align(sequences, structure, workdir, opts):
    data = os.path.join(workdir, "case.fa")
    write_fasta(data, sequences)
    command = [opts.binary or "ravlin-align", "--order", "computed"]
    if structure:
        ss = os.path.join(workdir, "case.ss.fa")
        write_fasta(ss, [(name, structure[name]) for name, _ in sequences if name in structure])
        command += ["--ss", ss]
    weights = opts.weights_for(sequences, structure)
    if weights:
        command += ["--weights", weights]
    if opts.params:
        command += ["--params", opts.params]
    if opts.mode:
        command += ["--mode", opts.mode]
    if opts.threads:
        command += ["--threads", str(opts.threads)]
    out = os.path.join(workdir, "case.aln.fa")
    run(command + ["-o", out, data], workdir, timeout=opts.timeout)
    return read_aligned_fasta(out)


# peers ----------------------------------------------------------------------

def read_aligned_fasta(path):
    with open(path, encoding="ascii", errors="replace") as stream:
        return parse_fasta(stream.read())


def peer_command(name, infile, outfile):
    return {
        "clustalo": ["clustalo", "-i", infile, "-o", outfile, "--outfmt=fa", "--force",
                     "--threads=1"],
        "mafft": ["mafft", "--auto", "--thread", "1", "--quiet", infile],
        "kalign": ["kalign", "-i", infile, "-o", outfile],
        "muscle": ["muscle", "-align", infile, "-output", outfile, "-threads", "1"],
        "t_coffee": ["t_coffee", "-seq", infile, "-output", "fasta_aln", "-outfile", outfile,
                     "-n_core", "1", "-quiet"],
        # ProbCons prints aligned FASTA on standard output
        "probcons": ["probcons", infile],
    }[name]


# peers that print the alignment on standard output rather than to a file
TO_STDOUT = {"mafft", "probcons"}


def align_peer(name):
    def align(sequences, structure, workdir, opts):
        infile = os.path.join(workdir, "case.fa")
        outfile = os.path.join(workdir, "case.aln.fa")
        write_fasta(infile, sequences)
        command = peer_command(name, infile, outfile)
        if name in TO_STDOUT:
            with open(outfile, "wb") as out:
                run(command, workdir, stdout=out, timeout=opts.timeout)
        else:
            # t_coffee keeps caches and logs under HOME
            run(command, workdir, env=dict(os.environ, HOME=workdir), timeout=opts.timeout)
        return read_aligned_fasta(outfile)
    return align


PEERS = ["clustalo", "mafft", "kalign", "muscle", "t_coffee", "probcons"]
BACK_ENDS = {"ravlin-batch": align_ravlin_batch, "ravlin-align": align_ravlin_align}
BACK_ENDS.update({name: align_peer(name) for name in PEERS})
