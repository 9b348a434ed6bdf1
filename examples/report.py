"""Prints a report: report.py [LIBRARY]. Needs a 64-bit Python on Windows."""

import ctypes
import os
import sys

HEADINGS, SEPARATOR, INDENT = 1, 2, 4
ALL_FLAGS = HEADINGS | SEPARATOR | INDENT

# A group of sections with their arguments: the single lines behind a section go on with it, and one
# empty line, which the library cannot set among them, follows the last. Put your own directory,
# registry keys and modules here.
GROUPS = (
    *([(kind, None)] for kind in range(1, 9)),
    [(9, None), (10, b"C:\\ProgramData")],
    [(11, b"Software"), (12, b"Software\\Microsoft"), (13, b"Software\\Microsoft")],
    [(14, None), (15, b"NUMBER_OF_PROCESSORS")],
    [(16, None), (17, b"QBSUPPORT.dll")],
    [(20, None)],
)


class Library:
    def __init__(self, path):
        library = ctypes.CDLL(path)
        self._get = library.QbSupportGetInfo
        self._get.restype = ctypes.c_int
        # Not c_char_p for the buffer: ctypes would copy it, and the block itself must go back.
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
        """The section's text as bytes, or None when it has nothing valid to report."""
        buffer = ctypes.c_void_p()
        if not self._get(kind, flags, ctypes.byref(buffer), argument):
            return None
        try:
            return ctypes.string_at(buffer)
        finally:
            self._release(buffer)


def whole_report(library):
    """The report as bytes: in the system's ANSI code page, with its own line ends."""
    report = b""
    for group in GROUPS:
        flags = ALL_FLAGS if len(group) == 1 else ALL_FLAGS & ~SEPARATOR
        texts = [library.section(kind, flags, argument) for kind, argument in group]
        # Without its heading, a line would seem to belong to the section above.
        if texts[0] is not None:
            report += b"".join(text or b"" for text in texts)
            report += b"\r\n" if len(group) > 1 else b""
    return report


def default_path():
    # The full path, so that no other directory's file can take the library's place.
    here = os.path.dirname(os.path.abspath(__file__))
    return os.path.join(here, "..", "bin", "ucrt", "QBSUPPORT.dll")  # Python's own run time


def main():
    library = Library(sys.argv[1] if len(sys.argv) > 1 else default_path())
    sys.stdout.buffer.write(whole_report(library))


main()
