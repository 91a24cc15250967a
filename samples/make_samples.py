#!/usr/bin/env python3
"""Makes the sample messages beside this script. Pictures are drawn, texts written here; nothing is read.

Only the standard library is used. The same Python gives the same bytes.
"""

import binascii
import random
import struct
import zlib
from email.message import EmailMessage
from email.policy import SMTP
from pathlib import Path

HERE = Path(__file__).resolve().parent

SKY, DUSK = ((122, 178, 226), (232, 240, 246)), ((44, 38, 92), (246, 148, 92))
SEA, SAND, WHITE, RED, DARK = (38, 92, 140), (222, 200, 150), (250, 250, 248), (200, 40, 40), (30, 34, 48)

TIDES = """Tide table for the old harbour
===============================

Day         High    Low     High    Low
Monday      03:12   09:25   15:40   21:50
Tuesday     04:01   10:14   16:28   22:38
Wednesday   04:49   11:02   17:15   23:24
Thursday    05:36   11:49   18:01   --
Friday      00:10   06:22   12:35   18:46
"""

PANCAKES = """Pancakes for four

 250 g flour
 500 ml milk
   3   eggs
   1   pinch of salt
       butter for the pan

Stir flour, salt and half of the milk until smooth. Add the eggs, then the rest of
the milk. Let it rest for half an hour. Bake thin, and turn once.
"""

LETTER = """To the crew of the Marigold

We leave with the morning tide. Bring warm clothes and the big kettle.
The charts are in the locker under the stairs.

The keeper of the light
"""


# --- pictures ---------------------------------------------------------------------------------------------------

def mix(a, b, part):
    return tuple(round(x + (y - x) * part) for x, y in zip(a, b))


def landscape(width, height, sky):
    """Rows of pixels: a sky that grows lighter downwards, the sea, a beach."""
    horizon, beach = height * 6 // 10, height * 9 // 10
    rows = []
    for y in range(height):
        if y < horizon:
            rows.append([mix(*sky, y / horizon)] * width)
        elif y < beach:
            wave = [mix(SEA, WHITE, 0.18 if (x * 3 + y * 7) % 23 < 3 else (y - horizon) / height / 2)
                    for x in range(width)]
            rows.append(wave)
        else:
            rows.append([SAND] * width)
    return rows


def disc(rows, cx, cy, radius, colour):
    for y in range(cy - radius, cy + radius + 1):
        for x in range(cx - radius, cx + radius + 1):
            if (x - cx) ** 2 + (y - cy) ** 2 <= radius ** 2:
                rows[y][x] = colour


