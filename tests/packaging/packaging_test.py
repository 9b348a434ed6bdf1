"""One test of what the developer of a host gets: packaging_test.py OPTION... TEST [ARGUMENT]"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile

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
    if settings.system == settings.host_system:
        return []
    need("wine")
    return ["wine"]


def public_headers(settings, scratch, compiler):
    """The headers compile alone, twice in a row, under strict rules."""
    need(compiler)
    for language, standard, header in (
        ("c", "c11", "qbsupport.h"),
        ("c++", "c++17", "qbsupport.h"),
        ("c++", "c++17", "qbsupport.hpp"),
        ("c++", "c++20", "qbsupport.hpp"),
    ):
        run(
            *(compiler, "-x", language, f"-std={standard}", "-c", "-", "-o", scratch / "header.o"),
            *("-pedantic", "-Wall", "-Wextra", "-Wconversion", "-Wshadow", "-Werror"),
            f"-I{settings.source}/include",
            input=f"#include <qbsupport/{header}>\n".encode() * 2,
        )


def install(settings, scratch):
    """Installs the build, and moves it: no file may know where it was installed."""
    run("cmake", "--install", settings.build, "--prefix", scratch / "installed")
    return (scratch / "installed").rename(scratch / "moved")


def configure(settings, source, build, prefix):
    cross = [f"-DCMAKE_SYSTEM_NAME={settings.system}"] if emulator(settings) else []
    compilers = [
        f"-DCMAKE_{language}_COMPILER={compiler}"
        for language, compiler in (
            ("C", settings.c_compiler),
            ("CXX", settings.cxx_compiler),
            ("RC", settings.rc_compiler),
        )
        if compiler
    ]
    strict = "-Wall -Wextra -pedantic -Werror"
    flags = [f"-DCMAKE_C_FLAGS={strict}", f"-DCMAKE_CXX_FLAGS={strict}"]
    where = ["-S", source, "-B", build, f"-DCMAKE_PREFIX_PATH={prefix}"]
    run("cmake", "-G", "Ninja", *where, *cross, *compilers, *flags)


def check_report(text):
    """What the examples print, as far as it is the same on every machine."""
    check_order(
        text,
        b"Operating System\r\n----------------\r\n   ",
        b"\nMemory:\r\n-------\r\n   Physical: ",
    )


def installed_package(settings, scratch):
    """A project outside finds the package, links it or loads it, and runs."""
    prefix = install(settings, scratch)

    # Another major version is not taken for this one.
    outside = scratch / "outside"
    outside.mkdir()
    (outside / "CMakeLists.txt").write_text(
        "cmake_minimum_required(VERSION 3.15)\n"
        "project(outside C)\n"
        "find_package(qbsupport 2 QUIET)\n"
        "if(qbsupport_FOUND OR NOT qbsupport_CONSIDERED_VERSIONS)\n"
        '    message(FATAL_ERROR "asked for 2, found [${qbsupport_CONSIDERED_VERSIONS}]")\n'
        "endif()\n"
    )
    configure(settings, outside, outside / "build", prefix)

    build = scratch / "examples"
    configure(settings, settings.source / "examples", build, prefix)
    run("cmake", "--build", build)

    suffix = ".exe" if settings.system == "Windows" else ""
    if suffix:
        program = (build / "whole_report.exe").read_bytes()
        check(b"<supportedOS Id=" in program, "the example has no manifest")
    in_place = {"cwd": build}
    run(*emulator(settings), build / f"whole_report{suffix}", "r.txt", **in_place)
    report = (build / "r.txt").read_bytes()
    check_report(report)
    # The single lines follow their section, and an empty line follows them.
    check_order(
        report,
        *(b"\nSystem directories\r\n", b"   App: ", b"\n\r\nRegistry:\r\n"),
        *(b"   App: ", b"\n\r\nApplication\r\n"),
    )

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
    names, ordinals = {"QbSupportGetInfo", "QbSupportReleaseBuffer"}, {100, 101}
    found = imports(settings, host)
    check(found == (ordinals if name == "QBSUPPORT.lib" else names), f"it imports {found}")

    shutil.copy(settings.product / "QBSUPPORT.dll", scratch)
    run(*emulator(settings), host, "report.txt", cwd=scratch)
    check_report((scratch / "report.txt").read_bytes())


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
        with zipfile.ZipFile(one) as one_zip, zipfile.ZipFile(other) as other_zip:
            check(one_zip.namelist() == other_zip.namelist(), f"{other.name}: other files")
            for name in one_zip.namelist():
                check(one_zip.read(name) == other_zip.read(name), f"{name} differs between builds")
        check(pathlib.Path(one).read_bytes() == other.read_bytes(), f"{other.name} differs")

    unpacked = scratch / "unpacked"
    zipfile.ZipFile(second).extractall(unpacked)
    folders = {path.name for path in unpacked.iterdir()}
    check(folders == {"bin", "doc", "examples", "include", "lib"}, f"the archive has {folders}")
    run(sys.executable, pathlib.Path(__file__).parent / "markdown_links.py", unpacked)


TESTS = (public_headers, installed_package, import_library, python_example, archive)


def main():
    parser = argparse.ArgumentParser()
    for path in ("--source", "--build", "--product"):
        parser.add_argument(path, type=pathlib.Path)
    for text in ("--system", "--host-system", "--email", "--objdump"):
        parser.add_argument(text)
    for compiler in ("--c-compiler", "--cxx-compiler", "--rc-compiler"):
        parser.add_argument(compiler)
    parser.add_argument("test")
    parser.add_argument("arguments", nargs="*")
    settings = parser.parse_args()
    test = {test.__name__: test for test in TESTS}[settings.test]
    with tempfile.TemporaryDirectory() as scratch:
        test(settings, pathlib.Path(scratch), *settings.arguments)


main()
