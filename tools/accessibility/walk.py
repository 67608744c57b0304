#!/usr/bin/python3
"""Walks through every window of the program as a blind user does: over the accessibility bus.

    desktop.py walk.py PROGRAM [LANGUAGE]

Starts the program with test tasks and sample data, opens each window and checks what assistive technology
gets: every usable element has a role and a unique name, a new page announces its heading, and the keyboard
reaches every element and can leave it again. Prints a row for each window, then the faults; exit status 1 if
there are any.
"""
import json
import os
import re
import sqlite3
import subprocess
import sys
import time
from collections import Counter
from pathlib import Path

from bus import GLib, Lost, Program, State, ancestors

HERE = Path(__file__).resolve().parent
USABLE = {"check box", "combo box", "link", "list", "list item", "push button", "radio button", "spin button", "table",
          "table cell", "text", "tree"}
COMPOSITE = {"combo box", "list", "spin button", "table", "text", "tree"}  # elements inside these are not separate stops
SPOKEN = {"alert", "dialog", "frame", "panel"}  # a screen reader says their names when the focus enters them
WAYS = {"Tab": ["Tab"], "Shift+Tab": ["Shift_L", "Tab"]}
MOST_STOPS = 60  # of any window
PAGES = re.findall(r'"Plovix\.\w+"', (HERE.parents[1] / "framework/page_identifiers.h").read_text())


# A focusable label without MULTI_LINE takes the focus only from the mouse, so that its text can be selected.
def is_usable(element):
    if element.role == "label":
        return element.states.contains(State.FOCUSABLE) and element.states.contains(State.MULTI_LINE)
    return element.role in USABLE or element.states.contains(State.FOCUSABLE) or element.actions


def in_composite(element):
    return any(parent.role in COMPOSITE for parent in element.parents)


# Qt reports the current entry of a combo box as its name.
def name_of(element):
    return " ".join(element.labels) if element.role == "combo box" else element.name


# The stop that an element is, or is in.
def stop_of(access, stops):
    chain = [access, *ancestors(access)] if access else []
    return next((stop for stop in stops if stop.access in chain), None)


