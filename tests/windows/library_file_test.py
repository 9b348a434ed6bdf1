"""Checks the library file itself. Arguments: the DLL, the product version, the run-time library:
msvcrt or ucrt."""
import pathlib
import re
import sys

import pefile

LIBRARY, VERSION, RUN_TIME = sys.argv[1:]
LIBRARIES = "advapi32|gdi32|kernel32|user32|version|" + \
    {"msvcrt": "msvcrt", "ucrt": "api-ms-win-crt-.*"}[RUN_TIME]
# What ends the process, and what changes its settings: locale, directory, environment, error mode,
# DPI awareness, console, floating point.
FORBIDDEN_IMPORTS = re.compile("abort|exit|terminate|assert|signal|raise|throw|console|^(un)?set(?!locale)"
                               "|^_?w?(put|ch|umask|control|set)(?!locale)|^add|^freeenv", re.IGNORECASE)
CET_COMPATIBLE = 1  # in the debug directory's entry of this type:
EX_DLL_CHARACTERISTICS = 20


def problems(image):
    header = image.OPTIONAL_HEADER
    facts = (
        ("machine", pefile.MACHINE_TYPE[image.FILE_HEADER.Machine], "IMAGE_FILE_MACHINE_AMD64"),
        ("system", (header.MajorSubsystemVersion, header.MinorSubsystemVersion), (6, 1)),
        ("exports", [(export.ordinal, export.name) for export in image.DIRECTORY_ENTRY_EXPORT.symbols],
         [(100, b"QbSupportGetInfo"), (101, b"QbSupportReleaseBuffer")]),
        ("address space", (header.IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA,
                           header.IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE,
                           header.IMAGE_DLLCHARACTERISTICS_NX_COMPAT), (True, True, True)),
        ("shadow stack", [image.get_dword_at_rva(entry.struct.AddressOfRawData)
                          for entry in image.DIRECTORY_ENTRY_DEBUG
                          if entry.struct.Type == EX_DLL_CHARACTERISTICS], [CET_COMPATIBLE]),
        # Where the libraries that it imports are looked for: System32 alone.
        ("dependent load flags",
         image.get_word_at_rva(header.DATA_DIRECTORY[10].VirtualAddress + 0x4E), 0x800),
        ("writable sections", [section.Name for section in image.sections
                               if section.IMAGE_SCN_MEM_WRITE or section.Name.startswith(b".debug")], []),
        ("version", [table.entries[b"ProductVersion"].decode() for part in image.FileInfo[0]
                     if part.Key == b"StringFileInfo" for table in part.StringTable], [VERSION]),
    )
    for name, found, expected in facts:
        if found != expected:
            yield f"{name}: {found}, not {expected}"
    for entry in image.DIRECTORY_ENTRY_IMPORT:
        library = entry.dll.decode().lower()
        if not re.fullmatch(rf"({LIBRARIES})\.dll", library):
            yield f"imports from {library}"
        names = (imported.name.decode() for imported in entry.imports)
        yield from (f"imports {name}" for name in names if FORBIDDEN_IMPORTS.search(name))
    if image.FILE_HEADER.TimeDateStamp == 0:
        yield "without a time stamp to tell builds apart"
    size = pathlib.Path(LIBRARY).stat().st_size
    if size > 44 * 1024:
        yield f"{size} bytes, too many"


sys.exit("\n".join(problems(pefile.PE(LIBRARY))) or 0)
