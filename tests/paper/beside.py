"""Songs as PDF by the batch tool and by LibreOffice, as pictures beside each other."""
import itertools
import shutil
import subprocess

import faces
import songs

COUNT = 10
# LibreOffice 7.4 stretches runs of blanks in Rich Text in these fonts, but not where they stand for
# others.
OFFICE_NAMES = {"Liberation Mono": "Courier New", "Liberation Sans": "Arial",
                "Liberation Serif": "Times New Roman"}


def run(*command):
    subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=True)


def some_songs(seed):
    invented = (songs.Inventor(f"beside {seed} {i}") for i in itertools.count())
    found = (song for song in (inventor.song("") for inventor in invented)
             if song.lines[0].look.face in OFFICE_NAMES)
    return itertools.islice(found, COUNT)


def compare(tool, folder, seed):
    """Leaves NUMBER-PAGE.png of each page of COUNT songs: left ours, right LibreOffice's. It finds
    the diagrams' fonts by a font configuration of its own."""
    shutil.rmtree(folder, ignore_errors=True)
    for name in ("ours", "office", "pages"):
        (folder / name).mkdir(parents=True)
    settings = folder / "fonts.conf"
    settings.write_text('<?xml version="1.0"?><fontconfig><include>/etc/fonts/fonts.conf</include>'
                        f"<dir>{faces.diagram_folder}</dir></fontconfig>")
    sources = []
    for number, song in enumerate(some_songs(seed)):
        source = folder / f"{number}.rtf"
        text = song.as_rtf()
        source.write_text(text)
        run(tool, "pdf", "-o", folder / "ours" / f"{number}.pdf", source)
        for name, other in OFFICE_NAMES.items():
            text = text.replace(name, other)
        source.write_text(text)
        sources.append(source)
    profile = f"-env:UserInstallation=file://{folder.resolve()}/profile"
    run("env", f"FONTCONFIG_FILE={settings}", "soffice", profile, "--headless",
        "--convert-to", "pdf", "--outdir", folder / "office", *sources)
    for number in range(COUNT):
        sides = []
        for side in ("ours", "office"):
            run("pdftoppm", "-r", "60", "-png", folder / side / f"{number}.pdf",
                folder / "pages" / f"{number}-{side}")
            sides.append(sorted((folder / "pages").glob(f"{number}-{side}-*.png")))
        for page in range(max(map(len, sides))):
            pictures = [side[page] if page < len(side) else "canvas:grey" for side in sides]
            sizes = ["-size", "496x702"]
            run("convert", *sizes, *pictures, "-bordercolor", "grey", "-border", "2", "+append",
                folder / f"{number}-{page + 1}.png")
    shutil.rmtree(folder / "pages")
    print(f"{COUNT} songs, ours on the left, in {folder}")
    return 0
