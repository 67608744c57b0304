#!/usr/bin/env python3
"""Checks what no compiler sees; .ci/run starts it. Exit status 1 when something is wrong.

    tools/check_repository.py FILE...     the C++ sources and language tables, relative to the root

- a language table is JSON, and no number is given twice;
- the component includes the standard library, the dynamic linker and its own rooms, nothing else that is
  installed;
- no source reaches another room by a path of its own instead of through the room's target;
- a source includes the header of its name first, which shows that the header compiles alone;
- no header of the product defines an object that a constructor makes or a destructor ends: each library and
  program that shares it would make it, at a moment of its own, and compilers disagree on who does;
- a comment that serves several declarations, between @{ and @}, ends before the next one begins.
It also prints how much of the code is test code.
"""
import json
import re
import sys
from pathlib import Path

COMPONENT = ("controls/", "host/", "framework/", "designs/", "pages/", "component/", "conformance/")
TEST_CODE = ("tests/", "fuzz/")
NOT_PRODUCT = (*TEST_CODE, "benchmarks/", "examples/")
INCLUDE = re.compile(r'^\s*#\s*include\s*(<[^>]*>|"[^"]*")', re.MULTILINE)
STANDARD_OR_OWN = re.compile(r'<[a-z_0-9]+>|<dlfcn\.h>|<plovix/[a-z_0-9/]+\.h>|"[a-z_0-9]+\.h"')

# A variable outside functions, in a text without template arguments: at the line's beginning, or inline.
VARIABLE = re.compile(r'^(?:(?:const|static|thread_local) |[ \t]*(?:static )?inline )[^(){};=]*[={;]', re.MULTILINE)
MADE_BY_COMPILER = re.compile(r'\b(?:constexpr|constinit|namespace)\b(?!.*\bstd::(?:string|vector|map|set|function)\b)')


def each_once(pairs):
    keys = [key for key, _ in pairs]
    twice = sorted({key for key in keys if keys.count(key) > 1})
    if twice:
        raise ValueError("given twice: " + ", ".join(twice))
    return dict(pairs)


def objects_in(text):
    plain, before = re.sub(r"//.*", "", text), None
    while plain != before:
        before, plain = plain, re.sub(r"<[^<>;{}]*>", "", plain)
    return [found for found in VARIABLE.findall(plain) if not MADE_BY_COMPILER.search(found)]


def problems_in(name, text):
    if name.endswith(".json"):
        try:
            json.loads(text, object_pairs_hook=each_once)
        except ValueError as error:
            yield f"{name}: {error}"
        return
    header = Path(name).with_suffix(".h")
    first = INCLUDE.search(text)
    if name.endswith(".cpp") and header.exists() and (not first or first.group(1) != f'"{header.name}"'):
        yield f'{name}: its first include has to be "{header.name}"'
    if name.endswith(".h") and not name.startswith(NOT_PRODUCT):
        yield from (f"{name}: an object that a constructor makes: {found}" for found in objects_in(text))
    groups = "".join(re.findall(r"/// @([{}])", text))
    if groups.replace("{}", ""):
        yield f"{name}: @{{ and @}} do not take turns"
    for found in INCLUDE.finditer(text):
        place = f"{name}:{text.count(chr(10), 0, found.start(1)) + 1}"
        included = found.group(1)
        if "../" in included:
            yield f"{place}: {included} leaves its room; include it as <plovix/ROOM/...> and link the room"
        elif name.startswith(COMPONENT) and not STANDARD_OR_OWN.fullmatch(included):
            yield f"{place}: {included} is neither the standard library's nor a room's"


def main(names):
    texts = {name: Path(name).read_text(encoding="utf-8") for name in names}
    problems = [problem for name, text in texts.items() for problem in problems_in(name, text)]
    for problem in problems:
        print(problem, file=sys.stderr)
    lines = {name: text.count("\n") for name, text in texts.items() if name.endswith((".h", ".cpp"))}
    tests = sum(count for name, count in lines.items() if name.startswith(TEST_CODE))
    product = sum(count for name, count in lines.items() if not name.startswith(NOT_PRODUCT))
    share = 100 * tests / product if product else 0
    print(f"{product} lines of product code, {tests} of test code: {share:.0f} %")
    return 1 if problems or not product else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
