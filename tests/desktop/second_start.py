"""Starts the desktop program again while it runs, on an X server and a session bus of its own.

Usage: second_start.py PROGRAM SAMPLES. Waits for what is to happen, never for a time. Without dbus-daemon or gdbus there is nothing to
test, and it says so.
"""

import contextlib
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import tempfile
import time

from end_to_end import DEADLINE, MAIN_WINDOW, Screen, started, wait_for, x_server

NAME = "org.quillbright.quillbright"
BUS = """<busconfig>
  <type>session</type>
  <listen>unix:dir={folder}</listen>
  <servicedir>{folder}</servicedir>
  <policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
"""
SERVICE = "[D-BUS Service]\nName={name}\nExec={program}\n"


@contextlib.contextmanager
def session_bus(folder, program):
    """A bus that can start the program; yields its address."""
    (folder / "bus.conf").write_text(BUS.format(folder=folder))
    (folder / f"{NAME}.service").write_text(SERVICE.format(name=NAME, program=program))
    command = ("dbus-daemon", f"--config-file={folder / 'bus.conf'}", "--nofork", "--print-address")
    with started(*command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True) as daemon:
        yield daemon.stdout.readline().strip()


class Desk:
    """The program, its screen and a sample to decode in a folder."""

    def __init__(self, program, screen, samples, folder):
        self.program, self.screen, self.samples, self.folder = program, screen, samples, folder

    def mail(self, name):
        folder = self.folder / name
        folder.mkdir()
        return pathlib.Path(shutil.copy(self.samples / "harbour.eml", folder / f"{name} 100%.eml"))

    def start(self, *arguments, **options):
        return started(self.program, *arguments, env=self.screen.environment, **options)

    def main_windows(self):
        return self.screen.xdotool("search", "--onlyvisible", "--name", MAIN_WINDOW)

    def decode(self, mail):
        """Decodes by the first option: this works only in a window that offers the mail."""
        picture = mail.parent / "harbour.png"
        assert not picture.exists()
        self.screen.window(MAIN_WINDOW)
        self.screen.key("1")
        wait_for(f"the attachments of {mail.name}", picture.exists)

    def call(self, method, *arguments):
        command = ("gdbus", "call", "--session", "--timeout", str(DEADLINE), "--dest", NAME, "--object-path", "/" + NAME.replace(".", "/"))
        method = f"org.freedesktop.Application.{method}"
        return subprocess.run([*command, "--method", method, *arguments], env=self.screen.environment, capture_output=True, text=True)

    def is_there(self):
        command = ("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus", "--method",
                   "org.freedesktop.DBus.NameHasOwner", NAME)
        return "true" in subprocess.run(command, env=self.screen.environment, capture_output=True, text=True).stdout

    def end(self, process):
        process.terminate()
        process.wait()
        wait_for("the end of the window", lambda: not self.main_windows())


def hand_a_file_to_the_free_window(desk):
    mail = desk.mail("free")
    with desk.start() as first:
        desk.screen.window(MAIN_WINDOW)
        wait_for("the name on the bus", desk.is_there)
        with desk.start(mail.name, cwd=mail.parent) as second:  # relative to another directory than the first one's
            assert second.wait(DEADLINE) == 0
        desk.decode(mail)
        assert len(desk.main_windows()) == 1
        desk.end(first)


def leave_a_window_with_results_alone(desk):
    mail, other = desk.mail("shown"), desk.mail("other")
    with desk.start(str(mail)) as first:
        desk.decode(mail)
        with desk.start(str(other)) as second:
            wait_for("a second window", lambda: len(desk.main_windows()) == 2)
            assert second.poll() is None
        wait_for("the end of the second window", lambda: len(desk.main_windows()) == 1)
        desk.end(first)


def open_a_window_of_its_own(desk):
    mail = desk.mail("own")
    with desk.start() as first:
        desk.screen.window(MAIN_WINDOW)
        wait_for("the name on the bus", desk.is_there)
        with desk.start("/nw", str(mail)):
            wait_for("a second window", lambda: len(desk.main_windows()) == 2)
        desk.end(first)


