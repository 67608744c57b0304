#!/usr/bin/env python3
"""Changes one place of the product at a time and looks whether a test notices: a mutant that no test kills
shows a hole in the tests, or a place that nothing can observe.

    tools/mutate.py --sample 40 --seed 1    a sample; the same sources and seed give the same mutants
    tools/mutate.py --all                   every mutant; about two CPU hours
    tools/mutate.py --list                  what would be tried
    tools/mutate.py ID...                   the mutants of these identifiers, as a report names them
    --files PATTERN                         only files whose path matches, for instance framework/
    --log FILE                              appends one line of JSON for each mutant tried

Works on a copy of the sources in a temporary directory: a mutant is compiled there with the commands of
build/debug, which is brought up to date first and then only read, and linked before the archive that holds
the unchanged file. tools/mutants_accepted.txt lists the survivors that are known, with the reason. Exit
status 1 when fewer than nine mutants in ten die; those listed as equivalent, which nothing can observe, do
not count. Also when the list names a mutant that there is no more, or one as equivalent that was killed.
"""
import argparse
import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile
import threading

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREE = ROOT / "build/debug"
ACCEPTED = ROOT / "tools/mutants_accepted.txt"
DIRECTORIES = ("framework", "pages/recurrence", "standalone/schedule")
SOME_USERS = 4  # how many sources that include a changed header are compiled again at first
WORKERS = os.cpu_count() or 1

SWEEP = "*FaultSweep*"
PAGES = re.findall(r'"Plovix\.(\w+)"', (ROOT / "framework/page_identifiers.h").read_text())


def stages(name):
    """The test programs that see a file, with their filters, the one that kills most for its time first."""
    if name.startswith("standalone/"):
        slow = "*RecurrenceRules*:*SystemsClock*"
        return [("schedule", "-" + slow), ("schedule", slow), ("script", "*")]
    plain = [("pages", "-" + SWEEP), ("wizard", "-" + SWEEP)]
    if name.startswith("framework/"):
        swept = ("DailyRecurrence", "AutoTaskType", "Query", "Records")
        return [("framework", "*"), *plain, ("pages", ":".join(SWEEP + page for page in swept))]
    page = pathlib.Path(name).stem.title().replace("_", "")
    swept = [page] if page in PAGES else ["DailyRecurrence", "WeeklyRecurrence", "RecurrenceTime"]
    return [plain[0], ("pages", ":".join(SWEEP + page for page in swept)), plain[1]]


# ---- What can be changed

def masked(text):
    """The text with comments, preprocessor lines and the insides of literals blanked; every offset stays."""
    token = re.compile(r'//[^\n]*|/\*.*?\*/|^[ \t]*#[^\n]*|"(?:\\.|[^"\\\n])*"|(?<!\w)\'(?:\\.|[^\'\\\n])+\'', re.S | re.M)
    quoted = lambda t: t[0] + " " * (len(t) - 2) + t[-1] if t[0] in "\"'" else re.sub(r"[^\n]", " ", t)
    return token.sub(lambda m: quoted(m.group()), text)


SWAPS = [  # pattern in the masked text, replacements of what it found
    (r" (<=|<|>=|>) ", {"<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"]}),
    (r" (==|!=) ", {"==": ["!="], "!=": ["=="]}),
    (r" (&&|\|\|) ", {"&&": ["||"], "||": ["&&"]}),
    (r" ([-+*/%&]|<<|>>) ", {"+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "&": ["|"],
                             "<<": [">>"], ">>": ["<<"]}),
    (r"(\+=|-=|\|=)", {"+=": ["-="], "-=": ["+="], "|=": ["&="]}),
    (r"(\+\+|--)", {"++": ["--"], "--": ["++"]}),
    (r"(?:[=(?:,]|return) (-)(?=[\w*(])", {"-": [""]}),
    (r"(!)(?=[\w(*:])", {"!": [""]}),
    (r"\b(true|false)\b", {"true": ["false"], "false": ["true"]}),
    (r"\b(min|max)(?=[(<])", {"min": ["max"], "max": ["min"]}),
    (r"\b(continue|break);", {"continue": ["break"], "break": ["continue"]}),
    (r"(?<![\w.'])(\d[\d']*)(?=U?\b)(?![\d'.xX])", lambda n: [str(int(n) + 1)] + ([str(int(n) - 1)] if int(n) else [])),
    (r"(?:[=(,{]|return) ((?!k[A-Z])(?:[\w:]|->|\.)+(?:\(\))?) \? ", lambda c: ["!" + c]),
]
CONDITION = re.compile(r"\b(?:if|while) \(")
RETURNED = re.compile(r"\breturn ([^;{}]+);")
DECLARATION = re.compile(r"(?:using|namespace|template|class|struct|enum|public|private|protected|friend|typedef|"
                         r"static_assert|explicit|virtual|\[\[|~)\b|[\w:<>,&*\s]*[\w>&*]\s+[&*]?\w+\s*(?:[=;({]|$)|[\w:]+ \[")
