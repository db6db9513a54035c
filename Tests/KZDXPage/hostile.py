"""Documents and plans in which every text is one that would hurt if the page took it for anything but a text."""
import re
import shutil
import xml.etree.ElementTree as ElementTree
from pathlib import Path

DOCUMENT = "urn:kadenza:document:2"
PLAN = "http://schemas.microsoft.com/project"

TEXTS = (
    "</script><img src=x onerror=hurt=1><!--", "</noscript></title></style><img src=x onerror=alert(1)>",
    "'\"><svg onload=hurt=1>", "' onmouseover=hurt=1 x='", "javascript:hurt=1", "<a href=javascript:hurt=1>x</a>",
    '=HYPERLINK("https://a.invalid/","x")', "+1+1", "-1+1", "@SUM(1)", "\t=1", "\r=1", "\n=1", "\tx", "\rx", "\nx", " =1", "\u202e=1", "\ufeff@1",
    "\uff1d1", '"=1', "\",\"=1", "{{hurt=1}}${hurt=1}", "{count}{value|a|b}", "__proto__", "constructor", "toString",
    "&lt;img src=x onerror=hurt=1&gt;&amp;#60;", "]]>", "<![CDATA[<img src=x>", "\u2028x\u2029", "\u0085x", "\U000e0001x",
    "url(https://a.invalid/x)", "}</style>@import 'https://a.invalid/x';", "https://a.invalid/", "\u200fa\u061c",
    "$&$`$'$1", "\\\"\\u003cimg>", "%3Cimg%3E", "<img/src/onerror=hurt=1", "a" * 3000)

# Of the texts above the one for titles, which stand in more kinds of elements than others.
ENDING = TEXTS[1]

# What holds a document together, or places its shapes: without these nothing is drawn.
SHAPING_TEXTS = {"type", "start-date", "end-date", "leveled-start", "locked-start-date", "locked-end-date",
                 "start-constraint-date", "end-constraint-date", "effort", "effort-done", "completion-percentage", "duration",
                 "cost-per-use", "cost-per-hour", "units-available", "static-cost", "priority", "editing-scenario",
                 "comparison-scenario", "next-task-id", "next-resource-id"}
SHAPING_ATTRIBUTES = {"kind", "start", "end", "start-time", "end-time", "day-of-week", "overtime", "version"}
REFERENCES = {"id", "idref", "root"}
REFERRING_TEXTS = {"editing-scenario", "comparison-scenario"}
NEVER = {"filename"}  # the file would not be found
SCENARIO_NAMES = {"Actual"}  # the one that is shown


# Stands for a carriage return until it is written as a reference: as itself no reader would give it.
RETURN = "\ue00d"


def write(tree, path):
    """Writes markup as UTF-8 with all carriage returns."""
    markup = ElementTree.tostring(tree.getroot(), encoding="unicode")
    path.write_text(f'<?xml version="1.0" encoding="UTF-8"?>\n{markup.replace(RETURN, "&#13;")}', encoding="utf-8")


class Texts:
    """One hostile text after the other."""

    def __init__(self):
        self.given = 0

    def next(self):
        self.given += 1
        return TEXTS[self.given % len(TEXTS)].replace("\r", RETURN)

    def title(self):
        return ENDING


def filled_value(name, value, texts, ids, shaping, keeps_shape):
    if name in NEVER or value in SCENARIO_NAMES or (keeps_shape and name in shaping):
        return value
    if name == "title-of-document":
        return texts.title()
    return ids.setdefault(value, f"{texts.next()} {len(ids)}") if name in REFERENCES | REFERRING_TEXTS else texts.next()


class Signs:
    """Texts without a letter of the page's languages, each unlike all others."""

    def __init__(self):
        self.given = 0

    def next(self):
        self.given += 1
        return f"\u03a9{self.given}"

    def title(self):
        return self.next()


def fill_document(bundle, target, keeps_shape, texts=None):
    """A copy of a document with every text and attribute replaced; without its shape also dates, numbers and kinds."""
    shutil.copytree(bundle, target)
    ElementTree.register_namespace("", DOCUMENT)
    texts, ids = texts or Texts(), {}
    for file in sorted(target.glob("*.xml")):
        tree = ElementTree.parse(file)
        for element in tree.iter():
            name = element.tag.rpartition("}")[2]
            for attribute, value in element.attrib.items():
                element.set(attribute, filled_value(attribute, value, texts, ids, SHAPING_ATTRIBUTES, keeps_shape))
            name = "title-of-document" if name == "title" and file.name == "__TOC.xml" else name
            if len(element) == 0 and name not in ("split",) and (element.text or "").strip():
                if name in REFERRING_TEXTS:
                    element.text = ids.setdefault(element.text, f"{texts.next()} {len(ids)}")
                else:
                    element.text = filled_value(name, element.text, texts, ids, SHAPING_TEXTS, keeps_shape)
        write(tree, file)
    return texts.given


# Texts that a plan may hold besides those of the examples, by the element that they stand in.
FURTHER = {"Project": ("Subject", "Category", "Company", "Manager", "Author", "CurrencySymbol"),
           "Task": ("Contact", "WBS", "Hyperlink", "HyperlinkAddress", "HyperlinkSubAddress", "Notes", "SubprojectName",
                    "StartText", "FinishText", "DurationText"),
           "Resource": ("Initials", "Phonetics", "NTAccount", "MaterialLabel", "Code", "Group", "EmailAddress", "Hyperlink",
                        "HyperlinkAddress", "Notes", "BookingType"),
           "Assignment": ("Notes", "Hyperlink", "HyperlinkAddress"), "Calendar": (), "Exception": ("Name",),
           "ExtendedAttribute": ("Alias", "PhoneticAlias")}
