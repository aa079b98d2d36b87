#!/usr/bin/env python3
"""Checks from the #include lines that no folder includes one that stands above or beside it, and that public
headers include public headers only."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
ORDER = ["platform", "host", "hardware", "preprocessor"]
# Where the system's own headers may be included.
SYSTEM_FOLDERS = [("platform", "posix"), ("reference_host", "ports")]
ABOVE_PREPROCESSOR = ["settling", "regulation"]
# The bus stands below what is driven over it, the network document above its children.
PERIPHERALS = ["peripheral_network/bus", "switching", "adapters", "peripheral_network"]
SYSTEM_HEADERS = re.compile(r"#include\s+<(sys/|unistd|pthread|poll|linux/|fcntl|signal\.h|windows|dlfcn|time\.h|termios)")


def allowed():
    table = {"simulator": {"simulator"}}
    for position, folder in enumerate(ORDER):
        table[folder] = set(ORDER[: position + 1])
    for folder in ABOVE_PREPROCESSOR:
        table[folder] = set(ORDER) | {folder}
    for position, folder in enumerate(PERIPHERALS):
        table[folder] = set(ORDER) | set(PERIPHERALS[: position + 1])
    library = set(ORDER) | set(ABOVE_PREPROCESSOR) | set(PERIPHERALS) | {"ports"}
    table["ports"] = {"platform", "host", "ports"}
    table["testing"] = {"platform", "testing"}
    table["reference_host"] = library | {"simulator", "reference_host"}
    table["bench"] = table["reference_host"] | {"bench"}
    return table


def folder_of(parts):
    """The folder that a path belongs to: its first part, but for the bus, which is a layer of its own."""
    bus = "/".join(parts[:2])
    return bus if bus in PERIPHERALS else parts[0]


def faults():
    table = allowed()
    for path in sorted((ROOT / "src").rglob("*")):
        if path.suffix not in {".h", ".cpp"}:
            continue
        where = path.relative_to(ROOT / "src")
        folder = folder_of(where.parts)
        if folder not in table:
            yield f"{where}: folder {folder} has no place in the layers"
            continue
        for number, line in enumerate(path.read_text().splitlines(), 1):
            if SYSTEM_HEADERS.search(line) and where.parts[:2] not in SYSTEM_FOLDERS and folder != "bench":
                yield f"{where}:{number}: a system header outside its folders: {line}"
            found = re.match(r'#include\s+"([^"]+/[^"]+)"', line)
            if not found:
                if re.match(r'#include\s+"', line):
                    yield f"{where}:{number}: include names no folder: {line}"
                continue
            target = folder_of(found.group(1).split("/"))
            driver = folder == "simulator" and found.group(0).endswith('"platform/DeviceDriver.h"')
            if target not in table[folder] and not driver:
                yield f"{where}:{number}: {folder} must not include {target}"


def public_header_faults():
    """Public headers that are not there, or that include a header which is not installed."""
    text = (ROOT / "cmake" / "PublicHeaders.cmake").read_text()
    public = set(re.findall(r"^  (\S+\.h)\)?$", text, re.MULTILINE))
    for header in sorted(public):
        path = ROOT / "src" / header
        if not path.exists():
            yield f"cmake/PublicHeaders.cmake: {header} is not there"
            continue
        for target in re.findall(r'#include\s+"([^"]+)"', path.read_text()):
            if target not in public:
                yield f"{header} is public and includes {target}, which cmake/PublicHeaders.cmake does not list"


def main():
    found = list(faults()) + list(public_header_faults())
    for fault in found:
        print(fault, file=sys.stderr)
    print(f"layers: {len(found)} faults" if found else "layers: no include points upward")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
