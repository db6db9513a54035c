"""What tests of the page share: the programs, and the pages of examples and of plans written for a test."""
import os
import subprocess
import sys
from pathlib import Path

from browser import expect

PROGRAM, IMPORTER = sys.argv[1:3]
SOURCE, SCRATCH, WANTED = Path(sys.argv[3]), Path(sys.argv[4]), sys.argv[5]
FOLDER = SCRATCH / WANTED


def page_of(path, zone="UTC"):
    """The page of an example, of another plan, or of a document."""
    path = SOURCE / "examples" / f"{path}.xml" if isinstance(path, str) else path
    page = FOLDER / f"{path.stem}.html"
    made = subprocess.run([PROGRAM, "view", "-o", str(page), str(path)], capture_output=True, check=False, timeout=300,
                          env={**os.environ, "TZ": zone})
    expect(made.returncode == 0, made)
    return page


def written(name, content):
    path = FOLDER / f"{name}.xml"
    path.write_text(content, encoding="utf-8")
    return path


def imported(path):
    """The document that an import of a plan makes."""
    template = str(SOURCE / "share/kadenza2/Empty.kdzx")
    made = subprocess.run([IMPORTER, "--template-path", template, str(path), str(FOLDER)], capture_output=True,
                          check=False, timeout=300)
    expect(made.returncode == 0, made)
    return FOLDER / f"{path.stem}.kdzx"


def near(one, other, by=1.5):
    return abs(one - other) <= by
