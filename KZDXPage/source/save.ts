// Saved files: the table as CSV, the chart as SVG.

import chartStyle from "./chart.css";
import colours from "./colours.css";
import { axisHeight, axisShapes, groundShapes, lookOf, rowShapes, todayShapes, type Ground } from "./chart";
import type { Column } from "./columns";
import { makeSVG } from "./dom";
import { linkShapes, rowHeight } from "./drawing";
import type { Model, Task } from "./model";
import type { Row } from "./rows";
import { itemTitle } from "./rows";
import { escaped, markupOf, shapeElement, shapeGroup } from "./svg";

// A cell that a spreadsheet takes for a text, whatever it begins with.
export function csvCell(text: string): string {
    const isNumber = /^-?\d+(\.\d+)?$/u.test(text);
    const safe = !isNumber && /^[\s\p{C}]*[=+\-@\uff1d\uff0b\uff0d\uff20]/u.test(text) ? `'${text}` : text;
    const quoted = /^[\t\r\n]/u.test(safe) ? `'${safe}` : safe;
    return `"${quoted.replace(/"/gu, '""')}"`;
}

export function csvOf(columns: readonly Column[], rows: readonly Row[]): string {
    const line = (cells: string[]): string => cells.map(csvCell).join(",");
    const lines = [
        line(columns.map((column) => column.label)),
        ...rows.map((row) => line(columns.map((column) => column.plain(row.item)))),
    ];
    return `\ufeff${lines.join("\r\n")}\r\n`;
}

const titleWidth = 280;

function titles(rows: readonly Row[]): SVGElement[] {
    return rows.map((row, index) => {
        const text = makeSVG("text", { class: "title", x: 10 + (Math.min(row.level, 12) - 1) * 14, y: index * rowHeight + 19 });
        const title = itemTitle(row.item);
        const number = row.item.type === "task" ? `${row.item.task.number}  ` : "";
        const room = 42 - Math.min(row.level, 12) * 2;
        text.textContent = number + (title.length > room ? `${title.slice(0, room - 1)}…` : title);
        return text;
    });
}

// The links among the rows.
function arrows(model: Model, rows: readonly Row[], ground: Ground): SVGElement[] {
    const places = new Map<Task, number>();
    rows.forEach((row, index) => {
        if (row.item.type === "task") places.set(row.item.task, index);
    });
    return model.links.flatMap((link) => {
        const from = places.get(link.from);
        const to = places.get(link.to);
        return from === undefined || to === undefined ? [] : linkShapes(ground.drawing, link, from, to).map(shapeElement);
    });
}

const moved = (x: number, y: number, ...content: Node[]): SVGElement => {
    const group = makeSVG("g", { transform: `translate(${x} ${y})` });
    group.append(...content);
    return group;
};

// Titles and chart of some rows as one drawing.
export function drawingOf(model: Model, rows: readonly Row[], ground: Ground, hasLinks: boolean): SVGElement {
    const { scale } = ground.drawing;
    const height = rows.length * rowHeight;
    const svg = makeSVG("svg", {
        xmlns: "http://www.w3.org/2000/svg",
        class: "saved",
        width: titleWidth + scale.width,
        height: axisHeight + height,
        viewBox: `0 0 ${titleWidth + scale.width} ${axisHeight + height}`,
    });
    const clip = makeSVG("clipPath", { id: "window" });
    clip.append(makeSVG("rect", { x: 0, y: -axisHeight, width: scale.width, height: height + axisHeight }));
    const chart = moved(
        titleWidth,
        axisHeight,
        ...groundShapes(ground, height).map(shapeElement),
        ...(hasLinks ? arrows(model, rows, ground) : []),
        ...rows.map((row, index) => shapeGroup(rowShapes(ground, row), lookOf(row), index * rowHeight)),
        ...todayShapes(ground, height).map(shapeElement),
        moved(0, -axisHeight, ...axisShapes(scale).map(shapeElement)),
    );
    chart.setAttribute("clip-path", "url(#window)");
    svg.append(
        makeSVG("rect", { class: "surface", width: "100%", height: "100%" }),
        clip,
        moved(0, axisHeight, ...titles(rows)),
        chart,
    );
    return svg;
}

export function svgFile(title: string, drawing: SVGElement): string {
    const open = markupOf(drawing);
    const head = `<title>${escaped(title)}</title><style>${escaped(colours + chartStyle)}</style>`;
    const end = open.indexOf(">") + 1;
    return `<?xml version="1.0" encoding="UTF-8"?>\n${open.slice(0, end)}${head}${open.slice(end)}\n`;
}
