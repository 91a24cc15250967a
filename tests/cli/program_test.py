"""Calls the program as a shell would: program_test.py QUILL SAMPLES [test ...]"""

import json
import os
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

QUILL, SAMPLES = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()

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
            self.assertEqual(set(result), {"name", "path", "size", "format", "verdict", "problems", "sources"})
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
        done = self.call("decode", "--into", "is there/not", SAMPLES / "pancakes.xxe")
        self.assertEqual((done.returncode, done.stderr), (3, b"quill: is there/not: No such file or directory\n"))

    def test_a_merge_that_breaks_off_leaves_the_older_one(self):
        (self.directory / "merged.txt").write_text("older")
        for part in "ab":
            (self.directory / part).write_bytes(b"x" * 99 + b"\n" + b"y" * 100 * 1000)

        def small_disk():
            resource.setrlimit(resource.RLIMIT_FSIZE, (150 * 1000, 150 * 1000))

        done = self.call("merge", "a", "b", preexec_fn=small_disk, restore_signals=False)
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

        for kind in "--yenc", "--text":
            done = self.call("merge", kind, *reversed(names), preexec_fn=few_files)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            self.assertTrue(done.stdout.endswith(b"\t100 parts\n"))

    def test_an_interrupted_run_leaves_nothing_unfinished(self):
        big = self.directory / "big.uue"
        with open(big, "wb") as out:
            out.write(b"begin 644 big.bin\n")
            line = b"M" + b"(" * 60 + b"\n"
            for _ in range(400):
                out.write(line * 2000)
            out.write(b"`\nend\n")
        started = subprocess.Popen([QUILL, "decode", big], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        while started.poll() is None and not any(name.startswith(".") for name in os.listdir(self.directory)):
            pass
        started.send_signal(signal.SIGTERM)
        started.communicate(timeout=60)
        self.assertIn(started.returncode, (-signal.SIGTERM, 0))
        left = set(os.listdir(self.directory)) - {"big.uue"}
        self.assertEqual(left, set() if started.returncode else {"big.bin"})


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
