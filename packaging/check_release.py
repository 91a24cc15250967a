#!/usr/bin/env python3
"""check_release.py: says where the newest release in the AppStream data or in CHANGELOG.md is not the project's version."""

import re
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parent.parent
PLACES = [
    ("CMakeLists.txt", r"project\(quillbright VERSION (\S+)"),
    ("packaging/quillbright.metainfo.xml", r'<release version="([^"]+)"'),
    ("CHANGELOG.md", r"^## (\S+)"),
]


def newest(place, pattern):
    """The first version that a file names; an empty text where it names none."""
    found = re.search(pattern, (TOP / place).read_text(encoding="utf-8"), re.MULTILINE)
    return found.group(1) if found else ""


def main():
    version = newest(*PLACES[0])
    faults = [f"{place}: the newest release is {newest(place, pattern) or 'missing'}, not {version}"
              for place, pattern in PLACES[1:] if newest(place, pattern) != version]
    print("\n".join(faults) if faults else f"release {version}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
