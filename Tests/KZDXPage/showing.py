"""What the page shows of a document, and what can be done with it."""
import re
import shutil
import time
import xml.etree.ElementTree as ElementTree

import hostile
from browser import ActionChains, Browser, By, Keys, expect
from making import FOLDER, SOURCE, imported, near, page_of, written
from plans import plan, resource, task


def outline():
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        first = page.rows()[0]
        expect(first["cells"] == {
            "number": "1", "title": "Planning and permits", "start": "Jan 15, 2024, 8:00 AM",
            "end": "Mar 6, 2024, 5:00 PM", "effort": "262 h", "completion": "96%", "resources": ""}, first)
        survey = page.row("Survey the plot")["cells"]
        expect((survey["number"], survey["effort"], survey["completion"], survey["resources"]) ==
               ("1.2", "12 h", "100%", "Surveyor"), survey)
        expect(page.row("Draft floor plans")["cells"]["number"] == "1.4.1")
        # Groups fold and unfold by their triangles.
        before = page.titles()
        page.click(".grid .row.group .triangle.open")
        expect(page.titles()[:2] == ["Planning and permits", "Earthworks and foundation"], page.titles())
        expect(page.rows()[0]["expanded"] == "false")
        page.click(".grid .row.group .triangle")
        expect(page.titles() == before, page.titles())
        # Columns are chosen, and widened with the mouse.
        page.button("Columns").click()
        for label in ("Effort", "Id"):
            page.run("[...document.querySelectorAll('.column-panel label')].find(l => l.innerText === arguments[0]).click()",
                     label)
        cells = page.row("Survey the plot")["cells"]
        expect("effort" not in cells and cells["id"] == "t3", cells)
        page.keys(Keys.ESCAPE)
        header = "[role=columnheader][data-column=title]"
        width = page.value("document.querySelector(arguments[0]).getBoundingClientRect().width", header)
        ActionChains(page.driver).drag_and_drop_by_offset(page.find(f"{header} .handle"), 80, 0).perform()
        wider = page.value("document.querySelector(arguments[0]).getBoundingClientRect().width", header)
        cell = page.value("document.querySelector('[role=gridcell][data-column=title]').getBoundingClientRect().width")
        expect(near(wider, width + 80) and near(cell, wider), width, wider, cell)
        # Custom fields are columns.
        page.open(page_of("CustomFields"))
        page.button("Columns").click()
        page.run("[...document.querySelectorAll('.column-panel label')].find(l => l.innerText === 'Region').click()")
        regions = [row["cells"]["field:Region"] for row in page.rows()]
        expect(regions.count("North") == 3 and "all" in regions, regions)


