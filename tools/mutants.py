#!/usr/bin/env python3
"""Plants small faults in the library, one at a time, and tells which of them the tests catch.

    tools/mutants.py [-n COUNT] [-s SEED] [-j JOBS] [--folder FOLDER ...] [--list]

Each fault is one changed token or one dropped statement in a source file under src/ (texts and traces are left
alone). A job works in a copy of the tree of its own under build/mutants: it compiles the changed file, then links
and runs one test program after the other, that of the file's own folder first, until one fails. What the tests of
one process let through is tried on the bench as a whole, if the fault can be seen there. What compiles to the same
code with optimization is no fault and does not count. The same seed gives the same faults on the same tree. Exit code
1 when fewer than --least percent are caught.
"""

import argparse
import concurrent.futures
import functools
import json
import pathlib
import queue
import random
import re
import shlex
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutants"
TEXTS = re.compile(r"Texts?\.cpp$|Trace|/trace/")
TEST_SECONDS = 60
BENCH = "src/bench/kalvio-bench"
BENCH_FOLDERS = ("bench", "reference_host")  # whose faults the tests of the whole bench can tell from others

# A number that stands for yes or no in an answer is turned round, not counted up.
NO_FLAG = r"(?!(?<=return )[01];)(?!(?<=\? )[01] : [01]\b)(?!(?<=\? [01] : )[01]\b)"

# A pattern, its replacements. Spaces round binary operators keep templates, pointers and references out.
OPERATORS = [
    (r" == ", [" != "]), (r" != ", [" == "]),
    (r" < ", [" <= ", " > "]), (r" <= ", [" < "]), (r" > ", [" >= ", " < "]), (r" >= ", [" > "]),
    (r" && ", [" || "]), (r" \|\| ", [" && "]),
    (r" \+ ", [" - "]), (r" - ", [" + "]), (r" \* (?=[\w(])", [" / "]), (r" / ", [" * "]), (r" % ", [" / "]),
    (r" << ", [" >> "]), (r" >> ", [" << "]), (r" & ", [" | "]), (r" \| ", [" & "]), (r" \^ ", [" | "]),
    (r" \+= ", [" -= "]), (r" -= ", [" += "]), (r" \|= ", [" &= "]), (r" &= ", [" |= "]),
    (r"\+\+(?=\w)", ["--"]), (r"(?<=[(\s])!(?=[\w(])", [""]),
    (r"\btrue\b", ["false"]), (r"\bfalse\b", ["true"]),
    (r"\bstd::min\b", ["std::max"]), (r"\bstd::max\b", ["std::min"]),
    (r"\breturn 0;", ["return 1;"]), (r"\breturn 1;", ["return 0;"]),
    (r" \? 1 : 0\b", [" ? 0 : 1"]), (r" \? 0 : 1\b", [" ? 1 : 0"]),
    (rf"(?<![\w.']){NO_FLAG}(\d+|0x[0-9A-Fa-f]+)(?![\w.'])", ["+1"]),
    (r"^ +[A-Za-z_][\w.\->:]*\([^{}]*\);$", [";"]),  # a call as a statement
    (r"^ +[a-z_][\w.\->\[\]]* [|&+-]?= [^{};]*;$", [";"]),  # an assignment as a statement
]


def code_lines(text):
    """The lines that hold code: neither preprocessor, comment, text, declaration of a namespace nor assertion."""
    in_comment = in_text = False
    for number, line in enumerate(text.splitlines()):
        stripped = line.strip()
        if in_text or 'R"(' in line:
            in_text = ')"' not in line
            continue
        if in_comment or stripped.startswith(("/*", "*")):
            in_comment = "*/" not in line
            continue
        if not stripped or stripped.startswith(("#", "//", "static_assert", "using ", "namespace")):
            continue
        yield number, line.split("//")[0].rstrip() if '"' not in line else line


def faults_of(path):
    for number, line in code_lines(path.read_text()):
        if '"' in line:
            continue
        for pattern, replacements in OPERATORS:
            for found in re.finditer(pattern, line):
                for replacement in replacements:
                    if replacement == "+1":
                        new = str(int(found.group(1), 8 if re.fullmatch("0[0-7]+", found.group(1)) else 0) + 1)
                    elif replacement == ";":
                        new = " " * (len(line) - len(line.lstrip())) + ";"
                    else:
                        new = replacement
                    yield path.relative_to(ROOT), number, found.start(), found.end(), new


def choose(count, seed, folders):
    files = [path for path in sorted((ROOT / "src").rglob("*.cpp")) if not TEXTS.search(str(path))]
    if folders:
        files = [path for path in files if path.relative_to(ROOT / "src").parts[0] in folders]
    sites = [fault for path in files for fault in faults_of(path)]
    return random.Random(seed).sample(sites, min(count, len(sites)))


def run(command, folder, seconds=None):
    try:
        return subprocess.run(command, cwd=folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=seconds, check=False).returncode
    except subprocess.TimeoutExpired:
        return "time"


