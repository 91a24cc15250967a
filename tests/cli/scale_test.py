"""Runs the commands of docs/scale.md on many files: scale_test.py QUILL SAMPLES SCALE.MD"""

import collections
import json
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

QUILL, SAMPLES, PAGE = (Path(argument).resolve() for argument in sys.argv[1:4])
COPIES = 1000


def run(command, place, good=(0,)):
    """Runs a shell command where `quill` is the program that is tested. Returns its output."""
    path = f"{QUILL.parent}:{os.environ['PATH']}"
    ran = subprocess.run(["bash", "-c", command], cwd=place, env={**os.environ, "PATH": path}, capture_output=True, text=True)
    if good and ran.returncode not in good:
        raise AssertionError(f"{command}: {ran.returncode}: {ran.stderr}")
    return ran.stdout


def results(path, *keys):
    """The results in a file, by what they say under `keys`, counted."""
    found = map(json.loads, path.read_text(encoding="utf-8").splitlines())
    return collections.Counter(tuple(each[key] for key in keys) for each in found)


class Scale(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.place = Path(self.directory.name)
        self.recipes = re.findall(r"```sh\n(.*?)```", PAGE.read_text(encoding="utf-8"), re.DOTALL)

    def tearDown(self):
        self.directory.cleanup()

    def test_mails_give_the_same_whatever_the_split(self):
        samples = [path for path in SAMPLES.iterdir() if path.suffix not in (".py", "")]
        for copy in range(COPIES):
            folder = self.place / "mail" / str(copy % 50)
            folder.mkdir(parents=True, exist_ok=True)
            for sample in samples:
                shutil.copy(sample, folder / f"{copy}-{sample.name}")
        run(self.recipes[0], self.place, good=())
        run("quill list --json-lines mail/0/0-* > once.jsonl", self.place, good=(0, 1))
        keys = "size", "format", "verdict"
        once = results(self.place / "once.jsonl", *keys)
        self.assertGreaterEqual(len(once), len(samples))
        self.assertEqual(results(self.place / "results.jsonl", *keys), {each: n * COPIES for each, n in once.items()})

    def test_scattered_parts_come_together(self):
        order, films = random.Random(3), {}
        (self.place / "made").mkdir()
        for number in range(30):
            name = f"film {number}.bin"
            films[name] = order.randbytes(200_000)
            (self.place / name).write_bytes(films[name])
            run(f"quill encode --format yenc --crc --part-size 50000 --output made '{name}'", self.place)
        parts = sorted((self.place / "made").iterdir())
        order.shuffle(parts)
        for number, part in enumerate(parts):
            folder = self.place / "posts" / str(number % 7)
            folder.mkdir(parents=True, exist_ok=True)
            part.rename(folder / f"{number}.txt")
        for recipe in self.recipes[1:]:
            run(recipe, self.place, good=())
        self.assertEqual(results(self.place / "joined.jsonl", "name", "verdict"), {(name, "verified"): 1 for name in films})
        for name, content in films.items():
            self.assertEqual((self.place / "joined" / name).read_bytes(), content)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
