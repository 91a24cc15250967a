"""Drives the archive window on an X server of its own, as a user would: by the mouse and the keyboard.

Usage: archive_end_to_end.py PROGRAM [RUN ...]. Waits for what is to happen, never for a time.
"""

import contextlib
import os
import pathlib
import random
import signal
import subprocess
import sys
import tempfile
import time
import zipfile

from end_to_end import Screen, started, wait_for, x_server


def write_archive(path, members, method=zipfile.ZIP_DEFLATED):
    with zipfile.ZipFile(path, "w", method) as file:
        for name, content in members.items():
            file.writestr(name, content)


def contents(archive):
    with zipfile.ZipFile(archive) as file:
        assert file.testzip() is None, "a member is damaged"
        return {name: file.read(name).decode() for name in file.namelist()}


LETTERS = {"first.txt": "Dear Ann\n" * 100, "d/second.txt": "Yours, Bob\n" * 100, "third.txt": "3\n"}


class ArchiveProgram:
    """The program with an archive that it has opened beside it."""

    def __init__(self, program, screen, folder, members=None, archive=None):
        self.program, self.screen, self.folder = program, screen, folder
        self.archive = archive or folder / "letters.zip"
        if archive is None:
            write_archive(self.archive, LETTERS if members is None else members)

    @contextlib.contextmanager
    def opened(self, title="^letters.zip"):
        with started(self.program, "/un", str(self.archive), env=self.screen.environment) as running:
            self.running = running
            self.window = self.screen.window(title) if title else None
            yield self

    def close(self):
        self.screen.key("alt+F4")
        wait_for("the end of the program", lambda: self.running.poll() is not None)


def a_changed_member_is_saved_and_taken_back(program, screen, folder):
    with ArchiveProgram(program, screen, folder).opened() as p:
        wait_for("the unpacked files", (folder / "third.txt").exists)
        before = p.archive.read_bytes()
        (folder / "first.txt").write_text("by another program\n")
        screen.window("letters.zip - 1 changed file")
        screen.key("Home", "ctrl+s")
        wait_for("the saved member", lambda: contents(p.archive)["first.txt"] == "by another program\n")
        screen.window("^letters.zip$")
        screen.key("ctrl+z")
        wait_for("the archive from before", lambda: p.archive.read_bytes() == before)
        screen.window("letters.zip - 1 changed file")
        screen.key("alt+F4")
        screen.window("^Changed files")
        screen.key("alt+s")
        wait_for("the end of the program", lambda: p.running.poll() is not None)
    assert contents(p.archive) == LETTERS | {"first.txt": "by another program\n"}


def an_archive_in_an_archive_is_saved_back(program, screen, folder):
    write_archive(folder / "inner.zip", {"one.txt": "1", "two.txt": "2"})
    members = {"inner.zip": (folder / "inner.zip").read_bytes(), "letter.txt": "3"}
    (folder / "inner.zip").unlink()
    with ArchiveProgram(program, screen, folder, members).opened() as p:
        wait_for("the unpacked files", (folder / "inner.zip").exists)
        screen.key("Home", "Return")
        screen.window("^inner.zip")
        screen.key("Home", "Delete")
        screen.window("^Warning: file erasure alert")
        screen.key("alt+y")
        wait_for("the removal", lambda: list(contents(folder / "inner.zip")) == ["two.txt"])
        screen.key("ctrl+r")  # repack and exit
        screen.window("letters.zip - 1 changed file")
        screen.key("Home", "ctrl+s")
        wait_for("the saved archive", lambda: screen.xdotool("search", "--name", "^letters.zip$"))
        with zipfile.ZipFile(p.archive) as outer, zipfile.ZipFile(outer.open("inner.zip")) as inner:
            assert inner.namelist() == ["two.txt"]


def members_are_extracted_by_the_keyboard(program, screen, folder):
    (folder / "first").mkdir()
    inside = folder / "first"
    with ArchiveProgram(program, screen, inside).opened():
        screen.key("ctrl+e", "alt+i")
        wait_for("the extracted files", (inside / "letters" / "third.txt").exists)
    assert (inside / "letters" / "d" / "second.txt").read_text() == LETTERS["d/second.txt"]


def rows_are_dragged_to_another_program(program, screen, folder):
    source, target = folder / "from", folder / "to"
    source.mkdir()
    target.mkdir()
    write_archive(target / "other.zip", {"own": "1"})
    with ArchiveProgram(program, screen, source).opened() as p:
        screen.xdotool("windowmove", p.window, 0, 0)
        screen.xdotool("windowsize", p.window, 700, 500)
        with started(program, "/un", str(target / "other.zip"), env=screen.environment):
            other = screen.window("^other.zip")
            screen.xdotool("windowmove", other, 800, 100)
            screen.xdotool("windowactivate", "--sync", p.window)
            screen.key("Home")
            for y in range(100, 260, 12):  # the first row that answers
                screen.xdotool("mousemove", 100, y, "mousedown", 1)
                for x in range(120, 1000, 80):
                    screen.xdotool("mousemove", x, 300)
                screen.xdotool("mouseup", 1)
                with contextlib.suppress(AssertionError):
                    wait_for("the dragged file", lambda: len(contents(target / "other.zip")) > 1, deadline=2)
                    break
    got = contents(target / "other.zip")
    name = next(name for name in got if name != "own")
    assert got[name] in LETTERS.values(), got
    assert contents(p.archive) == LETTERS


