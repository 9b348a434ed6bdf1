"""Checks the library file itself. Arguments: objdump, the DLL, the product version, the run-time
library: msvcrt or ucrt."""
import os
import pathlib
import re
import subprocess
import sys

SYSTEM_LIBRARIES = "advapi32|gdi32|kernel32|user32|version"
RUN_TIMES = {"msvcrt": "msvcrt", "ucrt": "api-ms-win-crt-.*"}
FORBIDDEN_IMPORTS = re.compile("abort|exit|terminate|assert|signal|raise|throw", re.IGNORECASE)
LARGEST_SIZE = 44 * 1024
WRITABLE = 0x80000000
LOAD_LIBRARY_SEARCH_SYSTEM32 = 0x800


def file_problems(objdump, path, version, run_time):
    def dump(option):
        return subprocess.run([objdump, option, path], check=True, capture_output=True, text=True,
                              env={**os.environ, "LC_ALL": "C"}).stdout

    headers = dump("-p")
    base = int(re.search(r"Ordinal Base\s+(\d+)", headers)[1])
    exports = [(base + int(index), name) for index, name in
               re.findall(r"^\t\[ *(\d+)\] ([A-Za-z]\w*)$", headers, re.MULTILINE)]
    if exports != [(100, "QbSupportGetInfo"), (101, "QbSupportReleaseBuffer")]:
        yield f"exports {exports}"
    for library in re.findall(r"DLL Name: (\S+)", headers):
        if not re.fullmatch(rf"({SYSTEM_LIBRARIES}|{RUN_TIMES[run_time]})\.dll", library.lower()):
            yield f"imports from {library}"
    imports = re.findall(r"^\t[0-9a-f]+\t +\d+  (\w+)$", headers, re.MULTILINE)
    if len(imports) < 20:
        yield f"only {len(imports)} imports found"
    for name in filter(FORBIDDEN_IMPORTS.search, imports):
        yield f"imports {name}"
    for text in ("pei-x86-64", "HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"):
        if text not in headers:
            yield f"without {text}"
    if ".debug_" in dump("-h"):
        yield "debug information"
    content = path.read_bytes()
    if len(content) > LARGEST_SIZE:
        yield f"{len(content)} bytes, more than {LARGEST_SIZE}"
    for text in ("VS_VERSION_INFO", "ProductVersion\0" + version):
        if text.encode("utf-16-le") not in content:
            yield f"version resource without {text!r}"
    yield from image_problems(content)


def image_problems(content):
    """What the tools do not show: the sections' rights, the load configuration, what tells builds apart."""
    def number(offset, size=4):
        return int.from_bytes(content[offset : offset + size], "little")

    header = number(0x3C)
    optional = header + 24
    sections = optional + number(header + 20, 2)
    load_configuration = number(optional + 112 + 10 * 8)
    dependent_load_flags = None
    for section in range(sections, sections + 40 * number(header + 6, 2), 40):
        name = content[section : section + 8].rstrip(b"\0").decode()
        if number(section + 36) & WRITABLE:
            yield f"section {name} is writable"
        start = number(section + 12)
        if start <= load_configuration < start + number(section + 8):
            at = load_configuration - start + number(section + 20)
            dependent_load_flags = number(at + 0x4E, 2)
    if dependent_load_flags != LOAD_LIBRARY_SEARCH_SYSTEM32:
        yield f"DependentLoadFlags {dependent_load_flags}"
    if number(header + 8) == 0:
        yield "without a time stamp to tell builds apart"
    if (number(optional + 48, 2), number(optional + 50, 2)) != (6, 1):
        yield "another subsystem version than 6.1"


def main():
    objdump, library, version, run_time = sys.argv[1:]
    problems = [*file_problems(objdump, pathlib.Path(library), version, run_time)]
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)


main()
