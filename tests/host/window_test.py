#!/usr/bin/env python3
"""qbreportw on a screen: window_test.py <its directory> <window_user> <planted library>."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

PRODUCT, USER, PLANTED = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
SKIPPED = 77


def check(condition, message):
    if not condition:
        sys.exit(f"FAILED: {message}")


def steady(report):
    """What is the same in two reports of two programs: no figures of now, no list of modules."""
    text = report.decode().replace("\r", "").replace("qbreportw.exe", "qbreport.exe")
    text = re.sub(r"(?<=Date and Time\n-------------\n).*", "", text)
    text, count = re.subn(r"(?<=Modules\n-------\n)(   .*\n)+", "", text)
    check(count == 1, "no list of modules")
    return re.sub(r"[\d,]+ KB", "KB", text)


def start_screen():
    """Starts an X server on a display that is free, and gives it with the display."""
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24"],
                              pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as display:
        return server, ":" + display.readline().strip()


def use_window(directory, environment):
    """A user's way through the window, on a desktop of its own, as others may have no screen."""
    paths = [f"Z:{path}".replace("/", "\\") for path in (USER, directory / "qbreportw.exe", directory)]
    desktop = f"/desktop=qbreportw{os.getpid()},1024x768"
    # It ends with the screen.
    subprocess.Popen(["wine", "explorer", desktop, *paths], env=environment, cwd=PRODUCT,
                     stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    log = directory / "log.txt"
    for _ in range(600):
        if log.exists() and log.read_text():
            return log.read_text()
        time.sleep(0.1)
    return "no answer"


def main():
    if not shutil.which("Xvfb"):
        print("SKIPPED: Xvfb, which gives the window a screen, is not installed")
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory(prefix="qb \u043e\u043a\u043d\u043e ") as scratch:
        directory = pathlib.Path(scratch)
        for name in ("qbreport.exe", "qbreportw.exe", "QBSUPPORT.dll"):
            shutil.copy(PRODUCT / name, directory)
        for name in ("version.dll", "secur32.dll", "psapi.dll"):
            shutil.copy(PLANTED, directory / name)
        # Wine would prefer its own libraries, wherever others are found. Its user32, unlike Windows',
        # is what loads version.dll into a program with a window, before the program can say a word.
        own = os.environ.get("WINEDLLOVERRIDES", "") + ";services.exe=d;"
        environment = {**os.environ, "WINEDLLOVERRIDES": own + "secur32,psapi=n,b", "LC_ALL": "C.UTF-8"}
        planted = {**environment, "WINEDLLOVERRIDES": own + "version,secur32,psapi=n,b"}
        report = subprocess.run(["wine", directory / "qbreport.exe"], env=planted, cwd=PRODUCT,
                                stdin=subprocess.DEVNULL, capture_output=True, timeout=120)
        check(report.returncode == 0, report.stderr)
        check(not list(directory.glob("*.mark")), "qbreport loads planted libraries")

        server, display = start_screen()
        try:
            log = use_window(directory, {**environment, "DISPLAY": display})
        finally:
            server.terminate()
            server.wait()
        print(log)
        check(log.startswith("started in "), log)
        check(not list(directory.glob("*.mark")), "qbreportw loads planted libraries")
        displayed, copied = ((directory / name).read_bytes() for name in ("displayed.txt", "copied.txt"))
        saved = (directory / "\u043e\u0442\u0447\u0451\u0442.txt").read_bytes()
        check(displayed == re.sub(rb"\r?\n", b"\r\n", saved), "it shows another text than it saves")
        check(copied == displayed, "it copies another text than it shows")
        check(b" \n" in saved or b")\n" in saved, "the saved report has other line ends")
        check(steady(saved) == steady(report.stdout), f"{steady(saved)}\n{steady(report.stdout)}")
        check(len(list(directory.iterdir())) == 10, f"it leaves {os.listdir(directory)}")


main()
