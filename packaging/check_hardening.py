#!/usr/bin/env python3
"""check_hardening.py BUILD: says which of the build's programs and libraries lack a measure against exploits.

The measures: programs that load at any address (PIE), tables of the linker that are read-only after the start (full RELRO), a
stack that cannot be run, guards of the stack, checked calls of the C library (_FORTIFY_SOURCE), checked containers
(_GLIBCXX_ASSERTIONS), and marks of jump targets (CET) in every object of ours on x86.
"""

import re
import subprocess
import sys
from pathlib import Path

PROGRAMS = ["src/cli/quill", "src/desktop/quillbright", "src/desktop/qpunwrap", "src/picture/quillpicture"]


def readelf(*arguments):
    """What readelf prints of a file."""
    return subprocess.run(["readelf", "--wide", *map(str, arguments)], check=True, capture_output=True, text=True).stdout


# Measure, what readelf is asked, whether its answer shows the measure.
MEASURES = [
    ("PIE", "--dynamic", lambda text: re.search(r"FLAGS_1.*\bPIE\b", text)),
    ("immediate binding", "--dynamic", lambda text: re.search(r"FLAGS_1.*\bNOW\b", text)),
    ("RELRO", "--program-headers", lambda text: "GNU_RELRO" in text),
    ("a stack that cannot be run", "--program-headers", lambda text: re.search(r"GNU_STACK(?:\s+0x\w+){5}\s+RW\s", text)),
    ("guards of the stack", "--symbols", lambda text: "__stack_chk_fail" in text),
    ("checked calls of the C library", "--symbols", lambda text: re.search(r"__(?!stack_)\w+_chk(@|\b)", text)),
    ("checked containers", "--symbols", lambda text: "__glibcxx_assert_fail" in text),
]


def unmarked_objects(library):
    """The objects of a static library that do not mark all targets of their jumps."""
    for part in readelf("--notes", library).split("\nFile: ")[1:]:
        if not re.search(r"IBT, SHSTK", part):
            yield part.partition("\n")[0]


def complaints(build):
    """What is missing in the build, a line each."""
    for program in (build / name for name in PROGRAMS):
        for name, question, shows in MEASURES:
            if not shows(readelf(question, program)):
                yield f"{program}: lacks {name}"
    libraries = sorted((build / "src").glob("*/libquill_*.a"))
    if not libraries:
        yield f"{build}: has no libraries"
    if "X86-64" in readelf("--file-header", build / PROGRAMS[0]):
        for library in libraries:
            for unmarked in unmarked_objects(library):
                yield f"{unmarked}: lacks marks of jump targets"


def main():
    """Prints what is missing; exit status 1 where anything is."""
    missing = list(complaints(Path(sys.argv[1])))
    for line in missing:
        print(line)
    print(f"{len(PROGRAMS)} programs, {len(missing)} faults")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
