"""Texts of plans and documents stay texts, wherever they stand; and the page's policy forbids what the page never does."""
import csv
import io
import shutil
import xml.etree.ElementTree as ElementTree

import hostile
from browser import Browser, By, Keys, expect
from making import FOLDER, SOURCE, imported, page_of

SVG = "{http://www.w3.org/2000/svg}"
DRAWN = {SVG + name for name in ("svg", "title", "style", "rect", "clipPath", "g", "text", "path")}


def watched():
    page = Browser(FOLDER)
    page.driver.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": hostile.WATCH})
    return page


def expect_harmless(page, where):
    said = page.run("return [window.strange, window.hurt === undefined && ({}).hurt === undefined, "
                    "Object.getOwnPropertyNames(Object.prototype).length, location.protocol]")
    expect(said[0] == [] and said[1] and said[2] == page.run("""
        const fresh = document.createElement('iframe'); return Object.getOwnPropertyNames(Object.prototype).length"""),
        where, said)
    expect(said[3] == "file:", said)
    page.check_silence()


def look_at_rows(page):
    """Every row of a tab once active, with its details."""
    page.run("document.querySelector('.view:not([hidden]) .grid').focus()")
    page.keys(Keys.HOME, Keys.ENTER)
    page.down_through_the_rows()


def choose_everything(page):
    """Each choice of each list in turn, and all columns."""
    page.run("""
        document.querySelectorAll('.view:not([hidden])').forEach(() => {
            document.querySelectorAll('.column-panel input').forEach(each => each.checked || each.click()); });
        document.querySelectorAll('select').forEach(list => {
            for (const option of [...list.options].slice(0, 20)) {
                list.value = option.value;
                list.dispatchEvent(new Event('change'));
            }
            list.value = list.options[0].value;
            list.dispatchEvent(new Event('change'));
        });""")


def print_it(page):
    page.run("window.dispatchEvent(new Event('beforeprint'))")
    expect(page.count("#sheets > *") > 0)
    page.run("window.dispatchEvent(new Event('afterprint'))")


def check_table(table, columns):
    text = table.decode("utf-8-sig")
    expect("\ufffd" not in text)
    cells = list(csv.reader(io.StringIO(text, newline=""), strict=True))
    expect(len(cells) > 1 and all(len(row) == columns for row in cells), columns, [len(row) for row in cells])
    for row in cells:
        for cell in row:
            expect(not hostile.is_formula(cell), cell)
    return cells


def check_drawing(drawing):
    root = ElementTree.fromstring(drawing)  # well-formed
    for element in root.iter():
        expect(element.tag in DRAWN, element.tag)
        strange = [name for name in element.attrib if name.lower().startswith("on") or "href" in name]
        expect(strange == [], strange)
    style = next(root.iter(SVG + "style")).text
    expect("url(" not in style and "@import" not in style and len(list(root.iter(SVG + "style"))) == 1)
    return root


def save_it(page):
    columns = page.count(".view:not([hidden]) [role=columnheader]")
    rows = int(page.find(".view:not([hidden]) [role=treegrid]").get_attribute("aria-rowcount"))
    page.button("Save").click()
    name, table = page.saved("csv", page.button("Table as CSV").click)
    expect(not set("<>/\\:|?*\"\r\n\t") & set(name) and not name.startswith((".", "-")), name)
    expect(len(check_table(table, columns)) == rows, rows)
    page.button("Save").click()
    _, drawing = page.saved("svg", page.button("Chart as SVG").click)
    check_drawing(drawing)
    for path in [*FOLDER.glob("*.csv"), *FOLDER.glob("*.svg")]:
        path.unlink()
    return drawing


def search_everything(page):
    for text in hostile.TEXTS[:-1]:
        page.run("""const field = document.querySelector('input[type=search]'); field.value = arguments[0];
                    field.dispatchEvent(new Event('input'));""", text)
    page.search("")
    page.wait("document.querySelectorAll('.view:not([hidden]) .body [role=row]').length > 0")


