"""The whole-program benchmark: times the compiler against its two floors, GNU cpp -P on the
same text and a minimal C file writer making the same files, and shows how time and memory grow.
Every figure is a median of several runs, and every result is a ratio of times measured in this
run, so that it holds across machines and loads. Run it through bench/whole_program.sh."""

import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

import corpus

# Written by every compile-only run, whose -o names no folder to create the output file in.
EXPECTED_NOTE = "CFURLGetFSRef failed"
PEAK_MEMORY = None
# A memory-backed file system for the output run without a disk; skipped where there is none.
MEMORY_FOLDER = "/dev/shm"


def run(command, cwd):
    """Runs one process to its end under peak_memory: its wall time in seconds and its peak
    resident set in bytes."""
    with tempfile.TemporaryFile() as messages, tempfile.NamedTemporaryFile("r") as peak:
        start = time.perf_counter()
        status = subprocess.call([PEAK_MEMORY, peak.name] + command, cwd=cwd,
                                 stdout=subprocess.DEVNULL, stderr=messages)
        elapsed = time.perf_counter() - start
        messages.seek(0)
        errors = messages.read().decode(errors="replace")
        kilobytes = int(peak.read() or 0)
    unexpected = [line for line in errors.splitlines() if not line.startswith(EXPECTED_NOTE)]
    if status != 0 or unexpected:
        sys.exit(f"{' '.join(command)} failed ({status}):\n{errors[:2000]}")
    return elapsed, kilobytes * 1024


def median_of(runs, commands, cwd, prepare=None):
    """Median times and peak memories of each command, their runs interleaved so that a change
    of load on the machine hits all of them alike."""
    times = [[] for _ in commands]
    peaks = [0 for _ in commands]
    for _ in range(runs):
        for index, command in enumerate(commands):
            if prepare:
                prepare(index)
            elapsed, peak = run(command, cwd)
            times[index].append(elapsed)
            peaks[index] = max(peaks[index], peak)
    return [statistics.median(t) for t in times], peaks


def write_corpus(folder, name, text):
    path = os.path.join(folder, name)
    with open(path, "w") as out:
        out.write(text)
    return name, len(text.encode())


def manifest_of(root):
    """The folders and files below `root`, in an order the writer can replay, and their bytes."""
    lines, total = [], 0
    for folder, subfolders, files in os.walk(root):
        subfolders.sort()
        relative = os.path.join("floor", os.path.relpath(folder, root))
        if folder != root:
            lines.append(f"d {relative}")
        for name in sorted(files):
            size = os.path.getsize(os.path.join(folder, name))
            total += size
            lines.append(f"f {size} {os.path.join(relative, name)}")
    return "\n".join(lines) + "\n", total


def megabytes(count):
    return count / 1e6


def clean_output(work, index):
    """Both programs start from an empty output folder and a quiet disk: the removal of the last
    run's files is flushed before the clock starts, so that no run pays for another's."""
    folder = os.path.join(work, ["out", "floor"][index])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    os.sync()


def compile_only(velor, name):
    return [velor, "-o", "r.rsrc", name]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--velor", required=True)
    parser.add_argument("--writer", required=True)
    parser.add_argument("--peak-memory", required=True)
    parser.add_argument("--work", required=True)
    parser.add_argument("--resources", type=int, default=100000)
    parser.add_argument("--runs", type=int, default=3)
    options = parser.parse_args()
    global PEAK_MEMORY
    PEAK_MEMORY = options.peak_memory
    work, velor, count, runs = options.work, options.velor, options.resources, options.runs
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work)

    small, small_bytes = write_corpus(work, "big.vd", corpus.whole_program(count))
    large, large_bytes = write_corpus(work, "big10.vd", corpus.whole_program(10 * count))
    print(f"corpus: {count} resources of {len(corpus.KINDS)} kinds, {megabytes(small_bytes):.1f} MB;"
          f" 10N: {megabytes(large_bytes):.1f} MB; medians of {runs} runs")

    (velor_time, cpp_time), (velor_peak, _) = median_of(
        runs, [compile_only(velor, small), ["cpp", "-P", small]], work)
    print(f"compile only / cpp -P:          {velor_time / cpp_time:5.2f}   (goal <= 0.50)")

    clean_output(work, 0)
    run([velor, "-o", "out/r.rsrc", small], work)
    manifest, output_bytes = manifest_of(os.path.join(work, "out"))
    with open(os.path.join(work, "manifest"), "w") as out:
        out.write(manifest)
    files = manifest.count("\nf ")
    output_commands = [[velor, "-o", "out/r.rsrc", small], [options.writer, "manifest"]]
    (output_time, writer_time), (output_peak, _) = median_of(
        runs, output_commands, work, lambda index: clean_output(work, index))
    print(f"with output / file writer:      {output_time / writer_time:5.2f}   (goal <= 1.15; {files} files)")
    if os.path.isdir(MEMORY_FOLDER):
        # The same pair in a memory-backed folder, where no other work's disk traffic weighs on
        # one run and not the other: what the compiler adds to the least cost of its files.
        memory_work = tempfile.mkdtemp(dir=MEMORY_FOLDER)
        for name in (small, "manifest"):
            shutil.copy(os.path.join(work, name), memory_work)
        (output_time, writer_time), _ = median_of(
            runs, output_commands, memory_work, lambda index: clean_output(memory_work, index))
        shutil.rmtree(memory_work, ignore_errors=True)
        print(f"with output / file writer, {MEMORY_FOLDER}: {output_time / writer_time:5.2f}   (same files, in memory)")

    (time_n, time_10n), (_, peak_10n) = median_of(runs, [compile_only(velor, small), compile_only(velor, large)], work)
    print(f"10N / N resources, time:        {time_10n / time_n:5.2f}   (linear: 10)")

    def memory_line(label, peak, input_bytes, out_bytes):
        bound = 2 * (input_bytes + out_bytes) + 20e6
        print(f"peak memory, {label:18s} {megabytes(peak):6.1f} MB of a bound of {megabytes(bound):6.1f} MB"
              f" ({peak / bound:4.2f})")

    memory_line("compile only, N:", velor_peak, small_bytes, output_bytes)
    memory_line("compile only, 10N:", peak_10n, large_bytes, 10 * output_bytes)
    memory_line("with output, N:", output_peak, small_bytes, output_bytes)

    for label, make, size in corpus.GROWTH_CASES:
        names = [write_corpus(work, f"growth{scale}.vd", make(size * scale))[0] for scale in (1, 10)]
        (time_1, time_10), _ = median_of(runs, [compile_only(velor, name) for name in names], work)
        print(f"growth x10, {label:40s} {time_10 / time_1:5.2f}   (linear: 10)")
    shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    main()
