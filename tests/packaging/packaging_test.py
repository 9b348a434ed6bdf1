"""One test of what the developer of a host gets: packaging_test.py NAME=VALUE... TEST [ARGUMENT]"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import types

SKIPPED = 77


def need(tool):
    if shutil.which(tool) is None:
        print(f"SKIPPED: {tool} is not installed")
        sys.exit(SKIPPED)


def run(*command, **options):
    """Runs a command that must succeed and returns what it printed."""
    result = subprocess.run(command, capture_output=True, **options)
    if result.returncode != 0:
        sys.exit(f"{command}\n{result.stdout.decode()}\n{result.stderr.decode()}")
    return result.stdout


def check(condition, message):
    if not condition:
        sys.exit(f"FAILED: {message}")


def check_order(text, *parts):
    """The text has all the parts, in this order."""
    position = 0
    for part in parts:
        position = text.find(part, position)
        check(position >= 0, f"{part} is missing, or not in its place, in:\n{text.decode()}")


def emulator(settings):
    """What a built program is run with."""
    if settings.system != settings.host_system:
        need("wine")
        return ["wine"]
    return []


def public_headers(settings, scratch, compiler):
    """The headers compile alone, twice in a row, under strict rules."""
    need(compiler)
    for case in ("c c11 h", "c++ c++17 h", "c++ c++17 hpp", "c++ c++20 hpp"):
        language, standard, suffix = case.split()
        strict = ("-pedantic", "-Wall", "-Wextra", "-Wconversion", "-Wshadow", "-Werror")
        include = f"#include <qbsupport/qbsupport.{suffix}>\n".encode()
        command = (compiler, "-x", language, f"-std={standard}", "-c", "-", "-o", scratch / "h.o")
        run(*command, *strict, f"-I{settings.source}/include", input=include * 2)


def install(settings, scratch):
    """Installs the build, and moves it: no file may know where it was installed."""
    run("cmake", "--install", settings.build, "--prefix", scratch / "installed")
    return (scratch / "installed").rename(scratch / "moved")


def configure(settings, source, build, prefix):
    cross = [f"-DCMAKE_SYSTEM_NAME={settings.system}"] if emulator(settings) else []
    named = {"C": settings.c_compiler, "CXX": settings.cxx_compiler, "RC": settings.rc_compiler}
    compilers = [f"-DCMAKE_{name}_COMPILER={path}" for name, path in named.items() if path]
    strict = "-Wall -Wextra -pedantic -Werror"
    flags = [f"-DCMAKE_C_FLAGS={strict}", f"-DCMAKE_CXX_FLAGS={strict}"]
    where = ["-S", source, "-B", build, f"-DCMAKE_PREFIX_PATH={prefix}"]
    run("cmake", "-G", "Ninja", *where, *cross, *compilers, *flags)


def check_report(text):
    """What the examples print, as far as it is the same on every machine."""
    memory = b"\nMemory:\r\n-------\r\n   Physical: "
    check_order(text, b"Operating System\r\n----------------\r\n   ", memory)


def installed_package(settings, scratch):
    """A project outside finds the package, links it or loads it, and runs."""
    prefix = install(settings, scratch)
    build = scratch / "examples"
    configure(settings, settings.source / "examples", build, prefix)
    run("cmake", "--build", build)
    suffix = ".exe" if settings.system == "Windows" else ""
    program = (build / f"whole_report{suffix}").read_bytes()
    check(not suffix or b"<supportedOS Id=" in program, "the example has no manifest")
    in_place = {"cwd": build}
    run(*emulator(settings), build / f"whole_report{suffix}", "r.txt", **in_place)
    report = (build / "r.txt").read_bytes()
    check_report(report)
    # The single lines follow their section, and an empty line follows them.
    directories = (b"\nSystem directories\r\n", b"   App: ", b"\n\r\nRegistry:\r\n")
    check_order(report, *directories, b"   App: ", b"\n\r\nApplication\r\n")

    host = [*emulator(settings), build / f"run_time{suffix}"]
    library = [] if suffix else [prefix / "lib" / "libQBSUPPORT.so"]
    check_report(re.sub(b"\r?\n", b"\r\n", run(*host, *library, **in_place)))
    missing = subprocess.run([*host, "missing.file"], capture_output=True, **in_place)
    check(missing.returncode == 1, "a missing library goes unnoticed")
    check_order(missing.stderr, b"No support report: cannot load missing.file: ")


def imports(settings, program):
    """The names or ordinals by which a program imports from the library."""
    tables = run(settings.objdump, "-p", program).decode().split("DLL Name: ")
    table = next(table for table in tables if table.startswith("QBSUPPORT.dll")).split("\n\n")[0]
    rows = re.findall(r"^\s([0-9a-f]+)\s+\S+\s+(\S+)", table, re.MULTILINE)
    # The highest bit says that the rest is an ordinal and not the place of a name.
    return {int(place, 16) & 0xFFFF if int(place, 16) >> 63 else name for place, name in rows}


def import_library(settings, scratch, name):
    """A host linked against one of the import libraries binds as it should, and runs."""
    library = install(settings, scratch) / "lib" / name
    if name == "QBSUPPORT.lib" and not library.exists():
        need("llvm-dlltool")
    host = scratch / "host.exe"
    source = settings.source / "examples" / "whole_report.c"
    run(settings.c_compiler, f"-I{settings.source}/include", source, library, "-o", host)
    names = {"QbSupportGetInfo", "QbSupportReleaseBuffer"}
    found = imports(settings, host)
    check(found == ({100, 101} if name == "QBSUPPORT.lib" else names), f"it imports {found}")
    shutil.copy(settings.product / "QBSUPPORT.dll", scratch)
    run(*emulator(settings), host, "report.txt", cwd=scratch)
    check_report((scratch / "report.txt").read_bytes())
    # The same for the C++ convenience.
    wrapper = b"""#include <qbsupport/qbsupport.hpp>
        int main() { return qbsupport::Section(QbSupportUname, 1) == "Uname\\r\\n-----\\r\\n" ? 0 : 1; }"""
    run(settings.cxx_compiler, "-std=c++17", f"-I{settings.source}/include", "-x", "c++", "-",
        "-x", "none", library, "-static", "-o", host, input=wrapper)
    run(*emulator(settings), host, cwd=scratch)


def python_example(settings, scratch):
    library = settings.product / "libQBSUPPORT.so"
    check_report(run(sys.executable, settings.source / "examples" / "report.py", library))


def archive(settings, scratch):
    """This build and one of a copy in another directory pack to the same bytes."""
    if settings.system != settings.host_system:
        for tool in ("llvm-dlltool", "wine", "bash"):
            need(tool)
    stage = install(settings, scratch)
    first = scratch / "first" / "archive"
    script = settings.source / "scripts" / "archive.py"
    run(sys.executable, script, stage, settings.build / "symbols", first)
    copy = scratch / "a copy"
    shutil.copytree(settings.source, copy, ignore=shutil.ignore_patterns(".git", "build", "out"))
    # The same Python, because another may compress in another way.
    path = f"{pathlib.Path(sys.executable).parent}:{os.environ['PATH']}"
    email = f"-DQBSUPPORT_SUPPORT_EMAIL={settings.email}"
    run(copy / "scripts" / "package", email, env={**os.environ, "PATH": path})
    second, second_symbols = sorted((copy / "out").iterdir(), key=lambda path: len(path.name))
    for one, other in ((f"{first}.zip", second), (f"{first}-symbols.zip", second_symbols)):
        check(pathlib.Path(one).read_bytes() == other.read_bytes(), f"{other.name} differs")

    unpacked = scratch / "unpacked"
    shutil.unpack_archive(second, unpacked)
    folders = {path.name for path in unpacked.iterdir()}
    check(folders == {"bin", "doc", "examples", "include", "lib"}, f"the archive has {folders}")
    run(sys.executable, pathlib.Path(__file__).parent / "markdown_links.py", unpacked)


TESTS = (public_headers, installed_package, import_library, python_example, archive)


def main():
    given = [argument.partition("=") for argument in sys.argv[1:] if "=" in argument]
    settings = types.SimpleNamespace(**{name: value for name, _, value in given})
    for path in ("source", "build", "product"):
        setattr(settings, path, pathlib.Path(getattr(settings, path)))
    name, *arguments = sys.argv[1 + len(given) :]
    test = {test.__name__: test for test in TESTS}[name]
    with tempfile.TemporaryDirectory() as scratch:
        test(settings, pathlib.Path(scratch), *arguments)


main()