SCOPED = re.compile(r"\b([A-Za-z_]+)::(k[A-Z]\w*)")
CONTROL = re.compile(r"\b((?:txt|opt|chk|cbo|lbl)[A-Z]\w*)\b")
STRING = re.compile(r'"([^" ]*)"')


def closing(text, start):
    """Offset of the bracket that closes the one at `start`."""
    depth = 0
    for at in range(start, len(text)):
        depth += (text[at] in "([{") - (text[at] in ")]}")
        if depth == 0:
            return at
    return len(text)


def statements(mask):
    """Begin and end of every statement that can be dropped: calls, assignments, returns, throws."""
    for end in (m.start() for m in re.finditer(";", mask)):
        depth, begin = 0, end
        while begin > 0:
            c = mask[begin - 1]
            if depth == 0 and c in "{(;" or depth == 0 and c == "}" and begin != end:
                break
            depth += (c in ")]}") - (c in "([{")
            begin -= 1
        if mask[begin - 1:begin] == "(":
            continue  # the head of a loop
        guarded = False
        while True:  # past the head of an if or a loop, and past labels
            begin += len(mask[begin:end]) - len(mask[begin:end].lstrip())
            head = re.match(r"(?:else )?(?:if|for|while)(?: constexpr)? (?=\()|else\b|do\b|case [\w:]+:|default:", mask[begin:end])
            if not head:
                break
            begin += head.end()
            guarded = True
            if mask[begin:begin + 1] == "(":
                begin = closing(mask, begin) + 1
        text = mask[begin:end]
        returns = text.startswith(("return", "throw"))
        line = mask[mask.rfind("\n", 0, begin) + 1:begin]
        if text.startswith("return") and not guarded and mask[end + 1:].lstrip()[:1] == "}" and (line == "  " or line.strip()):
            continue  # the last of a function
        if text and (returns or "{" not in text and not DECLARATION.match(text)) and text not in ("break", "continue"):
            yield begin, end


def siblings(names):
    """Each name with the one after it, in a ring; of a name alone there is none."""
    names = sorted(set(names))
    return {name: names[(i + 1) % len(names)] for i, name in enumerate(names) if len(names) > 1}


def changes(text, scopes):
    """(begin, end, replacement) of every mutant of a source."""
    mask = masked(text)
    for pattern, replacements in SWAPS:
        for m in re.finditer(pattern, mask):
            found = m.group(1)
            for new in replacements(found.replace("'", "")) if callable(replacements) else replacements[found]:
                yield m.start(1), m.end(1), new
    for m in CONDITION.finditer(mask):
        condition = text[m.end():closing(mask, m.end() - 1)]
        if re.search(r"&&|\|\|", condition) or not re.search(r" [=!]= |^!\w|^(?:true|false)$", condition):
            yield m.end(), m.end() + len(condition), f"!({condition})"
    for m in RETURNED.finditer(mask):
        if not re.search(r"&&|\|\||[=!]= | [<>]=? |^!|^(?:true|false|\w*nullopt|\w*nullptr|\d+)$|\{", m.group(1)):
            yield m.start(1), m.end(1), f"!({text[m.start(1):m.end(1)]})"
    for begin, end in statements(mask):
        yield begin, end, ""
    for m in SCOPED.finditer(mask):
        if m.group(2) in scopes.get(m.group(1), {}):
            yield m.start(2), m.end(2), scopes[m.group(1)][m.group(2)]
    controls = collections.defaultdict(list)
    for name in CONTROL.findall(mask):
        controls[name[:3]].append(name)
    for m in CONTROL.finditer(mask):
        if other := siblings(controls[m.group(1)[:3]]).get(m.group(1)):
            yield m.start(1), m.end(1), other
    for m in STRING.finditer(text):  # texts for people, which have blanks, are nobody's business
        if mask[m.start()] == '"' and mask[m.start(1):m.end(1)].isspace():
            yield m.start(1), m.end(1), "mutant"
    for m in re.finditer(r"(?<!\w)'(\\?.)'", text):
        if mask[m.start()] == "'":
            yield m.start(1), m.end(1), "#"


Mutant = collections.namedtuple("Mutant", "id file line before after text")