VALUE = re.compile(r"[\d\s.,:TZPDHMS+-]*\Z")  # a number, a date, a duration


def fill_plan(path, target, texts=None):
    """A copy of a plan with every text replaced that is no number, date or duration, and with texts it does not have."""
    ElementTree.register_namespace("", PLAN)
    texts = texts or Texts()
    tree = ElementTree.parse(path)
    for element in tree.iter():
        name = element.tag.rpartition("}")[2]
        if len(element) == 0 and element.text and not VALUE.match(element.text):
            element.text = texts.title() if name == "Title" else texts.next()
        for further in FURTHER.get(name, ()) if len(element) else ():
            if element.find(f"{{{PLAN}}}{further}") is None:
                ElementTree.SubElement(element, f"{{{PLAN}}}{further}").text = texts.next()
    write(tree, target)
    return texts.given


# Looks at everything that ever gets into the page's tree: elements of no other kinds than the page makes, no handlers,
# nothing that loads.
WATCH = r"""
window.strange = [];
const kinds = new Set(('html head meta title style body div script noscript header footer main section aside h1 h2 h3 p ul li ' +
    'dl dt dd span button input select option label details summary table thead tbody tr th td code dialog kbd a svg g rect ' +
    'path text line clippath').split(' '));
const look = element => {
    const note = what => strange.push(`${what}: ${element.outerHTML.slice(0, 200)}`);
    if (!kinds.has(element.localName.toLowerCase())) note('an element');
    for (const { name, value } of element.attributes) {
        if (name.startsWith('on')) note('a handler');
        if (['src', 'srcset', 'xlink:href', 'action', 'formaction', 'data', 'srcdoc', 'ping'].includes(name)) note('a load');
        if (name === 'href' && !value.startsWith('blob:')) note('a link');
        if (name === 'style' && /url|import/i.test(value)) note('a style');
    }
};
new MutationObserver(changes => changes.forEach(({ target, type, addedNodes }) => {
    if (type === 'attributes') look(target);
    else addedNodes.forEach(node => { if (node.nodeType === 1) [node, ...node.querySelectorAll('*')].forEach(look); });
})).observe(document, { subtree: true, childList: true, attributes: true });
"""

# The titles of the page's data and those of the table for who has no scripts, which holds no controls.
TITLES = r"""
const { tasks } = JSON.parse(document.getElementById('document').textContent).scenario;
const { title } = tasks;
const of = row => Array.isArray(title) ? title[row] : 'all' in title ? title.all : 'at' in title ? title.values[title.at[row]]
    : title.values[title.rows.indexOf(row)];
const plain = text => (text ?? '').replace(/[\u0000-\u0008\u000b-\u001f\u007f]/gu, '\ufffd').replace(/\n/gu, '\ufffd');
return [Array.from({ length: tasks.count }, (_, row) => plain(of(row))),
    [...document.querySelectorAll('noscript td:nth-child(2)')].map(cell => plain(cell.textContent))];
"""

# What the policy forbids, each tried in turn: the directives that were violated.
TRY_ALL = r"""
const told = arguments[arguments.length - 1];
const violated = new Set();
document.addEventListener('securitypolicyviolation', event => violated.add(event.effectiveDirective));
const add = (name, attributes, text) => {
    const element = document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) {
        try { element.setAttribute(key, value); } catch { violated.add(`refused ${name} ${key}`); }
    }
    if (text) { try { element.textContent = text; } catch { violated.add(`refused ${name}`); } }
    document.body.append(element);
    return element;
};
const far = 'https://a.invalid/x';
for (const name of ['img', 'script', 'iframe', 'audio', 'embed', 'track']) add(name, { src: far });
add('object', { data: far });
add('link', { rel: 'stylesheet', href: far });
add('link', { rel: 'manifest', href: far });
add('img', { src: 'data:image/gif;base64,R0lGODlhAQABAAAAACw=' });
add('style', {}, 'body { color: red }');
add('div', { style: 'color: red' });
add('button', { onclick: 'window.hurt = 1' }).click();
add('base', { href: far });
const form = add('form', { action: far, target: 'nowhere' });
form.submit();
try { document.body.innerHTML = '<img src=x onerror=hurt=1>'; } catch { violated.add('refused markup'); }
// What the test itself runs may use "eval"; what it leaves behind may not.
setTimeout(() => { try { window.eval('window.hurt = 1'); } catch { violated.add('refused eval'); } }, 50);
try { new Worker(far); } catch { violated.add('refused worker'); }
try { new WebSocket('wss://a.invalid/x'); } catch { violated.add('refused socket'); }
new FontFace('x', `url(${far})`).load().catch(() => {});
fetch(far).catch(() => {}).then(() => setTimeout(() => told([...violated]), 500));
"""


def is_formula(text):
    """Whether a spreadsheet may take the cell for a formula, or for the end of the cell before it."""
    bare = re.sub(r"^[\s\u0000-\u0020\u00ad\u061c\u0085\u200b-\u200f\u2028-\u202f\u2060-\u206f\ufeff\U000e0001]+", "", text)
    is_number = re.fullmatch(r"-?\d+(\.\d+)?", text) is not None
    return not is_number and (text[:1] in set("\t\r\n") or bare[:1] in set("=+-@\uff1d\uff0b\uff0d\uff20"))


def documents(imported, examples, folder):
    """Hostile documents of all examples, each twice: with its shape and without."""
    for path in examples:
        bundle = imported(path)
        for name, keeps_shape in (("shaped", True), ("shapeless", False)):
            target = Path(folder) / f"=1 {name} '<img src=x onerror=hurt=1> {bundle.name}"
            fill_document(bundle, target, keeps_shape)
            yield target
