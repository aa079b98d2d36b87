#!/usr/bin/env python3
"""Runs the fuzz targets of the build under build/fuzz with libFuzzer.

    tools/fuzz.py [--seconds SECONDS] [--jobs JOBS] [--keep] [TARGET ...]

Each target begins with its seeds, its files in fuzz/corpus/TARGET and what earlier runs found; what it finds goes to
build/fuzz/corpus/TARGET. A finding leaves its input under build/fuzz/crashes, and the exit code is 1. With --keep
nothing is run; the few inputs that together reach most of what the targets have found replace fuzz/corpus/TARGET.
"""

import argparse
import concurrent.futures
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/fuzz"
KEPT = ROOT / "fuzz/corpus"
MOST_KEPT_FILES = 16  # a target
MOST_KEPT_BYTES = 2048  # a file
LIMITS = ["-rss_limit_mb=2048", "-timeout=10"]


def corpus_of(target):
    """The folder that grows: seeds made by the target itself, then the kept files."""
    folder = BUILD / "corpus" / target.name
    folder.mkdir(parents=True, exist_ok=True)
    subprocess.run([target, "--record-seeds", folder], check=True, stdout=subprocess.DEVNULL)
    for file in (KEPT / target.name).glob("*"):
        shutil.copy(file, folder)
    return folder


def run(target, seconds):
    """One line about the run, and whether it was clean. The input lengths follow the longest file."""
    corpus = corpus_of(target)
    crashes = BUILD / "crashes"
    crashes.mkdir(exist_ok=True)
    log = BUILD / "logs" / f"{target.name}.log"
    log.parent.mkdir(exist_ok=True)
    with open(log, "wb") as output:
        code = subprocess.run([target, f"-max_total_time={seconds}", f"-artifact_prefix={crashes}/{target.name}-",
                               "-print_final_stats=1", *LIMITS, corpus], stdout=output, stderr=output).returncode
    text = log.read_text(errors="replace")
    runs = re.findall(r"number_of_executed_units: (\d+)", text) or ["?"]
    reached = re.findall(r"cov: (\d+) ft: (\d+) corp: (\d+)/(\S+)", text) or [("?",) * 4]
    line = "{:24} {:>9} runs  cov {:>6}  ft {:>6}  corpus {:>5} files, {}".format(target.name, runs[-1], *reached[-1])
    if code != 0:
        left = re.findall(r"written to (\S+)", text)
        line += f"\n{target.name} FAILED: {left[-1] if left else 'no input left'}, see {log}"
    return line, code == 0


def keep(target):
    """Replaces the kept files by those that, taken greedily, reach most features."""
    with tempfile.TemporaryDirectory() as scratch:
        merged = pathlib.Path(scratch, "merged")
        control = pathlib.Path(scratch, "control")
        merged.mkdir()
        subprocess.run([target, "-set_cover_merge=1", f"-merge_control_file={control}", *LIMITS, merged,
                        corpus_of(target)], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        lines = control.read_text().splitlines()
    # The number of files, how many of them are no news, their names, then what each reaches: "FT INDEX FEATURES".
    names = lines[2:2 + int(lines[0])]
    features = {names[int(words[1])]: set(words[2:])
                for words in map(str.split, lines[2 + len(names):]) if words[0] == "FT"}
    left = {name: found for name, found in features.items() if 0 < os.path.getsize(name) <= MOST_KEPT_BYTES}
    chosen = []
    reached = set()
    while left and len(chosen) < MOST_KEPT_FILES:
        best = max(left, key=lambda name: (len(left[name] - reached), -os.path.getsize(name)))
        if not left[best] - reached:
            break
        chosen.append(pathlib.Path(best).read_bytes())
        reached |= left.pop(best)
    folder = KEPT / target.name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for content in chosen:
        (folder / hashlib.sha1(content).hexdigest()[:12]).write_bytes(content)
    of_all = len(set().union(*features.values()))
    return "{:24} {} files, {} bytes, reach {} of {} features".format(
        target.name, len(chosen), sum(map(len, chosen)), len(reached), of_all), True


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seconds", type=int, default=60, help="for each target")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="targets that run at the same time")
    parser.add_argument("--keep", action="store_true", help="keep the best of what was found in the tree")
    parser.add_argument("targets", nargs="*", metavar="TARGET", help="only these")
    options = parser.parse_args()

    there = {path.name: path for path in sorted((BUILD / "fuzz").glob("*Fuzz"))}
    unknown = [name for name in options.targets if name not in there]
    if unknown or not there:
        sys.exit(f"fuzz: no target {' '.join(unknown)} under {BUILD}; `make fuzz` builds them")
    targets = [there[name] for name in options.targets or there]
    if not options.keep:
        rounds = -(-len(targets) // options.jobs)
        print(f"fuzz: {len(targets)} targets, {options.seconds} s each, {options.jobs} at a time: "
              f"{rounds * options.seconds} s in all", flush=True)
    clean = True
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for line, ok in pool.map(keep if options.keep else lambda target: run(target, options.seconds), targets):
            print(line, flush=True)
            clean = clean and ok
    sys.exit(0 if clean else 1)


if __name__ == "__main__":
    main()
