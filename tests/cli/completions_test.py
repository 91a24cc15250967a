"""Completes command lines as bash does: completions_test.py QUILL MAKE_COMPLETIONS"""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

QUILL, MAKE_COMPLETIONS = sys.argv[1:3]

ASK = """
source "$1/quill.bash"
compopt() { :; }
cd "$1/files"
shift
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_quill
printf '%s\n' "${COMPREPLY[@]}"
"""


class Completion(unittest.TestCase):
    def setUp(self):
        self.place = tempfile.TemporaryDirectory()
        subprocess.run([MAKE_COMPLETIONS, QUILL, self.place.name], check=True)
        (Path(self.place.name) / "files" / "folder").mkdir(parents=True)
        (Path(self.place.name) / "files" / "file one").touch()

    def tearDown(self):
        self.place.cleanup()

    def completed(self, *words):
        ran = subprocess.run(["bash", "-c", ASK, "bash", self.place.name, *words], check=True, capture_output=True, text=True)
        self.assertEqual(ran.stderr, "")
        return ran.stdout.split("\n")[:-1]

    def test_commands_options_values_and_files(self):
        for words, expected in [
            (["quill", "de"], ["decode"]),
            (["quill", "zip", "re"], ["remove"]),
            (["quill", "list", "--json"], ["--json", "--json-lines"]),
            (["quill", "zip", "list", "--pass"], [""]),
            (["quill", "zip", "add", "--method", "z"], ["zstd"]),
            (["quill", "encode", "--format", "y"], ["yenc"]),
            (["quill", "decode", "f"], ["file one", "folder"]),
            (["quill", "decode", "--into", "f"], ["folder"]),
            (["quill", "decode", "--quiet", "--into", "folder", "f"], ["file one", "folder"]),
        ]:
            self.assertEqual(sorted(self.completed(*words)), expected, words)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
