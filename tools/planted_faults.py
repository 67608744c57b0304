#!/usr/bin/env python3
"""Puts each fault of tests/simulation/planted_faults.txt into the automation manager, and looks whether the simulation
finds it. Exit status 1 if it does not, or if a line is no longer there.

    tools/planted_faults.py [NUMBER...]    all of them, or those, counted from 1

Works as tools/mutate.py does: on a copy, with the commands of build/debug.
"""
import concurrent.futures
import re
import subprocess
import sys
import tempfile

import mutate

FAULTS = mutate.ROOT / "tests/simulation/planted_faults.txt"
STAGE = ("simulation", "*InMemory")


def faults():
    text = "\n".join(line for line in FAULTS.read_text().splitlines() if not line.startswith("#"))
    for block in re.split(r"\n\s*\n", text.strip()):
        name, file, before, after = block.splitlines()
        before, after = before[2:], after[2:]
        source = (mutate.ROOT / file).read_text()
        found = re.findall(r"\s+".join(map(re.escape, before.split())), source)
        if len(found) != 1:
            sys.exit(f"{FAULTS.name}: {name}: the line stands {len(found)} times in {file}")
        line = source.count("\n", 0, source.index(found[0])) + 1
        yield mutate.Mutant(name, file, line, before, after, source.replace(found[0], after))


def main():
    every = list(faults())
    chosen = [every[int(number) - 1] for number in sys.argv[1:]] or every
    mutate.stages = lambda name: [STAGE]
    subprocess.run(["ninja", "-C", mutate.TREE, "--quiet", "bin/test_simulation"], check=True, stdout=subprocess.DEVNULL)
    with tempfile.TemporaryDirectory() as scratch, concurrent.futures.ThreadPoolExecutor(mutate.WORKERS) as pool:
        bench = mutate.Bench(scratch)
        bench.check([STAGE])

        def found(fault):
            _, every_user = bench.sources(fault.file)
            verdict, _ = bench.attempt(fault, every_user)
            print(f"{'found' if verdict == 'killed' else 'NOT FOUND (' + verdict + ')'}: {fault.id}", flush=True)
            return verdict == "killed"
        sys.exit(0 if all(list(pool.map(found, chosen))) else 1)


if __name__ == "__main__":
    main()
