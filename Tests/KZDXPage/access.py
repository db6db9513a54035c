"""The page by keyboard alone, for assistive programs, and without scripts."""
from browser import Browser, By, Keys, expect
from making import FOLDER, page_of


def keyboard():
    """From opening the page on without a mouse."""
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        active = "document.activeElement"
        seen = set()
        for _ in range(60):
            page.keys(Keys.TAB)
            seen.add(page.value(f"{active}.getAttribute('role') || {active}.type || {active}.localName"))
            if page.value(f"{active}.getAttribute('role') === 'treegrid'"):
                break
        expect({"tab", "search", "button", "treegrid"} <= seen, seen)
        named = page.value("document.querySelector('[role=treegrid]').getAttribute('aria-activedescendant')")
        page.keys(Keys.ARROW_DOWN)
        selected = lambda: next(row["cells"]["title"] for row in page.rows() if row["selected"] == "true")  # noqa: E731
        expect(selected() in ("Planning and permits", "Kick-off"), named, selected())
        page.keys(Keys.HOME)
        expect(selected() == "Planning and permits", selected())
        page.keys(Keys.ARROW_LEFT)
        expect(page.rows()[0]["expanded"] == "false" and page.titles()[1] == "Earthworks and foundation")
        page.keys(Keys.ARROW_RIGHT, Keys.ARROW_RIGHT)
        expect(selected() == "Kick-off", selected())
        page.keys(Keys.ARROW_LEFT)
        expect(selected() == "Planning and permits", selected())
        page.keys(Keys.END)
        expect(selected() == "Hand over the keys", selected())
        page.keys("_")
        expect(len(page.titles()) == 7, page.titles())
        page.keys("*")
        expect(selected() is not None and page.value(
            "document.querySelector('[role=treegrid]').getAttribute('aria-rowcount')") == "72")
        page.keys(Keys.HOME, Keys.ARROW_DOWN, Keys.ARROW_DOWN, Keys.ENTER)
        expect("Survey the plot" in page.text(".details"))
        page.keys(Keys.ESCAPE)
        expect(not page.find(".details").is_displayed() and page.value(f"{active}.getAttribute('role')") == "treegrid")
        page.keys("?")
        expect(page.find("dialog").is_displayed())
        page.keys(Keys.ESCAPE)
        expect(not page.find("dialog").is_displayed())
        # A column is widened with the arrows on its edge.
        page.run("document.querySelector('[role=columnheader][data-column=title] .handle').focus()")
        before = int(page.find("[data-column=title] .handle").get_attribute("aria-valuenow"))
        page.keys(Keys.ARROW_RIGHT)
        expect(int(page.find("[data-column=title] .handle").get_attribute("aria-valuenow")) == before + 10)
        page.keys("2")
        expect(page.titles()[0] == "Staff", page.titles())


def access():
    """What assistive programs are told."""
    with Browser(FOLDER) as page:
        page.open(page_of("HouseBuilding"))
        page.run("document.querySelector('.grid').focus()")
        page.keys(Keys.HOME)
        nodes = page.accessibility()
        expect(("treegrid", "Plan") in [node[:2] for node in nodes], [node[:2] for node in nodes][:40])
        rows = [node for node in nodes if node[0] == "row"]
        first = next(node for node in rows if node[2].get("expanded"))
        expect(first[2]["level"] == 1, first)
        nested = next(node for node in rows if node[2].get("level") == 3)
        expect("Draft floor plans" in nested[1] or nested[2]["level"] == 3, nested)
        heads = [node[1] for node in nodes if node[0] == "columnheader"]
        expect(any("Title" in name for name in heads) and len(heads) == 7, heads)
        tabs = [node for node in nodes if node[0] == "tab"]
        expect([tab[1] for tab in tabs] == ["Plan", "Resources", "Losses"] and tabs[0][2].get("selected"), tabs)
        expect([node[1] for node in nodes if node[0] == "tabpanel"] == ["Plan"], nodes)
        # Everything that takes the focus has a name.
        nameless = [node for node in nodes if node[2].get("focusable") and not node[1]
                    and node[0] not in ("row", "RootWebArea", "gridcell", "generic")]
        expect(nameless == [], nameless)
        told = page.run("""const grid = document.querySelector('[role=treegrid]');
            return [grid.getAttribute('aria-rowcount'), grid.getAttribute('aria-colcount'),
                document.getElementById(grid.getAttribute('aria-activedescendant')).getAttribute('aria-rowindex'),
                grid.querySelectorAll('.body [role=row]').length]""")
        expect(told[:3] == ["72", "7", "2"] and told[3] < 40, told)  # only what is seen exists


def plain():
    """Without scripts the outline is a plain table."""
    with Browser(FOLDER) as page:
        page.driver.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": True})
        page.driver.get(page_of("HouseBuilding").resolve().as_uri())
        rows = page.all("noscript tr") or page.all("tr")
        expect(len(rows) == 72, len(rows))
        expect([cell.text for cell in rows[3].find_elements(By.TAG_NAME, "td")] ==
               ["1.2", "Survey the plot", "2024-01-15 08:00", "2024-01-17 17:00", "12 hours", "100%", "Surveyor"])