def chart():
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        grid = {row["cells"]["title"]: row for row in page.rows()}
        survey = page.shapes("t2", "bar")[0]
        expect(near(survey["top"] + survey["bottom"], 2 * grid["Survey the plot"]["top"] + 29, 3), survey, grid)
        # Time is place: the design begins a day after the survey, and takes eight times as long.
        draft = page.shapes("t5", "bar")[0]
        expect(near((draft["right"] - draft["left"]) / (survey["right"] - survey["left"]), 9.375 / 2.375, 0.7), draft, survey)
        expect(draft["left"] > survey["left"], draft, survey)
        done = page.shapes("t8", "done")[0]  # Working drawings: 80%
        bar = page.shapes("t8", "bar")[0]
        expect(near((done["right"] - done["left"]) / (bar["right"] - bar["left"]), 0.8, 0.06), done, bar)
        expect(page.count('[data-row="t0"] .group') == 1 and page.count('[data-row="t1"] .milestone') == 1)
        expect(page.count("[data-row='t0'] .bar") == 0 and page.count("[data-row='t1'] .bar") == 0)
        bound = page.shapes("t9", "mark")  # Apply for the building permit
        expect([mark["title"] for mark in bound] == ["Latest end: Fri, Feb 23, 2024, 5:00 PM"], bound)
        page.run("document.querySelector('.grid').focus()")
        page.keys("+", "+")
        expect(page.count(".rest") > 20, "weekends")
        page.keys("0")
        kinds = set(page.run("return [...document.querySelectorAll('.dependency')].map(l => l.dataset.kind)"))
        expect({"FS", "SS", "FF"} <= kinds, kinds)
        # Each link meets the right ends: of FF those of both bars.
        arrow = page.run("return [...document.querySelectorAll('.dependency')].find(l => l.dataset.kind === 'FF')"
                         ".querySelector('.arrow').getBoundingClientRect().left")
        expect(near(arrow, bar["right"], 3), arrow, bar)
        # What a link tells is made when somebody points at it.
        told = page.run("""const link = document.querySelector('.dependency'); const before = link.querySelector('title');
            link.querySelector('.arrow').dispatchEvent(new PointerEvent('pointerover', { bubbles: true }));
            return [before, link.querySelector('title').textContent]""")
        expect(told == [None, "FS \u2013 Finish to start: 1.1 Kick-off \u2192 1.2 Survey the plot"], told)
        page.keys(Keys.TAB)
        page.run("document.querySelector('.view:not([hidden]) .grid').focus()")
        page.keys(Keys.END)
        page.wait("[...document.querySelectorAll('.dependency')].some(l => l.dataset.kind === 'SF')")
        locked = page.shapes("t70", "mark")
        expect(locked[0]["title"] == "Locked end: Fri, Jan 31, 2025, 5:00 PM", locked)
        # A split task has a bar for each piece, and a line over the gap.
        page.open(page_of("SplitTasks"))
        pieces = page.shapes("t0", "bar")
        gaps = page.shapes("t0", "gap")
        expect(len(pieces) == 2 and len(gaps) == 1, pieces, gaps)
        expect(near(gaps[0]["left"], pieces[0]["right"]) and near(gaps[0]["right"], pieces[1]["left"]), pieces, gaps)
        expect(page.titles()[0] == "Mounting with a pause" and page.value(
            "document.querySelector('[role=treegrid]').getAttribute('aria-rowcount')") == "7", "pieces are no rows")


def today():
    now = time.time()
    day = lambda offset: time.strftime("%Y-%m-%dT08:00:00", time.gmtime(now + offset * 86_400))  # noqa: E731
    with Browser(FOLDER) as page:
        page.open(page_of(written("Now", plan([task(1, "Then", day(-10), day(-5)), task(2, "Soon", day(5), day(10))],
                                              start=day(-10)))))
        line = page.run("return document.querySelector('.today').getBoundingClientRect().left")
        expect(page.shapes("t0", "bar")[0]["right"] < line < page.shapes("t1", "bar")[0]["left"], line)
        before = page.shapes("t0", "bar")[0]["left"]
        page.button("+").click()
        page.button("+").click()
        page.button("Today").click()
        box = page.run("const b = document.querySelector('.plot').getBoundingClientRect(); return [b.left, b.width]")
        line = page.run("return document.querySelector('.today').getBoundingClientRect().left")
        expect(near(line, box[0] + box[1] / 2, 3), line, box)
        page.button("Fit").click()
        expect(near(page.shapes("t0", "bar")[0]["left"], before), "fit")


def zoom():
    axis = "[...document.querySelectorAll('.view:not([hidden]) .axis text')].map(text => text.textContent)"
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        expect("2024" in page.value(axis) and "Apr" in page.value(axis), page.value(axis))
        page.keys(Keys.TAB)
        page.run("document.querySelector('.grid').focus()")
        for _ in range(25):
            page.keys("+")
        hours = [label for label in page.value(axis) if re.fullmatch(r"\d\d:00", label)]
        expect(4 <= len(hours) <= 8, page.value(axis))
        for _ in range(60):
            page.keys("-")
        years = page.value(axis)
        expect(any(label == "2020" for label in years) and "Apr" not in years, years)
        page.keys("0")
        expect("Apr" in page.value(axis), page.value(axis))
        # By wheel the time under the pointer stays.
        bar = page.shapes("t5", "bar")[0]
        box = page.run("const b = document.querySelector('.plot').getBoundingClientRect(); return [b.left, b.width]")
        page.wheel(".plot", dy=-300, modifiers=2, at=((bar["left"] - box[0]) / box[1], 0.5))
        page.wait("document.querySelector('[data-row=t5] .bar').getBoundingClientRect().width > arguments[0]",
                  1.5 * (bar["right"] - bar["left"]))
        after = page.shapes("t5", "bar")[0]
        expect(near(after["left"], bar["left"], 4), bar, after)
        # Dragging moves it, by mouse and by keys.
        plot = page.find(".plot")
        ActionChains(page.driver).move_to_element(plot).click_and_hold().move_by_offset(-60, 0).release().perform()
        moved = page.shapes("t5", "bar")[0]
        expect(near(moved["left"], after["left"] - 60, 3), after, moved)
        page.with_shift(Keys.ARROW_LEFT)
        panned = page.shapes("t5", "bar")[0]
        expect(near(panned["left"], moved["left"] + 120, 3), moved, panned)
        page.button("−").click()
        expect(page.shapes("t5", "bar")[0]["right"] - page.shapes("t5", "bar")[0]["left"] < moved["right"] - moved["left"])


