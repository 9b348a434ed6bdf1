"""Checks the library file itself. Arguments: objdump, the DLL, the product version, the run-time
library: msvcrt or ucrt."""
import os
import pathlib
import re
import subprocess
import sys

OBJDUMP, LIBRARY, VERSION, RUN_TIME = sys.argv[1:]
LIBRARIES = "advapi32|gdi32|kernel32|user32|version|" + \
    {"msvcrt": "msvcrt", "ucrt": "api-ms-win-crt-.*"}[RUN_TIME]
FORBIDDEN_IMPORTS = re.compile("abort|exit|terminate|assert|signal|raise|throw", re.IGNORECASE)
WANTED = ("pei-x86-64", "HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT",
          "MajorSubsystemVersion\t6", "MinorSubsystemVersion\t1")


def dump(*options):
    return subprocess.run([OBJDUMP, *options, LIBRARY], check=True, capture_output=True, text=True,
                          env={**os.environ, "LC_ALL": "C"}).stdout


def dependent_load_flags(headers):
    base, configuration = (int(re.search(pattern, headers)[1], 16) for pattern in
                           (r"ImageBase\s+(\w+)", r"Entry a (\w+)"))
    flags = base + configuration + 0x4E
    bytes_there = dump("-s", f"--start-address={flags}", f"--stop-address={flags + 2}")
    return "".join(re.findall(r"\n \w+ (\w{4}) ", bytes_there))


def problems():
    headers = dump("-p")
    base = int(re.search(r"Ordinal Base\s+(\d+)", headers)[1])
    exports = [(base + int(index), name) for index, name in
               re.findall(r"^\t\[ *(\d+)\] ([A-Za-z]\w*)$", headers, re.MULTILINE)]
    if exports != [(100, "QbSupportGetInfo"), (101, "QbSupportReleaseBuffer")]:
        yield f"exports {exports}"
    for library in re.findall(r"DLL Name: (\S+)", headers):
        if not re.fullmatch(rf"({LIBRARIES})\.dll", library.lower()):
            yield f"imports from {library}"
    imports = re.findall(r"^\t[0-9a-f]+\t +\d+  (\w+)$", headers, re.MULTILINE)
    if len(imports) < 20:
        yield f"only {len(imports)} imports found"
    yield from (f"imports {name}" for name in filter(FORBIDDEN_IMPORTS.search, imports))
    yield from (f"without {text}" for text in WANTED if text not in headers)
    if dependent_load_flags(headers) != "0008":  # 0x800, System32 alone
        yield f"dependent load flags {dependent_load_flags(headers)}"
    sections = re.findall(r"^ +\d+ (\S+) .*\n +(.*)", dump("-h"), re.MULTILINE)
    yield from (f"section {name} is writable" for name, rights in sections if "READONLY" not in rights)
    if not sections or any(name.startswith(".debug_") for name, _ in sections):
        yield f"sections {sections}"
    content = pathlib.Path(LIBRARY).read_bytes()
    if len(content) > 44 * 1024:
        yield f"{len(content)} bytes, too many"
    if re.search(rb"PE\0\0....\0{4}", content, re.DOTALL):
        yield "without a time stamp to tell builds apart"
    for text in ("VS_VERSION_INFO", "ProductVersion\0" + VERSION):
        if text.encode("utf-16-le") not in content:
            yield f"version resource without {text!r}"


sys.exit("\n".join(problems()) or 0)
