#!/usr/bin/python3 -Xutf8
"""Fits the numbers by which a song's key is found, and tells how good they are on songs not seen.

    tools/fit-key.py SONGS.tsv [src/chords/KeyModel.inc [UNSEEN.tsv PART]]

A row of SONGS.tsv is: group, id, key, chords in order, with tabs between. In the group "jazz" the
key is a signature (a minor key and its relative major are one) and "|" stands between bars; in any
other it is the key as the author wrote it. The songs are not part of the project; the numbers are.

What is fitted, with features worked out here as in SongKey.cpp:

- The weights of a conditional logit over the 24 keys (McFadden, "Conditional logit analysis of
  qualitative choice behavior", 1974): shares of the chords by root relative to the tonic and by
  quality, first and last chords, and resolutions by their goal. Where a signature leaves the mode
  open and the song does not settle it, both keys share the label.
- The chords of a key for a hidden Markov model whose states are the 24 keys (Raphael and Stoddard,
  "Functional harmonic analysis using probabilistic models", Computer Music Journal 28(3), 2004).

Labels that the chords contradict are listed and left out. One is contradicted where the key (or,
for a signature, both) has none of four witnesses: it begins with its tonic chord; it ends with it,
or with a dominant that leads back to such a beginning; a dominant resolves to it; it takes an
eighth of the time. It is too where only one witness speaks for it and all four for another key. A
dominant seventh that falls a fifth is not taken for a tonic.

The rule is sharper than "no witness" because misses of an earlier fit were looked at, and most were
labels that no musician would give; so the figures without contradicted labels are friendly. Those
without the songs that have no witness at all, and those of all songs, stand beside them.

The songs are split into five parts by the checksum of their id; each part is judged by numbers
fitted on the four others. With PART, 0 to 4, the table is fitted without that part, whose songs
go to UNSEEN.tsv: for key_bench (bench/SongKeyBench.cpp), built anew with that table.
"""

import math
import re
import sys
import zlib

import numpy as np

MAJOR, MAJOR7, MINOR, DOMINANT, HALF, DIMINISHED, OTHER = range(7)
QUALITIES = 7
NATURALS = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
CHORD = re.compile(r"([A-G](?:#+|b+)?)(.*)$")
FOLDS = 5
ANSWERED = 0.92
# Strength of the prior, and the share of labels taken to be wrong after all.
PRIOR, NOISE = 10, 0.1
DECIMALS = 1000


def pitch(note):
    return (NATURALS[note[0]] + note.count("#") - note[1:].count("b")) % 12


def quality(suffix, plus_is_major):
    """See qualityOf in KeyReading.cpp."""
    s = re.sub(r"/[A-G][#b]*$", "", suffix)
    if "\u00f8" in s:
        return HALF
    if s[:1] == "-" or (s[:1] == "m" and not (s.startswith("ma") and not s.startswith("mad"))):
        lowered = any(part in s for part in ("b5", "5b", "5-", "-5"))
        return HALF if lowered else MINOR
    if s[:1] in ("o", "0", "\u00b0", "\u00ba") and s or s[:3] in ("dim", "Dim"):
        return DIMINISHED
    majors = ("maj", "Maj", "ma7", "Ma7", "M7", "M9", "M13", "7M", "9M", "\u0394", "j7")
    triad = s in ("maj", "Maj", "major")
    if (not triad and any(part in s for part in majors)) or (plus_is_major and s.startswith("7+")):
        return MAJOR7
    if "sus" in s or s[:1] == "4" or "/4" in s or "(4" in s:
        return OTHER
    if s[:1] in ("7", "9", "1") and s or "7" in s:
        return DOMINANT
    if "+" in s or "aug" in s or "5#" in s or "#5" in s:
        return OTHER
    return MAJOR


