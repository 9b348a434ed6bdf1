#!/usr/bin/env python3
"""qbreport as users call it: qbreport_test.py <its directory> <another library> <slow disk>."""

import fcntl
import os
import pathlib
import re
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

PRODUCT = pathlib.Path(sys.argv[1]).resolve()
OTHER_LIBRARY, SLOW_DISK = sys.argv[2:4]
ON_WINDOWS = OTHER_LIBRARY.endswith(".dll")
PROGRAM, LIBRARY = ("qbreport.exe", "QBSUPPORT.dll") if ON_WINDOWS else ("qbreport", "libQBSUPPORT.so")
# Wine would start its services with each program. They are not needed, take most of the time, and
# one that crashes as they end says so on the program's standard error.
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8",
               "WINEDLLOVERRIDES": os.environ.get("WINEDLLOVERRIDES", "") + ";services.exe=d"}
NAME = "\u043e\u0442\u0447\u0451\u0442 \u65e5\u672c.txt"
TITLES = b"Date and Time|Operating System|Uname|User Name|Locale|Hardware|Memory:|System directories" \
    b"|Registry:|Application|Modules|Limits:|Display"


def run(*arguments, program=PRODUCT / PROGRAM, stdout=subprocess.PIPE, directory=None, limit=None):
    launcher = ["wine"] if ON_WINDOWS else []
    if limit is not None:
        launcher = ["prlimit", f"--fsize={limit}"]
    return subprocess.run([*launcher, program, *arguments], stdout=stdout, stderr=subprocess.PIPE,
                          stdin=subprocess.DEVNULL, cwd=directory, env=ENVIRONMENT, timeout=120,
                          restore_signals=False)


