// Making elements. Texts are always texts: nothing here takes markup.

type Attributes = Record<string, string | number | boolean | null | undefined>;
type Child = Node | string | null | undefined | false;

// Of a new element, which has none yet.
function setAttributes(element: Element, attributes: Attributes): void {
    for (const name in attributes) {
        const value = attributes[name];
        if (value !== null && value !== undefined && value !== false) element.setAttribute(name, value === true ? "" : String(value));
    }
}

export function make<Name extends keyof HTMLElementTagNameMap>(
    name: Name,
    attributes: Attributes = {},
    ...children: Child[]
): HTMLElementTagNameMap[Name] {
    const element = document.createElement(name);
    setAttributes(element, attributes);
    element.append(...children.filter((child): child is Node | string => Boolean(child)));
    return element;
}

export function makeSVG(name: string, attributes: Attributes = {}): SVGElement {
    const element = document.createElementNS("http://www.w3.org/2000/svg", name);
    setAttributes(element, attributes);
    return element;
}

export function button(label: string, act: () => void, attributes: Attributes = {}): HTMLButtonElement {
    const element = make("button", { type: "button", ...attributes }, label);
    element.addEventListener("click", act);
    return element;
}

// How wide a text in the page's own font is, in pixels.
export function textWidth(text: string): number {
    const pen = (drawingPen ??= document.createElement("canvas").getContext("2d"));
    if (!pen) return text.length * 8;
    pen.font = getComputedStyle(document.body).font;
    return pen.measureText(text).width;
}
let drawingPen: CanvasRenderingContext2D | null = null;

// Changes only what differs, since every change costs.
export function setText(element: Element, text: string): void {
    if (element.textContent !== text) element.textContent = text;
}

export function setAttribute(element: Element, name: string, value: string | null): void {
    if (value === null) {
        if (element.hasAttribute(name)) element.removeAttribute(name);
    } else if (element.getAttribute(name) !== value) element.setAttribute(name, value);
}

// Lets the person save a file that the page has made.
export function saveFile(name: string, type: string, content: string): void {
    const url = URL.createObjectURL(new Blob([content], { type }));
    const link = make("a", { href: url, download: name });
    document.body.append(link);
    link.click();
    link.remove();
    setTimeout(() => URL.revokeObjectURL(url), 10_000);
}

// A name for a saved file that every system takes, and that reads as it is: without controls, hidden or of direction.
export function fileName(title: string, extension: string): string {
    const name = title.replace(/[\p{C}<>:"/\\|?*]+/gu, " ").replace(/^[\s.-]+/u, "").slice(0, 80).trim();
    return `${name === "" ? "plan" : name}.${extension}`;
}
