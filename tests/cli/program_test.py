"""Calls the programs as a shell would: program_test.py QUILL QPUNWRAP SAMPLES [test ...]"""

import ctypes
import errno
import json
import os
import platform
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

QUILL, QPUNWRAP, SAMPLES = (Path(argument).resolve() for argument in sys.argv[1:4])

sys.dont_write_bytecode = True
sys.path.insert(0, str(SAMPLES))
import make_samples  # noqa: E402

# Sample: the files in it, as they were before they were encoded.
WHOLE = {
    "harbour.eml": {"harbour.png": make_samples.harbour_picture(), "tide table.txt": make_samples.TIDES.encode()},
    "forwarded.eml": {"sunset.png": make_samples.sunset_picture()},
    "lighthouse.uue": {"lighthouse.png": make_samples.lighthouse_picture()},
    "pancakes.xxe": {"pancakes.txt": make_samples.PANCAKES.encode()},
    "letter.hqx": {"To the crew": make_samples.LETTER.replace("\n", "\r").encode()},
    "stars.ync": {"stars.png": make_samples.png(make_samples.night_sky(128, 96, 7))},
}


def refuse_unnamed_files():
    """From now on this process can't make files without a name, as on a file system that has none (seccomp(2))."""
    seccomp_mode_filter, pr_set_seccomp, pr_set_no_new_privs = 2, 22, 38
    x86_64_openat, aarch64_openat = 257, 56
    openat = x86_64_openat if platform.machine() == "x86_64" else aarch64_openat
    load, equal, bits, give = 0x20, 0x15, 0x45, 0x06
    filters = [(load, 0, 0, 0), (equal, 0, 3, openat), (load, 0, 0, 16 + 2 * 8),
               (bits, 0, 1, os.O_TMPFILE & ~os.O_DIRECTORY), (give, 0, 0, 0x50000 | errno.EOPNOTSUPP),
               (give, 0, 0, 0x7FFF0000)]
    program = ctypes.create_string_buffer(b"".join(struct.pack("HBBI", *row) for row in filters))
    libc = ctypes.CDLL(None, use_errno=True)
    fprog = ctypes.create_string_buffer(struct.pack("HxxxxxxP", len(filters), ctypes.addressof(program)))
    libc.prctl(pr_set_no_new_privs, 1, 0, 0, 0)
    if libc.prctl(pr_set_seccomp, seccomp_mode_filter, fprog, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "seccomp")