def wrong_passwords_are_asked_for_again(program, screen, folder):
    (folder / "secret.txt").write_text("content")
    encrypt = ("7z", "a", "-tzip", "-mem=AES256", "-psesame", "letters.zip", "secret.txt")
    subprocess.run(encrypt, cwd=folder, check=True, stdout=subprocess.DEVNULL)
    (folder / "secret.txt").unlink()
    p = ArchiveProgram(program, screen, folder, archive=folder / "letters.zip")
    with p.opened(title=None):
        asked = screen.window("^Quillbright Pro$")
        screen.xdotool("type", "wrong")
        screen.key("Return")
        screen.window("^Quillbright Pro$", not_among=[asked])
        screen.xdotool("type", "sesame")
        screen.key("Return")
        screen.window("^letters.zip")
        assert (folder / "secret.txt").read_text() == "content"


def twenty_thousand_members_open_and_scroll(program, screen, folder):
    members = {f"d{i % 40}/file {i}.txt": f"{i}\n" for i in range(20_000)}
    (folder / "work").mkdir()
    p = ArchiveProgram(program, screen, folder / "work", members)
    with p.opened():
        for key in ("End", "Home", *["Next"] * 40, "End"):
            screen.key(key)
        assert (folder / "work" / "d39" / "file 19999.txt").read_text() == "19999\n"
        screen.key("Home", "Delete")
        screen.window("^Warning: file erasure alert")
        screen.key("alt+y")
        wait_for("the removal", lambda: len(zipfile.ZipFile(p.archive).namelist()) == 19_999, deadline=60)


def a_hostile_archive_harms_nothing(program, screen, folder):
    inside = folder / "inside"
    inside.mkdir()
    members = {"../outside.txt": "1", "/tmp/quill absolute.txt": "2", "photo.jpg.exe": "MZ", "letter.txt": "3"}
    (inside / "letter.txt").write_text("the user's own")
    with ArchiveProgram(program, screen, inside, members).opened():
        wait_for("the unpacked files", (inside / "letter (2).txt").exists)
        assert (inside / "letter.txt").read_text() == "the user's own"
        assert not (folder / "outside.txt").exists() and not os.path.exists("/tmp/quill absolute.txt")
        screen.key("Home", "Down", "Down", "Return")
        screen.window("^Quillbright Pro$")  # it is not opened, and this says why
        screen.key("Return")
        screen.window("^letters.zip")


def a_kill_during_a_save_leaves_the_old_or_the_new_archive(program, screen, folder):
    noise = random.Random(3)
    old = {f"noise {i}": noise.randbytes(2 << 20).hex() for i in range(8)} | {"first.txt": "old\n"}
    new = old | {"first.txt": "new\n"}
    template = folder / "template.zip"
    write_archive(template, old, zipfile.ZIP_STORED)
    outcomes = {"old": 0, "new": 0}
    longest = 0.0  # of the first save, from the key press on
    for moment in range(50):
        work = folder / f"work {moment}"
        work.mkdir()
        p = ArchiveProgram(program, screen, work, archive=work / "letters.zip")
        p.archive.write_bytes(template.read_bytes())
        with p.opened():
            (work / "first.txt").write_text("new\n")
            screen.key("End")  # the changed member
            stamp = p.archive.stat().st_ino
            begun = time.monotonic()
            press = subprocess.Popen(("xdotool", "key", "ctrl+s"), env=screen.environment)
            if moment == 0:
                wait_for("the saved archive", lambda: p.archive.stat().st_ino != stamp)
                longest = time.monotonic() - begun
            time.sleep(max(0, begun + longest * moment / 40 - time.monotonic()))
            p.running.send_signal(signal.SIGKILL)
            p.running.wait()
            press.wait()  # it lets go of the keys
        found = contents(p.archive)
        assert found in (old, new), f"neither the old nor the new archive at moment {moment}"
        outcomes["new" if found == new else "old"] += 1
        subprocess.run(["rm", "-r", str(work)], check=True)
    assert outcomes["old"] and outcomes["new"], f"the moments did not meet a save: {outcomes}"
    return outcomes


RUNS = (
    (a_changed_member_is_saved_and_taken_back, "a changed member was saved and taken back"),
    (an_archive_in_an_archive_is_saved_back, "an archive in an archive was changed and saved back"),
    (members_are_extracted_by_the_keyboard, "members were extracted"),
    (rows_are_dragged_to_another_program, "a row was dragged to another program"),
    (wrong_passwords_are_asked_for_again, "a wrong password was asked for again"),
    (a_hostile_archive_harms_nothing, "a hostile archive did no harm"),
    (twenty_thousand_members_open_and_scroll, "20,000 members were opened and scrolled"),
    (a_kill_during_a_save_leaves_the_old_or_the_new_archive, "50 kills during a save left the old or the new archive"),
)


def main():
    program = os.path.abspath(sys.argv[1])
    wanted = sys.argv[2:]
    with tempfile.TemporaryDirectory() as root, x_server() as environment:
        home = pathlib.Path(root, "home")
        home.mkdir(mode=0o700)
        environment |= {"HOME": str(home), "XDG_DATA_HOME": str(home), "XDG_RUNTIME_DIR": str(home)}
        screen = Screen(environment)
        for run, done in RUNS:
            if wanted and run.__name__ not in wanted:
                continue
            place = pathlib.Path(root, run.__name__)
            place.mkdir()
            outcome = run(program, screen, place)
            print(done, outcome or "", flush=True)


if __name__ == "__main__":
    main()
