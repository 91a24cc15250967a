#!/usr/bin/env python3
"""Reads every #include under src/ and says where one breaks the order of the layers.

Nothing includes upwards; the folders of the program itself may include each other, but no file may include itself by
way of others. Only desktop/ and picture/ use Qt, only the kernels (sources and -inl.h files) use SIMD, only the commands use the command line parser.
"""

import re
import sys
from pathlib import Path

SRC = Path(__file__).resolve().parent.parent / "src"

PROGRAM = {"shell", "decoder", "encoder", "zip", "htx", "pics", "viewer", "integration"}
BASE = {"text", "files"}
SUMS = BASE | {"report", "simd", "checksum"}
CORE = SUMS | {"codec", "archive", "controls", "platform", "worker", "thumbnails"} | PROGRAM

# Folder: the folders that it may include, besides itself.
MAY_INCLUDE = {
    "text": BASE,
    "files": BASE,
    "report": {"text"},
    "simd": set(),
    "checksum": {"simd"},
    "codec": SUMS,
    "archive": SUMS,
    "controls": BASE | {"report"},
    "platform": BASE | {"report", "controls"},
    "worker": BASE | {"platform"},
    "thumbnails": BASE | {"checksum", "platform"},
    **{folder: CORE for folder in PROGRAM},
    "desktop": CORE,
    "picture": CORE,
    "cli": CORE,
    "qpunwrap": SUMS | {"codec"},
}

# What the includes of a library begin with, and the only files that may name it.
LIBRARIES = [
    ("Qt", re.compile(r"Q[A-Z]|Qt"), lambda file: file.parts[0] in ("desktop", "picture")),
    ("SIMD", re.compile(r"hwy/|[a-z]*mmintrin\.h|x86intrin\.h|arm_neon\.h"),
     lambda file: file.parts[0] in ("simd", "checksum", "codec") and (file.suffix == ".cpp" or file.stem.endswith("-inl"))),
    ("CLI11", re.compile(r"CLI/"), lambda file: file.parts[0] in ("cli", "qpunwrap")),
]

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)


def includes_of(path):
    """The quoted and the angled includes of a source: two lists of text."""
    found = INCLUDE.findall(path.read_text(encoding="utf-8"))
    return [quoted for quoted, _ in found if quoted], [angled for _, angled in found if angled]


def complaints_about(file, quoted, angled):
    """What is wrong with the includes of `file`, itself given as a path below src/."""
    folder = file.parts[0]
    if folder not in MAY_INCLUDE:
        yield f"{file}: the folder {folder}/ has no place in the layers"
        return
    for include in quoted:
        target = Path(include).parts[0]
        if not (SRC / include).is_file():
            yield f'{file}: "{include}" is no file below src/'
        elif target != folder and target not in MAY_INCLUDE[folder]:
            yield f'{file}: {folder}/ may not include "{include}"'
    for include in angled:
        for name, pattern, allowed in LIBRARIES:
            if pattern.match(include) and not allowed(file):
                yield f"{file}: <{include}>: {name} does not belong here"


def cycle_in(graph):
    """The files of one include cycle, first and last the same; None where there is none."""
    done = set()
    for root in graph:
        path, on_path, pending = [], set(), [(root, False)]
        while pending:
            node, leaving = pending.pop()
            if leaving:
                path.pop()
                on_path.discard(node)
                done.add(node)
            elif node in on_path:
                return path[path.index(node):] + [node]
            elif node not in done:
                path.append(node)
                on_path.add(node)
                pending.append((node, True))
                pending += [(target, False) for target in graph.get(node, [])]
    return None


def main():
    graph, complaints = {}, []
    for path in sorted(SRC.rglob("*")):
        if path.suffix in (".h", ".cpp"):
            file = path.relative_to(SRC)
            quoted, angled = includes_of(path)
            # A file that includes itself to be compiled once per target is no cycle.
            graph[str(file)] = [target for target in quoted if target != str(file)]
            complaints += complaints_about(file, quoted, angled)
    cycle = cycle_in(graph)
    if cycle:
        complaints.append("include cycle: " + " -> ".join(cycle))
    for complaint in complaints:
        print(complaint, file=sys.stderr)
    print(f"{len(graph)} files, {len(complaints)} faults")
    return 1 if complaints or not graph else 0


if __name__ == "__main__":
    sys.exit(main())
