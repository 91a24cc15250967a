#!/usr/bin/env python3
"""interop.py QUILL: archives of other programs are read by ours, and ours by them; statuses and JSON of `quill zip`.

Partners: Info-ZIP's zip and unzip, 7z, Python's zipfile."""

import json
import os
import random
import stat
import subprocess
import sys
import tempfile
import unittest
import zipfile

QUILL = sys.argv.pop(1)


def run(*command, status=0):
    done = subprocess.run(command, capture_output=True, stdin=subprocess.DEVNULL)
    assert done.returncode == status, f"{command}: {done.returncode}\n{done.stdout.decode()}\n{done.stderr.decode()}"
    return done.stdout.decode()


def make_files(root):
    """A small tree: text, noise, an empty file, a name beyond ASCII, directories, a file of several megabytes."""
    noise = random.Random(1)
    files = {
        "text.txt": b"a line of text\n" * 500,
        "noise.bin": noise.randbytes(20_000),
        "empty": b"",
        "sub/Gr\u00fc\u00dfe.txt": b"hello",
        "sub/deep/large.txt": b"".join(b"%d squared is %d\n" % (i, i * i) for i in range(200_000)),
    }
    for name, content in files.items():
        os.makedirs(os.path.dirname(os.path.join(root, name)) or root, exist_ok=True)
        with open(os.path.join(root, name), "wb") as file:
            file.write(content)
        os.utime(os.path.join(root, name), (1_500_000_000, 1_500_000_000))
    return files


