#!/usr/bin/env python3
"""Checks what compilers do not see; .ci/run starts it. Exit status 1 if something is wrong.

    tools/check_repository.py FILE...     the C++ sources and language tables, relative to the root

- a language table is JSON, and no number occurs twice;
- French texts have no-break spaces before a colon and similar signs, inside quotation marks, between a number and
  its unit, and between the groups of digits of a long number;
- the component includes only the standard library, the dynamic linker and its own rooms;
- no source includes a header of another room by a relative path instead of through the room's target;
- a source includes the header with its own name first, which shows that the header compiles alone;
- no header of the product defines an object with a constructor or destructor: each library and program that
  shares it would construct it, at different times, and compilers disagree on which one does;
- a comment for several declarations, between @{ and @}, ends before the next one begins;
- the sources below standalone/ use every key of the language tables and no other, and every text number in the
  component is in the tables;
- a widget gets no text in a way that lets the toolkit interpret it as markup or a placeholder.
It also prints how much of the code is test code.
"""
import json
import re
import sys
from pathlib import Path

COMPONENT = ("base/", "controls/", "host/", "framework/", "designs/", "pages/", "component/", "conformance/",
             "surfaces/common/")
TEST_CODE = ("tests/", "fuzz/")
NOT_PRODUCT = (*TEST_CODE, "benchmarks/", "examples/")
INCLUDE = re.compile(r'^\s*#\s*include\s*(<[^>]*>|"[^"]*")', re.MULTILINE)
STANDARD_OR_OWN = re.compile(r'<[a-z_0-9]+>|<dlfcn\.h>|<plovix/[a-z_0-9/]+\.h>|"[a-z_0-9]+\.h"')

# A variable outside functions, in source text without template arguments: at the beginning of a line, or inline.
VARIABLE = re.compile(r'^(?:(?:const|static|thread_local) |[ \t]*(?:static )?inline )[^(){};=]*[={;]', re.MULTILINE)
MADE_BY_COMPILER = re.compile(r'\b(?:constexpr|constinit|namespace)\b(?!.*\bstd::(?:string|vector|map|set|function)\b)')


# What surrounds a plain space, or no space, where French has a no-break space.
FRENCH_UNITS = ("jours?|semaines?|mois|heures?|minutes?|secondes?|Mo|enregistrements?|niveaux|conditions?|"
                "caractères?|chiffres?|janvier|février|mars|avril|mai|juin|juillet|août|septembre|octobre|"
                "novembre|décembre")
FRENCH_BREAK = re.compile(r"[\w}»)\]… ](?=[;?!»])|« |«(?=\S)(?!\u00a0)| :|[^\W\d]:(?=\s|$)|"
                          rf"[\d}}] (?=(?:{FRENCH_UNITS})\b)|\d \d{{3}}\b|\d{{5}}")


def french_problems(table):
    for section in ("pages", "host"):
        for key, text in table[section].items():
            if found := FRENCH_BREAK.search(text):
                place = text[max(found.start() - 10, 0):found.end() + 10]
                yield f'{key}: a no-break space is missing in "{place}"'