def baselines():
    with Browser(FOLDER) as page:
        page.open(page_of("Baselines"))
        page.choose("Compare with", "Baseline")
        slips = {row["cells"]["title"]: row["cells"]["slip"] for row in page.rows()}
        expect(slips["Write the chapters"] == "+14 d later", slips)
        bar = page.shapes("t1", "bar")[0]
        under = page.shapes("t1", "baseline")[0]
        expect(under["top"] >= bar["bottom"] - 1 and under["left"] < bar["left"], bar, under)
        expect(near(under["right"] - under["left"], bar["right"] - bar["left"]), bar, under)
        page.choose("Compare with", "Baseline1")
        slips = {row["cells"]["title"]: row["cells"]["slip"] for row in page.rows()}
        expect(slips["Write the chapters"] == "+7 d later" and slips["Index"] == "", slips)
        expect(page.shapes("t3", "baseline") == [], "Index is not in the first baseline")
        page.choose("Compare with", "No baseline")
        expect(page.count(".view:not([hidden]) .canvas .baseline") == 0 and "slip" not in page.rows()[0]["cells"])


def resources():
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        page.button("Resources").click()
        titles = page.titles()
        expect(page.text(".row-count") == "14 resources", page.text(".row-count"))
        expect(titles[0] == "Staff" and "Architect" in titles and titles[titles.index("Architect") + 1] == "Draft floor plans",
               titles)
        architect = page.row("Architect")["cells"]
        expect((architect["units"], architect["cost-per-hour"], architect["cost-per-use"]) == ("1", "95.00 €", "0.00 €"),
               architect)
        page.button("⊟").click()
        expect(page.titles() == ["Staff", "Material"], page.titles())
        page.run("document.querySelector('.view:not([hidden]) .grid').focus()")
        page.keys(Keys.END, Keys.ARROW_RIGHT)
        expect(page.titles() == ["Staff", "Material", "Concrete", "Bricks", "Roof tiles", "Crane hire", "Permit fees"],
               page.titles())
        page.keys(Keys.HOME, Keys.ARROW_RIGHT, Keys.ARROW_RIGHT, Keys.ENTER)
        details = page.text(".details")
        for part in ("Architect", "Reachable in the mornings.\nHolidays in the first week of July.", "Days off",
                     "Mon, Jul 1, 2024 – Fri, Jul 5, 2024", "architect@example.org", "1.4.1 Draft floor plans"):
            expect(part in details, part, details)
        expect(page.count(".view:not([hidden]) .off") == 1, "its days off in the chart")