def prepare(job):
    tree = WORK / f"tree{job}"
    tree.mkdir(parents=True, exist_ok=True)
    names = set(subprocess.check_output(["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                                        text=True).split("\n")) - {""}
    for folder in tree.iterdir():
        for old in folder.rglob("*") if folder.name != "build" else []:
            if old.is_file() and str(old.relative_to(tree)) not in names:
                old.unlink()  # of an earlier run; its tests would be run too
    for name in names:
        source, target = ROOT / name, tree / name
        if source.is_file():
            target.parent.mkdir(parents=True, exist_ok=True)
            if not target.exists() or source.read_bytes() != target.read_bytes():
                shutil.copy(source, target)  # with a new time, or an object of a planted fault would stay
    build = tree / "build"
    configure = ["cmake", "-S", str(tree), "-B", str(build), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                 "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG", "-DKALVIO_WERROR=OFF"]
    if shutil.which("ld.lld"):
        configure += [f"-DCMAKE_{kind}_LINKER_FLAGS=-fuse-ld=lld" for kind in ("EXE", "SHARED")]
    if run(configure, tree) != 0 or run(["ninja"], build) != 0:
        sys.exit(f"mutants: {tree} does not build")
    return tree, [test for test in tests_of(tree) if passes(test, tree)]


def tests_of(tree):
    """Pairs of a target to build and the command that tests it."""
    for program in sorted((tree / "build" / "tests").glob("kalvio_*_tests")):
        yield f"tests/{program.name}", [str(program), "--gtest_brief=1", "--gtest_fail_fast"]
    bench = tree / "build" / BENCH
    if bench.exists():
        for program in sorted((tree / "tests" / "programs").glob("*_test.py")):
            yield BENCH, [sys.executable, str(program), str(bench)]


def run_test(test, tree):
    """From the build folder, since paths of sources that a compiler cache shares are relative to it."""
    return run(test[1], tree / "build", TEST_SECONDS)


def passes(test, tree):
    """A program that fails on the unchanged tree would seem to catch every fault."""
    code = run_test(test, tree)
    if code != 0:
        print(f"mutants: {test[1]} fails on the unchanged tree and is left out", file=sys.stderr, flush=True)
    return code == 0


def tests_for(tests, folder):
    chosen = [test for test in tests if test[0] != BENCH or folder in BENCH_FOLDERS]
    return sorted(chosen, key=lambda test: (test[0] == BENCH, test[0] != f"tests/kalvio_{folder}_tests"))


def optimized_code(tree, path):
    """The assembly of a source file with optimization, by its own compile command but for precompiled headers."""
    build = tree / "build"
    for entry in json.loads((build / "compile_commands.json").read_text()):
        if (build / entry["file"]).resolve() == (tree / path).resolve():
            words = [word for word in shlex.split(entry["command"]) if not word.startswith("-O") and word != "-c"]
            words[words.index("-o") + 1] = "/dev/stdout"
            if "-include" in words:
                del words[words.index("-include"):words.index("-include") + 2]
            return subprocess.check_output([*words, "-O2", "-S"], cwd=build, stderr=subprocess.DEVNULL)
    raise LookupError(f"{path} is not compiled")


def try_fault(tree, tests, fault):
    path, number, start, end, new = fault
    source = tree / path
    before = source.read_text()
    code = functools.partial(optimized_code, tree, path)
    lines = before.splitlines(keepends=True)
    line = lines[number]
    ending = "\n" if new.endswith(";") and start == 0 else ""
    lines[number] = new + ending if ending else line[:start] + new + line[end:]
    source.write_text("".join(lines))
    try:
        for test in tests_for(tests, path.parts[1]):
            if run(["ninja", test[0]], tree / "build") != 0:
                return "does not compile", ""
            if run_test(test, tree) != 0:
                return "caught", pathlib.Path(test[1][1 if test[0] == BENCH else 0]).name
        changed = code()
        source.write_text(before)
        return ("changes nothing" if changed == code() else "NOT CAUGHT"), ""
    finally:
        source.write_text(before)


def describe(fault):
    path, number, start, end, new = fault
    line = (ROOT / path).read_text().splitlines()[number]
    old = line[start:end].strip()
    return f"{path}:{number + 1}: {old!r} -> {new.strip()!r}    {line.strip()}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("-n", type=int, default=100, help="how many faults")
    parser.add_argument("-s", "--seed", type=int, default=1)
    parser.add_argument("-j", "--jobs", type=int, default=2)
    parser.add_argument("--folder", action="append", default=[], help="only in this folder of src/")
    parser.add_argument("--least", type=float, default=0.0, help="percent that must be caught")
    parser.add_argument("--list", action="store_true", help="list the faults, try none")
    options = parser.parse_args()
    faults = choose(options.n, options.seed, options.folder)
    if options.list:
        print("\n".join(describe(fault) for fault in faults))
        return 0

    trees = queue.Queue()
    for job in range(options.jobs):
        trees.put(prepare(job))

    def work(fault):
        tree, tests = trees.get()
        try:
            return fault, *try_fault(tree, tests, fault)
        finally:
            trees.put((tree, tests))

    counts = {"caught": 0, "NOT CAUGHT": 0, "does not compile": 0, "changes nothing": 0}
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for fault, outcome, program in pool.map(work, faults):
            counts[outcome] += 1
            print(f"{outcome:17} {describe(fault)}  {program}", flush=True)
    tried = counts["caught"] + counts["NOT CAUGHT"]
    share = 100.0 * counts["caught"] / tried if tried else 100.0
    print(f"seed {options.seed}: {counts['caught']} of {tried} caught, {share:.1f} % "
          f"({counts['does not compile']} did not compile, {counts['changes nothing']} changed nothing)")
    return 0 if share >= options.least else 1


if __name__ == "__main__":
    sys.exit(main())