class Song:
    def __init__(self, row):
        self.row = row
        self.group, self.id, self.key, chords = row.rstrip("\n").split("\t")[:4]
        self.tonic = pitch(self.key.rstrip("m"))
        self.minor = int(self.key.endswith("m"))
        own_major = re.search(r"[A-G][#b]*(M|maj|Maj|j)7", chords) is not None
        bars = [[m for m in map(CHORD.match, bar.split()) if m] for bar in chords.split("|")]
        self.events = []  # root, quality, share of the time
        for bar in bars:
            for chord in bar:
                event = (pitch(chord[1]), quality(chord[2], not own_major))
                length = 1 / len(bar) if "|" in chords else 1
                if self.events and self.events[-1][0] == event:
                    self.events[-1][1] += length
                else:
                    self.events.append([event, length])
        total = sum(length for _, length in self.events)
        for event in self.events:
            event[1] /= total or 1

    def keys(self):
        """Those that the label allows."""
        if self.group == "jazz":
            return [(self.tonic, 0), ((self.tonic + 9) % 12, 1)]
        return [(self.tonic, self.minor)]

    def witnesses(self, tonic, minor):
        events, count = self.events, len(self.events)

        def is_tonic(i):
            root, kind = events[i][0]
            good = kind == MINOR if minor else kind in (MAJOR, MAJOR7, DOMINANT, OTHER)
            falls = i > 0 and kind == DOMINANT and events[(i + 1) % count][0][0] == (tonic + 5) % 12
            return root == tonic and good and not falls

        def is_dominant(i):
            return events[i][0][0] == (tonic + 7) % 12

        cadences = sum(
            is_tonic(i) and is_dominant(i - 1)
            and events[i - 1][0][1] in (MAJOR, DOMINANT, OTHER) for i in range(1, count)
        )
        time = sum(events[i][1] for i in range(count) if is_tonic(i))
        found = {
            "first": is_tonic(0),
            "last": is_tonic(count - 1) or (is_tonic(0) and is_dominant(count - 1)),
            "cadence": cadences > 0,
            "time": time >= 1 / 8,
        }
        return {name for name, is_there in found.items() if is_there}, cadences, time

    def own_witnesses(self):
        return set().union(*(self.witnesses(*key)[0] for key in self.keys()))

    def is_contradicted(self):
        own = self.own_witnesses()
        others = ((t, m) for t in range(12) for m in (0, 1) if (t, m) not in self.keys())
        return not own or (len(own) == 1 and any(len(self.witnesses(*k)[0]) == 4 for k in others))

    def labels(self):
        """The keys to fit for: of a signature's two the one that the song speaks for clearly."""
        if len(self.keys()) == 1:
            return self.keys()
        told = [self.witnesses(*key) for key in self.keys()]
        cadences = sum(t[1] for t in told) + 1
        votes = [2 * ("last" in w) + ("first" in w) + c / cadences + 2 * t for w, c, t in told]
        if abs(votes[0] - votes[1]) <= 0.3:
            return self.keys()
        return [self.keys()[0 if votes[0] > votes[1] else 1]]


# ---- The choice of a key ----------------------------------------------------------------------

FAMILY = (0, 0, 1, 2, 3, 3, 4)  # major, minor, dominant, diminished, other
GOAL = (0, 0, 1, 2, 1, 1, 2)


def resolution(a, b):
    """Which kind of step leads from one chord to the next, if any."""
    step, kind = (b[0] - a[0]) % 12, a[1]
    if step == 5:
        return 0 if kind in (DOMINANT, OTHER) else 1 if kind in (MAJOR, MAJOR7) else None
    if step == 11 and kind == DOMINANT:
        return 2
    if step == 1 and kind in (HALF, DIMINISHED):
        return 3
    if step == 7:
        return 4
    return 5 if step == 2 and kind in (MAJOR, MAJOR7, DOMINANT) else None


