#!/usr/bin/env python3
"""Compares what quillpicture makes of the pictures in a folder with what is known of them.

compare_pictures.py PICTURE_PIXELS QUILLPICTURE FOLDER

FOLDER has a file EXPECTED.tsv with a head line; of its columns, the first is the name of a picture and the third the
SHA-256 of its first frame, as RGBA8 in rows from the top, or "-" for a broken picture, which must only do no harm. A
picture is right where the pixels are those, or where they differ by at most 4 a channel (JPEG has no exact pixels, and
a clear pixel no color) from what Pillow, GraphicsMagick or ImageMagick reads and is expected, turned as the file says. Fails where less than 97 % are right, or where the worker
crashes, takes longer than 20 seconds or more than 1 GiB.
Wrong pictures whose last column says DISAGREE, because independent readers differ on them, do not count.
"""
import csv
import hashlib
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image, ImageChops, ImageOps

TOLERANCE = 4
LEAST_RIGHT = 0.97
MOST_MILLISECONDS = 20_000
MOST_MEBIBYTES = 1024
HARMFUL = ("the picture made the decoder fail", "the picture takes too long to decode")


def expected(folder):
    with open(folder / "EXPECTED.tsv", encoding="utf-8", newline="") as table:
        rows = list(csv.reader(table, delimiter="\t", quoting=csv.QUOTE_NONE))[1:]
    return [(row[0], row[2], "DISAGREE" in row[-1]) for row in rows]


def read_pam(path):
    head, _, pixels = path.read_bytes().partition(b"ENDHDR\n")
    fields = dict(line.split(b" ", 1) for line in head.split(b"\n") if b" " in line)
    return Image.frombytes("RGBa", (int(fields[b"WIDTH"]), int(fields[b"HEIGHT"])), pixels)


def digest(image):
    return hashlib.sha256(image.tobytes()).hexdigest()


def largest_difference(ours, theirs):
    if ours.size != theirs.size:
        return f"size {ours.size} instead of {theirs.size}"
    flat = [Image.merge("RGBA", image.split()) for image in (ours, theirs.convert("RGBa"))]
    return max(high for _, high in ImageChops.difference(*flat).getextrema())


def compared(ours, theirs):
    difference = largest_difference(ours, theirs)
    return None if isinstance(difference, int) and difference <= TOLERANCE else f"differs by {difference}"


def by_pillow(path):
    picture = Image.open(path)
    return picture.convert("RGBA"), ImageOps.exif_transpose(picture).convert("RGBA")


def by_graphics_magick(path):
    return by_command(path, ["gm", "identify"], ["gm", "convert"], "-matte")


def by_image_magick(path):
    return by_command(path, ["identify"], ["convert"], "-alpha", "set")


def by_command(path, identify, convert, *options):
    name = f"{path}[0]"
    size = subprocess.run([*identify, "-format", "%w %h\n", name], capture_output=True, check=False).stdout.split()
    pixels = subprocess.run([*convert, name, *options, "-depth", "8", "rgba:-"], capture_output=True, check=False).stdout
    if len(size) < 2:
        raise ValueError("not read")
    picture = Image.frombytes("RGBA", (int(size[0]), int(size[1])), pixels)
    return picture, picture


def fault(path, sha, pixels, known):
    """Returns what is wrong with the pixels of a picture; None where they are right."""
    if not pixels.exists():
        return "nothing decoded"
    ours = read_pam(pixels)
    if digest(ours.convert("RGBA")) == sha:
        return None
    if sha in known:
        return compared(ours, known[sha])
    for read in by_pillow, by_graphics_magick, by_image_magick:
        try:
            raw, upright = read(path)
        except (OSError, ValueError):
            continue
        if digest(raw) != sha:
            continue
        known[sha] = upright
        return compared(ours, upright)
    return f"other pixels ({ours.size}), nor do other readers have those expected"


def main():
    tool, worker, folder = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    pictures = expected(folder)
    known = {}
    right = wrong = doubtful = harm = 0
    with tempfile.TemporaryDirectory() as out:
        files = [str(folder / name) for name, _, _ in pictures]
        lines = subprocess.run([tool, worker, out, *files], capture_output=True, text=True, check=True).stdout
        for (name, sha, unclear), line in zip(pictures, lines.splitlines(), strict=True):
            number, state, _, milliseconds, memory, reason = line.split("\t")
            if reason in HARMFUL or int(milliseconds) > MOST_MILLISECONDS or int(memory) > MOST_MEBIBYTES:
                print(f"HARM   {name}: {reason}, {milliseconds} ms, {memory} MiB")
                harm += 1
            if sha == "-":
                continue
            found = fault(folder / name, sha, pathlib.Path(out, number + ".pam"), known)
            right += found is None
            doubtful += found is not None and unclear
            wrong += found is not None and not unclear
            if found:
                print(f"{'OTHER' if unclear else 'WRONG'}  {name}: {found} ({state}: {reason})")
    print(f"{right} right, {wrong} wrong, {doubtful} not as one of several readers, {harm} harmful of {len(pictures)}")
    return 1 if harm or right < LEAST_RIGHT * (right + wrong) else 0


if __name__ == "__main__":
    sys.exit(main())
