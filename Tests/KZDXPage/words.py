"""The page's words in both languages, and its colours in both schemes."""
import re

import hostile
from browser import Browser, Keys, expect
from making import FOLDER, SOURCE, page_of


def languages():
    page_path = page_of("HouseBuilding")
    with Browser(FOLDER, language="de-DE") as page:
        page.open(page_path)
        expect([tab.text for tab in page.all("[role=tab]")] == ["Plan", "Ressourcen", "Verluste"])
        expect(page.row("Survey the plot")["cells"]["start"] == "15. Jan. 2024, 8:00", page.row("Survey the plot"))
        expect(page.row("Planning and permits")["cells"]["completion"] == "96\xa0%")
        expect(page.value("document.documentElement.lang") == "de")
        page.button("House at the Mill Pond").click()
        expect("Stunden" in page.text(".details") or "Tage" in page.text(".details"), page.text(".details"))
        page.button("×", ".details").click()
        page.button("Verluste").click()
        expect(page.text(".loss[data-kind=link-lag] .what") == "der zeitliche Abstand von Verknüpfungen")
        page.button("Ressourcen").click()
        expect(page.row("Architect")["cells"]["cost-per-hour"] == "95,00 €", page.row("Architect"))
        # Light and dark, both readable: the contrast of text is that of WCAG's level AA at least.
        for scheme in ("light", "dark"):
            page.media(prefers_color_scheme=scheme)
            contrasts = page.run("""
                const channel = value => (value /= 255) <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4;
                const light = ([r, g, b]) => 0.2126 * channel(r) + 0.7152 * channel(g) + 0.0722 * channel(b);
                const probe = document.createElement('i'); document.body.append(probe);
                const colour = name => { probe.style.color = `var(--${name})`;
                    return getComputedStyle(probe).color.match(/[0-9.]+/g).slice(0, 3).map(Number); };
                const contrast = (one, other) => { const [a, b] = [light(colour(one)), light(colour(other))];
                    return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05); };
                return ['text', 'muted', 'accent', 'missed'].flatMap(ink => ['surface', 'raised'].map(
                    paper => [ink, paper, contrast(ink, paper)]))""")
            expect(all(contrast >= 4.5 for _, _, contrast in contrasts), scheme, contrasts)
            surface = page.run("return getComputedStyle(document.body).backgroundColor")
            expect((surface == "rgb(255, 255, 255)") == (scheme == "light"), scheme, surface)


def kinds():
    """Every kind of loss has its German text, and no other has."""
    named = re.findall(r'^ {4}\{"([\w-]+)",', (SOURCE / "MSPDIAccount/MSPDIKinds.cpp").read_text(), re.M)
    translated = re.findall(r'^ {4}"?([\w-]+)"?: "', (SOURCE / "KZDXPage/source/kinds.ts").read_text(), re.M)
    expect(len(named) > 90 and named == translated, set(named) ^ set(translated))


def table_of(name, file="texts"):
    """A table of texts in the page's source: by key."""
    source = (SOURCE / f"KZDXPage/source/{file}.ts").read_text(encoding="utf-8")
    content = re.search(rf"^const {name}\b[^=]*= {{\n(.*?)^}};", source, re.M | re.S)[1]
    return dict(re.findall(r'^ {4}"?([^"\n]+?)"?: "(.*)",$', content, re.M))


# The same in both languages.
ALIKE = {"plan", "filter", "material"}


def translated():
    """No text of the English table is left as it is in the German one, and both name the same values."""
    english, german = table_of("english"), table_of("german")
    expect(len(english) > 150 and list(english) == list(german), set(english) ^ set(german))
    same = {key for key in english if english[key] == german[key]}
    expect(same == ALIKE, same ^ ALIKE)
    for key, text in english.items():
        values = [set(re.findall(r"\{(\w+)", each)) for each in (text, german[key])]
        expect(values[0] == values[1], key, values)


# Everything that the page says: its texts, and what it tells of its elements; without what is no language's: paths and
# codes of losses, names of zones, what the page was made from.
SAID = """
    const said = [];
    const names = ['title', 'aria-label', 'placeholder', 'alt', 'aria-description', 'aria-roledescription', 'aria-valuetext'];
    const isNoLanguage = element => element.closest('script, style, noscript, code, .path, .source, option[value*="/"], .sheet > footer');
    for (const element of document.querySelectorAll('body *')) {
        if (isNoLanguage(element)) continue;
        for (const name of names) said.push(element.getAttribute(name) ?? '');
        for (const node of element.childNodes) if (node.nodeType === Node.TEXT_NODE) said.push(node.data);
    }
    return said;"""

# Names of months and days, long and short.
OF_THE_CALENDAR = """
    const told = [];
    for (let at = 0; at < 366; at += 1) for (const form of ['long', 'short', 'narrow'])
        told.push(new Intl.DateTimeFormat('de-DE', { weekday: form, month: form, timeZone: 'UTC' }).format(new Date(at * 864e5)),
            new Intl.DateTimeFormat('de-DE', { day: 'numeric', month: form, timeZone: 'UTC' }).format(new Date(at * 864e5)));
    return told.join(' ');"""


def words_of(texts):
    return set(re.findall(r"[^\W\d_\u0370-\u03ff]{2,}", " ".join(texts)))


def everything_said(page):
    """What the page says of every row, on every tab, in every list, on paper."""
    said = []
    for tab in page.all("[role=tab]"):
        tab.click()
        page.run("document.querySelectorAll('details').forEach(each => each.open = true)")
        page.wait("[...document.querySelectorAll('details')].every(each => each.querySelector('tbody tr'))")
        page.run("document.querySelectorAll('.column-panel input').forEach(each => each.checked || each.click())")
        said += page.run(SAID)
        if page.count(".view:not([hidden])"):
            page.run("document.querySelector('.view:not([hidden]) .grid').focus()")
            page.keys(Keys.HOME, Keys.ENTER)
            said += [text for texts in page.down_through_the_rows(SAID) for text in set(texts)]
        page.run("window.dispatchEvent(new Event('beforeprint'))")
        said += page.run(SAID)
        page.run("window.dispatchEvent(new Event('afterprint'))")
    page.click(".top h1 button")
    return said + page.run(SAID)


def german():
    """All that a German page says is German: of every row, on every tab, in every list, on paper."""
    # Names of files and scenarios are not the page's to say.
    known = ["UID", "FF", "FS", "SF", "SS", "UTC", "Esc", "xml", "Baseline"]
    with Browser(FOLDER, language="de-DE") as page:
        for path in sorted((SOURCE / "examples").glob("*.xml")):
            target = FOLDER / f"\u03a9 {path.name}"
            hostile.fill_plan(path, target, hostile.Signs())
            page.open(page_of(target))
            own = [*table_of("german").values(), *table_of("german", "kinds").values(), page.run(OF_THE_CALENDAR), *known, path.stem]
            foreign = words_of(everything_said(page)) - words_of(own)
            expect(foreign == set(), path.name, foreign)
