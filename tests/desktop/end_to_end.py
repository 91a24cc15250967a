"""Drives the desktop program on an X server of its own, as a user would: by the mouse and the keyboard.

Usage: end_to_end.py PROGRAM SAMPLES. Waits for what is to happen, never for a time; the deadline of a wait ends the test.
"""

import base64
import contextlib
import os
import pathlib
import random
import struct
import subprocess
import sys
import tempfile
import time
import zipfile

DEADLINE = 30  # seconds that anything may take on a busy machine


def wait_for(what, condition, deadline=DEADLINE):
    """Returns the first true value of condition()."""
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"never came: {what}")
        time.sleep(0.05)


@contextlib.contextmanager
def started(*command, **options):
    """A program that is ended, where it hasn't ended by itself."""
    process = subprocess.Popen(command, **options)
    try:
        yield process
    finally:
        if process.poll() is None:
            process.terminate()
            process.wait()


@contextlib.contextmanager
def x_server():
    """A screen that nobody sees, with a window manager; yields the environment that leads to it."""
    reading, writing = os.pipe()
    server = ("Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1200x24", "-nolisten", "tcp", "-noreset")
    with started(*server, pass_fds=[writing], stderr=subprocess.DEVNULL):
        os.close(writing)
        with os.fdopen(reading) as told:
            display = ":" + told.readline().strip()
        environment = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb", QT_SCALE_FACTOR="1")
        environment.pop("WAYLAND_DISPLAY", None)
        environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:"  # no start hands its files to another one
        with started("openbox", env=environment, stderr=subprocess.DEVNULL):
            # It gives no focus to a window that is there before it.
            wait_for("the window manager", lambda: Screen(environment).xdotool("get_num_desktops"))
            yield environment


