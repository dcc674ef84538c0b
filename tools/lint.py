#!/usr/bin/python3 -Xutf8
"""The formatting of all C++ code, and clang-tidy on the program's own.

    tools/lint.py [--lately]

With --lately the checks that walk through every path of a function (clang-analyzer), which take most
of the time, are for the files that one of the last commits has touched; the others were checked
when they were. `make lint` checks all of them.

A file is checked again only after it, a header that it includes, how it is compiled or the rules
have changed; build/lint has a stamp with the sum of all that for each. What the native build
compiles is checked as native code, the windows as the 64-bit build compiles them.
"""

import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
STAMPS = ROOT / "build/lint"
RULES = ROOT / ".clang-tidy"
INCLUDE = re.compile(rb'^\s*#include "([^"]+)"', re.MULTILINE)

NATIVE = ["-Wno-unknown-warning-option"]
# Messages carry handles and pointers in numbers, so casts are how one talks to Windows.
NO_PATHS = "-clang-analyzer-*"
# So many commits are a few days' work.
LATELY = 30
WINDOWS_RULES = "-performance-no-int-to-ptr"


def output(*command):
    return subprocess.run(command, cwd=ROOT, stdout=subprocess.PIPE, check=True).stdout.decode()


def formatting():
    """The files that are not as clang-format writes them; it says where by itself."""
    listed = output("git", "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.cpp")
    files = [name for name in listed.splitlines() if (ROOT / name).exists()]
    return subprocess.run(["clang-format", "--dry-run", "--Werror", *files], cwd=ROOT).returncode


def commands(build):
    """How this build compiles each file of src."""
    listed = json.loads((ROOT / "build" / build / "compile_commands.json").read_text())
    found = {pathlib.Path(entry["file"]): entry["command"] for entry in listed}
    return {file: found[file] for file in sorted(found) if file.is_relative_to(ROOT / "src")}


def windows_headers(compiler):
    """clang looks for the headers of this compiler where they are not."""
    told = subprocess.run(
        [compiler, "-E", "-v", "-x", "c++", os.devnull],
        stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=True,
    ).stderr.decode()
    folders = re.search(r"search starts here:\n(?:.*\n)*?#include <.*\n((?: .*\n)*)", told)[1]
    plain = [folder.strip() for folder in folders.splitlines() if "/c++" in folder]
    return ["-nostdinc++", *(f"-isystem{folder}" for folder in plain)]


class Ground:
    """A build, what its files are checked as, and the rules that do not hold there."""

    def __init__(self, build, arguments, *rules):
        self.build, self.rules = build, list(rules)
        self.arguments = [f"--extra-arg={argument}" for argument in arguments]

    def tidy(self, file, walks_paths):
        rules = self.rules if walks_paths else [*self.rules, NO_PATHS]
        checks = [f"--checks={','.join(rules)}"] if rules else []
        place = ["-p", f"build/{self.build}", str(file.relative_to(ROOT))]
        return ["clang-tidy", "--quiet", *checks, *self.arguments, *place]


@functools.lru_cache(maxsize=None)
def read(file):
    content = file.read_bytes()
    return content, INCLUDE.findall(content)


def with_headers(file):
    """The file and what it includes of ours, directly or not."""
    found, waiting = set(), [file]
    while waiting:
        file = waiting.pop()
        if file in found or not file.exists():
            continue
        found.add(file)
        for name in read(file)[1]:
            waiting += [ROOT / "src" / os.fsdecode(name), file.parent / os.fsdecode(name)]
    return sorted(found)


def sum_of(file, command, tidy):
    total = hashlib.sha256(RULES.read_bytes())
    for part in (command, *tidy):
        total.update(part.encode() + b"\0")
    for part in with_headers(file):
        total.update(read(part)[0] + b"\0")
    return total.hexdigest()


def touched_lately():
    listed = output("git", "log", f"-{LATELY}", "--name-only", "--format=", "--", "src")
    changed = output("git", "status", "--porcelain", "--", "src")
    names = listed.splitlines() + [line[3:] for line in changed.splitlines()]
    return {ROOT / name for name in names}


def check(file, ground, command, walks_paths):
    """What clang-tidy has to say; nothing where the file is well, or was so before."""
    name = str(file.relative_to(ROOT)).replace("/", "_")
    stamp = STAMPS / f"{ground.build}-{name}"
    known = stamp.read_text() if stamp.exists() else ""
    # What all checks have found well needs none.
    if known == sum_of(file, command, ground.tidy(file, True)):
        return ""
    tidy = ground.tidy(file, walks_paths)
    now = sum_of(file, command, tidy)
    if known == now:
        return ""
    result = subprocess.run(tidy, cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if result.returncode != 0:
        stamp.unlink(missing_ok=True)
        return (result.stdout + result.stderr).decode() or f"{file}: clang-tidy fails\n"
    stamp.write_text(now)
    return ""


def jobs():
    core = commands("native-asan")
    windows = {file: text for file, text in commands("win-x64").items() if file not in core}
    native = Ground("native-asan", NATIVE)
    compiler = shlex.split(next(iter(windows.values())))
    compiler = next(word for word in compiler if "g++" in word)
    target = "--target=x86_64-w64-mingw32"
    # The interfaces of this compiler's headers say nothing of exceptions.
    lax = "-Wno-microsoft-exception-spec"
    mingw = Ground("win-x64", [*NATIVE, target, lax, *windows_headers(compiler)], WINDOWS_RULES)
    for ground, files in ((mingw, windows), (native, core)):
        for file, command in files.items():
            yield file, ground, command


def main():
    lately = touched_lately() if sys.argv[1:] == ["--lately"] else None
    failed = formatting() != 0
    STAMPS.mkdir(parents=True, exist_ok=True)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        told_of = pool.map(
            lambda job: check(*job, lately is None or job[0] in lately), jobs()
        )
        for told in told_of:
            sys.stdout.write(told)
            failed = failed or told != ""
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