def mutants():
    names = [str(path.relative_to(ROOT)) for directory in DIRECTORIES for path in sorted((ROOT / directory).glob("*"))]
    found = collections.defaultdict(list)
    for path in ROOT.glob("**/*.h"):
        if path.relative_to(ROOT).parts[0] not in ("build", "tests"):
            for scope, name in SCOPED.findall(path.read_text()):
                found[scope].append(name)
    for name in names:
        for scope, constant in SCOPED.findall((ROOT / name).read_text()):
            found[scope].append(constant)
    scopes = {scope: siblings(constants) for scope, constants in found.items()}
    for name in names:
        text, seen = (ROOT / name).read_text(), collections.Counter()
        for begin, end, new in sorted(set(changes(text, scopes))):
            changed = text[:begin] + new + text[end:]
            first = text.rfind("\n", 0, begin) + 1
            last = text.find("\n", end)
            before = " ".join(text[first:last].split())
            after = " ".join((text[first:begin] + new + text[end:last]).split())
            # The lines that a dropped statement took stay, so that line numbers do.
            changed = text[:begin] + new + "\n" * (text[begin:end].count("\n") - new.count("\n")) + text[end:]
            seen[before, after] += 1
            key = f"{name}|{before}|{after}|{seen[before, after]}"
            yield Mutant(hashlib.sha1(key.encode()).hexdigest()[:8], name, text.count("\n", 0, begin) + 1, before, after, changed)


# ---- Trying one

