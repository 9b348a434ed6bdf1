"""One test of what the developer of a host gets: packaging_test.py BUILD TEST"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

BUILD = pathlib.Path(sys.argv[1])
CACHE = dict(re.findall(r"^(\w+):\w+=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE))
SOURCE = pathlib.Path(CACHE["CMAKE_HOME_DIRECTORY"]).resolve()
PRODUCT = BUILD / "product"
TOOLCHAIN = CACHE.get("CMAKE_TOOLCHAIN_FILE", "")
SUFFIX, EMULATOR = (".exe", ["wine"]) if TOOLCHAIN else ("", [])


def need(*tools):
    for tool in tools:
        if shutil.which(tool) is None:
            print(f"SKIPPED: {tool} is not installed")
            sys.exit(77)


def run(*command, **options):
    """Runs a command that must succeed and returns what it printed."""
    result = subprocess.run(command, capture_output=True, **options)
    if result.returncode != 0:
        sys.exit(f"{command}\n{result.stdout.decode()}\n{result.stderr.decode()}")
    return result.stdout


def install(scratch):
    """Installs the build, and moves it, because no file may know where it was installed."""
    run("cmake", "--install", BUILD, "--prefix", scratch / "installed")
    return (scratch / "installed").rename(scratch / "moved")


def cmake(source, build, *options):
    """Configures and builds a strict project that looks for packages in the target's system alone."""
    strict = "-Wall -Wextra -pedantic -Wconversion -Wshadow -Werror"
    run("cmake", "-G", "Ninja", "-S", source, "-B", build, f"-DCMAKE_TOOLCHAIN_FILE={TOOLCHAIN}",
        "-DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=ONLY", f"-DCMAKE_C_FLAGS=-std=c11 {strict}",
        f"-DCMAKE_CXX_FLAGS={strict}", *options)
    run("cmake", "--build", build)


def check_report(text):
    """What the examples print, as far as it is the same on every machine."""
    system = text.find(b"Operating System\r\n----------------\r\n   ")
    memory = text.find(b"\nMemory:\r\n-------\r\n   Physical: ")
    assert 0 <= system < memory, text


def check_saved_and_shown(folder, *example):
    """Runs an example twice, with the name of a file and without."""
    run(*example, "r.txt", cwd=folder)
    check_report((folder / "r.txt").read_bytes())
    check_report(run(*example, cwd=folder))


def package(scratch):
    """A project outside finds the package, links it or loads it, and saves or shows the report."""
    prefix = install(scratch)
    build = scratch / "examples"
    option = f"-DCMAKE_PREFIX_PATH={prefix}"
    cmake(SOURCE / "examples", build, option)
    linked = build / f"whole_report{SUFFIX}"
    check_saved_and_shown(build, *EMULATOR, linked)
    if SUFFIX:  # then this system is a wrong one for the package
        check_saved_and_shown(build, *EMULATOR, build / "run_time.exe")
        assert b"<supportedOS Id=" in linked.read_bytes(), "the example has no manifest"
        command = ("cmake", "-G", "Ninja", "-S", SOURCE / "examples", "-B", scratch / "wrong", option)
        refused = subprocess.run(command, capture_output=True)
        assert refused.returncode != 0 and b"QBSUPPORT is for 64-bit Windows" in refused.stderr

    need("pkg-config")
    paths = {**os.environ, "PKG_CONFIG_PATH": str(prefix / "lib" / "pkgconfig")}
    found = run("pkg-config", "--cflags", "--libs", "qbsupport", env=paths).decode()
    folders = [os.path.realpath(folder) for folder in re.findall(r"-[IL](\S+)", found)]
    assert folders == [f"{prefix}/include", f"{prefix}/lib"], found


def readme(scratch):
    """The programs in the first page build as printed, and theirs is the report of the library."""
    page = (SOURCE / "README.md").read_text()
    code = {language: re.search(rf"^```{language}\n(.*?)^```", page, re.M | re.S)[1]
            for language in ("cpp", "cmake", "c")}
    host = scratch / "host"
    host.mkdir()
    (host / "my_host.cpp").write_text(code["cpp"])
    (host / "section.c").write_text(code["c"])
    section = "enable_language(C)\nadd_library(section STATIC section.c)\n" \
        "target_link_libraries(section PRIVATE qbsupport::qbsupport)\n"
    (host / "CMakeLists.txt").write_text(code["cmake"] + section)
    build = scratch / "b"
    cmake(host, build, f"-DCMAKE_PREFIX_PATH={install(scratch)}")
    run(*EMULATOR, build / "my_host.exe", cwd=build)
    check_report((build / "report.txt").read_bytes())
    (build / "QBSUPPORT.dll").unlink()
    without = subprocess.run((*EMULATOR, build / "my_host.exe"), cwd=build, capture_output=True)
    assert without.returncode == 1 and b"QBSUPPORT.dll: the file" in without.stderr, without


def subproject(scratch):
    """A project that includes the sources gets the library, whatever it defines, and none of its tests."""
    (scratch / "CMakeLists.txt").write_text(f"""
        cmake_minimum_required(VERSION 3.25)
        project(host LANGUAGES C CXX)
        include(CTest)
        add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX)
        add_subdirectory("{SOURCE}" qbsupport)
        add_subdirectory("{SOURCE}/examples" examples)""")
    # The first warns in every file, which must not be an error. A macro defined twice is one.
    cmake(scratch, scratch / "b", "-DCMAKE_CXX_FLAGS=-Wnamespaces -pedantic-errors")
    run(scratch / "b" / "examples" / "whole_report", scratch / "r.txt")
    check_report((scratch / "r.txt").read_bytes())
    listed = run("ctest", "--test-dir", scratch / "b", "--show-only")
    assert b"Total Tests: 0" in listed, "the library's tests are the host's"


