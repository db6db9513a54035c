"""The page's words in both languages, and its colours in both schemes."""
import re

from browser import Browser, expect
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
