#!/usr/bin/env python3
"""Branch coverage of controls/, framework/, pages/ and what they need of base/, by the tests without a toolkit; .ci/run starts it.

    tools/coverage.py

Builds the preset `coverage` and runs its tests. Counted is what stands in the source: both sides of every
condition, every case of a switch and the way past them all, and every piece of code. The instances of a
template count together. tools/coverage_accepted.txt lists what stays open, with the reason. Exit status 1
when anything else is open, and when something listed is not.

clang counts the conditions of the source. gcc counts the jumps of the machine code; in this code most of
those that stay open are its own and carry no mark by which a tool could leave them out: the ways to clean-up
code in a handler, the null check of a dynamic_cast, the guard of a static.
"""
import collections
import concurrent.futures
import json
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREE = ROOT / "build/coverage"
ACCEPTED = ROOT / "tools/coverage_accepted.txt"
DIRECTORIES = ("base/failure", "base/utf8", "controls/", "framework/", "pages/")
PROGRAMS = ("test_controls", "test_framework", "test_pages")
WORKERS = os.cpu_count() or 1
CODE = 0  # the kind of a region that is a piece of code


def run(*command, **environment):
    done = subprocess.run([str(word) for word in command], cwd=ROOT, stdin=subprocess.DEVNULL, text=True,
                          capture_output=True, env={**os.environ, **environment})
    if done.returncode:
        sys.exit(f"{done.stdout}{done.stderr}coverage.py: {command[0]} failed")
    return done.stdout


def functions(program, scratch):
    """Runs a test program; what llvm-cov says of each function, and of each instance of a template."""
    def run_part(part):
        raw = scratch / f"{program}.{part}"
        run(TREE / "bin" / program, "--gtest_brief=1", LLVM_PROFILE_FILE=str(raw), GTEST_SHARD_INDEX=str(part),
            GTEST_TOTAL_SHARDS=str(WORKERS))
        return raw
    with concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
        raws = list(pool.map(run_part, range(WORKERS)))
    data = scratch / f"{program}.data"
    run("llvm-profdata-19", "merge", "--sparse", *raws, "-o", data)
    return json.loads(run("llvm-cov-19", "export", "--instr-profile", data, TREE / "bin" / program))["data"][0]["functions"]


def collect():
    """How often each (file, line, column, side) was taken. Rooms are compiled through links: a file has one name."""
    taken, names = collections.Counter(), {}
    with tempfile.TemporaryDirectory() as scratch:
        for program in PROGRAMS:
            for function in functions(program, pathlib.Path(scratch)):
                files = [names.setdefault(name, os.path.relpath(os.path.realpath(name), ROOT))
                         for name in function["filenames"]]
                for line, column, _, _, count, file, _, kind in function["regions"]:
                    if kind == CODE:
                        taken[files[file], line, column, "reached"] += count
                for line, column, _, _, yes, no, file, *_ in function["branches"]:
                    taken[files[file], line, column, "true"] += yes
                    taken[files[file], line, column, "false"] += no
    return {place: count for place, count in taken.items() if place[0].startswith(DIRECTORIES)}


def main():
    if not (TREE / "build.ninja").exists():
        run("cmake", "--preset", "coverage")
    run("ninja", "-C", TREE, *(f"bin/{program}" for program in PROGRAMS))
    listed = {tuple(line.split(" ", 2)): False for line in ACCEPTED.read_text().splitlines()
              if line and line[0] not in "# "}
    totals = collections.defaultdict(collections.Counter)
    wrong = []
    for (file, line, column, side), count in sorted(collect().items()):
        text = (ROOT / file).read_text().splitlines()[line - 1].strip()
        total = totals[file.split("/")[0]]
        kind = "code" if side == "reached" else "branches"
        total[kind] += 1
        total["taken " + kind] += count > 0
        if not count and (file, side, text) in listed:
            listed[file, side, text] = True
            total["listed"] += 1
        elif not count:
            wrong.append(f"{file}:{line}:{column}: never {side}: {text}")
    print(f"{'':12}{'branches':>10}{'taken':>8}{'code':>8}{'reached':>9}{'listed':>8}")
    for name, total in sorted(totals.items()):
        print(f"{name:12}{total['branches']:10}{total['taken branches']:8}{total['code']:8}{total['taken code']:9}"
              f"{total['listed']:8}")
    wrong += [f"{ACCEPTED.name}: not open: {' '.join(entry)}" for entry, found in listed.items() if not found]
    print("\n".join(wrong))
    return 1 if wrong or not totals else 0


if __name__ == "__main__":
    sys.exit(main())
