"""What quill encodes, decoded by programs and libraries that share nothing with it: round_trip.py QUILL"""

import binascii
import email
import email.policy
import random
import shutil
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

QUILL = Path(sys.argv[1]).resolve()

SIZES = [*range(0, 301), 4_321, 10_000, 5_000_001]
SIZES_FOR_PROGRAMS = [1, 44, 45, 46, 127, 128, 300, 10_000, 5_000_001]  # each costs a process
SIZES_FOR_UUDEVIEW = [4_321, 10_000, 5_000_001]  # it takes texts of a few lines for no data
EXTENSIONS = {"uue": "uue", "mime": "mme", "binhex": "hqx", "xxe": "xxe", "yenc": "ync"}
XX = b"+-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
BINHEX = b"!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr"


def sample(size):
    """Bytes of every value, with runs of some length among them."""
    generator = random.Random(size)
    out = bytearray()
    while len(out) < size:
        if generator.randrange(8):
            out += generator.randbytes(64)
        else:
            out += bytes([generator.choice([0, 10, 13, 0x90, generator.randrange(256)])]) * generator.randrange(1, 300)
    return bytes(out[:size])


def uu_lines(text, translate=None):
    lines = text.split(b"\r\n")
    begin = next(i for i, line in enumerate(lines) if line.startswith(b"begin 644 "))
    end = lines.index(b"end")
    data = lines[begin + 1 : end]
    if translate:
        data = [line.translate(translate) for line in data]
    return b"".join(binascii.a2b_uu(line) for line in data)


def from_uue(text):
    return uu_lines(text)


def from_xxe(text):
    uu = bytes(range(33, 97))  # value 0 as '`' stands at the end
    return uu_lines(text, bytes.maketrans(XX, uu[-1:] + uu[:-1]))


def from_mime(text):
    message = email.message_from_bytes(text, policy=email.policy.default)
    assert not message.defects, message.defects
    return message.get_payload(decode=True)


# yEnc: what each byte stands for, plain and behind '='. Line ends stand for nothing.
PLAIN = bytes((c - 42) % 256 for c in range(256))
ESCAPED = bytes((c - 106) % 256 for c in range(256))


def from_yenc(text):
    head, rest = text.split(b"=ybegin ", 1)
    assert head == b"\r\n\r\n"
    data, trailer = rest.split(b"\r\n", 1)[1].rsplit(b"=yend ", 1)
    first, *escaped = data.replace(b"\r\n", b"").split(b"=")
    out = first.translate(PLAIN) + b"".join(e[:1].translate(ESCAPED) + e[1:].translate(PLAIN) for e in escaped)
    fields = dict(field.split(b"=") for field in trailer.split())
    assert int(fields[b"size"]) == len(out)
    if b"crc32" in fields:
        assert int(fields[b"crc32"], 16) == zlib.crc32(out)
    return out


def from_binhex(text):
    body = text.split(b"\r\n\r\n", 1)[1].replace(b"\r\n", b"").strip(b":")
    bits = b"".join(b"%c" % BINHEX.index(c) for c in body)
    packed = bytearray()
    for i in range(0, len(bits), 4):
        group = bits[i : i + 4]
        value = int.from_bytes(group.ljust(4, b"\0"), "big")
        value = sum((value >> 8 * k & 63) << 6 * k for k in range(4))
        packed += value.to_bytes(3, "big")[: len(group) * 3 // 4]
    stream = bytearray()
    at = 0
    while (marker := packed.find(0x90, at)) >= 0:
        stream += packed[at:marker]
        count = packed[marker + 1]
        stream += b"\x90" if count == 0 else stream[-1:] * (count - 1)
        at = marker + 2
    stream += packed[at:]
    header = 1 + stream[0] + 19
    size = int.from_bytes(stream[header - 8 : header - 4], "big")
    fork = bytes(stream[header + 2 : header + 2 + size])
    checks = [(stream[:header], header), (fork, header + 2 + size), (b"", header + 4 + size)]
    for checked, at in checks:
        assert binascii.crc_hqx(bytes(checked), 0) == int.from_bytes(stream[at : at + 2], "big")
    assert len(stream) == header + 6 + size
    return fork


DECODERS = {"uue": from_uue, "xxe": from_xxe, "mime": from_mime, "yenc": from_yenc, "binhex": from_binhex}


class RoundTrip(unittest.TestCase):
    def setUp(self):
        self.directory = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.directory)
        for size in SIZES:
            (self.directory / f"f{size}.bin").write_bytes(sample(size))

    def call(self, *arguments, **options):
        return subprocess.run(arguments, cwd=self.directory, capture_output=True, timeout=120, **options)

    def encode(self, encoding, sizes, *options):
        """Encodes the samples of these sizes in one call; gives each with its output."""
        out = self.directory / encoding
        out.mkdir(exist_ok=True)
        inputs = [f"f{size}.bin" for size in sizes]
        done = self.call(QUILL, "encode", "--format", encoding, *options, "--quiet", "--output", out, *inputs)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return [(size, out / f"f{size}.bin.{EXTENSIONS[encoding]}") for size in sizes]

    def test_python_reads_every_format_at_every_size(self):
        for encoding, decode in DECODERS.items():
            for size, output in self.encode(encoding, SIZES, *(["--crc"] if encoding == "yenc" else [])):
                self.assertEqual(decode(output.read_bytes()), sample(size), f"{encoding}, {size} bytes")

    def test_uudecode_reads_uue(self):
        for size, output in self.encode("uue", SIZES_FOR_PROGRAMS):
            self.assertEqual(self.call("uudecode", "-o", "-", output, check=True).stdout, sample(size), size)

    def decode_with_uudeview(self, size, *inputs):
        decoded = Path(tempfile.mkdtemp(dir=self.directory))
        self.call("uudeview", "-i", "-q", "-a", "-o", "-p", decoded, *inputs, check=True)
        return (decoded / f"f{size}.bin").read_bytes()

    def test_uudeview_reads_every_format(self):
        for encoding in DECODERS:
            for size, output in self.encode(encoding, SIZES_FOR_UUDEVIEW):
                self.assertEqual(self.decode_with_uudeview(size, output), sample(size), f"{encoding}, {size} bytes")

    def test_uudeview_puts_parts_together(self):
        size = 5_000_001
        for encoding in ("uue", "yenc"):
            self.encode(encoding, [size], "--part-size", "1800000")
            parts = sorted((self.directory / encoding).iterdir(), reverse=True)
            self.assertEqual(len(parts), 3)
            self.assertEqual(self.decode_with_uudeview(size, *parts), sample(size), encoding)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
