#!/usr/bin/env python3
"""make-rtf-corpus.py FOLDER COUNT SEED: chord charts as web pages (NUMBER.html) or plain text
(NUMBER.text), for word processors to turn into Rich Text, and beside each its words (NUMBER.txt).

Lyrics are traditional or our own."""
import html
import pathlib
import random
import sys

VERSES = [
    ["Amazing grace, how sweet the sound", "that saved a wretch like me",
     "I once was lost, but now am found", "was blind, but now I see"],
    ["O Danny boy, the pipes, the pipes are calling", "from glen to glen and down the mountain side",
     "the summer's gone, and all the roses falling"],
    ["Não há manhã sem coração,", "é só voltar – “já vou” – e então", "o verão não acaba em vão…"],
    ["Во поле берёза стояла,", "во поле кудрявая стояла,", "люли, люли, стояла."],
    ["Ach synku, synku, doma-li jsi?", "Tatíček se ptá, oral-li jsi.", "Oral jsem, oral, ale málo,"],
    ["Am Brunnen vor dem Tore,", "da steht ein Lindenbaum;", "ich träumt’ in seinem Schatten"],
    ["Frère Jacques, Frère Jacques,", "dormez-vous ? Dormez-vous ?", "Sonnez les matines !"],
    ["Κάτω στο γιαλό, κάτω στο περιγιάλι", "κόρη αγαπώ, κόρη αγαπώ ξανθιά"],
    ["さくら さくら", "やよいの空は 見わたす限り"],
    ["Üsküdar’a gider iken", "aldı da bir yağmur", "kâtibimin setresi uzun"],
]
CHORDS = ["C", "Am", "G7", "F", "Dm", "E7", "Bb", "F#m", "C#m7", "D/F#", "G4", "A7", "Ebm", "B7(9)",
          "Gm7", "Am7/G"]


def chord_line(rng, words):
    """Chords over some of the words; most stand well apart."""
    line = ""
    column = rng.randrange(0, 4)
    while column < max(len(words), 4):
        line = line.ljust(column) + rng.choice(CHORDS)
        column = len(line) + rng.choice([1, 3, 4, 6, 9, 12])
    return line


class Page:
    def __init__(self, rng):
        self.rng = rng
        self.lines = []  # the words
        self.parts = []  # the page
        self.bold = rng.random() < 0.6
        self.colour = rng.random() < 0.3

    def chords(self, text):
        shown = html.escape(text)
        if self.bold:
            shown = f"<b>{shown}</b>"
        return f'<font color="#c00000">{shown}</font>' if self.colour else shown

    def verse(self):
        pairs = [(chord_line(self.rng, words), words) for words in self.rng.choice(VERSES)]
        lines = [line for pair in pairs for line in pair]
        self.lines += lines
        shown = [self.chords(line) if i % 2 == 0 else html.escape(line)
                 for i, line in enumerate(lines)]
        if self.rng.random() < 0.5:
            self.parts.append("<pre>" + "\n".join(shown) + "</pre>")
        else:
            self.parts += [f"<pre>{line}</pre>" for line in shown]

    def extra(self):
        kind = self.rng.randrange(6)
        words = self.rng.choice(self.rng.choice(VERSES))
        if kind == 0:
            tag = self.rng.choice(["ul", "ol"])
            self.parts.append(f"<{tag}><li>{words}</li><li>capo 2</li></{tag}>")
            self.lines += [words, "capo 2"]
        elif kind == 1:
            self.parts.append(f'<p>See <a href="http://songs.example/x">{words}</a>!</p>')
            self.lines.append(f"See {words}!")
        elif kind == 2:
            self.parts.append(f"<table border=1><tr><td>{words}</td><td>G7</td></tr>"
                              f"<tr><td>again</td><td>x</td></tr></table>")
            self.lines.append(f"{words} G7 again x")
        elif kind == 3:
            self.parts.append(f"<h2>{words}</h2><hr>")
            self.lines.append(words)
        elif kind == 4:
            self.parts.append(f"<p align=center><i>{words}</i><br>slowly<br><u>twice</u></p>")
            self.lines += [words, "slowly", "twice"]
        else:
            self.parts.append(f'<p><span style="font-size: 20pt">{words}</span> &mdash; &#9837;</p>')
            self.lines.append(f"{words} — ♭")

    def html(self):
        return ('<html><head><meta charset="utf-8"><title>Song</title></head><body>\n'
                + "\n".join(self.parts) + "\n</body></html>\n")


def main():
    folder, count, seed = pathlib.Path(sys.argv[1]), int(sys.argv[2]), int(sys.argv[3])
    folder.mkdir(parents=True, exist_ok=True)
    for number in range(count):
        rng = random.Random(f"{seed} {number}")
        page = Page(rng)
        for _ in range(rng.randrange(1, 4)):
            page.verse()
            if rng.random() < 0.7:
                page.extra()
        name = folder / f"{number:04}"
        if number % 4 == 3:
            rng.shuffle(page.lines)
            name.with_suffix(".text").write_text("\n".join(page.lines) + "\n", "utf-8")
        else:
            name.with_suffix(".html").write_text(page.html(), "utf-8")
        name.with_suffix(".txt").write_text("\n".join(page.lines) + "\n", "utf-8")


main()