class Program(unittest.TestCase):
    def setUp(self):
        self.directory = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.directory)

    def call(self, *arguments, **options):
        return subprocess.run([QUILL, *arguments], cwd=self.directory, capture_output=True, timeout=60, **options)

    def test_samples_come_out_as_they_went_in(self):
        for sample, files in WHOLE.items():
            with self.subTest(sample):
                into = self.directory / f"from {sample}"
                into.mkdir()
                done = self.call("decode", "--into", into, SAMPLES / sample)
                self.assertEqual((done.returncode, done.stderr), (0, b""))
                self.assertEqual({path.name: path.read_bytes() for path in into.iterdir()}, files)

    def test_all_samples_at_once_and_json_tells_what_was_written(self):
        done = self.call("decode", "--json", "--into", ".", *sorted(SAMPLES.glob("*.[eumxhy]*")))
        self.assertEqual(done.returncode, 1)
        results = json.loads(done.stdout)
        self.assertEqual({os.path.basename(result["path"]) for result in results}, set(os.listdir(self.directory)))
        for result in results:
            self.assertEqual(set(result), {"name", "path", "size", "format", "verdict", "already_there", "problems", "sources", "origin"})
            self.assertEqual((self.directory / result["path"]).stat().st_size, result["size"])
        damaged = [result for result in results if result["verdict"] in ("damaged", "incomplete")]
        self.assertEqual([os.path.basename(source) for result in damaged for source in result["sources"]],
                         ["damaged.uue"])
        self.assertTrue(damaged[0]["problems"])

    def test_a_damaged_picture_keeps_its_sound_beginning(self):
        done = self.call("decode", "--into", ".", SAMPLES / "damaged.uue")
        self.assertEqual(done.returncode, 1)
        whole, got = make_samples.sunset_picture(), (self.directory / "sunset.png").read_bytes()
        self.assertGreater(len(got), len(whole) // 2)
        self.assertEqual(got[:len(whole) // 4], whole[:len(whole) // 4])

    def test_the_resource_fork_comes_on_request(self):
        self.assertEqual(self.call("decode", "--forks", "--into", ".", SAMPLES / "letter.hqx").returncode, 0)
        self.assertEqual(sorted(os.listdir(self.directory)), ["To the crew", "To the crew.rsrc"])
        self.assertEqual((self.directory / "To the crew.rsrc").read_bytes(), b"resource fork: window 12 40 320 200")

    def test_standard_input_and_a_full_standard_output(self):
        message = (SAMPLES / "pancakes.xxe").read_bytes()
        self.assertEqual(self.call("list", "-", input=message).stdout.split(b"\t")[0], b"pancakes.txt")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([QUILL, "list", SAMPLES / "pancakes.xxe"], stdout=full, stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 3)
        self.assertIn(b"standard output", done.stderr)

    def test_an_unwritable_file_is_said_with_the_reason_of_the_system(self):
        (self.directory / "is there").mkdir()
        done = self.call("decode", "--into", "is there/not/it", SAMPLES / "pancakes.xxe")
        self.assertEqual((done.returncode, done.stderr), (3, b"quill: is there/not/it: No such file or directory\n"))

    def test_a_merge_that_breaks_off_leaves_the_older_one(self):
        (self.directory / "merged.txt").write_text("older")
        for part in "ab":
            (self.directory / part).write_bytes(b"x" * 99 + b"\n" + b"y" * 100 * 1000)

        def small_disk():
            resource.setrlimit(resource.RLIMIT_FSIZE, (150 * 1000, 150 * 1000))

        done = self.call("merge", "--force", "a", "b", preexec_fn=small_disk)
        self.assertEqual((done.returncode, done.stderr), (3, b"quill: merged.txt: File too large\n"))
        self.assertEqual((self.directory / "merged.txt").read_text(), "older")
        self.assertEqual(sorted(os.listdir(self.directory)), ["a", "b", "merged.txt"])

    def test_more_parts_are_merged_than_files_may_be_open(self):
        names = [f"part{number:03}" for number in range(1, 101)]
        for number, name in enumerate(names, 1):
            (self.directory / name).write_text(
                f"=ybegin part={number} line=128 size=200 name=x\r\n=ypart begin=1 end=2\r\n{number:03}\r\n=yend\r\n")

        def few_files():
            resource.setrlimit(resource.RLIMIT_NOFILE, (32, 32))

        for kind, inputs in ("--yenc", names[::-1]), ("--text", names):
            done = self.call("merge", "--force", kind, *inputs, preexec_fn=few_files)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            self.assertTrue(done.stdout.endswith(b"\t100 parts\n"))

    def test_more_mails_are_read_than_files_may_be_open(self):
        mails = self.directory / "mails"
        mails.mkdir()
        for number in range(300):
            (mails / f"{number:03}").write_text(f"begin 644 {number}.txt\n#0V%T\n`\nend\n")

        def few_files():
            resource.setrlimit(resource.RLIMIT_NOFILE, (100, 100))

        done = self.call("decode", "--json-lines", "--into", "out", "mails", preexec_fn=few_files)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(len(done.stdout.splitlines()), 300)
        self.assertEqual(len(os.listdir(self.directory / "out")), 300)

    def big_file(self):
        big = self.directory / "big.uue"
        with open(big, "wb") as out:
            out.write(b"begin 644 big.bin\n")
            line = b"M" + b"(" * 60 + b"\n"
            for _ in range(400):
                out.write(line * 2000)
            out.write(b"`\nend\n")
        return big

    def assert_stops(self, number, *arguments, has_begun, **options):
        """Starts a run and ends it by a signal once it `has_begun`: all that was there is there, and nothing else."""
        before = {name: os.lstat(self.directory / name).st_ino for name in os.listdir(self.directory)}
        with subprocess.Popen([QUILL, *arguments], cwd=self.directory, stdout=subprocess.DEVNULL, **options) as run:
            while run.poll() is None and not has_begun(run.pid):
                time.sleep(0.001)
            run.send_signal(number)
            run.wait(timeout=60)
        after = {name: os.lstat(self.directory / name).st_ino for name in os.listdir(self.directory)}
        if run.returncode == 0:  # it was faster
            self.assertNotEqual(after, before)
        else:
            self.assertEqual((run.returncode, after), (-number, before))

    def test_an_interrupted_run_leaves_nothing_unfinished(self):
        self.big_file()
        (self.directory / "big.bin").write_text("mine")
        (self.directory / "merged.txt").write_text("mine")

        def writes(pid):  # its output is open
            try:
                names = {os.readlink(f"/proc/{pid}/fd/{fd}") for fd in os.listdir(f"/proc/{pid}/fd")}
            except OSError:
                return False
            return any("(deleted)" in name or ".part" in name for name in names)

        runs = [["decode", "big.uue"], ["decode", "--into", "new", "big.uue"],
                ["encode", "--format", "mime", "big.uue"],
                ["encode", "--format", "uue", "--part-size", "5000000", "big.uue"],
                ["merge", "--force", "--text", "big.uue", "big.uue"]]
        for arguments in runs:
            for number in signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGKILL:
                if number == signal.SIGKILL and "new" in arguments:
                    continue  # an empty directory may stay
                with self.subTest(arguments, number=number):
                    self.assert_stops(number, *arguments, has_begun=writes)
                    self.restore()
            with self.subTest(arguments, named=True):
                self.assert_stops(signal.SIGTERM, *arguments, has_begun=writes, preexec_fn=refuse_unnamed_files)
                self.restore()

    def restore(self):
        """Removes what a run that was faster than its signal made."""
        for path in self.directory.iterdir():
            if path.is_dir():
                shutil.rmtree(path)
            elif path.name not in ("big.uue", "big.bin", "merged.txt"):
                path.unlink()

    def test_a_run_that_waits_for_a_reader_stops_too(self):
        (self.directory / "a").write_text("x\n")
        os.mkfifo(self.directory / "pipe")

        def waits(pid):
            return "S (sleeping)" in Path(f"/proc/{pid}/status").read_text()

        for number in signal.SIGTERM, signal.SIGINT:
            self.assert_stops(number, "merge", "--output", "pipe", "a", "a", has_begun=waits)

    def test_what_a_kill_left_is_removed_by_a_later_run(self):
        gone = subprocess.Popen(["true"])
        gone.wait()
        (self.directory / "a").write_text("a post")
        into = self.directory / "into"
        into.mkdir()
        left, young, mine = (into / name for name in (f".quill-{gone.pid}-0.part", f".quill-{gone.pid}-1.part", ".quill-my.part"))
        day_ago = time.time() - 25 * 3600
        for command in (["decode", SAMPLES / "pancakes.xxe", "--into", "into"],
                        ["encode", "--format", "uue", "--output", "into/a.uue", "a"],
                        ["merge", "--text", "--output", "into/merged", "a", "a"],
                        ["zip", "add", "into/a.zip", "a"],
                        ["zip", "extract", "into/a.zip", "--into", "into"],
                        ["zip", "remove", "into/a.zip", "a"]):
            with self.subTest(command):
                for path in left, young, mine:
                    path.write_text("half")
                for path in left, mine:
                    os.utime(path, (day_ago, day_ago))
                self.assertEqual(self.call(*command).returncode, 0)
                self.assertEqual([path.exists() for path in (left, young, mine)], [False, True, True])

    def test_a_limit_for_files_is_a_full_disk(self):
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_DFL)
            resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))
        (self.directory / "a").write_bytes(os.urandom(5000))
        message = ["Content-Transfer-Encoding: quoted-printable", "", *(f"line {n} =3D" for n in range(500)), ""]
        (self.directory / "mail").write_text("\n".join(message))
        before = sorted(os.listdir(self.directory))
        for program, *arguments in [QUILL, "zip", "add", "a.zip", "a"], [QPUNWRAP, "mail"]:
            done = subprocess.run([program, *arguments], cwd=self.directory, capture_output=True, timeout=60, preexec_fn=limit)
            self.assertGreater(done.returncode, 0, program)  # not by a signal
            self.assertEqual(sorted(os.listdir(self.directory)), before)

    def test_an_album_has_thumbnails_of_what_is_a_picture(self):
        if not (QUILL.parent.parent / "picture" / "quillpicture").exists():
            return  # a build without the desktop
        (self.directory / "a.ppm").write_bytes(b"P6 2 1 255\n\xFF\0\0\xFF\0\0")
        (self.directory / "b.gif").write_bytes(b"BB")
        done = self.call("album", "create", "--thumbnails", "x.pics", "a.ppm", "b.gif")
        self.assertEqual(done.returncode, 0, done.stderr)
        album = (self.directory / "x.pics").read_bytes()
        self.assertEqual(len(album), 33 + 2 * (300 + 14938) + 17 + 2)
        first, second = album[333:333 + 14938], album[333 + 15238:333 + 15238 + 14938]
        self.assertEqual(first[54 + 60 * 244:][:3], b"\0\0\xFF")  # the top left pixel: blue, green, red
        self.assertEqual(second[54 + 60 * 244:][:3], b"\xFF\xFF\xFF")
        self.assertIn("b.gif", str(done.stderr))

    def test_two_runs_at_once_lose_nothing(self):
        (self.directory / "a").write_text("begin 644 x.txt\n#0V%T\n`\nend\n")
        (self.directory / "b").write_text("begin 644 x.txt\n#1&]G\n`\nend\n")
        for _ in range(10):
            runs = [subprocess.Popen([QUILL, "decode", "--quiet", name], cwd=self.directory) for name in "abab"]
            self.assertEqual([run.wait(timeout=60) for run in runs], [0] * 4)
            made = [path.read_text() for path in self.directory.glob("x*.txt")]
            self.assertEqual(set(made), {"Cat", "Dog"})
            for path in self.directory.glob("x*"):
                path.unlink()
        runs = [subprocess.Popen([QUILL, "encode", "--format", kind, "--output", "one", "a"], cwd=self.directory,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) for kind in ("uue", "mime", "xxe", "yenc")]
        self.assertEqual(sorted(run.wait(timeout=60) for run in runs), [0, 3, 3, 3])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
