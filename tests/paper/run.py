#!/usr/bin/python3 -Xutf8
"""run.py BUILD: MELVORIN_SONGS (2,000) invented songs through the batch tool of a build, their PDF
read back with poppler and every word's place compared with what fontTools says of the fonts; then
how many songs of 61 to 110 lines `--fit` brings on one page. MELVORIN_SEED gives other songs.

run.py BUILD --beside FOLDER: ten songs as PDF by the batch tool and by LibreOffice, and pictures of
both beside each other, to look at."""
import collections
import concurrent.futures
import dataclasses
import os
import pathlib
import random
import subprocess
import sys
import tempfile

import checks
import faces
import pages
import songs

SONGS = int(os.environ.get("MELVORIN_SONGS", 2000))
SEED = int(os.environ.get("MELVORIN_SEED", 1))
BATCH = 20
# Of the songs of 61 to 110 lines, in percent.
WANTED_SHARE = 99
# How far ink may reach over the margin, where a letter or a diagram hangs over its place.
OVERHANG = 6


class Batch:
    """Songs that go to paper in one call."""

    def __init__(self, number, tool):
        self.tool = tool
        rng = random.Random(f"{SEED} {number}")
        self.setup = checks.Setup(columns=rng.randint(1, 4), fit=rng.random() < 0.5,
                                  diagrams=rng.random() < 0.2)
        self.arguments = ["--columns", str(self.setup.columns)]
        self.arguments += ["--fit"] * self.setup.fit + ["--diagrams"] * self.setup.diagrams
        self.arguments += ["--black"] if rng.random() < 0.1 else []
        # Plain text is in the first font that is named.
        face = rng.choice([None, *faces.TEXT_FACES])
        plain = faces.Look(face or "Liberation Mono", 11)
        if face:
            for style in range(4):
                look = plain._replace(bold=style % 2 == 1, italic=style > 1)
                self.arguments += ["--font", str(faces.file_of(look))]
        self.songs = []
        for i in range(number * BATCH, min((number + 1) * BATCH, SONGS)):
            inventor = songs.Inventor(f"{SEED} {i}", plain if rng.random() < 0.3 else None)
            self.songs.append((inventor.song(f"song-{i}"), inventor.plain is not None))

    def write(self, folder):
        paths = []
        for song, is_text in self.songs:
            path = folder / f"{song.title}.{'txt' if is_text else 'rtf'}"
            path.write_bytes((song.as_text() if is_text else song.as_rtf()).encode())
            paths.append(path)
        return paths

    def check(self):
        report = checks.Report()
        with tempfile.TemporaryDirectory() as folder:
            folder = pathlib.Path(folder)
            pdf = folder / "book.pdf"
            paths = self.write(folder)
            told = subprocess.run([self.tool, "pdf", *self.arguments, "-o", pdf, *paths],
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300)
            first = self.songs[0][0].name
            report.expect("batch tool is content", told.returncode == 0 and not told.stdout,
                          lambda: f"{first}: {told.returncode} {told.stdout.decode()[:400]}")
            if told.returncode == 0:
                self.check_pages(pages.read_pages(pdf), report)
                self.check_ink(pages.ink(pdf), report)
        return report

    def check_pages(self, found, report):
        if len(self.songs) > 1:  # a book: page numbers at the foot, and a table of contents
            for page in found:
                page.pop()
            found = found[1:]
        at = 0
        for song, _ in self.songs:
            length = 1
            texts = [word.text for word in found[at][:60]]
            if "Page" in texts and texts[texts.index("Page") + 1] == "1":
                length = int(texts[texts.index("Page") + 3])
            own = [[dataclasses.replace(word, page=i) for word in page]
                   for i, page in enumerate(found[at:at + length])]
            at += length
            self.check_song(song, own, report)
        report.expect("no page besides", at == len(found), lambda: f"{song.name} and before")

    def check_song(self, song, own, report):
        report.counts["songs"] += 1
        report.counts["pages"] += len(own)
        try:
            placed = pages.SongPages(song, own, self.setup.diagrams)
        except pages.Mismatch as mismatch:
            what = f"{song.name}: {mismatch}"
            report.expect("every word is there, in order", False, lambda: what)
            return
        report.expect("every word is there, in order", True, str)
        checks.SongCheck(placed, self.setup, report).run()

    def check_ink(self, boxes, report):
        for number, (left, right, top, bottom) in enumerate(boxes):
            least, most = checks.MARGIN - OVERHANG, checks.PAPER[0] - checks.MARGIN + OVERHANG
            report.expect("ink between the margins", left >= least and right <= most and
                          top >= checks.MARGIN - OVERHANG and bottom <= checks.PAPER[1] - 12,
                          lambda: f"{self.songs[0][0].name} and after, page {number + 1}: "
                                  f"{left:.0f} {right:.0f} {top:.0f} {bottom:.0f}")


