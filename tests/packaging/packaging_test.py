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


def emulator(settings):
    """What a built program is run with."""
    if settings.system != settings.host_system:
        need("wine")
        return ["wine"]
    return []


def public_headers(settings, scratch, compiler):
    """The headers compile alone, twice in a row, under strict rules."""
    need(compiler)
    for case in ("c c11 qbsupport.h", "c++ c++17 qbsupport.h", "c++ c++17 qbsupport.hpp",
                 "c++ c++17 loader.hpp", "c++ c++20 loader.hpp"):
        language, standard, header = case.split()
        strict = ("-pedantic", "-Wall", "-Wextra", "-Wconversion", "-Wshadow", "-Werror")
        include = f"#include <qbsupport/{header}>\n".encode()
        command = (compiler, "-x", language, f"-std={standard}", "-c", "-", "-o", scratch / "h.o")
        run(*command, *strict, f"-I{settings.source}/include", input=include * 2)


def install(settings, scratch):
    """Installs the build, and moves it: no file may know where it was installed."""
    run("cmake", "--install", settings.build, "--prefix", scratch / "installed")
    return (scratch / "installed").rename(scratch / "moved")


def cmake(settings, scratch, source, build, *options):
    """Configures and builds a project outside, with the usual toolchain file where one is needed."""
    lines = [f"set(CMAKE_SYSTEM_NAME {settings.system})"] if emulator(settings) else []
    named = {"C": settings.c_compiler, "CXX": settings.cxx_compiler, "RC": settings.rc_compiler}
    lines += [f"set(CMAKE_{name}_COMPILER {path})" for name, path in named.items() if path]
    lines += ["set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)",
              "set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)"]
    (scratch / "toolchain.cmake").write_text("\n".join(lines))
    strict = "-Wall -Wextra -pedantic -Werror"
    flags = [f"-DCMAKE_C_FLAGS={strict}", f"-DCMAKE_CXX_FLAGS={strict}", *options]
    toolchain = f"-DCMAKE_TOOLCHAIN_FILE={scratch}/toolchain.cmake"
    run("cmake", "-G", "Ninja", "-S", source, "-B", build, toolchain, *flags)
    run("cmake", "--build", build)


def check_report(text):
    """What the examples print, as far as it is the same on every machine."""
    system = text.find(b"Operating System\r\n----------------\r\n   ")
    memory = text.find(b"\nMemory:\r\n-------\r\n   Physical: ")
    check(0 <= system < memory, f"no report:\n{text.decode()}")


def installed_package(settings, scratch):
    """A project outside finds the package, links it or loads it, and runs."""
    prefix = install(settings, scratch)
    build = scratch / "examples"
    options = [f"-DCMAKE_PREFIX_PATH={prefix}"]
    cmake(settings, scratch, settings.source / "examples", build, *options)
    suffix = ".exe" if settings.system == "Windows" else ""
    linked = build / f"whole_report{suffix}"
    check(not suffix or b"<supportedOS Id=" in linked.read_bytes(), "the example has no manifest")
    run(*emulator(settings), linked, "r.txt", cwd=build)
    check_report((build / "r.txt").read_bytes())

    library = [] if suffix else [prefix / "lib" / "libQBSUPPORT.so"]
    text = run(*emulator(settings), build / f"run_time{suffix}", *library, cwd=build)
    check_report(re.sub(b"\r?\n", b"\r\n", text))

    if emulator(settings):  # then this system is a wrong one for the package
        command = ("cmake", "-S", settings.source / "examples", "-B", scratch / "wrong", *options)
        refused = subprocess.run(command, capture_output=True)
        check(refused.returncode != 0 and b"QBSUPPORT is for 64-bit Windows" in refused.stderr,
              "the package is found for a wrong platform")

    need("pkg-config")
    paths = {**os.environ, "PKG_CONFIG_PATH": str(prefix / "lib" / "pkgconfig")}
    found = run("pkg-config", "--cflags", "--libs", "qbsupport", env=paths).decode()
    folders = [os.path.realpath(folder) for folder in re.findall(r"-[IL](\S+)", found)]
    check(folders == [f"{prefix}/include", f"{prefix}/lib"], f"pkg-config gives {found}")


def subproject(settings, scratch):
    """A project that takes the sources in gets the library, and none of its tests."""
    (scratch / "CMakeLists.txt").write_text(f"""
        cmake_minimum_required(VERSION 3.25)
        project(host LANGUAGES C CXX)
        include(CTest)
        add_subdirectory("{settings.source}" qbsupport)
        add_subdirectory("{settings.source}/examples" examples)""")
    # A warning for every file, were it an error.
    cmake(settings, scratch, scratch, scratch / "b", "-DCMAKE_CXX_FLAGS=-Wnamespaces")
    run(scratch / "b" / "examples" / "whole_report", scratch / "r.txt")
    check_report((scratch / "r.txt").read_bytes())
    listed = run("ctest", "--test-dir", scratch / "b", "--show-only")
    check(b"Total Tests: 0" in listed, "the library's tests are the host's")


def imports(settings, program):
    """The names or ordinals by which a program imports from the library."""
    tables = run(settings.objdump, "-p", program).decode().split("DLL Name: ")
    table = next(table for table in tables if table.startswith("QBSUPPORT.dll")).split("\n\n")[0]
    rows = re.findall(r"^\s([0-9a-f]+)\s+\S+\s+(\S+)", table, re.MULTILINE)
    # The highest bit says that the rest is an ordinal and not the place of a name.
    return {int(place, 16) & 0xFFFF if int(place, 16) >> 63 else name for place, name in rows}