class CommandLine(unittest.TestCase):
    def test_whole_report(self):
        result = run()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue(result.stdout.startswith(b"=" * 72 + b"\r\nThe following support"))
        self.assertEqual(re.findall(rb"^(%s)\r\n-+\r\n" % TITLES, result.stdout, re.MULTILINE),
                         TITLES.split(b"|"))
        self.assertRegex(result.stdout, rb"x: \d+\r\n\r\n\r\n$")

    def test_choices(self):
        for arguments, expected in (
            (["-s", "limits,4"], rb"Limits:\r\n-------\r\n\r\nUname\r\n-----\r\n\r\n"),
            (["--sections=uname", "--no-separators"], rb"Uname\r\n-----\r\n"),
            (["-s", "4", "--no-headings", "--no-separators"], b""),
            (["-s", "environment", "-e", "QB_NOT_SET", "--variable=QB_NEITHER", "--no-indent"],
             rb"Environment: \[QB_NOT_SET\] = Not set!\nEnvironment: \[QB_NEITHER\] = Not set!\n\r\n"),
            (["-s", "10,17", "-d", r"Q:\none", "-m", "none.dll"],
             rb"   App:         \[Q:/none\] \(N/A\)\n\r\n   none.dll  \[Modul or version info not "
             rb"found!\]\r\n"),
            (["-s", "11,12,13", "-u", "QbNone", "-a", r"QbNone\App"],
             rb"Registry:\r\n-+\r\n   User root: .*\\QbNone\] \(N/A\)\n   App: .*USER\\QbNone\\App\] "
             rb"\(N/A\)\n   App: .*MACHINE\\QbNone\\App\] \(N/A\)\n"),
            (["--version"], rb"qbreport \d+\.\d+\.\d+\r?\n"),
            *(([help], rb"[\s\S]*Usage: qbreport [\s\S]*--no-indent[\s\S]*")
              for help in ("-h", "-?", "/?", "--help")),
            (["--sections", "limits, 4 ", "-o", "-", "--no-separators"],
             rb"Limits:\r\n-------\r\nUname\r\n-----\r\n"),
            (["--list"], rb"[\s\S]*20  display\r?\n"),
        ):
            with self.subTest(arguments):
                result = run(*arguments)
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertRegex(result.stdout, rb"\A" + expected + rb"\Z")

    def test_mistakes(self):
        for status, arguments, message in (
            (2, ["--wrong"], b"not expected: --wrong"),
            (2, ["-s", "banner,nothing"], b"unknown section 'nothing'"),
            (2, ["-s", "21"], b"unknown section '21'"),
            (2, ["-o"], b"--output: 1 required FILE missing"),
            (2, ["-o", ""], b"the file's name is empty"),
            (2, ["report.txt"], b"not expected: report.txt"),
            (1, ["-s", "reserved"], b"section 'reserved' \\(19\\) left out"),
            (1, ["-s", "modules", "-p", "no such program"], b"no report on no such program"),
            (1, ["-o", "no/such/directory/report.txt"], b"cannot save the report"),
        ):
            with self.subTest(arguments):
                result = run(*arguments)
                self.assertEqual((result.returncode, result.stdout), (status, b""))
                self.assertRegex(result.stderr, rb"\Aqbreport: .*" + message + rb".*\r?\n\Z")

    def test_failed_sections(self):
        # Lines that go on with a section that is left out are left out as well.
        for status, arguments, expected in (
            (1, ["-p", "none.exe"], rb" Not set!\n\r\nLimits:\r\n"),
            (1, ["-s", "4,19,18"], rb"Uname\r\n-----\r\n\r\nLimits:\r\n"),
            (1, ["-s", "15,16,17", "-p", "none.exe", "-e", "QB_NONE"], rb"Not set!\n\r\n\Z"),
        ):
            with self.subTest(arguments):
                result = run(*arguments, "-e", "QB_NONE")
                self.assertEqual(result.returncode, status)
                self.assertRegex(result.stdout, expected)
                self.assertIn(b"left out: the library has ", result.stderr)
                self.assertEqual(b"'module' (17) left out: its line on user32.dll" in result.stderr,
                                 "-p" in arguments)

    def test_full_output(self):
        with open("/dev/full", "wb") as full:
            result = run(stdout=full)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"cannot write to standard output", result.stderr)

    @unittest.skipIf(ON_WINDOWS, "Wine hands on a closed pipe in its own way")
    def test_reader_gone_or_output_closed(self):
        reader, writer = os.pipe()
        os.close(reader)
        for shell in ("exec", "exec >&-; exec"):
            result = run("-c", f'{shell} "$0"', PRODUCT / PROGRAM, program="sh", stdout=writer)
            self.assertEqual(result.returncode, 1)
            self.assertIn(b"cannot write to standard output", result.stderr)
        os.close(writer)

    @unittest.skipIf(ON_WINDOWS, "the terminal is this system's")
    def test_progress_on_a_terminal(self):
        ours, terminal = os.openpty()
        subprocess.run([PRODUCT / PROGRAM, "-s", "banner,uname"], stdout=subprocess.DEVNULL,
                       stderr=terminal, check=True)
        self.assertEqual(os.read(ours, 1000), b"\rqbreport: 1/2 banner\rqbreport: 2/2 uname \r" +
                         b" " * 19 + b"\r")


@unittest.skipUnless(ON_WINDOWS, "the console is Windows'")
class OnConsole(unittest.TestCase):
    def on_console(self, *arguments, key=b""):
        ours, terminal = os.openpty()
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 50, 500, 0, 0))
        process = subprocess.Popen(["wine", PRODUCT / PROGRAM, *arguments], stdin=terminal,
                                   stdout=terminal, stderr=terminal, env=ENVIRONMENT,
                                   start_new_session=True)
        os.close(terminal)
        shown = b""
        try:
            while part := os.read(ours, 10000):
                shown += part
                if key and b"press a key" in shown:
                    self.assertIsNone(process.poll())
                    os.write(ours, key)
        except OSError:
            pass  # the end
        self.assertEqual(process.wait(120), 0, shown)
        return shown.decode()

    def test_report_in_characters(self):
        self.assertIn("[\u0438\u043c\u044f_\u65e5] = Not set!",
                      self.on_console("-s", "15", "-e", "\u0438\u043c\u044f_\u65e5"))

    def test_double_click_saves_among_the_documents(self):
        shown = self.on_console(key=b"x")
        path = re.search(r"report saved in C:\\(.*\\Support report [-0-9. ]+\.txt)", shown)[1]
        saved = pathlib.Path(os.environ["WINEPREFIX"], "drive_c", *path.split("\\"))
        self.assertTrue(saved.read_bytes().startswith(b"=" * 72 + b"\r\n"))
        saved.unlink()