class Interop(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.old = os.getcwd()
        os.chdir(self.directory.name)
        os.mkdir("in")
        self.files = make_files("in")
        with open("password", "w") as file:
            file.write("open sesame\n")

    def tearDown(self):
        os.chdir(self.old)
        self.directory.cleanup()

    def check_extracted(self, root):
        for name, content in self.files.items():
            with open(os.path.join(root, name), "rb") as file:
                self.assertEqual(file.read(), content, name)
            self.assertLess(abs(os.stat(os.path.join(root, name)).st_mtime - 1_500_000_000), 2, name)
            self.assertEqual(stat.S_IMODE(os.stat(os.path.join(root, name)).st_mode) & 0o133, 0)

    def read_with_quill(self, archive, *options):
        os.mkdir("out")
        run(QUILL, "zip", "extract", "--into", "out", *options, archive)
        self.check_extracted("out")

    def test_reads_zip(self):
        run("sh", "-c", "cd in && zip -qr ../a.zip .")
        self.read_with_quill("a.zip")

    def test_reads_zip_from_a_pipe(self):
        run("sh", "-c", "cd in && zip -qr - . | cat > ../a.zip")
        self.read_with_quill("a.zip")

    def test_reads_encrypted_zip(self):
        run("sh", "-c", "cd in && zip -qr -P 'open sesame' ../a.zip .")
        self.read_with_quill("a.zip", "--password-file", "password")

    def test_reads_every_method_of_7z(self):
        plain = [(method,) for method in ("Deflate", "Deflate64", "BZip2", "LZMA", "PPMd")]
        for method, *options in (*plain, ("Deflate", "-mem=AES256", "-popen sesame"), ("PPMd", "-mem=AES128", "-popen sesame")):
            with self.subTest(method=method, options=options):
                run("rm", "-rf", "out", "a.zip")
                run("sh", "-c", 'cd in && 7z a -tzip -mx=1 -mm=%s "$@" ../a.zip .' % method, "sh", *options)
                self.read_with_quill("a.zip", *(("--password-file", "password") if options else ()))

    def test_reads_python(self):
        for method in (zipfile.ZIP_STORED, zipfile.ZIP_DEFLATED, zipfile.ZIP_BZIP2):
            with self.subTest(method=method), zipfile.ZipFile("a.zip", "w", method) as archive:
                for name in self.files:
                    archive.write("in/" + name, name)
            os.path.isdir("out") and run("rm", "-r", "out")
            self.read_with_quill("a.zip")

    def test_ours_is_read_by_all(self):
        encrypted = ["--password-file", "password"]
        run(QUILL, "zip", "add", *encrypted, "aes.zip", "in")
        run("7z", "t", "-popen sesame", "aes.zip")
        for options, password in (([], None), ([*encrypted, "--encryption", "traditional"], "open sesame")):
            if os.path.exists("a.zip"):
                os.remove("a.zip")
            run(QUILL, "zip", "add", *options, "a.zip", "in")
            run("unzip", "-t", *(["-P", password] if password else []), "a.zip")
            run("7z", "t", *(["-p" + password] if password else []), "a.zip")
            with zipfile.ZipFile("a.zip") as archive:
                for name, content in self.files.items():
                    self.assertEqual(archive.read("in/" + name, password.encode() if password else None), content)
        run(QUILL, "zip", "add", "--method", "xz", "xz.zip", "in")
        run("7z", "t", "xz.zip")
        run("rm", "-r", "in")
        run("unzip", "-q", "-P", "open sesame", "a.zip")
        self.check_extracted("in")

    def test_our_aes_is_read_by_7z_and_kept_by_later_additions(self):
        for kind, name in (("aes128", "AES-128"), ("aes192", "AES-192"), ("aes256", "AES-256"), ("traditional", "ZipCrypto")):
            with self.subTest(kind=kind):
                run("rm", "-f", "a.zip")
                run(QUILL, "zip", "add", "--password-file", "password", "--encryption", kind, "a.zip", "in")
                with open("later.txt", "w") as file:
                    file.write("added later")
                run(QUILL, "zip", "add", "--password-file", "password", "a.zip", "later.txt")
                run("7z", "t", "-popen sesame", "a.zip")
                run("7z", "t", "-pwrong", "a.zip", status=2)
                methods = [line for line in run("7z", "l", "-slt", "a.zip").splitlines() if line.startswith("Method = ")]
                files = len(self.files) + 1
                self.assertEqual(len([line for line in methods if name in line]), files, methods)
                run(QUILL, "zip", "test", "--password-file", "password", "a.zip")

    def test_a_changed_archive_is_read_by_all(self):
        run("sh", "-c", "cd in && zip -qr -z ../a.zip . < text.txt")
        os.chdir("in")
        with open("text.txt", "w") as file:
            file.write("another text")
        run(QUILL, "zip", "add", "../a.zip", "text.txt", "noise.bin")
        run(QUILL, "zip", "remove", "../a.zip", "sub/deep/large.txt")
        os.chdir("..")
        run("unzip", "-t", "a.zip")
        run("7z", "t", "a.zip")
        with zipfile.ZipFile("a.zip") as archive:
            self.assertIsNone(archive.testzip())
            self.assertEqual(archive.read("text.txt"), b"another text")
            self.assertNotIn("sub/deep/large.txt", archive.namelist())
            self.assertTrue(archive.comment.startswith(b"a line of text"))

    def test_adds_nothing_of_its_own(self):
        with open("in/noise", "wb") as file:
            file.write(random.Random(2).randbytes(34 << 20))  # more than waits in memory
        os.chdir("in")
        run(QUILL, "zip", "add", "a.zip", "noise", ".")
        self.assertEqual(sorted(m["name"] for m in json.loads(run(QUILL, "zip", "list", "--json", "a.zip")) if not m["directory"]),
                         sorted([*self.files, "noise"]))
        run(QUILL, "zip", "add", "a.zip", ".")
        run(QUILL, "zip", "add", "a.zip", "a.zip", status=3)
        run("unzip", "-tq", "a.zip")

    def test_statuses_and_json(self):
        run(QUILL, "zip", "add", "a.zip", "in")
        listed = json.loads(run(QUILL, "zip", "list", "--json", "a.zip", "in/sub"))
        self.assertEqual([m["name"] for m in listed if not m["directory"]], ["in/sub/Gr\u00fc\u00dfe.txt", "in/sub/deep/large.txt"])
        tested = json.loads(run(QUILL, "zip", "test", "--json", "a.zip"))
        self.assertEqual({m["verdict"] for m in tested}, {"verified"})
        with open("a.zip", "r+b") as file:
            content = file.read()
            file.seek(content.index(self.files["noise.bin"][:50]) + 20)
            file.write(b"XX")
        damaged = json.loads(run(QUILL, "zip", "test", "--json", "a.zip", status=1))
        self.assertEqual([m["name"] for m in damaged if m["verdict"] == "damaged"], ["in/noise.bin"])
        os.mkdir("out")
        run(QUILL, "zip", "extract", "--into", "out", "a.zip", status=1)
        self.assertEqual(os.path.getsize("out/in/noise.bin"), 20_000)
        run(QUILL, "zip", "list", "a.zip", "in/none", status=3)
        run(QUILL, "zip", "list", "in/text.txt", status=3)
        run(QUILL, "zip", "extract", "--into", "missing/deeper", "a.zip", status=3)
        run(QUILL, "zip", "remove", "missing.zip", "a", status=3)
        run(QUILL, "zip", status=3)
        zipfile.ZipFile("empty.zip", "w").close()
        run(QUILL, "zip", "list", "empty.zip", status=2)


if __name__ == "__main__":
    unittest.main()