def check_batch(job):
    number, tool = job
    return Batch(number, tool).check()


def share_on_one_page(tool, count):
    """Of songs of 61 to 110 lines, as text and as Rich Text, those on one page in 9 points or more;
    the others in words."""
    others = []
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        for begin in range(0, count, 100):
            # Plain text is in the usual face.
            looks = [faces.Look("Liberation Mono", 11),
                     faces.Look("DejaVu Sans Mono" if begin % 200 else "Liberation Mono", 10)]
            made = [songs.realistic(f"{SEED} {i}", looks[i % 2])
                    for i in range(begin, min(begin + 100, count))]
            paths = []
            for i, song in enumerate(made):
                path = folder / f"{begin + i}.{'rtf' if i % 2 else 'txt'}"
                path.write_bytes((song.as_rtf() if i % 2 else song.as_text()).encode())
                paths.append(path)
            subprocess.run([tool, "pdf", "--fit", "-o", folder / "book.pdf", *paths], check=True)
            found = pages.read_pages(folder / "book.pdf")
            while found and "Key" not in [word.text for word in found[0][:4]] \
                    and found[0][0].text != made[0].title.split()[0]:
                found.pop(0)
            others += those_on_more(made, found)
    return 100 * (count - len(others)) / count, others


def those_on_more(made, found):
    others = []
    titles = iter(made)
    song = None
    for page in found:
        texts = [word.text for word in page[:20]]
        first = "Page" not in texts or texts[texts.index("Page") + 1] == "1"
        if not first:
            continue
        song = next(titles)
        assert texts[:2] == song.title.split(), (texts, song.title)
        longest = max(page[4:-1], key=lambda word: len(word.text))
        points = (longest.right - longest.left) / len(longest.text) / 0.6
        if "Page" in texts or points < 8.95:
            others.append(f"{len(song.lines)} lines, {max(len(line.text) for line in song.lines)} "
                          f"columns: {'2 pages or more' if 'Page' in texts else 'one page'}, "
                          f"{points:.2f} points")
    assert next(titles, None) is None
    return others


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    faces.diagram_folder = build / "Fonts"
    tool = build / "melvorin-cli"
    if sys.argv[2:3] == ["--beside"]:
        import beside
        return beside.compare(tool, pathlib.Path(sys.argv[3]), SEED)
    report = checks.Report()
    jobs = [(number, tool) for number in range((SONGS + BATCH - 1) // BATCH)]
    with concurrent.futures.ProcessPoolExecutor() as pool:
        for part in pool.map(check_batch, jobs):
            report.merge(part)
    failed = collections.Counter(check for check, _ in report.failures)
    print(f"seed {SEED}")
    for check, count in sorted(report.counts.items()):
        worst = f", worst {report.worst[check]:.3f} points" if check in report.worst else ""
        print(f"{check}: {count}{worst}{f', {failed[check]} FAILED' if failed[check] else ''}")
    shown = collections.Counter()
    for check, what in report.failures:
        shown[check] += 1
        if shown[check] <= 5:
            print(f"  {check}: {what}")
    count = min(SONGS, 1000)
    share, others = share_on_one_page(tool, count)
    print(f"songs of 61 to 110 lines on one page in 9 points or more: {share:.1f} % of {count}")
    for other in others[:5]:
        print(f"  not: {other}")
    return 0 if not report.failures and share >= WANTED_SHARE else 1


if __name__ == "__main__":
    sys.exit(main())
