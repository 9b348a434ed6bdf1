"""Checks the library file itself, and what its sources may name. Arguments: the DLL, the source
directory, the product version."""
import pathlib
import re
import struct
import sys

SYSTEM_LIBRARIES = {"advapi32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "user32.dll",
                    "version.dll"}
FORBIDDEN_IMPORTS = re.compile("abort|exit|terminate|assert|signal|raise|throw", re.IGNORECASE)
LARGEST_SIZE = 64 * 1024
WINDOWS_HEADERS = re.compile(r"#\s*include\s*<(windows|psapi|tlhelp32|win\w+)\.h>", re.IGNORECASE)
FORBIDDEN_IN_LIBRARY = re.compile(
    r"#\s*include\s*<(string|vector|map|set|list|deque|iostream|sstream|fstream|ostream|istream|"
    r"locale|functional|stdexcept|exception|new|cassert)>|\b(throw|try|catch)\b|std::string\b")


class Image:
    """A portable executable."""

    def __init__(self, path):
        self.bytes = path.read_bytes()
        self.header = self.read("<I", 0x3C)[0]
        assert self.bytes[self.header:self.header + 4] == b"PE\0\0"
        (self.machine, count, _, self.symbols, self.symbol_count,
         optional_size, _) = self.read("<HHIIIHH", self.header + 4)
        self.optional = self.header + 24
        self.magic, = self.read("<H", self.optional)
        self.characteristics, = self.read("<H", self.optional + 70)
        first = self.optional + optional_size
        self.sections = []
        for start in range(first, first + 40 * count, 40):
            name = self.bytes[start:start + 8].rstrip(b"\0").decode()
            if name.startswith("/"):  # a long name stands behind the symbols
                name = self.text_at(self.symbols + 18 * self.symbol_count + int(name[1:]))
            size, address, raw_size, raw = self.read("<IIII", start + 8)
            flags, = self.read("<I", start + 36)
            self.sections.append((name, address, max(size, raw_size), raw, flags))

    def read(self, layout, offset):
        return struct.unpack_from(layout, self.bytes, offset)

    def offset(self, address):
        for _, start, size, raw, _ in self.sections:
            if start <= address < start + size:
                return address - start + raw
        raise ValueError(f"no section holds {address:#x}")

    def text_at(self, start):
        return self.bytes[start:self.bytes.index(b"\0", start)].decode()

    def text(self, address):
        return self.text_at(self.offset(address))

    def directory(self, number):
        return self.offset(self.read("<I", self.optional + 112 + 8 * number)[0])

    def exports(self):
        table = self.directory(0)
        base, functions, names, _, name_table, ordinals = self.read("<IIIIII", table + 16)
        found = {}
        for i in range(names):
            name, = self.read("<I", self.offset(name_table) + 4 * i)
            index, = self.read("<H", self.offset(ordinals) + 2 * i)
            found[self.text(name)] = base + index
        return found, functions

    def imports(self):
        found = {}
        descriptor = self.directory(1)
        while self.read("<I", descriptor + 12)[0] != 0:
            lookup, _, _, library = self.read("<IIII", descriptor)
            names = found.setdefault(self.text(library).lower(), [])
            entry = self.offset(lookup)
            while self.read("<Q", entry)[0] != 0:
                names.append(self.text(self.read("<Q", entry)[0] + 2))
                entry += 8
            descriptor += 20
        return found


def file_problems(path, version):
    image = Image(path)
    exports, function_count = image.exports()
    if exports != {"QbSupportGetInfo": 100, "QbSupportReleaseBuffer": 101} or function_count != 2:
        yield f"exports {exports}, {function_count} functions"
    for library, names in image.imports().items():
        if library not in SYSTEM_LIBRARIES:
            yield f"imports from {library}"
        for name in names:
            if FORBIDDEN_IMPORTS.search(name):
                yield f"imports {name}"
    if image.machine != 0x8664 or image.magic != 0x20B:
        yield "not a 64-bit file"
    for bit, name in ((0x20, "HIGH_ENTROPY_VA"), (0x40, "DYNAMIC_BASE"), (0x100, "NX_COMPAT")):
        if not image.characteristics & bit:
            yield f"without {name}"
    for name, _, _, _, flags in image.sections:
        if flags & 0x80000000 and flags & 0x20000000:
            yield f"section {name} is writable and executable"
        if name.startswith(".debug"):
            yield f"debug information in {name}"
    if image.symbol_count != 0:
        yield "not stripped"
    if len(image.bytes) > LARGEST_SIZE:
        yield f"{len(image.bytes)} bytes, more than {LARGEST_SIZE}"
    for text in ("VS_VERSION_INFO", "ProductVersion\0" + version):
        if text.encode("utf-16-le") not in image.bytes[image.directory(2):]:
            yield f"version resource without {text!r}"


def without_comments_and_texts(source):
    source = re.sub(r"//[^\n]*|/\*.*?\*/", "", source, flags=re.DOTALL)
    return re.sub(r'"(\\.|[^"\\\n])*"', '""', source)


def source_problems(directory):
    for path in sorted(directory.rglob("*.[ch]*")):
        name = path.relative_to(directory).as_posix()
        if name.startswith("platform/stand_in/"):
            continue
        source = without_comments_and_texts(path.read_text())
        found = FORBIDDEN_IN_LIBRARY.search(source)
        if found:
            yield f"{name}: {found.group(0)}"
        found = WINDOWS_HEADERS.search(source)
        if found and not name.startswith("platform/"):
            yield f"{name}: {found.group(0)}"


def main():
    library, sources, version = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    problems = [*file_problems(library, version), *source_problems(sources)]
    for problem in problems:
        print(f"{library.name}: {problem}")
    print(f"Tried: {library.stat().st_size} bytes of {library.name}, "
          f"{sum(len(names) for names in Image(library).imports().values())} imports")
    sys.exit(1 if problems else 0)


main()
