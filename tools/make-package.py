#!/usr/bin/python3
"""Make the packages of the 32-bit program: an installer and a zip.

    tools/make-package.py BUILD OUTDIR

BUILD is the folder of the build. OUTDIR gets Melvorin-VERSION-setup.exe and Melvorin-VERSION.zip,
and the folder Melvorin with what they hold (data/package/files.txt says what). The same build
gives the same zip, byte by byte; its times are those of the last commit.

Needs makensis (Debian package nsis) and strip of mingw-w64.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
import zipfile

TREE = pathlib.Path(__file__).resolve().parent.parent
DATA = TREE / "data" / "package"
STRIP = "i686-w64-mingw32-strip"


class PackageError(Exception):
    """What went wrong, in words for the person who makes the package."""


def run(*command, **options):
    result = subprocess.run(
        [str(part) for part in command], capture_output=True, text=True, check=False, **options
    )
    if result.returncode != 0:
        raise PackageError(f"{command[0]} fails:\n{result.stdout}{result.stderr}".rstrip())
    return result.stdout


def version_of(build):
    found = re.search(
        r"^CMAKE_PROJECT_VERSION:STATIC=(\d+\.\d+\.\d+)$",
        (build / "CMakeCache.txt").read_text(),
        re.M,
    )
    if not found:
        raise PackageError(f"{build} does not tell its version")
    return found[1]


def source_time():
    """Seconds since 1970, the same for everybody who packs the same sources."""
    if "SOURCE_DATE_EPOCH" in os.environ:
        return int(os.environ["SOURCE_DATE_EPOCH"])
    return int(run("git", "-C", TREE, "log", "-1", "--format=%ct"))


def at_time(seconds):
    """The environment for tools that write the time into what they make."""
    return {**os.environ, "SOURCE_DATE_EPOCH": str(seconds)}


def package_text(source, version):
    """A text of ours or of others as Notepad shows it."""
    text = source.read_text(encoding="utf-8").replace("@VERSION@", version)
    return text.replace("\r\n", "\n").replace("\n", "\r\n").encode()


def stage(build, listing, folder, version, seconds):
    """Fill the folder with exactly what the listing says."""
    shutil.rmtree(folder, ignore_errors=True)
    missing = []
    for line in listing.read_text(encoding="utf-8").splitlines():
        if not line or line.startswith("#"):
            continue
        place, _, text = line.partition(" < ")
        source = TREE / text if text else build / place
        target = folder / place
        if place.endswith("/"):
            if not any(source.rglob("*")):
                missing.append(place)
                continue
            shutil.copytree(source, target, dirs_exist_ok=True, copy_function=shutil.copyfile)
        elif not source.is_file() or source.stat().st_size == 0:
            missing.append(text or place)
        else:
            target.parent.mkdir(parents=True, exist_ok=True)
            if text:
                target.write_bytes(package_text(source, version))
            else:
                shutil.copyfile(source, target)
    if missing:
        raise PackageError(f"{build} is not whole: there is no " + ", no ".join(missing))
    for program in folder.glob("*.exe"):
        # It writes a time into the program, by default that of the moment.
        run(STRIP, "--strip-all", program, env=at_time(seconds))


def tree_files(folder):
    """Every file below the folder, in an order that no machine changes."""
    files = (path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())
    return sorted(files)


def write_zip(folder, path, seconds):
    when = time.gmtime(seconds)[:6]
    with zipfile.ZipFile(path, "w") as archive:
        for name in tree_files(folder):
            entry = zipfile.ZipInfo(f"{folder.name}/{name}", when)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = (0o755 if name.endswith(".exe") else 0o644) << 16
            archive.writestr(entry, (folder / name).read_bytes(), compresslevel=9)


def write_removal(folder, path):
    """The installer's list of what the uninstaller deletes: these files and, where nothing else is
    in them, their folders."""
    lines = []
    folders = set()
    for name in tree_files(folder):
        if "$" in name or '"' in name:
            raise PackageError(f"the installer cannot have a file named {name}")
        lines.append(f'Delete "$INSTDIR\\{name}"'.replace("/", "\\"))
        folders.update(parent.as_posix() for parent in pathlib.PurePosixPath(name).parents)
    folders.discard(".")
    for name in sorted(folders, reverse=True):  # what is inside comes first
        lines.append(f'RMDir "$INSTDIR\\{name}"'.replace("/", "\\"))
    path.write_text("\n".join(lines) + "\n", encoding="utf-8")


def write_setup(build, folder, out, version, seconds):
    for path in folder.rglob("*"):
        os.utime(path, (seconds, seconds))
    write_removal(folder, out / "removal.nsh")
    size = sum((folder / name).stat().st_size for name in tree_files(folder))
    setup = out / f"Melvorin-{version}-setup.exe"
    defines = {
        "VERSION": version,
        "CONTENT": folder,
        "REMOVAL": out / "removal.nsh",
        "PICTURES": build / "generated",
        "KILOBYTES": (size + 1023) // 1024,
        "OUTFILE": setup,
    }
    run(
        "makensis",
        "-V2",
        "-WX",
        "-INPUTCHARSET",
        "UTF8",
        *(f"-D{name}={value}" for name, value in defines.items()),
        DATA / "melvorin.nsi",
        env=at_time(seconds),
    )
    return setup


def make_package(build, out):
    version = version_of(build)
    seconds = source_time()
    out.mkdir(parents=True, exist_ok=True)
    for old in [*out.glob("Melvorin-*.exe"), *out.glob("Melvorin-*.zip")]:
        old.unlink()
    folder = out / "Melvorin"
    stage(build, DATA / "files.txt", folder, version, seconds)
    archive = out / f"Melvorin-{version}.zip"
    write_zip(folder, archive, seconds)
    setup = write_setup(build, folder, out, version, seconds)
    for made in (setup, archive):
        print(f"{made}: {made.stat().st_size / 1e6:.1f} MB")


def main():
    if len(sys.argv) != 3:
        print("usage: make-package.py BUILD OUTDIR", file=sys.stderr)
        return 2
    try:
        make_package(*(pathlib.Path(path).resolve() for path in sys.argv[1:]))
    except (PackageError, OSError) as error:
        print(f"make-package: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