class Files(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(prefix="qb report")))

    def test_names_of_all_kinds(self):
        # The longest name that the file system of these tests takes has 255 bytes.
        for name in (NAME, "n" * 252, "\u00e9" * 126):
            with self.subTest(name):
                variable = "QB_" + name[:6]
                result = run("-s", "environment", "-e", variable, "-o", name,
                             directory=self.directory)
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertIn(name, result.stderr.decode())
                self.assertEqual((self.directory / name).read_bytes().decode(),
                                 f"   Environment: [{variable}] = Not set!\n\r\n")
                self.assertIn(name, os.listdir(self.directory))
        self.assertEqual(len(os.listdir(self.directory)), 3)

    def test_program_in_a_directory_of_any_name(self):
        directory = self.directory / "\u0438\u043c\u044f [\u65e5] 100%"
        directory.mkdir()
        for file in PROGRAM, LIBRARY:
            shutil.copy(PRODUCT / file, directory)
        result = run("-s", "app-directory", program=directory / PROGRAM)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertRegex(result.stdout.decode(), r"App: +\[.*/\u0438\u043c\u044f \[\u65e5\] 100%\] \(")

    def test_saved_whole(self):
        target = self.directory / NAME
        target.write_bytes(b"an older and much longer report" * 1000)
        result = run("-s", "banner", "-o", NAME, directory=self.directory)
        self.assertEqual((result.returncode, result.stdout), (0, b""), result.stderr)
        self.assertEqual(target.stat().st_size, 816)
        self.assertEqual(os.listdir(self.directory), [NAME])

    @unittest.skipIf(ON_WINDOWS, "the limit is this system's")
    def test_full_disk_leaves_the_old_file(self):
        target = self.directory / NAME
        target.write_bytes(b"the old report")
        # Beyond the limit a write fails, as Python has its children ignore the signal.
        result = run("-o", target, limit=500)
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b"cannot save the report", result.stderr)
        self.assertEqual(target.read_bytes(), b"the old report")
        self.assertEqual(os.listdir(self.directory), [NAME])

    @unittest.skipIf(not SLOW_DISK, "the slow disk is this system's, and without sanitizers")
    def test_interrupted_run_leaves_the_old_file(self):
        target = self.directory / NAME
        # By name and place: a preloaded file's path may hold no space.
        place, name = os.path.split(SLOW_DISK)
        slow = {**os.environ, "LD_PRELOAD": name, "LD_LIBRARY_PATH": place}
        for stop in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            target.write_bytes(b"the old report")
            process = subprocess.Popen([PRODUCT / PROGRAM, "-o", target], stderr=subprocess.PIPE,
                                       env=slow)
            while len(os.listdir(self.directory)) < 2 and process.poll() is None:
                time.sleep(0.01)
            process.send_signal(stop)
            self.assertIn(b"interrupted", process.communicate(timeout=60)[1])
            self.assertEqual(process.returncode, 1)
            self.assertEqual(target.read_bytes(), b"the old report")
            self.assertEqual(os.listdir(self.directory), [NAME])

    def test_library_missing_or_wrong(self):
        program = shutil.copy(PRODUCT / PROGRAM, self.directory)
        library = self.directory / LIBRARY
        other = pathlib.Path(OTHER_LIBRARY).read_bytes()
        for content, message in ((None, "cannot load"), (b"", "cannot load"),
                                 (b"garbage" * 99, "cannot load"),
                                 (other, "lacks the function QbSupportGetInfo")):
            with self.subTest(message):
                if content is not None:
                    library.write_bytes(content)
                # A good library in the current directory must not take its place.
                result = run(program=program, directory=PRODUCT)
                self.assertEqual((result.returncode, result.stdout), (1, b""))
                self.assertRegex(result.stderr.decode(), r"\Aqbreport: .*" + message)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