def details():
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        ActionChains(page.driver).double_click(
            page.driver.find_element(By.XPATH, "//span[text()='Soil report']")).perform()
        said = page.text(".details")
        for part in ("Task 1.3", "Soil report", "Mon, Jan 22, 2024, 8:00 AM (+00:00)", "10 h", "100%", "Surveyor",
                     "Three boreholes:\n- north corner\n- below the cellar\n\n- garage & drive (<2 m)",
                     "FS\n1.2 Survey the plot", "FS\n1.4.3 Structural calculation", "180,000.00 €", "Priority\n500", "t4"):
            expect(part.replace("\n1.", " 1.") in said or part in said, part, said)
        # What it names leads there.
        page.button("1.4.3 Structural calculation", ".details").click()
        expect("Task 1.4.3" in page.text(".details"), page.text(".details"))
        expect(page.row("Structural calculation")["selected"] == "true")
        page.button("Architect", ".details").click()
        expect("architect@example.org" in page.text(".details") and page.row("Architect")["selected"] == "true")
        page.button("×", ".details").click()
        expect(not page.find(".details").is_displayed())
        page.button("House at the Mill Pond").click()
        said = page.text(".details")
        for part in ("Monday", "8:00 AM–12:00 PM, 1:00 PM–5:00 PM", "Sunday\nNo work", "Fri, Mar 29, 2024",
                     "HouseBuilding.xml"):
            expect(part in said, part, said)


def signs_of(element):
    """All texts and attributes in an element, but for what only refers to others or says how a calendar is edited."""
    texts = [text for each in element.iter() for text in (
        each.text, *(value for name, value in each.attrib.items() if name not in ("idref", "editable")))]
    return set(re.findall(r"\u03a9\d+", " ".join(filter(None, texts))))


def add_unknown(root):
    """Gives tasks and resources what no document of this program has."""
    signs = hostile.Signs()
    signs.given = 100_000
    for kind in ("task", "resource"):
        for item in root.findall(f"{{{hostile.DOCUMENT}}}{kind}"):
            item.set("owner", signs.next())
            for _ in range(2):
                ElementTree.SubElement(item, f"{{{hostile.DOCUMENT}}}colour", shade=signs.next()).text = signs.next()
            ElementTree.SubElement(item, f"{{{hostile.DOCUMENT}}}flag").text = signs.next()
            ElementTree.SubElement(item, f"{{{hostile.DOCUMENT}}}flag").text = signs.next()
        for part in root.iter(f"{{{hostile.DOCUMENT}}}assignment"):
            part.set("units", signs.next())


def everything():
    """The details tell every text and attribute that the document holds on a task or resource."""
    for example in ("HouseBuilding", "CustomFields", "SplitTasks"):
        target = FOLDER / f"Signs {example}.kdzx"
        shutil.rmtree(target, ignore_errors=True)
        hostile.fill_document(imported(SOURCE / f"examples/{example}.xml"), target, True, hostile.Signs())
        tree = ElementTree.parse(target / "Actual.xml")
        add_unknown(tree.getroot())
        tree.write(target / "Actual.xml", encoding="UTF-8", xml_declaration=True)
        with Browser(FOLDER) as page:
            page.open(page_of(target))
            details = []
            for tab in ("Plan", "Resources"):
                page.button(tab).click()
                page.run("document.querySelector('.view:not([hidden]) .grid').focus()")
                page.keys(Keys.HOME, Keys.ENTER)
                details += page.down_through_the_rows("""const details = document.querySelector('.details');
                    const id = [...details.querySelectorAll('dt')].find(name => name.textContent === 'Id');
                    return [id?.nextSibling.textContent ?? null, details.textContent]""")
            told = dict(details)
            looked_at = 0
            for item in [*tree.getroot().iter(f"{{{hostile.DOCUMENT}}}task"), *tree.getroot().iter(f"{{{hostile.DOCUMENT}}}resource")]:
                if item.get("id") in told:  # neither a piece of a task nor the group of all
                    missing = signs_of(item) - set(re.findall(r"\u03a9\d+", told[item.get("id")]))
                    expect(missing == set(), example, item.get("id"), missing, told[item.get("id")])
                    looked_at += 1
            expect(looked_at == page.value("document.querySelectorAll('[role=treegrid]')[0].getAttribute('aria-rowcount') - 1")
                   + int(page.text(".row-count").split()[0]), looked_at)


