"""Makes the archives: archive.py STAGE SYMBOLS NAME writes NAME.zip, NAME-symbols.zip and NAME.sha256.

The installed tree comes from STAGE, the examples and the documentation from the sources. Nothing
in an archive tells when, where or by whom it was made.
"""

import hashlib
import os
import pathlib
import re
import sys
import zipfile

PROJECT = pathlib.Path(__file__).resolve().parent.parent
# The pages for those who have only the archive, and the names that some of them get in it.
PAGES = {
    "docs/package.md": "README.md",
    "docs/hosting.md": "doc/hosting.md",
    "docs/qbreport.md": "doc/qbreport.md",
    "docs/qbreportw.png": "doc/qbreportw.png",
    "docs/report.md": "doc/report.md",
    "CHANGELOG.md": "doc/CHANGELOG.md",
    "LICENSE": "LICENSE",
}
LINK = re.compile(r"\[([^][]*)\]\(([^()#\s]*)(#[^()\s]*)?\)")


def files_below(folder):
    """The files by their paths relative to the folder."""
    return {
        path.relative_to(folder).as_posix(): path for path in folder.rglob("*") if path.is_file()
    }


def archive_files(stage):
    """The files by their names in the archive."""
    files = files_below(stage)
    for name, path in files_below(PROJECT / "examples").items():
        files["examples/" + name] = path
    for source, name in PAGES.items():
        if (PROJECT / source).exists():
            files[name] = PROJECT / source
    return files


def with_links(text, source, name, names):
    """The page `source` with links for its place in the archive, and plain text where there were
    links to what is not in it."""

    def replace(match):
        label, target, anchor = match.groups(default="")
        if not target or "://" in target:
            return match[0]
        moved = names.get((source.parent / target).resolve())
        if moved is None:
            return label
        return f"[{label}]({os.path.relpath(moved, os.path.dirname(name))}{anchor})"

    return LINK.sub(replace, text)


def write_archive(archive_name, files):
    """Everything stands below one folder, named after the archive."""
    names = {}
    for name, path in files.items():
        # A link may lead to a file, to the folder of one, or to one that was installed.
        names[path.resolve()] = name
        names.setdefault(path.parent.resolve(), os.path.dirname(name))
    for name, path in files_below(PROJECT / "include").items():
        names[path.resolve()] = "include/" + name
    with zipfile.ZipFile(archive_name, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name, path in sorted(files.items()):
            data = path.read_bytes()
            if name.endswith(".md"):
                data = with_links(data.decode(), path, name, names).encode()
            # The earliest time that the format can hold.
            entry = zipfile.ZipInfo(f"{archive_name.stem}/{name}", (1980, 1, 1, 0, 0, 0))
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = (0o755 if name.endswith((".dll", ".exe")) else 0o644) << 16
            archive.writestr(entry, data)
    print(archive_name)
    return f"{hashlib.sha256(archive_name.read_bytes()).hexdigest()}  {archive_name.name}\n"


def main():
    stage, symbols, name = map(pathlib.Path, sys.argv[1:])
    name.parent.mkdir(exist_ok=True)
    sums = write_archive(pathlib.Path(f"{name}.zip"), archive_files(stage))
    sums += write_archive(pathlib.Path(f"{name}-symbols.zip"), files_below(symbols))
    pathlib.Path(f"{name}.sha256").write_text(sums)


main()
