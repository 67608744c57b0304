#!/usr/bin/python3
"""Runs a command on a separate desktop: a display, an accessibility bus, an empty home.

    desktop.py COMMAND [ARGUMENT...]

Returns the command's exit status. Nothing listens on the network, and all processes that the command and the
services of its desktop leave running are ended with it.
"""
import ctypes
import os
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

ADOPT_ORPHANS = 36  # PR_SET_CHILD_SUBREAPER: processes that the bus started become ours when the bus ends


def end_children():
    while pids := Path(f"/proc/self/task/{os.getpid()}/children").read_text().split():
        for pid in map(int, pids):
            os.kill(pid, signal.SIGKILL)
            os.waitpid(pid, 0)


def start_display():
    reading, writing = os.pipe()
    subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
                     pass_fds=[writing], stderr=subprocess.DEVNULL)
    os.close(writing)
    with os.fdopen(reading) as pipe:
        number = pipe.readline().strip()  # arrives when the display can be used
    return ":" + number if number else sys.exit("Xvfb does not start")


def main(command):
    ctypes.CDLL(None).prctl(ADOPT_ORPHANS, 1, 0, 0, 0)
    for ending in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(ending, lambda number, _: sys.exit(128 + number))
    with tempfile.TemporaryDirectory() as home:
        try:
            environment = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "DISPLAY": start_display(), "HOME": home,
                           "XDG_RUNTIME_DIR": home, "QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                           "PYTHONDONTWRITEBYTECODE": "1"}
            told = os.dup(1)  # the bus services write to standard output, too
            session = ["dbus-run-session", "--", "sh", "-c", f'exec "$@" >&{told} 2>&1', "sh", *command]
            return subprocess.call(session, env=environment, pass_fds=[told], stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        finally:
            end_children()


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
