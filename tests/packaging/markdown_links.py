"""Checks that the links of a folder's Markdown pages lead somewhere: markdown_links.py FOLDER"""

import pathlib
import re
import sys

FOLDER = pathlib.Path(sys.argv[1]).resolve()
NOT_OURS = {".git", "build", "out"}
CODE = re.compile(r"^```.*?^```|`[^`\n]*`", re.DOTALL | re.MULTILINE)
LINK = re.compile(r"\]\(([^)\s]*)\)")


def anchors(page):
    """The anchors that a page's headings get, as the usual viewers make them."""
    text = re.sub(r"^```.*?^```", "", page.read_text(), flags=re.DOTALL | re.MULTILINE)
    headings = re.findall(r"^#+ +(.*)$", text, re.MULTILINE)
    words = (re.sub(r"\]\([^)]*\)", "", heading).lower() for heading in headings)
    return {re.sub(r"[^\w\- ]", "", word).strip().replace(" ", "-") for word in words}


def is_broken(page, link):
    if re.match(r"[a-z]+:", link):
        return False  # not ours to check
    target, _, anchor = link.partition("#")
    path = page.parent / target if target else page
    return not path.exists() or (anchor != "" and anchor not in anchors(path))


everything = sorted(FOLDER.rglob("*.md"))
pages = [page for page in everything if page.relative_to(FOLDER).parts[0] not in NOT_OURS]
broken = [
    f"{page.relative_to(FOLDER)}: {link}"
    for page in pages
    for link in LINK.findall(CODE.sub("", page.read_text()))
    if is_broken(page, link)
]
print("\n".join(broken) if broken else f"{len(pages)} pages, every link leads somewhere")
sys.exit(1 if broken or not pages else 0)
