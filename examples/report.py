"""Prints a report: report.py [LIBRARY]. Needs a 64-bit Python on Windows."""

import ctypes
import os
import sys

HEADINGS, SEPARATOR, INDENT = 1, 2, 4
ALL_FLAGS = HEADINGS | SEPARATOR | INDENT
DATE_TIME, OPERATING_SYSTEM, HARDWARE, MEMORY, DISPLAY = 2, 3, 7, 8, 20


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


def default_path():
    # The full path, so that no other directory's file can take the library's place.
    here = os.path.dirname(os.path.abspath(__file__))
    return os.path.join(here, "..", "bin", "QBSUPPORT.dll")


def main():
    library = Library(sys.argv[1] if len(sys.argv) > 1 else default_path())
    for kind in (DATE_TIME, OPERATING_SYSTEM, HARDWARE, MEMORY, DISPLAY):
        # As bytes: the text is in the system's ANSI code page and has its own line ends.
        sys.stdout.buffer.write(library.section(kind) or b"")


main()