class Walk:
    def __init__(self, program, texts, home):
        self.program, self.texts, self.home = program, texts, home
        self.window, self.findings = "", []

    def wrong(self, problem, element=None):
        place = [self.window]
        if element:
            place += [parent.name for parent in element.parents[1:] if parent.name]
            place.append(f'{element.role} "{element.name}"')
        self.findings.append(f"{' > '.join(place)}: {problem}")

    # Looks at the active window.
    def visit(self, window):
        self.window, before, started = window, len(self.findings), time.monotonic()
        elements = self.program.elements()
        if elements[0].role not in SPOKEN or not elements[0].name:
            self.wrong("is not announced as a window with a title", elements[0])
        usable = [element for element in elements[1:] if is_usable(element)]
        stops = [element for element in usable if element.states.contains(State.ENABLED) and not in_composite(element)]
        self.check_names(usable)
        self.check_keyboard(stops)
        print(f"{window:50} {len(elements):8} {len(usable):6} {len(stops):5} {len(self.findings) - before:8}"
              f" {time.monotonic() - started:7.1f}", flush=True)

    def check_names(self, usable):
        for element in usable:
            if element.role not in USABLE and element.role != "label":
                self.wrong("can be used, but nobody is told how", element)
            if not name_of(element) and element.role != "table cell":
                self.wrong("has no name", element)
            if element.role == "radio button" and not any(p.role == "panel" and p.name for p in element.parents):
                self.wrong("is an option without a named group", element)
        same = Counter((element.role, name_of(element)) for element in usable if not in_composite(element))
        for element in usable:
            if same.pop((element.role, name_of(element)), 0) > 1:
                self.wrong("is not the only one of this name", element)

    def check_keyboard(self, stops):
        if stop_of(self.program.focus, stops) is None:
            self.wrong("nothing has the focus")
        if sum(stop.states.contains(State.FOCUSABLE) for stop in stops) == 1:
            return
        groups = {}  # the options of a group are one stop
        for stop in stops:
            groups.setdefault(stop.parents[-1].access if stop.role == "radio button" else stop.access, []).append(stop)
        rounds = {way: self.go_round(stops, way) for way in WAYS}
        for way, reached in rounds.items():
            for group in groups.values():
                if not any(stop in reached for stop in group):
                    self.wrong(f"is not reached by {way}", group[0])
        if rounds["Tab"][1:] != rounds["Shift+Tab"][:0:-1]:
            self.wrong("Shift+Tab does not go back the way of Tab")
        for group in groups.values():
            if len(group) > 1:
                self.check_options(group)
            elif group[0].role in ("list", "table") and group[0].access.get_n_rows() > 1:
                self.check_rows(group[0])

    # Goes on until a stop is reached again; returns the stops on the way.
    def go_round(self, stops, way):
        reached = [stop_of(self.program.focus, stops)]
        while True:
            stop = stop_of(self.program.move(*WAYS[way]), stops)
            if stop is None:
                self.wrong(f"{way} does not go from it to another element", reached[-1])
            elif stop in reached[1:]:
                self.wrong(f"{way} comes back to it before it has been everywhere", stop)
            if stop is None or stop in reached:
                return reached
            reached.append(stop)

    # The arrow keys inside one stop: they move from option to option; some groups wrap around and some end. The way
    # back shows the option where it began, if that is the first.
    def check_options(self, group):
        chosen = next((stop for stop in group if stop.states.contains(State.CHECKED)), group[0])
        self.enter(chosen)
        reached = [stop_of(self.program.move(key), group) for key in ("Up", "Down", "Up") for _ in group]
        for stop in group:
            if stop not in reached:
                self.wrong("is not reached by the arrow keys", stop)
        self.enter(chosen, "Up")

    def check_rows(self, stop):
        self.enter(stop)
        rows = [self.program.move(key) for key in ("Down", "Up")]
        if not any(row and row != stop.access and row.get_name() for row in rows):
            self.wrong("the arrow keys do not say the row that they go to", stop)

    def enter(self, stop, key="Tab"):
        for _ in range(MOST_STOPS):
            if stop_of(self.program.focus, [stop]) or not self.program.move(key):
                return

    # Presses the element with that name, as assistive technology does.
    def press(self, name, role="push button", action="Press"):
        for element in self.program.elements():
            if (element.role, name_of(element)) == (role, name) and action in element.actions:
                try:
                    return element.access.do_action(element.actions.index(action))
                except GLib.Error:
                    return self.wrong(f"{action} is answered only when what it opens is closed", element)
        raise Lost(f'no {role} "{name}" can be pressed')

    # Opens a window, checks it, does the given work in it, and closes it.
    def dialog(self, window, act, inside=lambda: None, leave=None):
        opener = self.window
        self.program.change_window(act, window)
        self.visit(window)
        inside()
        self.program.change_window(leave or self.keys("Escape"), "what was before " + window)
        self.window = opener

    def appear(self, name):
        self.program.wait(lambda: name in [element.name for element in self.program.elements()], name)

    def heading(self):
        return next((element.name for element in self.program.elements() if element.role == "heading"), "")

    # Goes to another page of the wizard, whose heading must be announced, and returns the heading.
    def turn(self, act, look=True):
        before, known = self.heading(), {self.program.focus, *ancestors(self.program.focus)}
        del self.program.focused[:-1]
        act()
        heading = self.program.wait(lambda: self.heading() not in ("", before) and self.heading(), "another page")
        self.program.catch_up()
        spoken = []
        for access in self.program.focused[1:]:
            entered = {access, *ancestors(access)}
            spoken += [around.get_name() for around in entered - known if around.get_role_name() in SPOKEN]
            known = entered
        if look:
            self.visit(heading)
        if heading not in spoken:
            self.wrong(f"the heading is not said when the page comes; said is {spoken}")
        return heading

    def keys(self, *names):
        return lambda: self.program.key(*names)

    def text(self, key):
        return (self.texts["host"].get(key) or self.texts["pages"][key]).replace("&", "")

    def button(self, key):
        return lambda: self.press(self.text(key))

    def discard(self):
        self.dialog("discard question", self.keys("Escape"), leave=self.button("wizard.discardYes"))

    # The tour of the windows. The first task has everything that pages can show, the second has language tags.
    def everywhere(self):
        self.visit("task list")
        tables = [f"CREATE TABLE t{at} (id INTEGER PRIMARY KEY);" for at in range(600)]  # for a long list
        self.run_sql("sample", f"BEGIN; {''.join(tables)} COMMIT")
        self.exchange()
        self.dialog("users", self.button("list.users"), self.new_user, self.discard)
        self.edit_first()
        self.runs()
        self.program.move("Down")
        self.edit_second()
        self.new_task()
        self.dialog("delete question", self.keys("Delete"))

    def runs(self):
        self.dialog("records to choose from", self.button("list.run"))
        self.dialog("dry run", self.button("list.dryRun"))
        self.dialog("pause", self.button("list.pause"))

    def exchange(self):
        path = self.home / "task.json"
        self.dialog("export", self.button("list.export"), leave=lambda: self.choose(path))
        self.program.wait(path.exists, "the file")
        path.write_text(path.read_text(encoding="utf-8").replace("orders", "gone"), encoding="utf-8")
        self.dialog("import", self.button("list.import"),
                    leave=lambda: self.dialog("import report", lambda: self.choose(path)))

    def choose(self, path):
        self.enter(next(element for element in self.program.elements() if element.role == "text"))
        self.program.focus.set_text_contents(str(path))
        self.program.key("Return")

    def new_user(self):
        self.button("user.add")()
        self.appear(self.text("user.new"))
        self.visit("users: a new one")

    def edit_first(self):
        self.program.change_window(self.keys("Return"), "wizard")
        heading = self.heading()
        self.visit(heading)
        seen = {heading}
        while heading != self.text("3"):
            heading = self.turn(self.keys("Control_L", "Return"))
            seen.add(heading)
            if heading == self.text("19"):
                self.dialog("categories", lambda: self.press(self.text("22"), "link"))
                self.dialog("permissions", lambda: self.press(self.text("25"), "link"))
                self.dialog("long list", lambda: self.press(self.text("23"), "combo box", "ShowMenu"), self.go_down)
            if heading == self.text("59"):
                self.dialog("query builder", self.button("60"), leave=self.discard)
            for _ in range(3 if heading == self.text("71") else 0):  # one page for each kind of pattern
                seen.add(self.turn(self.keys("Control_L", "Return")))
                self.turn(self.button("button.back"), look=False)
                self.program.move("Down")
        if len(seen) != len(PAGES):
            self.wrong(f"the way through the wizard has {len(seen)} pages, not {len(PAGES)}")
        self.dialog("action: another", self.button("action.list.edit"))
        self.dialog("action: a program", self.button("action.list.add"), self.other_kinds, self.discard)
        self.discard()

    # The focus stays in the search field.
    def go_down(self):
        row = self.program.move("Down")
        if not row or row.get_role_name() != "list item" or not row.get_name():
            self.wrong("the arrow keys do not say the row that they go to")

    def other_kinds(self):
        for kind, field in (("a statement", "action.runSql.statement"), ("a log line", "action.writeLog.file")):
            self.program.key("Down")
            self.appear(self.text(field))
            self.visit("action: " + kind)

    def edit_second(self):
        self.program.change_window(self.keys("Return"), "wizard")
        self.turn(self.keys("Control_L", "Return"))
        self.dialog("tags", lambda: self.press(self.text("20") + " ..."),
                    lambda: self.dialog("tag texts", self.button("tag.new")))
        self.program.change_window(self.keys("Escape"), "task list")

    # Its second page fails, because a table is missing for a moment, and cannot be left without a name.
    def new_task(self):
        self.program.change_window(self.button("list.new"), "wizard")
        self.run_sql("tasks", "ALTER TABLE VeloAutoTasks RENAME TO Away")
        self.dialog("error report", self.keys("Control_L", "Return"))
        self.run_sql("tasks", "ALTER TABLE Away RENAME TO VeloAutoTasks")
        self.dialog("message", self.keys("Control_L", "Return"))
        self.program.key("x")
        self.discard()

    def run_sql(self, name, statements):
        database = sqlite3.connect(next(self.home.rglob(name + ".sqlite")))
        database.executescript(statements)
        database.close()


def main(program, language="en"):
    home, program = Path(os.environ["HOME"]), str(Path(program).resolve())
    database = ["--database", str(home / "tasks.sqlite")]
    subprocess.run([program, "script", str(HERE / "tasks.txt"), *database], check=True, stdout=subprocess.DEVNULL)
    texts = json.loads((HERE.parents[1] / "languages" / f"{language}.json").read_text(encoding="utf-8"))
    walk = Walk(Program([program, "--no-manager", "--language", language, *database], home), texts, home)
    print(f"{'window':50} {'elements':>8} {'usable':>6} {'stops':>5} {'findings':>8} {'seconds':>7}")
    try:
        walk.everywhere()
    except Lost as problem:
        walk.wrong(str(problem))
    finally:
        walk.program.process.kill()
        print(*walk.findings, f"{len(walk.findings)} findings", sep="\n")
    return 1 if walk.findings else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
