"""Shows the whole report, or saves it to a file: report.py [FILE]. Needs x64 Python."""

import ctypes
import pathlib
import sys

HEADINGS, SEPARATOR, INDENT = 1, 2, 4
ALL_FLAGS = HEADINGS | SEPARATOR | INDENT

# Each group is a section, followed by single lines that belong to it, as (kind, argument). Put your
# own program's directory, registry keys and modules here.
GROUPS = (
    *([(kind, None)] for kind in range(1, 9)),
    [(9, None), (10, b"C:\\ProgramData")],
    [(11, b"Software"), (12, b"Software\\Microsoft"), (13, b"Software\\Microsoft")],
    [(14, None), (15, b"NUMBER_OF_PROCESSORS")],
    [(16, None), (17, b"kernel32.dll")],
    [(20, None)],
)


class Library:
    def __init__(self, path):
        library = ctypes.CDLL(str(path))
        self._get = library.QbSupportGetInfo
        self._get.restype = ctypes.c_int
        # Not a c_char_p, because ctypes would copy it, and the block itself must be released.
        self._get.argtypes = [
            ctypes.c_int,
            ctypes.c_uint,
            ctypes.POINTER(ctypes.c_void_p),
            ctypes.c_char_p,
        ]
        self._release = library.QbSupportReleaseBuffer
        self._release.restype = ctypes.c_bool
        self._release.argtypes = [ctypes.c_void_p]

    def section(self, kind, flags=ALL_FLAGS, argument=None):
        """The section's text as bytes, or None if it failed."""
        buffer = ctypes.c_void_p()
        if not self._get(kind, flags, ctypes.byref(buffer), argument):
            return None
        try:
            return ctypes.string_at(buffer)
        finally:
            self._release(buffer)


def whole_report(library):
    """The report as bytes, in the system's ANSI code page and with its own line ends."""
    report = b""
    for group in GROUPS:
        flags = ALL_FLAGS if len(group) == 1 else ALL_FLAGS & ~SEPARATOR
        texts = [library.section(kind, flags, argument) for kind, argument in group]
        # Without its heading, a line would seem to belong to the section above.
        if texts[0] is not None:
            report += b"".join(text or b"" for text in texts)
            # The library does not know which line is the last.
            report += b"\r\n" if len(group) > 1 else b""
    return report


def library_path():
    """The full path, so that no file of that name in another directory can take its place."""
    folder = pathlib.Path(__file__).resolve().parent.parent / "bin"
    on_ucrt = folder / "ucrt" / "QBSUPPORT.dll"  # shares Python's run-time library
    return on_ucrt if on_ucrt.exists() else folder / "QBSUPPORT.dll"


def main(file=None):
    report = whole_report(Library(library_path()))
    if file:
        pathlib.Path(file).write_bytes(report)
    else:
        # Python converts the text for the console, and must not change the line ends.
        sys.stdout.reconfigure(newline="", errors="replace")
        sys.stdout.write(report.decode("mbcs" if sys.platform == "win32" else "utf-8", "replace"))


main(*sys.argv[1:])