def fields():
    """Durations and dates of custom fields read as all others; what a person typed stays as it is."""
    values = {"PT20H30M0S": "20.5 h", "2024-07-01 12:00:00 +0000": "Jul 1, 2024, 12:00 PM", "PT1H": "PT1H",
              "2024-02-30 12:00:00 +0000": "2024-02-30 12:00:00 +0000", "007": "007", "1.10": "1.10"}
    tasks = [task(number, value, fields=[(9, value)]) for number, value in enumerate(values, 1)]
    people = [resource(1, "Somebody", Type=1, fields=[(9, "PT20H30M0S")])]
    with Browser(FOLDER, size=(2200, 860)) as page:
        page.open(page_of(written("Fields", plan(tasks, people, fields=[(9, "Own")]))))
        page.button("Columns").click()
        page.run("[...document.querySelectorAll('.column-panel label')].find(l => l.innerText === 'Own').click()")
        page.keys(Keys.ESCAPE)
        shown = {row["cells"]["title"]: row["cells"]["field:Own"] for row in page.rows()}
        expect(shown == values, shown)
        page.run("document.querySelector('.grid').focus()")
        page.keys(Keys.HOME, Keys.ENTER)
        expect("Own\n20.5 h" in page.text(".details"), page.text(".details"))
        page.run("document.querySelector('.view:not([hidden]) .grid').focus()")
        page.keys(Keys.ARROW_DOWN)
        expect("Own\nMon, Jul 1, 2024, 12:00 PM" in page.text(".details"), page.text(".details"))


def room():
    """The first look shows all columns where the window is wide, and a narrow one still tells the zone."""
    with Browser(FOLDER, size=(1600, 900)) as page:
        page.open(page_of("HouseBuilding"))
        page.driver.save_screenshot(str(FOLDER / "wide.png"))
        edges = page.run("""return ['.grid', '.head [data-column=resources]'].map(
            each => document.querySelector('.view:not([hidden]) ' + each).getBoundingClientRect().right)""")
        expect(edges[1] <= edges[0] + 1, edges)
        cut = page.run("""return [...document.querySelectorAll(".view:not([hidden]) .body [data-column=start]")]
            .filter(cell => cell.scrollWidth > cell.clientWidth).length""")
        expect(cut == 0, "dates are cut", cut)
        page.driver.set_window_size(700, 860)
        note = page.run("const box = document.querySelector('.zone-note').getBoundingClientRect();"
                        "return [box.width, box.height, box.right, innerWidth, box.bottom, innerHeight]")
        expect(note[0] > 50 and note[1] > 5 and note[2] <= note[3] and note[4] <= note[5], note)
        page.driver.save_screenshot(str(FOLDER / "narrow.png"))
    with Browser(FOLDER) as page:  # a baseline that reaches farther than the plan comes into view
        early = task(1, "Early", "2026-05-04T08:00:00", "2026-05-05T17:00:00",
                     baselines=[(0, "2026-03-02T08:00:00", "2026-03-03T17:00:00")])
        page.open(page_of(written("Early", plan([early]))))
        for choice in ("No baseline", "Baseline"):
            page.choose("Compare with", choice)
        left = page.value("document.querySelector('.view:not([hidden]) .chart').getBoundingClientRect().left")
        shapes = page.shapes("t0", "baseline") + page.shapes("t0", "bar")
        expect(len(shapes) == 2 and all(left <= each["left"] and each["right"] <= 1500 for each in shapes), left, shapes)