def lighthouse(rows, cx, top, bottom):
    """A tower in red and white rings, wider at its foot, with a lamp and a roof."""
    for y in range(top, bottom):
        half = 5 + (y - top) * 6 // (bottom - top)
        for x in range(cx - half, cx + half + 1):
            rows[y][x] = mix(RED if (y - top) // 10 % 2 else WHITE, DARK, 0.35 * (x - cx + half) / (2 * half))
    for y in range(top - 14, top):
        half = 5 if y > top - 8 else max(0, y - top + 14)
        for x in range(cx - half, cx + half + 1):
            rows[y][x] = (255, 230, 120) if y > top - 8 else DARK


def boat(rows, cx, water):
    for y in range(water - 7, water + 1):
        for x in range(cx - 16 + (7 - water + y), cx + 17 - (7 - water + y)):
            rows[2 * water - 7 - y][x] = DARK
    for y in range(water - 38, water - 8):
        rows[y][cx] = DARK
        for x in range(cx + 1, cx + 2 + (y - water + 38) // 2):
            rows[y][x] = WHITE


def night_sky(width, height, seed):
    rows = [[mix((6, 8, 26), (28, 30, 70), y / height)] * width for y in range(height)]
    stars = random.Random(seed)
    for _ in range(180):
        x, y, light = stars.randrange(width), stars.randrange(height), stars.randrange(120, 256)
        rows[y][x] = (light, light, min(255, light + 20))
    disc(rows, width * 3 // 4, height // 3, height // 9, (240, 236, 210))
    return rows


def png(rows):
    """The rows as a PNG file: 8-bit RGB, no filter."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    pixels = b"".join(b"\0" + bytes(value for pixel in row for value in pixel) for row in rows)
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(pixels, 9)) +
            chunk(b"IEND", b""))


def harbour_picture():
    rows = landscape(200, 150, SKY)
    disc(rows, 40, 32, 13, (255, 236, 150))
    boat(rows, 70, 104)
    lighthouse(rows, 150, 46, 136)
    return png(rows)


def lighthouse_picture():
    rows = landscape(120, 160, SKY)
    lighthouse(rows, 60, 40, 148)
    return png(rows)


def sunset_picture():
    rows = landscape(160, 120, DUSK)
    disc(rows, 60, 58, 14, (255, 214, 120))
    boat(rows, 112, 84)
    return png(rows)


# --- encodings --------------------------------------------------------------------------------------------------

def uuencoded(name, data):
    lines = [f"begin 644 {name}"]
    lines += [binascii.b2a_uu(data[i:i + 45], backtick=True).decode().rstrip("\n") for i in range(0, len(data), 45)]
    return lines + ["`", "end"]


def xxencoded(name, data):
    digits = "+-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
    lines = [f"begin 644 {name}"]
    for i in range(0, len(data), 45):
        piece = data[i:i + 45]
        padded = piece + bytes(-len(piece) % 3)
        groups = [int.from_bytes(padded[j:j + 3], "big") for j in range(0, len(padded), 3)]
        lines.append(digits[len(piece)] + "".join(digits[g >> s & 63] for g in groups for s in (18, 12, 6, 0)))
    return lines + ["+", "end"]


def binhexed(name, kind, creator, data, resource):
    """BinHex 4.0: header, data fork and resource fork, each with its checksum; no runs but of the mark itself."""
    def checked(piece):
        return piece + struct.pack(">H", binascii.crc_hqx(piece, 0))

    header = bytes([len(name)]) + name + b"\0" + kind + creator + struct.pack(">HII", 0, len(data), len(resource))
    packed = (checked(header) + checked(data) + checked(resource)).replace(b"\x90", b"\x90\0")
    digits = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr"
    bits = "".join(f"{byte:08b}" for byte in packed)
    bits += "0" * (-len(bits) % 6)
    text = ":" + "".join(digits[int(bits[i:i + 6], 2)] for i in range(0, len(bits), 6)) + ":"
    return ["(This file must be converted with BinHex 4.0)", ""] + [text[i:i + 64] for i in range(0, len(text), 64)]


def yencoded(name, data):
    lines, line = [f"=ybegin line=128 size={len(data)} name={name}".encode()], bytearray()
    for byte in data:
        value = (byte + 42) & 255
        at_edge = not line
        if value in (0, 10, 13, 61) or (at_edge and value in (9, 32, 46)):
            line += bytes([61, (value + 64) & 255])
        else:
            line.append(value)
        if len(line) >= 128:
            lines.append(bytes(line))
            line.clear()
    if line:
        lines.append(bytes(line))
    return lines + [f"=yend size={len(data)} crc32={zlib.crc32(data):08x}".encode()]


# --- messages ---------------------------------------------------------------------------------------------------

def headers(message, sender, to, subject, date, number):
    message["From"], message["To"], message["Subject"] = sender, to, subject
    message["Date"], message["Message-ID"] = date, f"<{number}@example.org>"


def mail_with_attachments():
    mail = EmailMessage(policy=SMTP)
    headers(mail, "Ada Keeper <ada@example.org>", "Ben Sailor <ben@example.org>", "The harbour, and the tides",
            "Mon, 04 Jun 2012 09:30:00 +0200", "harbour-1")
    mail.set_content("Hello Ben,\n\nhere are the picture that you asked for, and this week's tides.\n\nAda\n")
    mail.add_attachment(harbour_picture(), "image", "png", filename="harbour.png")
    mail.add_attachment(TIDES.encode(), "text", "plain", filename="tide table.txt")
    mail.set_boundary("=_harbour_1")
    return mail.as_bytes()


def forwarded_mail():
    inner = EmailMessage(policy=SMTP)
    headers(inner, "Ben Sailor <ben@example.org>", "Ada Keeper <ada@example.org>", "Last night from the pier",
            "Tue, 05 Jun 2012 07:12:00 +0200", "pier-1")
    inner.set_content("Look at that.\n\nBen\n")
    inner.add_attachment(sunset_picture(), "image", "png", filename="sunset.png")
    inner.set_boundary("=_pier_1")
    mail = EmailMessage(policy=SMTP)
    headers(mail, "Ada Keeper <ada@example.org>", "Cleo Wright <cleo@example.org>", "Fwd: Last night from the pier",
            "Tue, 05 Jun 2012 08:00:00 +0200", "pier-2")
    mail.set_content("Cleo, Ben's picture is within his mail below.\n")
    mail.add_attachment(inner)
    mail.set_boundary("=_pier_2")
    return mail.as_bytes()


def post(subject, introduction, body, end=b"\n"):
    """A saved news post: headers, a word of introduction, the encoded lines."""
    head = ["Path: news.example.org!not-for-mail", "From: Dora Finch <dora@example.org>",
            "Newsgroups: example.pictures", f"Subject: {subject}", "Date: Wed, 06 Jun 2012 20:15:00 +0000",
            f"Message-ID: <{binascii.crc32(subject.encode()):08x}@example.org>", "", introduction, ""]
    lines = [line.encode() if isinstance(line, str) else line for line in head + body]
    return end.join(lines) + end


def damaged_post():
    """The last part of the picture has not come through, and a line in its middle has lost its tail."""
    lines = uuencoded("sunset.png", sunset_picture())
    middle = len(lines) // 2
    lines[middle] = lines[middle][:23]
    return post("sunset.png", "The connection broke while this was sent.", lines[:len(lines) * 3 // 4])


SAMPLES = {
    "harbour.eml": mail_with_attachments,
    "forwarded.eml": forwarded_mail,
    "lighthouse.uue": lambda: post("lighthouse.png", "The light, seen from the mole.",
                                   uuencoded("lighthouse.png", lighthouse_picture())),
    "pancakes.xxe": lambda: post("pancakes.txt", "As promised:", xxencoded("pancakes.txt", PANCAKES.encode())),
    "letter.hqx": lambda: post("To the crew", "A letter from a Macintosh.",
                               binhexed(b"To the crew", b"TEXT", b"ttxt", LETTER.replace("\n", "\r").encode(),
                                        b"resource fork: window 12 40 320 200")),
    "stars.ync": lambda: post("stars.png (yEnc)", "Clear sky at last.",
                              yencoded("stars.png", png(night_sky(128, 96, 7))), b"\r\n"),
    "damaged.uue": damaged_post,
}

if __name__ == "__main__":
    for name, make in SAMPLES.items():
        (HERE / name).write_bytes(make())
