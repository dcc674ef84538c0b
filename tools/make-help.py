#!/usr/bin/python3
"""Compile the help and the pages of the examples.

    tools/make-help.py OUTDIR

From data/help: one page per NAME.md (Markdown; the first line is its title), the order and headings
of the contents in contents.txt, style.css and pictures/. Writes OUTDIR/Help, the pages for a
browser, OUTDIR/Melvorin.chm with the same pages, contents and index, and
OUTDIR/Examples/Example1.chm and Example2.chm, each with the page of one example.

A link to a page that there is not, a picture that is missing or used nowhere, a page outside the
contents: each of them ends it with a message.
"""

import html
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import markdown

SOURCE = pathlib.Path(__file__).resolve().parent.parent / "data" / "help"
EXAMPLES = {"Example1.chm": "example-1", "Example2.chm": "example-2"}


class Trouble(Exception):
    """What is wrong with the pages, as a sentence."""


def contents():
    """Pairs of a heading, empty at first, and its pages, in order."""
    parts = [("", [])]
    for line in (SOURCE / "contents.txt").read_text(encoding="utf-8").splitlines():
        if line.endswith(":"):
            parts.append((line[:-1], []))
        elif line.startswith("  ") or line:
            if not line.startswith("  ") and parts[-1][0]:
                parts.append(("", []))
            parts[-1][1].append(line.strip())
    return parts


class Page:
    """One page: its name, title, text as HTML, and the headings that the index leads to."""

    def __init__(self, name):
        text = (SOURCE / f"{name}.md").read_text(encoding="utf-8")
        if not text.startswith("# "):
            raise Trouble(f"{name}.md does not begin with its title.")
        self.name = name
        self.title = text.splitlines()[0][2:].strip()
        # The viewer knows no pages but its own, so links name what is made of them.
        text = re.sub(r"\]\(([a-z0-9-]+)\.md\)", r"](\1.html)", text)
        self.body = markdown.markdown(text, extensions=["tables"])
        self.links = re.findall(r'href="([a-z0-9-]+)\.html"', self.body)
        self.pictures = re.findall(r'src="pictures/([^"]+)"', self.body)
        if "<img" in self.body and re.search(r'<img(?![^>]*alt="[^"]+)', self.body):
            raise Trouble(f"{name}.md has a picture without a text for those who do not see it.")

    def as_html(self, navigation=""):
        """The whole page; `navigation` stands above it."""
        return (
            '<!DOCTYPE html>\n<html lang="en">\n<head>\n'
            '<meta http-equiv="Content-Type" content="text/html; charset=utf-8">\n'
            f"<title>{html.escape(self.title)}</title>\n"
            '<link rel="stylesheet" type="text/css" href="style.css">\n</head>\n<body>\n'
            f"{navigation}{self.body}\n</body>\n</html>\n"
        )


def navigation(parts, pages, here):
    """The contents, for browsers, which have none of their own."""
    rows = []
    for heading, names in parts:
        links = [
            f"<strong>{html.escape(pages[name].title)}</strong>"
            if name == here
            else f'<a href="{name}.html">{html.escape(pages[name].title)}</a>'
            for name in names
        ]
        rows.append((f"{html.escape(heading)}: " if heading else "") + " &middot; ".join(links))
    return '<div class="contents">' + "<br>\n".join(rows) + "</div>\n"


def check(parts, pages):
    """Raises Trouble for what leads nowhere."""
    listed = {name for _, names in parts for name in names}
    outside = {path.stem for path in SOURCE.glob("*.md")} - listed
    if outside:
        raise Trouble(f"Not in contents.txt: {', '.join(sorted(outside))}.")
    for page in pages.values():
        for link in page.links:
            if link not in pages:
                raise Trouble(f"{page.name}.md leads to {link}, which is no page.")
    there = {path.name for path in (SOURCE / "pictures").iterdir()}
    used = {picture for page in pages.values() for picture in page.pictures}
    if there != used:
        raise Trouble(f"Pictures missing or unused: {', '.join(sorted(there ^ used))}.")


def site_map(entries):
    """A contents or index file of the compiler."""
    items = "".join(
        '<LI><OBJECT type="text/sitemap"><param name="Name" value="%s">%s</OBJECT>%s\n'
        % (
            html.escape(title),
            f'<param name="Local" value="{name}.html">' if name else "",
            f"<UL>{site_map(below)}</UL>" if below else "",
        )
        for title, name, below in entries
    )
    return items


def compile_help(target, pages, title, contents_entries):
    """Compiles the pages into one file."""
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        for page in pages:
            (work / f"{page.name}.html").write_text(page.as_html(), encoding="utf-8")
        shutil.copy(SOURCE / "style.css", work)
        pictures = sorted({picture for page in pages for picture in page.pictures})
        if pictures:
            (work / "pictures").mkdir()
        for picture in pictures:
            shutil.copy(SOURCE / "pictures" / picture, work / "pictures")
        index = sorted((page.title, page.name, []) for page in pages)
        for name, entries in (("toc.hhc", contents_entries), ("index.hhk", index)):
            (work / name).write_text(
                f"<HTML><BODY><UL>{site_map(entries)}</UL></BODY></HTML>\n", encoding="utf-8"
            )
        files = [f"{page.name}.html" for page in pages]
        files += ["style.css"] + [f"pictures\\{picture}" for picture in pictures]
        (work / "help.hhp").write_text(
            "[OPTIONS]\nCompatibility=1.1\nCompiled file=help.chm\nContents file=toc.hhc\n"
            f"Index file=index.hhk\nDefault topic={pages[0].name}.html\nTitle={title}\n"
            "Language=0x409\nFull-text search=Yes\n[FILES]\n" + "\n".join(files) + "\n",
            encoding="utf-8",
        )
        done = subprocess.run(
            ["chmcmd", "help.hhp"], cwd=work, capture_output=True, text=True, check=False
        )
        if not (work / "help.chm").exists() or done.returncode != 0:
            raise Trouble(f"chmcmd: {done.stdout}{done.stderr}")
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(work / "help.chm", target)


def main(out):
    """Writes everything below `out`."""
    parts = contents()
    pages = {name: Page(name) for _, names in parts for name in names}
    check(parts, pages)
    folder = out / "Help"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    for page in pages.values():
        (folder / f"{page.name}.html").write_text(
            page.as_html(navigation(parts, pages, page.name)), encoding="utf-8"
        )
    shutil.copy(SOURCE / "style.css", folder)
    shutil.copytree(SOURCE / "pictures", folder / "pictures")
    entries = []
    for heading, names in parts:
        below = [(pages[name].title, name, []) for name in names]
        entries += [(heading, "", below)] if heading else below
    compile_help(out / "Melvorin.chm", list(pages.values()), "Melvorin", entries)
    for file, name in EXAMPLES.items():
        page = pages[name]
        # Alone it has nowhere to lead to.
        alone = Page(name)
        alone.body = re.sub(r'<a href="[a-z0-9-]+\.html">(.*?)</a>', r"\1", alone.body)
        compile_help(out / "Examples" / file, [alone], page.title, [(page.title, name, [])])


if __name__ == "__main__":
    try:
        main(pathlib.Path(sys.argv[1]))
    except Trouble as trouble:
        sys.exit(f"make-help: {trouble}")
