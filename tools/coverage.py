#!/usr/bin/env python3
"""Branch coverage of controls/, framework/ and pages/ by the tests that need no toolkit; .ci/run starts it.

    tools/coverage.py

Builds and runs the preset `coverage`. Counted is what the source says: every condition, of which both sides
are to be taken, every case of a switch, and every piece of code, which is to be reached.
The instances of a template count together. tools/coverage_accepted.txt lists what stays open, with the reason. Exit status 1 when
something else is open, and when something listed is not.

clang counts conditions of the source. gcc counts jumps of the machine code, most of which are the compiler's own
in this code: edges to clean-up code, guards of statics, checks of the standard library. Left without a mark that
would tell them apart, they would have to be listed by hand.
"""
import collections
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREE = ROOT / "build/coverage"
ACCEPTED = ROOT / "tools/coverage_accepted.txt"
DIRECTORIES = ("controls", "framework", "pages")
PROGRAMS = ("test_controls", "test_framework", "test_pages", "test_wizard")
CODE = 0  # the kind of a region that is a piece of code


def run(*command, **options):
    return subprocess.run([str(word) for word in command], cwd=ROOT, check=True, **options)


def counts_of(program, scratch):
    """Runs a test program; the regions of llvm-cov's functions."""
    raw, data = scratch / f"{program}.raw", scratch / f"{program}.data"
    run(TREE / "bin" / program, "--gtest_brief=1", stdin=subprocess.DEVNULL, env={**os.environ, "LLVM_PROFILE_FILE": str(raw)})
    run("llvm-profdata-19", "merge", "--sparse", raw, "-o", data)
    text = run("llvm-cov-19", "export", "--instr-profile", data, TREE / "bin" / program, capture_output=True).stdout
    return json.loads(text)["data"][0]["functions"]


def collect():
    """What is to be taken, (file, line, column, what), with the number of times that it was."""
    taken = collections.Counter()
    name_of = {}
    with tempfile.TemporaryDirectory() as scratch:
        for program in PROGRAMS:
            for function in counts_of(program, pathlib.Path(scratch)):
                names = [name_of.setdefault(n, os.path.relpath(os.path.realpath(n), ROOT)) for n in function["filenames"]]
                for line, column, _, _, count, file, _, kind in function["regions"]:
                    if kind == CODE:
                        taken[names[file], line, column, "reached"] += count
                for line, column, _, _, yes, no, file, *_ in function["branches"]:
                    taken[names[file], line, column, "true"] += yes
                    taken[names[file], line, column, "false"] += no
    return {place: count for place, count in taken.items() if place[0].startswith(DIRECTORIES)}


def accepted():
    """(file, text of the line, what) of the listed places."""
    listed = {}
    for line in ACCEPTED.read_text().splitlines():
        if line and not line.startswith(("#", " ")):
            file, what, text = line.split(" ", 2)
            listed[file, text, what] = 0
    return listed


def main():
    if not (TREE / "build.ninja").exists():
        run("cmake", "--preset", "coverage", stdout=subprocess.DEVNULL)
    run("ninja", "-C", TREE, "--quiet", *PROGRAMS, stdout=sys.stderr)
    taken, listed = collect(), accepted()
    texts = {file: (ROOT / file).read_text().splitlines() for file, *_ in taken}
    totals = collections.defaultdict(collections.Counter)
    open_places = []
    for (file, line, column, what), count in sorted(taken.items()):
        text = texts[file][line - 1].strip()
        total = totals[file.split("/")[0]]
        kind = "pieces of code" if what == "reached" else "branches"
        total[kind] += 1
        if count:
            total["taken " + kind] += 1
        elif (file, text, what) in listed:
            listed[file, text, what] += 1
            total["listed"] += 1
        else:
            open_places.append(f"{file}:{line}:{column}: never {what}: {text}")
    for name, total in sorted(totals.items()):
        print(f"{name:12}{total['taken branches']:6} of {total['branches']} branches, "
              f"{total['taken pieces of code']} of {total['pieces of code']} pieces of code, {total['listed']} listed")
    wrong = [f"{ACCEPTED.name}: not open: {entry}" for entry, uses in listed.items() if uses == 0]
    print("\n".join(open_places + wrong))
    return 1 if open_places or wrong or not taken else 0


if __name__ == "__main__":
    sys.exit(main())
