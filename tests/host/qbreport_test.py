#!/usr/bin/env python3
"""qbreport as users call it: qbreport_test.py <its directory> <another library>."""

import contextlib
import fcntl
import os
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

PRODUCT = pathlib.Path(sys.argv[1]).resolve()
OTHER_LIBRARY = pathlib.Path(sys.argv[2])
NAME = "\u043e\u0442\u0447\u0451\u0442 \u65e5\u672c.txt"
PREFIX = "qb \u0438\u043c\u044f [\u65e5] 100% "
TITLES = b"Date and Time|Operating System|Uname|User Name|Locale|Hardware|Memory:|System directories" \
    b"|Registry:|Application|Modules|Limits:|Display"


def run(*arguments, program=PRODUCT / "qbreport.exe", **options):
    # Not through pipes, which the desktop that Wine starts would hold open for a second.
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
        result = subprocess.run(["wine", program, *arguments], stdin=subprocess.DEVNULL, stderr=errors,
                                timeout=120, **{"stdout": output, **options})
        for file in (output, errors):
            file.seek(0)
        result.stdout, result.stderr = output.read(), errors.read()
    return result


class CommandLine(unittest.TestCase):
    def test_whole_report(self):
        result = run()
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertEqual(re.findall(rb"^(%s)\r\n-+\r\n" % TITLES, result.stdout, re.MULTILINE),
                         TITLES.split(b"|"))
        self.assertRegex(result.stdout, rb"\A={72}\r\nThe following[\s\S]*x: \d+\r\n\r\n\r\n\Z")

    def test_choices_and_mistakes(self):
        for status, arguments, expected in (
            (0, "-s limits,4", r"Limits:\r\n-------\r\n\r\nUname\r\n-----\r\n\r\n"),
            (0, "--sections 'limits, 4 ' -o - --no-separators",
             r"Limits:\r\n-------\r\nUname\r\n-----\r\n"),
            (0, "-s 4 --no-headings --no-separators", ""),
            (0, "--sections=environment -e QB_A --variable=QB_B --no-indent",
             r"Environment: \[QB_A\] = Not set!\nEnvironment: \[QB_B\] = Not set!\n\r\n"),
            (0, r"-s 10,17 -d 'Q:\none' -m ntdll.dll",
             r"   App:         \[Q:/none\] \(N/A\)\n\r\n   ntdll.dll  \[[\d.]+\]\r\n"),
            (0, r"-s 11,12,13 -u QbNone -a 'QbNone\App'",
             r"Registry:\r\n-+\r\n   User root: .*\\QbNone\] .*\n   App: .*USER\\QbNone\\App\] .*\n"
             r"   App: .*MACHINE\\QbNone\\App\] \(N/A\)\n"),
            (0, "-s module -m none.dll", r"   none.dll  \[Modul or version info not found!\]\r\n"),
            (0, "--version", r"qbreport \d+\.\d+\.\d+\r\n"),
            (0, "--list", r"[\s\S]*10  app-directory       --app-directory DIR\r\n[\s\S]*"
             r"17  module              --module FILE, repeatable\r\n[\s\S]*20  display\r\n"),
            *((0, help, r"[\s\S]*Usage: qbreport [\s\S]*\(default: OS, PROC[\s\S]* 2  the[\s\S]*")
              for help in ("-h", "-?", "/?", "--help")),
            (2, "--wrong", "not expected: --wrong"),
            (2, "-s banner,nothing", "unknown section 'nothing'"),
            (2, "-s 21", "unknown section '21'"),
            (2, "-o", "--output: 1 required FILE missing"),
            (2, "-o ''", "the file's name is empty"),
            (2, "report.txt", "not expected: report.txt"),
            (1, "-s reserved", r"section 'reserved' \(19\) left out"),
            (1, "-s modules -p 'no such program'", "no report on no such program"),
            (1, "-o no/such/directory/report.txt", "cannot save the report"),
        ):
            with self.subTest(arguments):
                result = run(*shlex.split(arguments))
                self.assertEqual(result.returncode, status, result.stderr)
                text = result.stderr + result.stdout if status else result.stdout
                expected = rf"qbreport: .*{expected}.*\r\n" if status else expected
                self.assertRegex(text.decode(), rf"\A{expected}\Z")

    def test_failed_section_and_the_lines_that_go_on_with_it(self):
        result = run("-p", "none.exe", "-e", "QB_NONE")
        self.assertEqual(result.returncode, 1)
        self.assertIn(b" Not set!\n\r\nLimits:\r\n", result.stdout)
        self.assertRegex(result.stderr, rb"left out: the library has [\s\S]*"
                         rb"'module' \(17\) left out: its line on user32.dll")

    def test_full_output(self):
        result = run(stdout=open("/dev/full", "wb"))
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"cannot write to standard output", result.stderr)


