"""Makes the archives: archive.py STAGE SYMBOLS NAME writes NAME.zip, NAME-symbols.zip, and beside
each of them its SHA-256 sum.

The installed files come from STAGE, the pages and the examples from the sources, where they have
the same places as in the archive, so that their links lead to the same files. Nothing in an archive
tells when, where or by whom it was made.
"""

import hashlib
import pathlib
import sys
import zipfile

PROJECT = pathlib.Path(__file__).resolve().parent.parent
# For those who have only the archive.
PAGES = ("PACKAGE.md", "CHANGELOG.md", "LICENSE", "docs/hosting.md", "docs/qbreport.md",
         "docs/qbreportw.png", "docs/report.md")


def files_below(folder, prefix=""):
    """The files by their names in the archive."""
    return {prefix + path.relative_to(folder).as_posix(): path
            for path in folder.rglob("*") if path.is_file()}


def archive_files(stage):
    files = {**files_below(stage), **files_below(PROJECT / "examples", "examples/")}
    return {**files, **{page: PROJECT / page for page in PAGES if (PROJECT / page).exists()}}


def write_archive(archive_name, files):
    """Everything is below one folder, named after the archive."""
    with zipfile.ZipFile(archive_name, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name, path in sorted(files.items()):
            # The earliest time that the format can hold.
            entry = zipfile.ZipInfo(f"{archive_name.stem}/{name}", (1980, 1, 1, 0, 0, 0))
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = (0o755 if name.endswith((".dll", ".exe")) else 0o644) << 16
            archive.writestr(entry, path.read_bytes())
    digest = hashlib.sha256(archive_name.read_bytes()).hexdigest()
    pathlib.Path(f"{archive_name}.sha256").write_text(f"{digest}  {archive_name.name}\n")
    print(archive_name)


def main():
    stage, symbols, name = map(pathlib.Path, sys.argv[1:])
    name.parent.mkdir(exist_ok=True)
    write_archive(pathlib.Path(f"{name}.zip"), archive_files(stage))
    write_archive(pathlib.Path(f"{name}-symbols.zip"), files_below(symbols))


main()