def without_cmake(scratch):
    """The commands in the examples' page work as written, and with MSVC's import library too."""
    folder = install(scratch)
    import pefile  # where the native tests run it may be missing

    shutil.copytree(SOURCE / "examples", folder / "examples")
    page = (folder / "examples" / "README.md").read_text().split("Without CMake")[1]
    commands = page.split("```sh\n")[1].split("```")[0]
    for library in ("libQBSUPPORT.dll.a", "QBSUPPORT.lib"):
        if not (folder / "lib" / library).exists():
            need("llvm-dlltool-19")
        run("bash", "-ec", commands.replace("libQBSUPPORT.dll.a", library), cwd=folder)
        host = folder / "whole_report.exe"
        assert b"<supportedOS Id=" in host.read_bytes(), "no manifest"
        imports = pefile.PE(host).DIRECTORY_ENTRY_IMPORT
        by_name = any(entry.name == b"QbSupportGetInfo" for library in imports for entry in library.imports)
        assert by_name == (library != "QBSUPPORT.lib"), "only MSVC's library binds by ordinal"
        run(*EMULATOR, host, "r.txt", cwd=folder)
        check_report((folder / "r.txt").read_bytes())
        (folder / "r.txt").unlink()


def python_example(scratch):
    shutil.copytree(SOURCE / "examples", scratch / "examples")
    (scratch / "bin").mkdir()
    shutil.copy(PRODUCT / "libQBSUPPORT.so", scratch / "bin" / "QBSUPPORT.dll")
    check_saved_and_shown(scratch, sys.executable, "examples/report.py")


def mono_examples(scratch):
    """C#, as a program and as the text that PowerShell compiles, with the native library."""
    need("mcs", "mono")
    shell = (SOURCE / "examples" / "report.ps1").read_text().replace("$fullPath", "QBSUPPORT")
    main = """static class Host { static void Main() {
        foreach (int kind in new[] {3, 8}) System.Console.Write(QbSupport.Section(kind, 7, "")); } }"""
    shutil.copy(PRODUCT / "libQBSUPPORT.so", scratch)
    for source in (shell.split('@"\n', 1)[1].split('\n"@')[0] + main,
                   (SOURCE / "examples" / "Report.cs").read_text()):
        (scratch / "report.cs").write_text(source)
        run("mcs", "-warnaserror", "-platform:x64", "report.cs", cwd=scratch)
        check_report(run("mono", "report.exe", cwd=scratch))
    check_saved_and_shown(scratch, "mono", "report.exe")


def links(_, folder=SOURCE):
    """The links of a folder's Markdown pages have targets. Links to other hosts are not checked."""
    pages = {page: re.sub(r"^```.*?^```", "", page.read_text(), flags=re.DOTALL | re.MULTILINE)
             for page in folder.rglob("*.md") if page.relative_to(folder).parts[0] not in ("build", "out")}
    assert pages, "no pages"
    for page, text in pages.items():
        prose = re.sub(r"`[^`\n]*`", "", text)
        for target, anchor in re.findall(r"\]\((?![a-z]+:)([^)\s#]*)#?([^)\s]*)\)", prose):
            path = (page.parent / target).resolve() if target else page
            assert path.exists(), f"{page}: no {target}"
            # As viewers make them from the headings.
            anchors = [re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
                       for heading in re.findall(r"^#+ +(.*)$", pages.get(path, ""), re.MULTILINE)]
            assert not anchor or anchor in anchors, f"{page}: no {target}#{anchor}"


def archive(scratch):
    """This build and one of a copy in another directory pack to the same bytes."""
    need("llvm-dlltool-19")
    copy = scratch / "a copy"
    shutil.copytree(SOURCE, copy, ignore=shutil.ignore_patterns(".git", "build", "out"))
    # The same Python, because another may compress in another way.
    path = f"{pathlib.Path(sys.executable).parent}:{os.environ['PATH']}"
    email = f"-DQBSUPPORT_SUPPORT_EMAIL={CACHE['QBSUPPORT_SUPPORT_EMAIL']}"
    signed = scratch / "signed files"
    # A script must not end programs of another prefix than its own.
    waiting = subprocess.Popen(["wine", "cmd", "/c", "pause"], stdin=subprocess.PIPE)
    run(copy / "scripts" / "package", "--sign", f"echo >>'{signed}'", email,
        env={**os.environ, "PATH": path})
    assert waiting.poll() is None, "the script stopped the tests' Wine"
    waiting.communicate(b"\n")
    assert [pathlib.Path(line).name for line in signed.read_text().splitlines()] == \
        ["QBSUPPORT.dll", "qbreport.exe", "qbreportw.exe", "QBSUPPORT.dll"], signed.read_text()
    second, second_symbols = sorted((copy / "out").glob("*.zip"), key=lambda path: len(path.name))
    for sums in (copy / "out").glob("*.sha256"):
        run("sha256sum", "--check", "--strict", sums, cwd=copy / "out")
    first = scratch / "first"
    run(sys.executable, SOURCE / "scripts" / "archive.py", install(scratch),
        BUILD / "symbols", first / second.stem)
    for other in (second, second_symbols):
        assert (first / other.name).read_bytes() == other.read_bytes(), f"{other.name} differs"

    shutil.unpack_archive(second, scratch / "unpacked")
    (unpacked,) = (scratch / "unpacked").iterdir()
    found = sorted(path.name for path in unpacked.iterdir())
    assert found == ["CHANGELOG.md", "PACKAGE.md", "bin", "docs", "examples", "include", "lib"], found
    links(scratch, unpacked)


with tempfile.TemporaryDirectory() as directory:
    globals()[sys.argv[2]](pathlib.Path(directory).resolve())
