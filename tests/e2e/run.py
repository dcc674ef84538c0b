#!/usr/bin/python3 -Xutf8
"""Whole runs of the real Melvorin.exe with a real keyboard, files and registry.

    tests/e2e/run.py [NAME...]

Runs the cases of these names, or all but those that run only by name. A case NAME is a method
test_NAME in one of the files test_*.py here. Prints "ok NAME", "skipped NAME: why" or
"FAILED NAME: why" for each; the exit code tells whether one failed.

Needs a private display and the Wine prefix (tools/with-display.sh --own, tools/wine-prefix.sh).
MELVORIN_WIN_BUILD and MELVORIN_NATIVE_BUILD name other build folders.
"""

import os
import pathlib
import sys
import traceback
import unittest

import program

HERE = pathlib.Path(__file__).resolve().parent


def name_of(case):
    return case.id().rsplit(".", 1)[-1].removeprefix("test_")


def runs_only_by_name(case):
    method = getattr(case, f"test_{name_of(case)}")
    return hasattr(case, "only_by_name") or hasattr(method, "only_by_name")


class Report(unittest.TestResult):
    """A line for each case as soon as it is through."""

    def addSuccess(self, test):
        print("ok     ", name_of(test), flush=True)

    def addSkip(self, test, reason):
        print(f"skipped {name_of(test)}: {reason}", flush=True)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        place = [
            step for step in traceback.extract_tb(err[2])
            if pathlib.Path(step.filename).name.startswith("test_")
        ][-1:]
        where = "".join(f" ({pathlib.Path(step.filename).name}:{step.lineno})" for step in place)
        print(f"FAILED  {name_of(test)}: {err[1]}{where}", flush=True)

    def addError(self, test, err):
        super().addError(test, err)
        print(f"FAILED  {name_of(test)}:", *traceback.format_exception(*err), flush=True)


def all_cases():
    """The cases by their names, in the order in which they run."""
    def flat(suite):
        for part in suite:
            if isinstance(part, unittest.TestSuite):
                yield from flat(part)
            else:
                yield part

    cases = {}
    for case in flat(unittest.defaultTestLoader.discover(HERE)):
        if name_of(case) in cases:
            sys.exit(f"e2e: there are two cases {name_of(case)}")
        cases[name_of(case)] = case
    return cases


def main(names):
    if not os.environ.get("DISPLAY"):
        sys.exit("e2e: no display; use with-display.sh")
    for needed in (program.MELVORIN, program.DRIVER, program.COMMAND_LINE_TOOL):
        if not needed.exists():
            sys.exit(f"e2e: {needed} is not built")
    cases = all_cases()
    for name in names:
        if name not in cases:
            sys.exit(f"e2e: there is no case {name}")
    if not names:
        names = [name for name, case in cases.items() if not runs_only_by_name(case)]
    program.end_like_an_interrupt()
    report = Report()
    try:
        for name in names:
            cases[name].run(report)
    except KeyboardInterrupt:
        print(f"FAILED  {name}: the run was told to end", flush=True)
        return 130
    return 0 if report.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