class OnConsole(unittest.TestCase):
    def on_console(self, *arguments):
        ours, terminal = os.openpty()
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 50, 500, 0, 0))
        process = subprocess.Popen(["wine", PRODUCT / "qbreport.exe", *arguments], stdin=terminal,
                                   stdout=terminal, stderr=terminal, start_new_session=True)
        os.close(terminal)
        shown = b""
        with contextlib.suppress(OSError):  # the end
            while part := os.read(ours, 10000):
                shown += part
                if b"press a key" in shown:
                    self.assertIsNone(process.poll())
                    os.write(ours, b"x")
        self.assertEqual(process.wait(120), 0, shown)
        return shown.decode()

    def test_report_in_characters(self):
        self.assertIn("[\u0438\u043c\u044f_\u65e5] = Not set!",
                      self.on_console("-s", "15", "-e", "\u0438\u043c\u044f_\u65e5"))

    def test_progress(self):
        self.assertRegex(self.on_console("-s", "banner,uname", "-o", "NUL"),
                         r"1/2 banner[\s\S]*2/2 uname[\s\S]*report saved in \\\\.\\NUL")

    def test_double_click_saves_among_the_documents(self):
        shown = self.on_console()
        path = re.search(r"report saved in C:\\(.*\\Support report [-0-9. ]+\.txt)", shown)[1]
        saved = pathlib.Path(os.environ["WINEPREFIX"], "drive_c", *path.split("\\"))
        self.assertTrue(saved.read_bytes().startswith(b"=" * 72 + b"\r\n"))
        saved.unlink()


class Files(unittest.TestCase):
    OLD = b"an older and much longer report" * 1000

    def setUp(self):
        self.directory = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(prefix=PREFIX)))
        self.target = self.directory / NAME
        self.target.write_bytes(self.OLD)

    def test_saved_whole_under_names_of_all_kinds(self):
        # The longest name that the file system of these tests takes has 255 bytes.
        names = (NAME, "n" * 252, "\u00e9" * 126)
        for name in names:
            with self.subTest(name):
                variable = "QB_" + name[:6]
                result = run("-s", "15", "-e", variable, "-o", name, cwd=self.directory)
                self.assertEqual((result.returncode, result.stdout), (0, b""), result.stderr)
                self.assertIn(name, result.stderr.decode())
                self.assertEqual((self.directory / name).read_bytes().decode(),
                                 f"   Environment: [{variable}] = Not set!\n\r\n")
        self.assertEqual(set(os.listdir(self.directory)), set(names))

    def wait_for(self, condition):
        end = time.monotonic() + 60
        while not condition():
            self.assertLess(time.monotonic(), end)
            time.sleep(0.01)

    def test_file_that_another_program_holds(self):
        for seconds, status, message in ((0.3, 0, b"report saved"), (5, 1, b"in use")):
            holder = subprocess.Popen(["wine", "cmd", "/c", "set", "/p", "name=held", ">>", NAME],
                                      cwd=self.directory, stdin=subprocess.PIPE)
            self.wait_for(lambda: b"held" in self.target.read_bytes())
            program = subprocess.Popen(["wine", PRODUCT / "qbreport.exe", "-o", self.target],
                                       stderr=subprocess.PIPE)
            self.wait_for(lambda: len(os.listdir(self.directory)) == 2)
            with contextlib.suppress(subprocess.TimeoutExpired):
                program.wait(seconds)
            self.assertIs(program.returncode, status or None)
            holder.communicate(b"\n", timeout=60)
            self.assertIn(message, program.communicate(timeout=60)[1])
            self.assertEqual(program.returncode, status)
            self.assertEqual(os.listdir(self.directory), [NAME])

    def test_library_missing_wrong_and_right(self):
        program = shutil.copy(PRODUCT / "qbreport.exe", self.directory)
        for content, message in (
            (None, "QBSUPPORT.dll is not in the folder of this program, .*Unpack the whole archive"),
            (b"", "cannot load"), (b"garbage" * 99, "cannot load .* not both for x64"),
            (OTHER_LIBRARY.read_bytes(), "lacks the function QbSupportGetInfo"),
        ):
            with self.subTest(message):
                if content is not None:
                    (self.directory / "QBSUPPORT.dll").write_bytes(content)
                # A good library in the current directory must not take its place.
                result = run(program=program, cwd=PRODUCT)
                self.assertEqual((result.returncode, result.stdout), (1, b""))
                self.assertRegex(result.stderr.decode(), r"\Aqbreport: .*" + message)
        shutil.copy(PRODUCT / "QBSUPPORT.dll", self.directory)
        result = run("-s", "app-directory", program=program)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertRegex(result.stdout.decode(), rf"App: +\[.*/{re.escape(self.directory.name)}\] \(")


unittest.main(argv=sys.argv[:1])