def search():
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        page.keys("/", "façade")
        page.wait("document.querySelector('.row-count').textContent.startsWith('2 of 71')")
        expect(page.titles() == ["Planning and permits", "Design", "Façade – colours and materials", "Outside",
                                 "Render the façade"], page.titles())
        page.search("FACADE boreholes")
        page.wait("document.querySelector('.row-count').textContent.startsWith('0 of 71')")
        expect("Nothing matches" in page.text(".view:not([hidden]) .empty"))
        page.search("boreholes")  # of a note
        page.wait("document.querySelector('.row-count').textContent.startsWith('1 of 71')")
        page.search("")
        page.button("Filter").click()
        page.choose("Resource", "Electrician")
        titles = page.titles()
        expect("Cables and sockets" in titles and "Excavate" not in titles, titles)
        page.button("Clear").click()
        expect(len(page.titles()) > 15)
        # Dates missed, and custom fields.
        late = task(1, "Late", "2026-05-04T08:00:00", "2026-05-08T17:00:00", ConstraintType=7,
                    ConstraintDate="2026-05-06T17:00:00", fields=[(9, "North")])
        kept = task(2, "Kept", "2026-05-04T08:00:00", "2026-05-05T17:00:00", ConstraintType=7,
                    ConstraintDate="2026-05-06T17:00:00", fields=[(9, "South")])
        page.open(page_of(written("Bounds", plan([late, kept, task(3, "Free")], fields=[(9, "Region")]))))
        expect([mark["text"] for mark in page.shapes("t0", "warning")] != [] and page.shapes("t1", "warning") == [])
        page.button("Filter").click()
        page.run("[...document.querySelectorAll('.filter-panel label')].find(l => l.innerText === 'Critical dates missed').click()")
        expect(page.titles() == ["Late"], page.titles())
        page.button("Clear").click()
        page.choose("Custom field", "Region")
        expect(page.titles() == ["Late", "Kept"], page.titles())
        page.find(".filter-panel input[type=text]").send_keys("sou")
        expect(page.titles() == ["Kept"], page.titles())


def losses():
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        page.button("Losses").click()
        expect("the lag of links" in page.text(".losses"), page.text(".losses"))
        lag = page.find(".loss[data-kind=link-lag]")
        expect(lag.find_element(By.CSS_SELECTOR, ".count").text == "18")
        lag.find_element(By.TAG_NAME, "summary").click()
        page.wait("document.querySelectorAll('.loss[data-kind=link-lag] tbody tr').length === 18")
        first = page.value("document.querySelector('.loss[data-kind=link-lag] tbody tr').innerText")
        expect("16 h on the link to Survey the plot (UID\xa03)" in first and "/Project/Tasks[1]/Task[5]/PredecessorLink[1]/LinkLag[1]" in first, first)
        page.button("1.3 Soil report", ".loss[data-kind=link-lag]").click()
        expect(page.row("Soil report")["selected"] == "true" and "Task 1.3" in page.text(".details"))
        # Assignments lead to their tasks, too.
        page.keys("3")
        page.run("document.querySelector('.loss[data-kind=assignment-units] summary').click()")
        page.wait("document.querySelector('.loss[data-kind=assignment-units] tbody button')")
        expect(page.value("document.querySelector('.loss[data-kind=assignment-units] tbody button').innerText") ==
               "1.2 Survey the plot")
    document = imported(SOURCE / "examples/SplitTasks.xml")
    with Browser(FOLDER) as page:  # a document has no account
        page.open(page_of(document))
        expect([tab.text for tab in page.all("[role=tab]")] == ["Plan", "Resources"])
        expect(page.titles()[0] == "Mounting with a pause")


def zones():
    content = plan([task(1, "Winter", "2026-01-12T08:00:00", "2026-01-12T17:00:00"),
                    task(2, "Summer", "2026-07-13T08:00:00", "2026-07-13T17:00:00")], start="2026-01-12T08:00:00")
    path = written("Zones", content)
    with Browser(FOLDER) as page:
        page.open(page_of(path, zone="Etc/GMT-1"))
        starts = lambda: [row["cells"]["start"] for row in page.rows()]  # noqa: E731
        expect(starts()[0] == "Jan 12, 2026, 8:00 AM", starts())
        page.search("Winter")
        page.wait("document.querySelector('.row-count').textContent === '1 of 2 tasks'")
        page.search("")
        offsets = page.run("""
            const text = document.querySelector('.zone-note').textContent; return text""")
        expect(offsets == "Times as written in the document (+01:00)", offsets)
        page.choose("Times", "UTC")
        expect(starts()[0] == "Jan 12, 2026, 7:00 AM", starts())
        expect("UTC" in page.text(".zone-note"))
        page.choose("Times", "America/New York")
        expect(starts()[0] == "Jan 12, 2026, 2:00 AM", starts())
        page.choose("Times", "Asia/Tokyo")
        expect(starts()[0] == "Jan 12, 2026, 4:00 PM", starts())
        page.choose("Times", "As written")
        expect(starts()[0] == "Jan 12, 2026, 8:00 AM", starts())
