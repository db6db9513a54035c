"""The page on paper and in saved files."""
import csv
import io
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

from browser import Browser, expect
from making import FOLDER, near, page_of, written
from plans import plan, task


def paper():
    """On paper: pages of the right size, with titles on every one."""
    if not shutil.which("pdftotext"):
        print("skipped: there is no pdftotext")
        sys.exit(77)
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        page.run("document.querySelector('.grid').focus()")
        for _ in range(4):
            page.keys("+")
        for size, points in (("A4", (842, 595)), ("A3", (1191, 842))):
            page.run("window.print = () => {}")
            page.button("Save").click()
            page.button(f"Print on {size}").click()
            pdf = FOLDER / f"{size}.pdf"
            page.print_pdf(pdf)
            told = subprocess.run(["pdfinfo", pdf], capture_output=True, check=True, text=True).stdout
            pages = int(re.search(r"Pages:\s+(\d+)", told)[1])
            width, height = map(float, re.search(r"Page size:\s+([\d.]+) x ([\d.]+)", told).groups())
            expect(near(width, points[0], 2) and near(height, points[1], 2), size, width, height)
            expect(pages > 2, pages)
            texts = subprocess.run(["pdftotext", "-layout", pdf, "-"], capture_output=True, check=True, text=True).stdout
            texts = texts.split("\f")[:pages]
            for number, text in enumerate(texts, 1):
                expect("House at the Mill Pond" in text and f"Page {number} of {pages}" in text and "Title" in text,
                       size, number, text)
            whole = re.findall(r"[A-Z][a-z]{2} \d+, 20\d\d, \d+:\d\d [AP]M", "\n".join(texts))
            expect(len(whole) == 142, "the start and the end of 71 rows, whole", len(whole))
            expect(("Surveyor" in texts[0].split("\n", 8)[-1]) and "Effort" in texts[0] and "Done" in texts[0], texts[0])
            expect(sum("Kick-off" in text for text in texts) >= 2, "the titles are repeated beside the chart")
            expect("Hand over the keys" in texts[-1], texts[-1])
            subprocess.run(["pdftoppm", "-r", "60", "-png", pdf, FOLDER / size], check=True)
            pictures = sorted(FOLDER.glob(f"{size}-*.png"))
            expect(len(pictures) == pages and all(picture.stat().st_size > 5000 for picture in pictures), pictures)


def paper_of_tabs():
    """The other tabs on A4: resources with their names whole, and losses as tables instead of a chart."""
    if not shutil.which("pdftotext"):
        print("skipped: there is no pdftotext")
        sys.exit(77)
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        page.button("Resources").click()
        titles = page.titles()
        page.print_pdf(FOLDER / "resources.pdf")
        page.button("Losses").click()
        page.button("Save").click()
        offered = [each.text for each in page.all(".save-panel button") if each.is_displayed()]
        expect(offered == ["Print on A4", "Print on A3"], offered)
        page.print_pdf(FOLDER / "losses.pdf")
    texts = {}
    for name in ("resources", "losses"):
        pdf = FOLDER / f"{name}.pdf"
        subprocess.run(["pdftoppm", "-r", "80", "-png", pdf, FOLDER / name], check=True)
        texts[name] = subprocess.run(["pdftotext", "-layout", pdf, "-"], capture_output=True, check=True,
                                     text=True).stdout
    expect("…" not in texts["resources"] and "Cost per hour" in texts["resources"], texts["resources"])
    for title in titles:
        expect(title.lower() in texts["resources"].lower(), title, texts["resources"])
    expect("the lag of links" in texts["losses"] and "16 h on the link to" in texts["losses"], texts["losses"])
    expect("Page 1 of" not in texts["losses"] and "/Project/Tasks[1]/Task[5]" in texts["losses"], texts["losses"])


def sheets():
    """A long outline at a close zoom is not printed on more sheets than a browser prints."""
    day = "2026-05-04T08:00:00"
    tasks = [task(1, "First", day, "2027-05-04T17:00:00")]
    tasks += [task(uid, f"Task {uid}", day, "2026-05-04T17:00:00") for uid in range(2, 2001)]
    with Browser(FOLDER) as page:
        page.open(page_of(written("Long", plan(tasks))))
        page.run("document.querySelector('.grid').focus()")
        for _ in range(12):
            page.keys("+")
        page.run("window.dispatchEvent(new Event('beforeprint'))")
        count, rows = page.count(".sheet"), page.count(".sheet .print-body:not(.continued) .print-row:not(.print-head)")
        expect(200 < count <= 400 and rows == 2000, count, rows)
        page.run("window.dispatchEvent(new Event('afterprint'))")
        expect(page.count(".sheet") == 0)


def saved():
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        page.button("Save").click()
        name, table = page.saved("csv", page.button("Table as CSV").click)
        expect(name == "House at the Mill Pond.csv", name)
        rows = list(csv.reader(io.StringIO(table.decode("utf-8-sig"))))
        expect(rows[0] == ["No.", "Title", "Start", "End", "Effort", "Done", "Resources"] and len(rows) == 72, rows[0])
        expect(rows[3] == ["1.2", "Survey the plot", "2024-01-15 08:00:00", "2024-01-17 17:00:00", "12", "1", "Surveyor"],
               rows[3])
        page.button("Save").click()
        _, drawing = page.saved("svg", page.button("Chart as SVG").click)
        root = ElementTree.fromstring(drawing)
        texts = [text.text for text in root.iter("{http://www.w3.org/2000/svg}text")]
        expect("1.2  Survey the plot" in texts and "71" not in texts and any("Hand over" in text for text in texts), texts)
        bars = [each for each in root.iter("{http://www.w3.org/2000/svg}rect") if each.get("class") == "bar"]
        expect(len(bars) == 52, len(bars))  # every task that is neither group nor milestone