def features(song):
    """[12, 56]: by absolute root what speaks for a key by its distance from the tonic."""
    f = np.zeros((12, 56), np.float32)
    count = len(song.events)
    for i, ((root, kind), time) in enumerate(song.events):
        f[root, kind] += 10 * time
        goal, end = song.events[(i + 1) % count][0], i + 1 == count
        step = resolution((root, kind), goal)
        if step is not None and not end:
            f[goal[0], 29 + 3 * step + GOAL[goal[1]]] += 10 / (count - 1)
        elif step is not None:
            f[goal[0], 47 + step] = 1
        if not end and (goal[0] - root) % 12 == 5 and kind in (MINOR, HALF) \
                and goal[1] in (DOMINANT, OTHER):
            tonic = (goal[0] + 5) % 12
            reached = i + 2 < count and song.events[i + 2][0][0] == tonic
            how = 0 if not reached else 1 if song.events[i + 2][0][1] in (MAJOR, MAJOR7) else 2
            f[tonic, 53 + how] += 10 / count
    f[:, 7:14] = 3 * np.sqrt(f[:, :7] / 10)
    for place, i in ((14, 0), (19, count - 1), (24, count - 2)):
        if i >= 0:
            f[song.events[i][0][0], place + FAMILY[song.events[i][0][1]]] = 1
    return f


def design(songs):
    """[songs, 12 tonics, features]"""
    raw = np.stack([features(song) for song in songs])
    return np.stack([np.roll(raw, -t, 1).reshape(len(songs), -1) for t in range(12)], 1)


def targets(songs):
    y = np.zeros((len(songs), 12, 2), np.float32)
    for i, song in enumerate(songs):
        for key in song.labels():
            y[i][key] = 1
    return y.reshape(len(songs), 24)


def probabilities(weights, x):
    score = (x.reshape(-1, x.shape[2]) @ weights).reshape(len(x), 24)
    e = np.exp(score - score.max(1, keepdims=True))
    return e / e.sum(1, keepdims=True)


def loss(weights, x, y):
    """With its gradient. Some labels say nothing."""
    p = probabilities(weights, x)
    hit = (p * y).sum(1)
    told = (1 - NOISE) * hit + NOISE / 24
    trust = (1 - NOISE) * hit / told
    g = (p - p * y / (hit[:, None] + 1e-12)) * trust[:, None]
    gradient = x.reshape(-1, x.shape[2]).T @ g.reshape(-1, 2).astype(np.float32)
    return -np.log(told).sum() + PRIOR / 2 * (weights**2).sum(), gradient + PRIOR * weights


def descend(f, w, rounds=200, memory=8):
    """Limited-memory quasi-Newton (Nocedal, 1980)."""
    steps = []
    value, g = f(w)
    for _ in range(rounds):
        q, used = g.copy(), []
        for s, d in reversed(steps):
            a = (s * q).sum() / (d * s).sum()
            used.append(a)
            q -= a * d
        if steps:
            s, d = steps[-1]
            q *= (s * d).sum() / (d * d).sum()
        else:
            q /= max(1, np.abs(g).sum())
        for (s, d), a in zip(steps, reversed(used)):
            q += s * (a - (d * q).sum() / (d * s).sum())
        length = 1.0
        while True:
            new_w = w - length * q
            new_value, new_g = f(new_w)
            if new_value <= value - 1e-4 * length * (q * g).sum() or length < 1e-6:
                break
            length /= 2
        if ((new_w - w) * (new_g - g)).sum() > 1e-10:
            steps = [*steps[1 - memory:], (new_w - w, new_g - g)]
        settled = abs(value - new_value) < 1e-5 * max(1, abs(value))
        w, value, g = new_w, new_value, new_g
        if settled:
            break
    return w


def fit(x, y):
    return descend(lambda w: loss(w, x, y), np.zeros((x.shape[2], 2), np.float32))


# ---- The chords of a key ----------------------------------------------------------------------