def open_several_files(desk):
    mails = [desk.mail("one"), desk.mail("two"), desk.mail("three")]
    with desk.start(*map(str, mails)) as first:
        wait_for("a window for each file", lambda: len(desk.main_windows()) == 3)
        for _ in mails:
            window = desk.screen.window(MAIN_WINDOW)
            desk.screen.key("1")
            desk.screen.key_until_gone("ctrl+q", window)
        first.wait(DEADLINE)
    for mail in mails:
        assert (mail.parent / "harbour.png").exists(), mail


def start_by_the_bus(desk):
    mail = desk.mail("activated")
    opened = desk.call("Open", f"['{mail.as_uri()}']", "{}")
    assert opened.returncode == 0, opened.stderr
    desk.decode(mail)
    refused = desk.call("Open", "['https://example.org/a.eml']", "{}")
    assert "InvalidArgs" in refused.stderr, refused
    refused = desk.call("ActivateAction", "no-such-action", "[]", "{}")
    assert "InvalidArgs" in refused.stderr, refused
    desk.screen.key("ctrl+q")
    wait_for("the end of the program", lambda: not desk.is_there())


def follow_the_actions_of_the_desktop_entry(desk):
    for action, window in (("decode", "^Select a file to open, view or decode"), ("new-archive", MAIN_WINDOW)):
        done = desk.call("ActivateAction", action, "[]", "{}")
        assert done.returncode == 0, done.stderr
        desk.screen.window(window)
        if window != MAIN_WINDOW:
            desk.screen.key("Escape")
        desk.screen.window(MAIN_WINDOW)
        desk.screen.key("ctrl+q")
        wait_for("the end of the program", lambda: not desk.is_there())


def start_without_a_bus_that_answers(desk):
    mail = desk.mail("mute")
    with socket.socket(socket.AF_UNIX) as mute:
        mute.bind(str(desk.folder / "mute.bus"))
        mute.listen()
        before = desk.screen.environment
        for address in (f"unix:path={desk.folder / 'gone.bus'}", f"unix:path={desk.folder / 'mute.bus'}"):
            desk.screen.environment = before | {"DBUS_SESSION_BUS_ADDRESS": address}
            began = time.monotonic()
            with desk.start(str(mail)) as first:
                desk.screen.window(MAIN_WINDOW)
                print(f"  {address.rpartition('/')[2]}: the window came after {time.monotonic() - began:.1f} s")
                desk.end(first)
        desk.screen.environment = before


RUNS = (
    (hand_a_file_to_the_free_window, "a file went to the window that waited for one"),
    (leave_a_window_with_results_alone, "a window with results was left alone"),
    (open_a_window_of_its_own, "a window of its own was opened"),
    (open_several_files, "each of several files got a window"),
    (start_by_the_bus, "the bus started the program with a file"),
    (follow_the_actions_of_the_desktop_entry, "the actions of the desktop entry were followed"),
    (start_without_a_bus_that_answers, "without a bus the program started as usual"),
)


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2])
    missing = [name for name in ("dbus-daemon", "gdbus") if not shutil.which(name)]
    if missing:
        print(f"not tested: {' and '.join(missing)} missing")
        return
    with tempfile.TemporaryDirectory() as root, x_server() as environment:
        for run, said in RUNS:
            folder = pathlib.Path(root, run.__name__)
            folder.mkdir(mode=0o700)
            environment |= {"HOME": str(folder), "XDG_DATA_HOME": str(folder), "XDG_RUNTIME_DIR": str(folder)}
            # Services run in the environment of the bus.
            os.environ.update(environment)
            with session_bus(folder, program) as address:
                run(Desk(program, Screen(environment | {"DBUS_SESSION_BUS_ADDRESS": address}), samples, folder))
            print(said, flush=True)


if __name__ == "__main__":
    main()