class Bench:
    """What is known of the unchanged tree: how its sources are compiled and its test programs linked."""

    def __init__(self, scratch):
        self.scratch = pathlib.Path(scratch)
        self.compile, self.object = {}, {}
        for entry in json.loads((TREE / "compile_commands.json").read_text()):
            words = [w for w in shlex.split(entry["command"]) if not w.startswith(("-W", "-g")) and not w.endswith("ccache")]
            file, out = os.path.relpath(entry["file"], ROOT), words.index("-o")
            self.compile[file], self.object[file] = words[:out], words[out + 1]
        self.link, self.users, self.cpu = {}, collections.defaultdict(list), {}
        dependencies = subprocess.run(["ninja", "-C", TREE, "-t", "deps"], capture_output=True, text=True, check=True).stdout
        for block in dependencies.split("\n\n"):
            files = {os.path.relpath(os.path.realpath(TREE / line.strip()), ROOT) for line in block.splitlines()[1:]}
            for source in files & set(self.compile):
                for file in files - {source}:
                    self.users[file].append(source)
        self.local = threading.local()

    def sources(self, name):
        """What is compiled again when the file changes: itself, or those that include it, of its room first. The
        second list is all of them, for what the first does not kill: the tests of the programs are among them."""
        if name.endswith(".cpp"):
            return [name], [name]
        room = os.path.dirname(name)
        tests = tuple(f"tests/{program}/" for program, _ in stages(name))
        users = sorted(set(self.users[name]), key=lambda user: (os.path.dirname(user) != room, user))
        product = [user for user in users if not user.startswith(("tests/", "benchmarks/", "examples/", "build/"))]
        return product[:SOME_USERS], product + [user for user in users if user.startswith(tests)]

    def copy(self):
        """This worker's copy of the sources, with the directories that publish the rooms."""
        if not hasattr(self.local, "copy"):
            self.local.copy = pathlib.Path(tempfile.mkdtemp(dir=self.scratch))
            shutil.copytree(ROOT, self.local.copy, dirs_exist_ok=True, ignore=shutil.ignore_patterns(".git", "build"))
            for link in (TREE / "rooms").glob("**/*"):
                if link.is_symlink():
                    new = self.local.copy / link.relative_to(ROOT)
                    new.parent.mkdir(parents=True, exist_ok=True)
                    new.symlink_to(self.local.copy / link.resolve().relative_to(ROOT))
        return self.local.copy

    def objects(self, mutant, sources):
        """Compiles the sources with what the mutant changes: the objects by those that they stand for; nothing
        when that fails."""
        copy = self.copy()
        compiled = {}
        original = (copy / mutant.file).read_text()
        (copy / mutant.file).write_text(mutant.text)
        try:
            for number, source in enumerate(sources):
                words = [w.replace(str(ROOT), str(copy)) for w in self.compile[source]]
                out = compiled[self.object[source]] = str(copy / f"mutant{number}.o")
                command = [*words, "-O0", "-Werror=return-type", *self.preheader(mutant, source, words, copy), "-o",
                           out, "-c", str(copy / source)]
                if subprocess.run(command, cwd=TREE, capture_output=True).returncode:
                    return None
        finally:
            (copy / mutant.file).write_text(original)
        return compiled

    def preheader(self, mutant, source, words, copy):
        """Several mutants of one source in a row: what it includes is compiled once."""
        if not mutant.file.endswith(".cpp") or getattr(self.local, "seen", None) != source:
            self.local.seen, self.local.header = source, None
            return []
        if not self.local.header:
            self.local.header = copy / "pre.h"
            self.local.header.write_text("\n".join(re.findall(r"^#include.*", mutant.text, re.M)))
            subprocess.run([*words, "-O0", "-iquote", str(copy / source).rsplit("/", 1)[0], "-x", "c++-header", "-o", f"{self.local.header}.gch",
                            str(self.local.header)], cwd=TREE, capture_output=True, check=True)
        return ["-iquote", str(copy / source).rsplit("/", 1)[0], "-include", str(self.local.header)]

    def program(self, name, objects):
        """Links a test program of this worker: an object in the place of its own, or before the archive that has it."""
        out = str(self.copy() / f"test_{name}")
        words = [objects.get(word, word) for word in self.link[name]]
        words[words.index("-o") + 1] = out
        first = [new for old, new in objects.items() if old not in self.link[name]]
        done = subprocess.run([words[0], *first, *words[1:], "-fuse-ld=gold", "-s"], cwd=TREE, capture_output=True)
        return out if done.returncode == 0 else None

    def passes(self, program, name, test_filter):
        """Runs the tests of a filter; the second value is the CPU time in seconds."""
        limit = self.cpu.get((name, test_filter))
        home = str(self.copy())
        def limits():
            resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            if limit:
                resource.setrlimit(resource.RLIMIT_CPU, (limit, limit + 1))
        child = subprocess.Popen([program, f"--gtest_filter={test_filter}", "--gtest_fail_fast", "--gtest_brief=1"],
                                 cwd=home, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                 env={**os.environ, "HOME": home, "XDG_DATA_HOME": home, "XDG_CONFIG_HOME": home,
                                      "QT_QPA_PLATFORM": "offscreen"}, preexec_fn=limits)
        # A mutant that waits burns no CPU time.
        killer = threading.Timer(60 * limit if limit else 600, child.kill)
        killer.start()
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = status
        killer.cancel()
        return status == 0, usage.ru_utime + usage.ru_stime

    def check(self, needed):
        """The unchanged programs pass; their time sets the limit of the mutants' runs."""
        commands = {name: subprocess.run(["ninja", "-C", TREE, "-t", "commands", "-s", f"bin/test_{name}"], capture_output=True,
                                         text=True, check=True).stdout for name, _ in needed}
        for name, command in commands.items():
            self.link[name] = shlex.split(command.strip().splitlines()[-1].removeprefix(": && ").removesuffix(" && :"))
        for name, test_filter in needed:
            good, seconds = self.passes(self.program(name, {}), name, test_filter)
            if not good:
                sys.exit(f"mutate.py: test_{name} --gtest_filter={test_filter} fails on the unchanged sources")
            self.cpu[name, test_filter] = int(10 * seconds) + 3

    def verdict(self, mutant):
        some, every = self.sources(mutant.file)
        verdict, killer = self.attempt(mutant, some)
        if verdict == "survived" and every != some:
            verdict, killer = self.attempt(mutant, every)
        return verdict, killer

    def attempt(self, mutant, sources):
        objects = self.objects(mutant, sources)
        if objects is None:
            return "not compiled", ""
        programs = {}
        for name, test_filter in stages(mutant.file):
            if name not in programs:
                programs[name] = self.program(name, objects)
                if programs[name] is None:
                    return "not compiled", ""
            if not self.passes(programs[name], name, test_filter)[0]:
                return "killed", f"test_{name} {test_filter}"
        return "survived", ""


# ---- The list, the report

class Accepted:
    """The list of known survivors. A block: the file; lines before and after, any number of them, in which "..."
    stands for any text; the reason, which begins with "equivalent:" or "tolerated:"."""

    def __init__(self, every):
        self.entries = []
        for block in re.split(r"\n\s*\n", ACCEPTED.read_text()):
            lines = [line.strip() for line in block.splitlines() if not line.startswith("#")]
            changes = [line for line in lines[1:] if line[:2] in ("- ", "+ ")]
            reason = " ".join(lines[1 + len(changes):])
            if lines and not reason.startswith(("equivalent: ", "tolerated: ")):
                sys.exit(f"{ACCEPTED.name}: a block without a reason: {lines}")
            for before, after in zip(changes[::2], changes[1::2], strict=True):
                self.entries.append((lines[0], *(re.escape(c[2:]).replace(r"\.\.\.", ".*") for c in (before, after)), reason))
        gone = [entry for entry in self.entries if not any(self.fits(entry, mutant) for mutant in every)]
        if gone:
            sys.exit("\n".join(f"{ACCEPTED.name}: no longer a mutant: {entry}" for entry in gone))

    @staticmethod
    def fits(entry, mutant):
        file, before, after, _ = entry
        return mutant.file == file and bool(re.fullmatch(before, mutant.before) and re.fullmatch(after, mutant.after))

    def reason(self, mutant):
        return next((entry[3] for entry in self.entries if self.fits(entry, mutant)), "")