def look_at_everything(page, path):
    page.open(page_of(path))
    expect_harmless(page, "opened")
    drawings = []
    for tab in [tab.text for tab in page.all("[role=tab]")]:
        page.button(tab).click()
        page.run("document.querySelectorAll('details').forEach(each => each.open = true)")
        if tab != "Losses":
            page.button("⊞").click()
            look_at_rows(page)
            search_everything(page)
            choose_everything(page)
            drawings.append(save_it(page))
        print_it(page)
        expect_harmless(page, tab)
    page.click(".top h1 button")  # the project's details
    print_it(page)
    expect_harmless(page, "the project")
    return drawings


def look_without_scripts(page, path):
    page.driver.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": True})
    page.driver.get(path.resolve().as_uri())
    titles = page.run(hostile.TITLES)
    expect(len(titles[0]) > 0 and titles[0] == titles[1], titles)
    kinds = {element.tag_name for element in page.all("noscript *")}
    expect(kinds == {"h1", "table", "tbody", "tr", "th", "td"}, kinds)
    attributes = [element.get_attribute("outerHTML")[:80] for element in page.driver.find_elements(
        By.XPATH, "//noscript//*[@*[name() != 'scope']]")]
    expect(attributes == [], attributes)
    page.driver.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": False})
    page.check_silence()


def look_at_drawing(page, drawing):
    """A saved drawing is opened without the page's policy."""
    (FOLDER / "chart.svg").write_bytes(drawing)
    page.driver.get((FOLDER / "chart.svg").resolve().as_uri())
    expect(page.run("return window.hurt === undefined"))
    page.check_silence()
    (FOLDER / "chart.svg").unlink()


def fresh(folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    return folder


def hostile_documents():
    with watched() as page:
        for path in hostile.documents(imported, sorted((SOURCE / "examples").glob("*.xml")), fresh(FOLDER / "documents")):
            for drawing in look_at_everything(page, path):
                look_at_drawing(page, drawing)
            look_without_scripts(page, FOLDER / f"{path.stem}.html")


def hostile_plans():
    folder = fresh(FOLDER / "plans")
    with watched() as page:
        for path in sorted((SOURCE / "examples").glob("*.xml")):
            target = folder / f"@1 '<img src=x onerror=hurt=1> {path.name}"
            expect(hostile.fill_plan(path, target) > 20)
            look_at_everything(page, target)
            look_without_scripts(page, FOLDER / f"{target.stem}.html")


def violations(path):
    """What a page refuses of all that is tried; nothing of it is done."""
    with Browser(FOLDER) as page:
        page.open(path)
        page.check_silence()
        violated = set(page.driver.execute_async_script(hostile.TRY_ALL))
        page.driver.get_log("browser")  # each is told there
        answers = [entry for entry in page.driver.get_log("performance") if "a.invalid" in entry["message"]
                   and '"Network.responseReceived"' in entry["message"]]
        expect(answers == [] and page.run("return window.hurt === undefined"), answers)
        return violated


def policy():
    """The page's policy forbids every load, every style and script but its own, and every handler in markup."""
    whole = page_of("Baselines")
    violated = violations(whole)
    for what in ("img-src", "style-src-elem", "style-src-attr", "connect-src", "font-src", "frame-src", "media-src", "base-uri",
                 "form-action", "refused markup", "refused button onclick", "refused script src", "refused eval"):
        expect(what in violated, what, sorted(violated))
    # Browsers that do not know trusted types hold to the rest of the policy.
    rest = FOLDER / "rest.html"
    markup = whole.read_text(encoding="utf-8")
    trusted = "; require-trusted-types-for 'script'; trusted-types 'none'"
    expect(markup.count(trusted) == 1)
    rest.write_text(markup.replace(trusted, ""), encoding="utf-8")
    violated = violations(rest)
    for what in ("script-src-elem", "script-src-attr", "object-src", "img-src", "refused worker", "refused eval"):
        expect(what in violated, what, sorted(violated))
