"""Pages of all plans at hand open."""
import subprocess
import sys

from browser import Browser, expect
from making import FOLDER, IMPORTER, PROGRAM, SOURCE


def imports(path):
    """Whether the importer takes a plan."""
    template = str(SOURCE / "share/kadenza2/Empty.kdzx")
    made = subprocess.run([IMPORTER, "--template-path", template, str(path), str(FOLDER)], capture_output=True,
                          check=False, timeout=600)
    return made.returncode == 0


def open_all(paths):
    """Every page opens, shows rows and stays silent."""
    opened = 0
    with Browser(FOLDER) as page:
        for path in paths:
            made = subprocess.run([PROGRAM, "view", "-o", str(FOLDER / "page.html"), str(path)], capture_output=True,
                                  check=False, timeout=600)
            refused = not imports(path)
            expect(made.returncode == (2 if refused else 0), refused, made)
            if refused:
                continue
            page.open(FOLDER / "page.html")
            count = int(page.find("[role=treegrid]").get_attribute("aria-rowcount"))
            expect(count == 1 or len(page.rows()) > 0, path)
            page.check_silence()
            opened += 1
    return opened


def examples():
    paths = sorted((SOURCE / "examples").glob("*.xml"))
    expect(open_all(paths) == len(paths) > 4)


def shared():
    """The plans beside the source tree, all of them."""
    paths = sorted((SOURCE.parent / "shared/corpus").glob("*.xml"))
    if not paths:
        print("skipped: there are no shared plans")
        sys.exit(77)
    opened = open_all(paths)
    print(opened, "of", len(paths), "plans import, and their pages open")
    expect(opened > len(paths) / 4)
