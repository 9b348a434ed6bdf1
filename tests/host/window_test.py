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

# What Windows' own libraries ask for by name alone: for names and versions, the theme, the dialogs.
PLANTED = "secur32 psapi netapi32 uxtheme dwmapi sspicli cryptbase profapi propsys textshaping comdlg32 " \
    "comctl32 shell32 shlwapi shcore ole32 oleaut32 userenv ntmarta apphelp windowscodecs wtsapi32 " \
    "msimg32 wkscli netutils samcli logoncli explorerframe oleacc clbcatq mpr".split()
PRODUCT, LIBRARY, USER = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])


def use_window(directory, environment):
    """Uses the window as a user does, on a screen and a desktop of its own."""
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24"],
                              pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    with os.fdopen(reader) as display:
        environment = {**environment, "DISPLAY": ":" + display.readline().strip()}
    paths = [f"Z:{path}".replace("/", "\\") for path in (USER, directory)]
    desktop = f"/desktop=qbreportw{os.getpid()},1024x768"
    # For the name of a file these are too many bytes to Linux, but not too many characters to the dialog.
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
    (directory / "alone").mkdir()
    shutil.copy(PRODUCT / "qbreport.exe", directory / "alone")
    # Wine's user32, unlike Windows' own, loads these two into a program with a window before the
    # program's first line runs.
    for name in (*PLANTED, "version", "imm32"):
        shutil.copy(LIBRARY, directory / f"{name}.dll")
    # Wine would prefer its own libraries, wherever others are found.
    own = os.environ.get("WINEDLLOVERRIDES", "")
    environment = {**os.environ, "WINEDLLOVERRIDES": f"{own};{','.join(PLANTED)}=n,b"}
    planted = {**os.environ, "WINEDLLOVERRIDES": f"{own};version,imm32,{','.join(PLANTED)}=n,b"}
    subprocess.run(["wine", directory / "qbreport.exe", "-o", "NUL"], env=planted, cwd=PRODUCT,
                   stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=120, check=True)
    use_window(directory, environment)
    displayed = (directory / "displayed.txt").read_bytes()
    saved = (directory / "\u043e\u0442\u0447\u0451\u0442.txt").read_bytes()
    assert displayed == re.sub(rb"\r?\n", b"\r\n", saved), "it shows another text than it saves"
    assert displayed != saved, "the saved report has other line ends"
    assert re.fullmatch(rb"={72}\r\nThe following[\s\S]*\nDisplay\r\n[\s\S]*x: \d+(\r\n){3}", saved), saved
    marks = [path.name for path in directory.glob("*.mark")]
    assert not marks, f"loaded from beside the program: {marks}"