class Screen:
    """What a user sees and does."""

    def __init__(self, environment):
        self.environment = environment

    def xdotool(self, *words):
        done = subprocess.run(["xdotool", *map(str, words)], env=self.environment, capture_output=True, text=True)
        return done.stdout.split() if done.returncode == 0 else []

    def window(self, title, not_among=(), deadline=DEADLINE):
        """Waits for a window of that title (a regular expression) to be the active one, and returns it."""

        def active():
            found = [w for w in self.xdotool("search", "--onlyvisible", "--name", title) if w not in not_among]
            return next((w for w in found if self.xdotool("getactivewindow") == [w]), None)

        return wait_for(f"a window called {title}", active, deadline)

    def key_until_window(self, key, title):
        """Presses a key until a window opens: what is pressed at the end of a run may be dropped."""
        for _ in range(DEADLINE):
            self.key(key)
            with contextlib.suppress(AssertionError):
                return self.window(title, deadline=1.5)
        raise AssertionError(f"{key} opened no window")

    def key_until_gone(self, key, window):
        """Presses a key until `window` is no longer there."""

        def gone():
            self.xdotool("key", "--clearmodifiers", key)
            return window not in self.xdotool("search", "--onlyvisible", "--name", "")

        wait_for(f"the end of the window after {key}", gone)

    def key(self, *keys):
        for key in keys:
            self.xdotool("key", "--clearmodifiers", key)

    def click_first_option(self, window, until):
        """Clicks down the start panel: what answers first is the first option."""
        facts = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", window))
        left, top, height = int(facts["X"]), int(facts["Y"]), int(facts["HEIGHT"])
        for y in range(top + height // 4, top + height * 3 // 4, 14):
            self.xdotool("mousemove", left + 100, y, "click", 1)
            with contextlib.suppress(AssertionError):
                return wait_for("an answer", until, deadline=1.5)
        raise AssertionError("no option answered a click")


MAIN_WINDOW = "^Quillbright Pro 2012"


def decode_a_message_by_clicks(program, screen, samples, folder):
    mail = folder / "my harbour.eml"
    mail.write_bytes((samples / "harbour.eml").read_bytes())
    picture = folder / "harbour.png"
    with started(program, mail.name, env=screen.environment, cwd=folder) as running:
        window = screen.window(MAIN_WINDOW)
        screen.click_first_option(window, picture.exists)
        assert picture.read_bytes().startswith(b"\x89PNG"), "the picture is not whole"
        assert picture.read_bytes().endswith(b"IEND\xaeB`\x82"), "the picture is not whole"
        assert picture.stat().st_mode & 0o111 == 0, "an attachment may be executed"
        screen.key("alt+F4")
        wait_for("the end of the program", lambda: running.poll() is not None)
        assert running.returncode == 0, running.returncode
    assert mail.read_bytes() == (samples / "harbour.eml").read_bytes(), "the message was changed"


def repair_a_text_without_header(program, screen, folder):
    content = b"\xff\xd8\xff\xe0" + random.Random(7).randbytes(3000)
    text = folder / "picture"
    text.write_bytes(base64.encodebytes(content).replace(b"\n", b"\r\n"))
    with started(program, str(text), env=screen.environment) as running:
        first = screen.window(MAIN_WINDOW)
        screen.key("1")
        screen.window("^File name not found")
        screen.key("space", "Return")  # the first type, .jpg
        screen.window("^Name for the file")
        screen.key("Return")  # "Temporary"
        question = screen.window("^Quillbright Pro$")
        screen.key("Return")  # Yes
        screen.window("^Quillbright Pro$", not_among=[question])
        screen.key("Return")  # the message on how to go on
        screen.window(MAIN_WINDOW, not_among=[first])  # of a new session, which offers the new file
        screen.key("1")
        result = folder / "Temporary.jpg"
        wait_for("the decoded picture", result.exists)
        assert running.poll() is None, "the program ended"
        assert result.read_bytes() == content, "the picture is not what was encoded"


def choose_in_chooser(screen, title, *paths):
    """Waits for the chooser in its mode, goes to each path in turn by the path line, and leaves the last selected."""
    window = screen.window(title)
    for path in paths:
        screen.key("ctrl+l")
        screen.xdotool("type", "--clearmodifiers", str(path))
        screen.key("Return")
    return window


def merge_parts_and_decode(program, screen, folder):
    content = random.Random(8).randbytes(4000)
    for number in range(3):
        data = content[number * 1500 : (number + 1) * 1500]
        lines = [encode_yenc(data[at : at + 100]) for at in range(0, len(data), 100)]
        head = "=ybegin part=%d line=100 size=4000 name=film.bin\r\n=ypart begin=%d end=%d\r\n"
        text = (head % (number + 1, number * 1500 + 1, number * 1500 + len(data))).encode()
        text += b"\r\n".join(lines) + b"\r\n=yend size=%d part=%d\r\n" % (len(data), number + 1)
        (folder / f"post {'cab'[number]}.ync").write_bytes(text)  # not in the order of their names
    result = folder / "film.bin"
    with started(program, env=screen.environment):
        screen.window(MAIN_WINDOW)
        screen.key("1")
        choose_in_chooser(screen, "^Select a file to open, view or decode", folder)
        screen.key("alt+m", "ctrl+a", "Return")  # all files there to the list of those to merge
        screen.key("Tab", "Tab", "Tab", "Tab", "space")  # past the list and two buttons: merge yEnc parts
        screen.window(MAIN_WINDOW)
        assert (folder / "merged.txt").exists(), "nothing was merged"
        screen.key("1")
        wait_for("the decoded film", lambda: result.exists() and result.stat().st_size == len(content))
        assert result.read_bytes() == content, "the film is not what was posted"


def encode_yenc(data):
    out = b"".join(b"=" + bytes([(c + 106) % 256]) if (c + 42) % 256 in (0, 10, 13, 61) else bytes([(c + 42) % 256]) for c in data)
    return b"=n" + out[1:] if out.startswith(b".") else out


def encode_and_decode_again(program, screen, folder):
    content = random.Random(9).randbytes(4000)
    original, text = folder / "song.mid", folder / "song.UUE"
    original.write_bytes(content)
    with started(program, env=screen.environment) as running:
        window = screen.window(MAIN_WINDOW)
        screen.key("2", "Tab", "Tab", "Return")  # create; past ZIP and books: an encoded file
        screen.key("Return")  # the first kind: UUE
        choose_in_chooser(screen, "^Create a UUE encoded file", original)
        screen.key("Return")
        screen.window("^Quillbright Pro$")
        screen.key("Return")  # "Done."
        assert screen.window(MAIN_WINDOW) == window
        original.unlink()
        screen.key("1")
        choose_in_chooser(screen, "^Select a file to open, view or decode", text)
        screen.key("Return")
        screen.window(MAIN_WINDOW)
        screen.key("1")
        wait_for("the decoded song", lambda: original.exists() and original.stat().st_size == len(content))
        assert original.read_bytes() == content, "the song is not what was encoded"
        screen.key("alt+F4")
        wait_for("the end of the program", lambda: running.poll() is not None)


def erase_the_first_result_of_a_second_run(program, screen, folder):
    for mail, names in (("one.eml", ["old 1.txt", "old 2.txt"]), ("two.eml", ["new 1.txt", "new 2.txt"])):
        text = "From: Ann <ann@example.org>\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=next\r\n\r\n"
        for name in names:
            text += f'--next\r\nContent-Disposition: attachment; filename="{name}"\r\n\r\nIn {name}.\r\n'
        (folder / mail).write_text(text + "--next--\r\n", newline="")
    with started(program, str(folder / "one.eml"), env=screen.environment):
        screen.window(MAIN_WINDOW)
        screen.key("1")
        wait_for("the first attachments", (folder / "old 2.txt").exists)
        screen.key("ctrl+o")
        choose_in_chooser(screen, "^Select a file to open, view or decode", folder / "two.eml")
        screen.key("Return")
        screen.window(MAIN_WINDOW)
        screen.key("1")
        wait_for("the attachments of the second mail", (folder / "new 2.txt").exists)
        screen.key_until_window("Delete", "^Quillbright Pro$")
        screen.key("alt+y")
        wait_for("the end of the first new file", lambda: not (folder / "new 1.txt").exists())
        for name in ("old 1.txt", "old 2.txt", "new 2.txt"):
            assert (folder / name).exists(), f"{name} was erased"


def stop_a_long_encoding(program, screen, folder):
    original = folder / "tape.img"
    with original.open("wb") as file:
        file.truncate(64 << 30)  # a hole: it takes long to encode, and no room on the disk
    with started(program, env=screen.environment) as running:
        main_window = screen.window(MAIN_WINDOW)
        screen.key("2", "Tab", "Tab", "Return", "Return")
        chooser = choose_in_chooser(screen, "^Create a UUE encoded file", original)
        for stop in ("Escape", "alt+F4"):
            screen.key("Return")
            screen.window("^Quillbright Pro$")  # the progress panel
            screen.key("ctrl+q", stop)  # the first one does nothing now
            assert screen.window("^Create a UUE encoded file") == chooser
            assert os.listdir(folder) == [original.name], "a stopped encoding left something"
        screen.key("Escape")
        assert screen.window(MAIN_WINDOW) == main_window
        screen.key("ctrl+q")
        wait_for("the end of the program", lambda: running.poll() is not None)


def view_the_contents_of_an_archive(program, screen, folder):
    archive = folder / "letters.zip"
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as file:
        file.writestr("first.txt", "Dear Ann\n" * 100)
        file.writestr("second letter.txt", "Yours, Bob\n" * 100)
    before = archive.read_bytes()
    with started(program, "/vi", str(archive), env=screen.environment) as running:
        screen.window("letters.zip")
        screen.key("Escape")
        wait_for("the end of the program", lambda: running.poll() is not None)
        assert running.returncode == 0, running.returncode
    assert archive.read_bytes() == before, "the archive was changed"


def bitmap(side):
    """A BMP file of 24 bits a pixel, `side` pixels wide and high; `side` is a multiple of 4."""
    pixels = bytes(3 * side * side)
    header = struct.pack("<2sIHHI", b"BM", 54 + len(pixels), 0, 0, 54)
    return header + struct.pack("<IiiHHIIiiII", 40, side, side, 1, 24, 0, len(pixels), 0, 0, 0, 0) + pixels


def look_at_a_directory_of_pictures(program, screen, folder):
    for name in ("a.bmp", "b.bmp"):
        (folder / name).write_bytes(bitmap(40))
    with started(program, str(folder), env=screen.environment) as running:
        viewer = screen.window("^Lumenreel Pro")
        screen.key("Home", "Delete")
        screen.window("^Quillbright Pro$")
        screen.key("alt+y")
        wait_for("the picture to go to the trash", lambda: not (folder / "a.bmp").exists())
        assert list(pathlib.Path(screen.environment["XDG_DATA_HOME"]).rglob("a.bmp")), "it is not in the trash"
        wait_for("the viewer", lambda: screen.xdotool("getactivewindow") == [viewer])
        screen.key("alt+F4")
        main_window = screen.window(MAIN_WINDOW)
        assert running.poll() is None, "closing the viewer ended the program"
        screen.xdotool("windowactivate", main_window)
        screen.key("ctrl+q")
        wait_for("the end of the program", lambda: running.poll() is not None)
        assert running.returncode == 0, running.returncode
    assert (folder / "b.bmp").exists()


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2])
    with tempfile.TemporaryDirectory() as root, x_server() as environment:
        home = pathlib.Path(root, "home")
        folder = pathlib.Path(root, "two words")
        home.mkdir(mode=0o700)
        folder.mkdir()
        environment |= {"HOME": str(home), "XDG_DATA_HOME": str(home), "XDG_RUNTIME_DIR": str(home)}
        screen = Screen(environment)
        decode_a_message_by_clicks(program, screen, samples, folder)
        print("a message was decoded by clicks")
        repair_a_text_without_header(program, screen, folder)
        print("a text without a header was repaired and decoded")
        for run, told in (
            (merge_parts_and_decode, "parts were merged and decoded"),
            (encode_and_decode_again, "a file was encoded and decoded again"),
            (erase_the_first_result_of_a_second_run, "the first result of a second run was erased"),
            (stop_a_long_encoding, "a long encoding was stopped"),
            (look_at_a_directory_of_pictures, "a directory of pictures was shown, and one went to the trash"),
            (view_the_contents_of_an_archive, "an archive's contents were viewed"),
        ):
            place = pathlib.Path(root, run.__name__)
            place.mkdir()
            run(program, screen, place)
            print(told)


if __name__ == "__main__":
    main()