# Calls that guess whether a text has markup, or that expand placeholders; where they are allowed; what to use instead.
SHOWS_TEXT = ("standalone/", "surfaces/", "examples/")
GUESSES = [
    (re.compile(pattern), allowed, instead)
    for pattern, allowed, instead in (
        (r"new QLabel\b|\bQLabel\(", ("surfaces/qt/plain_text.cpp",), "qt::NewLabel"),
        (r"->addRow\((?:Text|ToQt|Caption|QString|tr|u?\")", (), "a label of qt::NewLabel"),
        (r"(?:setToolTip|QToolTip::showText)\((?!(?:qt::)?ToolTip\()", (), "qt::ToolTip"),
        (r"Qt::ToolTipRole\b(?!(?::\s*return|,)\s*(?:qt::)?ToolTip\()", (), "a case that returns qt::ToolTip"),
        (r"setStatusTip|setWhatsThis|Qt::(?:StatusTip|WhatsThis)Role", (), "qt::ToolTip"),
        (r"QMessageBox::(?:about|critical|information|question|warning)\b|setDetailedText", (), "NewBox of message_boxes.cpp"),
        (r"\bQMessageBox>?\(|\bQMessageBox \w+[({;]|setInformativeText",
         ("standalone/widgets/message_boxes.cpp", "examples/minimal_host/main.cpp"), "NewBox of message_boxes.cpp"),
        (r"\bQ(?:ErrorMessage|InputDialog|ProgressDialog|SplashScreen)\b", ("examples/minimal_host/main.cpp",),
         "a dialog with labels of qt::NewLabel"),
        (r"\bsetWindowTitle\(", ("surfaces/qt/plain_text.cpp", "examples/minimal_host/main.cpp"), "qt::SetTitle"),
        (r"setHtml|insertHtml|appendHtml|setMarkdown", ("standalone/app/summary_panel.cpp",), "setPlainText"),
        (r"Qt::(?:RichText|AutoText|MarkdownText)\b", (), "Qt::PlainText"),
    )
]


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


def guesses_in(name, text):
    code = re.sub(r"//[^\n]*", "", text)
    for pattern, allowed, instead in GUESSES:
        for found in pattern.finditer(code) if name not in allowed else ():
            place = f"{name}:{code.count(chr(10), 0, found.start()) + 1}"
            yield f"{place}: {found.group(0)} lets the toolkit guess what the text is; use {instead}"


def problems_in(name, text):
    if name.endswith(".json"):
        try:
            table = json.loads(text, object_pairs_hook=each_once)
        except ValueError as error:
            yield f"{name}: {error}"
            return
        if table.get("language") == "fr":
            yield from (f"{name}: {problem}" for problem in french_problems(table))
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
    if name.startswith(SHOWS_TEXT):
        yield from guesses_in(name, text)
    for found in INCLUDE.finditer(text):
        place = f"{name}:{text.count(chr(10), 0, found.start(1)) + 1}"
        included = found.group(1)
        if "../" in included:
            yield f"{place}: {included} leaves its room; include it as <plovix/ROOM/...> and link the room"
        elif name.startswith(COMPONENT) and not STANDARD_OR_OWN.fullmatch(included):
            yield f"{place}: {included} is neither the standard library's nor a room's"


def language_problems(texts):
    # The samples have tags whose names look like keys.
    standalone = "".join(text for name, text in texts.items()
                         if name.startswith("standalone/") and not name.endswith("/editor_samples.cpp"))
    component = "".join(text for name, text in texts.items() if name.startswith(("framework/", "designs/", "pages/")))
    numbers = set(re.findall(r'\bk\w+Text = (\d+);|"[Ll]ng=(\d+);?"', component))
    for name in (name for name in texts if name.startswith("languages/")):
        table = json.loads(texts[name])
        begins = "|".join({key.split(".")[0] for key in table["host"]})
        used = set(re.findall(rf'"((?:{begins})\.(?!h")[a-z][A-Za-z.]*)"', standalone))
        # A text that ends with a point is the beginning of keys that are put together.
        for beginning in [text for text in used if text.endswith(".")]:
            if keys := {key for key in table["host"] if key.startswith(beginning)}:
                used = used - {beginning} | keys
        yield from (f"{name}: {key} is missing, or nothing uses it" for key in sorted(used ^ set(table["host"])))
        missing = {first or second for first, second in numbers} - set(table["pages"])
        yield from (f"{name}: the text {number} is missing" for number in sorted(missing))


def main(names):
    texts = {name: Path(name).read_text(encoding="utf-8") for name in names}
    problems = [problem for name, text in texts.items() for problem in problems_in(name, text)]
    problems += [] if problems else language_problems(texts)
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