def key_chords(songs, rounds=3):
    """[2, 12, 7]: logarithms of how often a chord stands in a major and in a minor key."""
    stay, change, home = 0.97, 0.03 / 23, 1.0
    table = np.full((2, 12, QUALITIES), -math.log(12.0 * QUALITIES))
    for turn in range(rounds):
        counts = np.full((2, 12, QUALITIES), 0.5)
        for song in songs:
            roots = np.array([e[0][0] for e in song.events])
            kinds = np.array([e[0][1] for e in song.events])
            emitted = np.stack([table[k % 2, (roots - k // 2) % 12, kinds] for k in range(24)], 1)
            for t, m in song.labels():
                emitted[:, 2 * t + m] += home if turn else 50
            share = posterior(np.exp(emitted - emitted.max(1, keepdims=True)), stay, change)
            for k in range(24):
                np.add.at(counts[k % 2], ((roots - k // 2) % 12, kinds), share[:, k])
        table = np.log(counts / counts.sum((1, 2), keepdims=True))
    return table


def posterior(likely, stay, change):
    n = len(likely)
    ahead, behind = np.zeros((n, 24)), np.ones((n, 24))
    ahead[0] = likely[0] / likely[0].sum()
    for i in range(1, n):
        p = ((stay - change) * ahead[i - 1] + change) * likely[i]
        ahead[i] = p / p.sum()
    for i in range(n - 2, -1, -1):
        q = behind[i + 1] * likely[i + 1]
        q = (stay - change) * q + change * q.sum()
        behind[i] = q / q.sum()
    both = ahead * behind
    return both / both.sum(1, keepdims=True)


# ---- Report and table -------------------------------------------------------------------------


def report(name, songs, p):
    best = p.argmax(1)
    right = np.array([(b // 2, b % 2) in song.keys() for b, song in zip(best, songs)])
    order = np.argsort(-p.max(1), kind="stable")
    answered = order[: round(ANSWERED * len(songs))]
    print(f"{name:28} {len(songs):5} songs, all answered {100 * right.mean():.1f} % right, "
          f"{100 * ANSWERED:.0f} % answered {100 * right[answered].mean():.1f} %, "
          f"those at {100 * p.max(1)[answered[-1]]:.0f} % sure or more")


def validate(songs, x, y, part, good):
    p = np.zeros((len(songs), 24))
    for f in range(FOLDS):
        p[part == f] = probabilities(fit(x[(part != f) & good], y[(part != f) & good]), x[part == f])
    for name, chosen in (
        ("without contradicted labels", good),
        ("  of them jazz", good & np.array([s.group == "jazz" for s in songs])),
        ("  of them others", good & np.array([s.group != "jazz" for s in songs])),
        ("with at least one witness", np.array([bool(s.own_witnesses()) for s in songs])),
        ("all", good | True),
    ):
        report(name, [s for s, c in zip(songs, chosen) if c], p[chosen])


def rows(numbers, per_row):
    text = [str(round(float(n) * DECIMALS)) for n in numbers]
    return "".join("    " + ", ".join(text[i : i + per_row]) + ",\n"
                   for i in range(0, len(text), per_row))


def write(path, weights, chords):
    with open(path, "w", encoding="ascii") as file:
        file.write("// Made by tools/fit-key.py, in thousandths. By mode, distance of the root from the\n"
                   "// tonic in half steps, and feature; a row is a distance.\n"
                   "constexpr short kWeights[2 * 12 * 56] = {\n")
        file.write(rows(weights.T.reshape(-1), 56))
        file.write("};\n// Logarithms; by mode, distance and quality.\n"
                   "constexpr short kKeyChords[2 * 12 * 7] = {\n")
        file.write(rows(chords.reshape(-1), 7) + "};\n")


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        songs = [song for song in map(Song, file) if song.events]
    x, y = design(songs), targets(songs)
    part = np.array([zlib.crc32(song.id.encode()) % FOLDS for song in songs])
    good = np.array([not song.is_contradicted() for song in songs])
    if len(sys.argv) > 4:
        unseen = part == int(sys.argv[4])
        with open(sys.argv[3], "w", encoding="utf-8") as file:
            file.writelines(song.row for song, u in zip(songs, good & unseen) if u)
        good &= ~unseen
    else:
        validate(songs, x, y, part, good)
        print("contradicted:", *(f"{s.id} ({s.key})" for s, g in zip(songs, good) if not g))
    if len(sys.argv) > 2:
        kept = [song for song, g in zip(songs, good) if g]
        write(sys.argv[2], fit(x[good], y[good]), key_chords(kept))


if __name__ == "__main__":
    main()
