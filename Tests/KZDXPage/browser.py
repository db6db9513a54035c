"""A page in a real browser, as the tests see it: Debian's Chromium without a window."""
import base64
import json
import sys
import time
from pathlib import Path

try:
    from selenium import webdriver
    from selenium.common.exceptions import WebDriverException
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
except ImportError:
    print("skipped: there is no python3-selenium")
    sys.exit(77)

__all__ = ["ActionChains", "Browser", "By", "Keys", "expect"]


def expect(holds, *what):
    """Ends the test where something does not hold."""
    if not holds:
        raise AssertionError(*what)


class Browser:
    """One browser; every page that it opens must stay silent and ask for nothing."""

    def __init__(self, folder, language="en-US", zone="UTC", size=(1500, 860)):
        self.folder = Path(folder).resolve()
        self.folder.mkdir(parents=True, exist_ok=True)
        options = webdriver.ChromeOptions()
        for flag in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--force-device-scale-factor=1", f"--lang={language}", f"--window-size={size[0]},{size[1]}",
                     "--disable-background-networking", "--disable-component-update"):
            options.add_argument(flag)
        options.add_experimental_option("prefs", {"intl.accept_languages": language})
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        try:
            self.driver = webdriver.Chrome(options=options)
        except WebDriverException as problem:
            print(f"skipped: Chromium does not start here: {problem.msg}")
            sys.exit(77)
        self.driver.set_script_timeout(120)
        self.driver.set_page_load_timeout(120)
        self.driver.execute_cdp_cmd("Emulation.setTimezoneOverride", {"timezoneId": zone})
        self.driver.execute_cdp_cmd("Emulation.setLocaleOverride", {"locale": language.replace("-", "_")})
        self.driver.execute_cdp_cmd("Browser.setDownloadBehavior",
                                    {"behavior": "allow", "downloadPath": str(self.folder)})

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if kind is None:
            self.check_silence()
        else:
            self.driver.save_screenshot(str(self.folder / "failed.png"))
        self.driver.quit()

    # ---- opening ----

    def open(self, path):
        self.driver.get(Path(path).resolve().as_uri())
        self.wait("document.querySelector('[role=treegrid]') !== null || !document.querySelector('#page')")
        return self

    def check_silence(self):
        """Nothing in the console, and no request but that for the page itself."""
        said = self.driver.get_log("browser")
        expect(said == [], "the console says", said)
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] == "Network.requestWillBeSent":
                url = message["params"]["request"]["url"]
                is_page = url.startswith("file://") and message["params"].get("type") == "Document"
                expect(is_page or url.startswith(("data:,", "blob:", "chrome://", "about:")), "a request", url[:200])

    def media(self, **features):
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": name.replace("_", "-"), "value": value} for name, value in features.items()]})

    # ---- looking ----

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def value(self, expression, *arguments):
        return self.run(f"return {expression}", *arguments)

    def wait(self, expression, *what, seconds=20):
        end = time.monotonic() + seconds
        while not self.value(f"Boolean({expression})", *what):
            expect(time.monotonic() < end, "never came", expression, *what)
            time.sleep(0.03)

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def all(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def text(self, selector):
        return self.value("document.querySelector(arguments[0])?.innerText ?? null", selector)

    def count(self, selector):
        return self.value("document.querySelectorAll(arguments[0]).length", selector)

    def rows(self, view=".view:not([hidden])"):
        """The rows in the window, in their order: what each says in its columns, and its roles."""
        return self.run("""
            return [...document.querySelectorAll(arguments[0] + ' .body [role=row]')].map(row => ({
                index: Number(row.getAttribute('aria-rowindex')), level: Number(row.getAttribute('aria-level')),
                expanded: row.getAttribute('aria-expanded'), selected: row.getAttribute('aria-selected'),
                place: Number(row.getAttribute('aria-posinset')), siblings: Number(row.getAttribute('aria-setsize')),
                top: row.getBoundingClientRect().top,
                cells: Object.fromEntries([...row.querySelectorAll('[role=gridcell]')].map(
                    cell => [cell.dataset.column, cell.textContent]))}))
                .sort((one, other) => one.index - other.index)""", view)

    def titles(self):
        return [row["cells"]["title"] for row in self.rows()]

    def row(self, title):
        found = [row for row in self.rows() if row["cells"]["title"] == title]
        expect(len(found) == 1, "rows with the title", title, self.titles())
        return found[0]

    def shapes(self, key, look):
        """The shapes of a class on a row of the chart, with their places on the screen."""
        return self.run("""
            return [...document.querySelectorAll(`.view:not([hidden]) [data-row="${arguments[0]}"] .${arguments[1]}`)]
                .map(shape => { const box = shape.getBoundingClientRect();
                    return {left: box.left, right: box.right, top: box.top, bottom: box.bottom,
                        title: shape.querySelector('title')?.textContent ?? null, text: shape.textContent}; })""",
                        key, look)

    # ---- acting ----

    def keys(self, *keys):
        ActionChains(self.driver).send_keys(*keys).perform()

    def down_through_the_rows(self, look="return 0"):
        """Makes each row of the tab active in turn, and gives what a script sees with each."""
        return self.run(f"""
            const grid = document.querySelector('.view:not([hidden]) .grid');
            const look = () => {{ {look} }};
            const seen = [];
            for (let row = Number(grid.getAttribute('aria-rowcount')); row > 0; row -= 1) {{
                seen.push(look());
                grid.dispatchEvent(new KeyboardEvent('keydown', {{ key: 'ArrowDown', bubbles: true, cancelable: true }}));
            }}
            return seen;""")

    def with_shift(self, key):
        ActionChains(self.driver).key_down(Keys.SHIFT).send_keys(key).key_up(Keys.SHIFT).perform()

    def search(self, text):
        """Searches for a text in the place of the one before."""
        field = self.find("input[type=search]")
        field.send_keys(Keys.CONTROL + "a")
        field.send_keys(Keys.BACKSPACE, text)

    def click(self, selector):
        self.find(selector).click()

    def button(self, text, within="body"):
        buttons = self.run("""return [...document.querySelectorAll(`${arguments[1]} button`)].filter(
            button => button.getClientRects().length > 0 && button.innerText.trim() === arguments[0])""", text, within)
        expect(len(buttons) == 1, "buttons", text, len(buttons))
        return buttons[0]

    def choose(self, label, option):
        """Chooses in the list with that label."""
        chosen = self.run("""
            const field = [...document.querySelectorAll('label.field')].find(
                label => label.firstChild.textContent === arguments[0]);
            const option = [...field.querySelectorAll('option')].find(option => option.textContent === arguments[1]);
            if (!option) return [...field.querySelectorAll('option')].map(option => option.textContent);
            field.querySelector('select').value = option.value;
            field.querySelector('select').dispatchEvent(new Event('change'));
            return true""", label, option)
        expect(chosen is True, label, option, chosen)

    def wheel(self, selector, dx=0, dy=0, modifiers=0, at=(0.5, 0.5)):
        box = self.run("const box = document.querySelector(arguments[0]).getBoundingClientRect();"
                       "return [box.left, box.top, box.width, box.height]", selector)
        self.driver.execute_cdp_cmd("Input.dispatchMouseEvent", {
            "type": "mouseWheel", "x": box[0] + box[2] * at[0], "y": box[1] + box[3] * at[1], "deltaX": dx,
            "deltaY": dy, "modifiers": modifiers})

    def saved(self, suffix, act):
        """What the page saves as a file."""
        before = set(self.folder.glob(f"*.{suffix}"))
        act()
        end = time.monotonic() + 20
        while time.monotonic() < end:
            fresh = [path for path in self.folder.glob(f"*.{suffix}") if path not in before and path.stat().st_size]
            if fresh:
                return fresh[0].name, fresh[0].read_bytes()
            time.sleep(0.05)
        raise AssertionError("nothing was saved", suffix)

    def print_pdf(self, path):
        printed = self.driver.execute_cdp_cmd("Page.printToPDF", {"preferCSSPageSize": True, "printBackground": True})
        Path(path).write_bytes(base64.b64decode(printed["data"]))

    def accessibility(self):
        """The tree that assistive programs get, as a list of (role, name, properties)."""
        nodes = self.driver.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
        return [(node.get("role", {}).get("value"), node.get("name", {}).get("value", ""),
                 {each["name"]: each["value"].get("value") for each in node.get("properties", [])})
                for node in nodes if not node.get("ignored")]
