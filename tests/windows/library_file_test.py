"""Checks the library file itself, and what its sources may name. Arguments: objdump, the DLL, the
source directory, the product version."""
import os
import pathlib
import re
import subprocess
import sys

SYSTEM_LIBRARIES = {"advapi32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "user32.dll",
                    "version.dll"}
FORBIDDEN_IMPORTS = re.compile("abort|exit|terminate|assert|signal|raise|throw", re.IGNORECASE)
LARGEST_SIZE = 64 * 1024
WINDOWS_HEADERS = re.compile(r"#\s*include\s*<(windows|psapi|tlhelp32|win\w+)\.h>", re.IGNORECASE)
FORBIDDEN_IN_LIBRARY = re.compile(
    r"#\s*include\s*<(string|vector|map|set|list|deque|iostream|sstream|fstream|ostream|istream|"
    r"locale|functional|stdexcept|exception|new|cassert)>|\b(throw|try|catch)\b|std::string\b")


def file_problems(objdump, path, version):
    def dump(option):
        return subprocess.run([objdump, option, path], check=True, capture_output=True, text=True,
                              env={**os.environ, "LC_ALL": "C"}).stdout

    headers = dump("-p")
    exports = (re.findall(r"\+base\[ *(\d+)\] \w+ Export RVA", headers),
               re.findall(r"^\t\[ *(\d+)\] ([A-Za-z]\w*)$", headers, re.MULTILINE))
    if exports != (["100", "101"], [("0", "QbSupportGetInfo"), ("1", "QbSupportReleaseBuffer")]):
        yield f"exports {exports}"
    for library in re.findall(r"DLL Name: (\S+)", headers):
        if library.lower() not in SYSTEM_LIBRARIES:
            yield f"imports from {library}"
    imports = re.findall(r"^\t[0-9a-f]+\t +\d+  (\w+)$", headers, re.MULTILINE)
    if len(imports) < 20:
        yield f"only {len(imports)} imports found"
    for name in filter(FORBIDDEN_IMPORTS.search, imports):
        yield f"imports {name}"
    for text in ("pei-x86-64", "HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT", "symbols stripped"):
        if text not in headers:
            yield f"without {text}"
    sections = re.findall(r"^ +\d+ (\S+) .*\n +(\S.*)", dump("-h"), re.MULTILINE)
    if ".text" not in dict(sections):
        yield "no section .text found"
    for name, flags in sections:
        if "CODE" in flags and "READONLY" not in flags:
            yield f"section {name} is writable and executable"
        if name.startswith(".debug"):
            yield f"debug information in {name}"
    content = path.read_bytes()
    if len(content) > LARGEST_SIZE:
        yield f"{len(content)} bytes, more than {LARGEST_SIZE}"
    for text in ("VS_VERSION_INFO", "ProductVersion\0" + version):
        if text.encode("utf-16-le") not in content:
            yield f"version resource without {text!r}"


def source_problems(directory):
    for path in sorted(directory.rglob("*.[ch]*")):
        name = path.relative_to(directory).as_posix()
        source = re.sub(r"//[^\n]*|/\*.*?\*/", "", path.read_text(), flags=re.DOTALL)
        source = re.sub(r'"(\\.|[^"\\\n])*"', '""', source)
        for found in FORBIDDEN_IN_LIBRARY.finditer(source):
            yield f"{name}: {found.group(0)}"
        if not name.startswith("platform/"):
            for found in WINDOWS_HEADERS.finditer(source):
                yield f"{name}: {found.group(0)}"


def main():
    objdump, library, sources, version = sys.argv[1:]
    problems = [*file_problems(objdump, pathlib.Path(library), version),
                *source_problems(pathlib.Path(sources))]
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)


main()