def without_cmake(settings, scratch, library):
    """The commands in the examples' page work as written, and with MSVC's import library too."""
    folder = install(settings, scratch)
    if not (folder / "lib" / library).exists():
        need("llvm-dlltool")
    shutil.copytree(settings.source / "examples", folder / "examples")
    page = (folder / "examples" / "README.md").read_text()
    commands = page.split("Without CMake")[1].split("```sh\n")[1].split("```")[0]
    run("bash", "-ec", commands.replace("libQBSUPPORT.dll.a", library), cwd=folder)
    host = folder / "whole_report.exe"
    check(b"<supportedOS Id=" in host.read_bytes(), "no manifest")
    names = {"QbSupportGetInfo", "QbSupportReleaseBuffer"}
    found = imports(settings, host)
    check(found == ({100, 101} if library == "QBSUPPORT.lib" else names), f"it imports {found}")
    run(*emulator(settings), host, "r.txt", cwd=folder)
    check_report((folder / "r.txt").read_bytes())


def python_example(settings, scratch):
    library = settings.product / "libQBSUPPORT.so"
    check_report(run(sys.executable, settings.source / "examples" / "report.py", library))


def mono_example(settings, scratch, name):
    """C#, as a program or as the text that PowerShell compiles, with the native library."""
    need("mcs")
    need("mono")
    source = (settings.source / "examples" / name).read_text()
    main = ""
    if name.endswith(".ps1"):
        source = source.split('@"\n', 1)[1].split('\n"@')[0].replace("$fullPath", "QBSUPPORT")
        main = """static class Host { static void Main() {
            foreach (int kind in new[] {3, 8}) System.Console.Write(QbSupport.Section(kind, 7, "")); } }"""
    (scratch / "report.cs").write_text(source + main)
    shutil.copy(settings.product / "libQBSUPPORT.so", scratch)
    run("mcs", "-warnaserror", "-platform:x64", "report.cs", cwd=scratch)
    check_report(run("mono", "report.exe", cwd=scratch))


def samples(settings, scratch):
    """The samples in the pages are what the native build prints today."""
    host = settings.product / "qbreport"
    key = "Software\\Microsoft\\Windows NT\\CurrentVersion"
    report = run(host, "-d", "C:/Tools/Viewer", "-a", key).replace(b"\r", b"").decode()
    for page in ("README.md", "docs/report.md"):
        blocks = re.findall(r"^```text\n(.*?)^```", (settings.source / page).read_text(), re.M | re.S)
        check(blocks, f"no sample in {page}")
        for block in blocks:
            check(block in report, f"{page}: qbreport does not print\n{block}")


def anchors(page):
    """The anchors that a page's headings get, as the usual viewers make them."""
    text = re.sub(r"^```.*?^```", "", page.read_text(), flags=re.DOTALL | re.MULTILINE)
    headings = [heading.lower() for heading in re.findall(r"^#+ +(.*)$", text, re.MULTILINE)]
    return {re.sub(r"[^\w\- ]", "", heading).replace(" ", "-") for heading in headings}


def check_links(folder):
    """The links of the folder's Markdown pages lead somewhere; those to other hosts are not looked at."""
    pages = [page for page in folder.rglob("*.md")
             if page.relative_to(folder).parts[0] not in ("build", "out")]
    check(pages, "no pages")
    for page in pages:
        text = re.sub(r"^```.*?^```|`[^`\n]*`", "", page.read_text(), flags=re.DOTALL | re.MULTILINE)
        for target, anchor in re.findall(r"\]\((?![a-z]+:)([^)\s#]*)#?([^)\s]*)\)", text):
            path = page.parent / target if target else page
            check(path.exists() and (not anchor or anchor in anchors(path)),
                  f"{page}: no {target}#{anchor}")


def links(settings, scratch):
    check_links(settings.source)


def archive(settings, scratch):
    """This build and one of a copy in another directory pack to the same bytes."""
    need("llvm-dlltool")
    copy = scratch / "a copy"
    shutil.copytree(settings.source, copy, ignore=shutil.ignore_patterns(".git", "build", "out"))
    # The same Python, because another may compress in another way.
    path = f"{pathlib.Path(sys.executable).parent}:{os.environ['PATH']}"
    email = f"-DQBSUPPORT_SUPPORT_EMAIL={settings.email}"
    run(copy / "scripts" / "package", email, env={**os.environ, "PATH": path})
    second, second_symbols = sorted((copy / "out").glob("*.zip"), key=lambda path: len(path.name))
    run("sha256sum", "--check", "--strict", second.with_suffix(".sha256"), cwd=copy / "out")
    first = scratch / "first"
    run(sys.executable, settings.source / "scripts" / "archive.py", install(settings, scratch),
        settings.build / "symbols", first / second.stem)
    for other in (second, second_symbols):
        check((first / other.name).read_bytes() == other.read_bytes(), f"{other.name} differs")

    shutil.unpack_archive(second, scratch / "unpacked")
    (unpacked,) = (scratch / "unpacked").iterdir()
    found = {path.name for path in unpacked.iterdir()}
    check(found == {"README.md", "bin", "doc", "examples", "include", "lib"}, f"it has {found}")
    check_links(unpacked)


TESTS = (public_headers, installed_package, subproject, without_cmake, python_example,
         mono_example, samples, links, archive)


def main():
    given = [argument.partition("=") for argument in sys.argv[1:] if "=" in argument]
    settings = types.SimpleNamespace(**{name: value for name, _, value in given})
    for path in ("source", "build", "product"):
        setattr(settings, path, pathlib.Path(getattr(settings, path)))
    name, *arguments = sys.argv[1 + len(given) :]
    test = {test.__name__: test for test in TESTS}[name]
    with tempfile.TemporaryDirectory() as scratch:
        test(settings, pathlib.Path(scratch).resolve(), *arguments)


main()