def report(results, listed):
    counts = collections.defaultdict(collections.Counter)
    wrong = []
    for mutant, verdict, killer in sorted(results, key=lambda r: (r[0].file, r[0].line)):
        reason = listed.reason(mutant)
        if reason.startswith("equivalent") and verdict == "survived":
            verdict = "equivalent"
        elif reason.startswith("equivalent") and verdict == "killed":
            wrong.append(f"{mutant.file}:{mutant.line}: listed as equivalent, but killed by {killer}: {mutant.after}")
        counts[next(d for d in DIRECTORIES if mutant.file.startswith(d))][verdict] += 1
        if verdict == "survived":
            print(f"survived {mutant.id} {mutant.file}:{mutant.line}\n  - {mutant.before}\n  + {mutant.after}\n  {reason or 'not listed'}")
    total = sum(counts.values(), collections.Counter())
    print(f"\n{'':22}{'tried':>8}{'killed':>8}{'survived':>10}{'equivalent':>12}{'died':>8}")
    for name, count in [*sorted(counts.items()), ("all", total)]:
        tried = count.total() - count["not compiled"]
        share = 100 * count["killed"] / max(1, count["killed"] + count["survived"])
        print(f"{name:22}{tried:8}{count['killed']:8}{count['survived']:10}{count['equivalent']:12}{share:7.1f}%")
    print(f"{total['not compiled']} more did not compile")
    print("\n".join(wrong))
    return bool(wrong) or not total["killed"] or total["killed"] < 9 * total["survived"]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int)
    parser.add_argument("--seed", default="1")
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--files", default="")
    parser.add_argument("--log")
    parser.add_argument("ids", nargs="*")
    options = parser.parse_args()
    every = list(mutants())
    listed = Accepted(every)
    chosen = [m for m in every if re.search(options.files, m.file) and (not options.ids or m.id in options.ids)]
    if options.sample:
        chosen = sorted(chosen, key=lambda m: hashlib.sha1(f"{options.seed}|{m.id}".encode()).digest())[:options.sample]
    if options.list:
        print("\n".join(f"{m.id} {m.file}:{m.line}\n  - {m.before}\n  + {m.after}" for m in chosen))
        sys.exit(f"{len(chosen)} mutants")
    if not (options.sample or options.all or options.ids) or not chosen:
        parser.error("nothing to do: --sample, --all, or the identifiers of mutants")
    needed = list(dict.fromkeys(stage for m in chosen for stage in stages(m.file)))
    programs = sorted({f"bin/test_{name}" for name, _ in needed})
    if not (TREE / "build.ninja").exists():
        subprocess.run(["cmake", "--preset", "debug"], cwd=ROOT, check=True, stdout=subprocess.DEVNULL)
    if subprocess.run(["ninja", "-C", TREE, "--quiet", *programs], stdout=subprocess.DEVNULL).returncode:
        sys.exit("mutate.py: build/debug does not build")
    results = []
    by_file = collections.defaultdict(list)
    for mutant in chosen:
        by_file[mutant.file].append(mutant)
    with tempfile.TemporaryDirectory() as scratch, concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
        bench = Bench(scratch)
        bench.check(needed)

        def of_one_file(batch):
            for mutant in batch:
                results.append((mutant, *bench.verdict(mutant)))
                if options.log:
                    with open(options.log, "a", encoding="utf-8") as log:
                        log.write(json.dumps([*results[-1][0][:5], *results[-1][1:]]) + "\n")
                if len(results) % 100 == 0:
                    print(f"{len(results)} of {len(chosen)} tried", file=sys.stderr)
        batches = [batch[i:i + 10] for batch in by_file.values() for i in range(0, len(batch), 10)]
        batches.sort(key=lambda batch: batch[0].id)  # an interrupted run has a bit of everything
        list(pool.map(of_one_file, batches))
    sys.exit(report(results, listed))


if __name__ == "__main__":
    main()
