// Shapes as elements on the screen, and as the text of a saved file.

import { makeSVG } from "./dom";
import type { Shape } from "./drawing";

export function shapeElement(shape: Shape): SVGElement {
    const element = makeSVG(shape.tag, {
        class: shape.look,
        x: shape.x,
        y: shape.y,
        width: shape.width,
        height: shape.height,
        rx: shape.round,
        d: shape.path,
    });
    if (shape.text !== undefined) element.textContent = shape.text;
    if (shape.title !== undefined) element.append(titleElement(shape.title));
    return element;
}

export function titleElement(text: string): SVGElement {
    const title = makeSVG("title");
    title.textContent = text;
    return title;
}

export function shapeGroup(shapes: readonly Shape[], look: string, y: number): SVGElement {
    const group = makeSVG("g", { class: look, transform: `translate(0 ${y})` });
    group.append(...shapes.map(shapeElement));
    return group;
}

// A text within XML. What XML cannot hold becomes U+FFFD.
export function escaped(text: string): string {
    return text
        .replace(/[^\t\n\r\u0020-\ud7ff\ue000-\ufffd\u{10000}-\u{10ffff}]/gu, "\ufffd")
        .replace(/&/gu, "&amp;")
        .replace(/</gu, "&lt;")
        .replace(/>/gu, "&gt;")
        .replace(/"/gu, "&quot;");
}

// The same element as a text.
export function markupOf(node: Node): string {
    if (node.nodeType === Node.TEXT_NODE) return escaped(node.textContent ?? "");
    if (!(node instanceof Element)) return "";
    const attributes = [...node.attributes].map(({ name, value }) => ` ${name}="${escaped(value)}"`).join("");
    const content = [...node.childNodes].map(markupOf).join("");
    return `<${node.tagName}${attributes}>${content}</${node.tagName}>`;
}
