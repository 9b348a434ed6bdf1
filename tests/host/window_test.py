#!/usr/bin/env python3
"""qbreportw on a screen: window_test.py <its directory> <library to plant> <window_user>."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

PRODUCT, PLANTED, USER = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])


def steady(report):
    """What is the same in two reports of two programs: no figures of now, no list of modules."""
    text = report.decode().replace("\r", "").replace("qbreportw.exe", "qbreport.exe")
    text = re.sub(r"(?<=Date and Time\n-------------\n).*", "", text)
    text, count = re.subn(r"(?<=Modules\n-------\n)(   .*\n)+", "", text)
    assert count == 1, "no list of modules"
    return re.sub(r"[\d,]+ KB", "KB", text)


def use_window(directory, environment):
    """A user's way through the window, on a screen and a desktop of its own."""
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24"],
                              pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as display:
        environment = {**environment, "DISPLAY": ":" + display.readline().strip()}
    paths = [f"Z:{path}".replace("/", "\\") for path in (USER, directory / "qbreportw.exe", directory)]
    desktop = f"/desktop=qbreportw{os.getpid()},1024x768"
    # 256 bytes are too many for a file's name below Wine, and 128 characters are not for a dialog.
    too_long = "\u00e9" * 128
    # It ends with the screen.
    subprocess.Popen(["wine", "explorer", desktop, *paths, too_long], env=environment, cwd=PRODUCT,
                     stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    log = directory / "log.txt"
    end = time.monotonic() + 60
    while time.monotonic() < end and not (log.exists() and log.read_text()):
        time.sleep(0.1)
    server.terminate()
    server.wait()
    assert log.read_text() == "done", log.read_text()


if not shutil.which("Xvfb"):
    print("SKIPPED: Xvfb, which gives the window a screen, is not installed")
    sys.exit(77)
with tempfile.TemporaryDirectory(prefix="qb \u043e\u043a\u043d\u043e ") as scratch:
    directory = pathlib.Path(scratch)
    for name in ("qbreport.exe", "qbreportw.exe", "QBSUPPORT.dll"):
        shutil.copy(PRODUCT / name, directory)
    for name in ("version.dll", "secur32.dll", "psapi.dll"):
        shutil.copy(PLANTED, directory / name)
    # Wine would prefer its own libraries, wherever others are found. Its user32, unlike Windows',
    # is what loads version.dll into a program with a window, before the program can say a word.
    own = os.environ.get("WINEDLLOVERRIDES", "") + ";"
    environment = {**os.environ, "WINEDLLOVERRIDES": own + "secur32,psapi=n,b"}
    planted = {**environment, "WINEDLLOVERRIDES": own + "version,secur32,psapi=n,b"}
    report = subprocess.run(["wine", directory / "qbreport.exe"], env=planted, cwd=PRODUCT,
                            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, timeout=120, check=True)
    use_window(directory, environment)
    displayed = (directory / "displayed.txt").read_bytes()
    saved = (directory / "\u043e\u0442\u0447\u0451\u0442.txt").read_bytes()
    assert displayed == re.sub(rb"\r?\n", b"\r\n", saved), "it shows another text than it saves"
    assert b" \n" in saved or b")\n" in saved, "the saved report has other line ends"
    assert steady(saved) == steady(report.stdout), f"{steady(saved)}\n{steady(report.stdout)}"
    # A mark of a planted library would be one more.
    assert len(os.listdir(directory)) == 9, os.listdir(directory)
