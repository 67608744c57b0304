"""A program as assistive technology and the keyboard know it. Used by walk.py, on a desktop.py."""
import subprocess
import time
from collections import namedtuple

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402
from Xlib import XK, X  # noqa: E402
from Xlib.display import Display  # noqa: E402
from Xlib.error import XError  # noqa: E402
from Xlib.ext import xtest  # noqa: E402

PATIENCE = 10  # seconds for the program to answer, even on a busy machine
MANY_ANSWERS = 150  # of the program; a key without effect by then has none
MANY_CHILDREN = 40  # further children, cells of a table, are ignored
State = Atspi.StateType
Element = namedtuple("Element", "access role name labels states actions parents")


class Lost(Exception):
    """The walk cannot go on: something that it needs is not there."""


def children(access):
    return filter(None, (access.get_child_at_index(at) for at in range(min(access.get_child_count(), MANY_CHILDREN))))


def ancestors(access):
    try:
        while access := access.get_parent():
            yield access
    except GLib.Error:  # it is gone
        return


# Qt reports the box around an element as its label, too; only real labels count.
def describe(access, parents):
    labelling = [relation.get_target(at) for relation in access.get_relation_set()
                 if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY
                 for at in range(relation.get_n_targets())]
    labels = [label.get_name() for label in labelling if label.get_role_name() in ("label", "link")]
    actions = [access.get_action_name(at) for at in range(access.get_n_actions())]
    return Element(access, access.get_role_name(), access.get_name(), labels, access.get_state_set(), actions, parents)


class Program:
    def __init__(self, command, home):
        self.display = Display()
        self.display.set_error_handler(lambda *_: None)  # a window that went away meanwhile
        self.focused = []  # what got the focus since the last key; the last is where it is
        self.listener = Atspi.EventListener.new(lambda event: event.detail1 and self.focused.append(event.source))
        self.listener.register("object:state-changed:focused")
        self.process = subprocess.Popen(command, cwd=home)
        self.access = self.wait(self.find, "the program on the accessibility bus")
        self.change_window(lambda: None, "the first window")

    def find(self):
        found = [access for access in children(Atspi.get_desktop(0)) if access.get_process_id() == self.process.pid]
        return found[0] if found else None

    def wait(self, wanted, what):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end and self.process.poll() is None:
            try:
                if found := wanted():
                    return found
            except (GLib.Error, XError):  # what is looked at is being taken away
                pass
            if not GLib.MainContext.default().iteration(False):
                time.sleep(0.002)
        raise Lost(f"waited in vain for {what}" if self.process.poll() is None else "the program has ended")

    # What the program has said before it answers is heard afterwards.
    def catch_up(self):
        self.access.get_child_count()
        while GLib.MainContext.default().iteration(False):
            pass

    @property
    def focus(self):
        return self.focused[-1] if self.focused else None

    def key(self, *names):
        codes = [self.display.keysym_to_keycode(XK.string_to_keysym(name)) for name in names]
        for code in codes:
            xtest.fake_input(self.display, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.display, X.KeyRelease, code)
        self.display.sync()

    # The element to which a key moves the focus; None if the focus stays.
    def move(self, *names):
        del self.focused[:-1]
        self.key(*names)
        for _ in range(MANY_ANSWERS):
            self.catch_up()
            if len(self.focused) > 1:
                return self.focus
            time.sleep(0.003)
        return None

    # The window that has the keyboard.
    def active(self):
        around = ancestors(self.focus) if self.focus else ()
        return next((access for access in around if access.get_state_set().contains(State.ACTIVE)), None)

    # Without a window manager no window gets the keyboard by itself: gives it to the topmost.
    def give_keyboard(self):
        for window in reversed(self.display.screen().root.query_tree().children):
            attributes = window.get_attributes()
            if attributes.map_state == X.IsViewable and not attributes.override_redirect:
                window.set_input_focus(X.RevertToParent, X.CurrentTime)
                return self.display.sync()

    # Does something that opens a window or closes the current one, and waits for the keyboard to follow.
    def change_window(self, act, what):
        before = self.active()
        act()
        self.wait(lambda: self.give_keyboard() or self.active() not in (None, before), what)
        self.catch_up()

    # What the active window shows, in tree order, without other windows on top of it.
    def elements(self):
        return self.wait(lambda: (window := self.active()) and list(self.showing(window, [])), "the active window")

    def showing(self, access, parents):
        element = describe(access, parents)
        if element.states.contains(State.SHOWING):
            yield element
            for child in children(access):
                if child.get_role_name() not in ("alert", "dialog"):
                    yield from self.showing(child, [*parents, element])
