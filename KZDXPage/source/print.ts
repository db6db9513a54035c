// The page on paper: sheets of rows, and beside each other sheets of time, every one with its titles.

import { axisHeight, axisShapes, groundShapes, lookOf, rowShapes, todayShapes, type Ground } from "./chart";
import type { Column } from "./columns";
import { make, makeSVG, textWidth } from "./dom";
import { linkShapes, rowHeight } from "./drawing";
import { LinkIndex } from "./links";
import type { Model } from "./model";
import type { Row } from "./rows";
import { TimeScale } from "./scale";
import { shapeElement, shapeGroup } from "./svg";
import { word } from "./texts";

export type Paper = "a4" | "a3";

export interface Printed {
    readonly model: Model;
    readonly title: string;
    readonly note: string; // what clock the times are of, and what is compared
    readonly rows: readonly Row[];
    readonly columns: readonly Column[];
    readonly ground: Ground;
    readonly extent: readonly [number, number];
    readonly hasLinks: boolean;
}

// The room on a sheet in the page's pixels, borders left out; styles make sheets that large. A pixel is printed at
// three quarters of its size.
const room: Record<Paper, { width: number; height: number }> = {
    a4: { width: 1380, height: 930 },
    a3: { width: 1980, height: 1340 },
};
const headHeight = 46;
const footHeight = 26;
const mostAcross = 12;
const mostTable = 0.6; // of the width of a sheet
// So many that a browser still prints; a longer outline than that has one sheet of time for each of its own.
const mostSheets = 400;

// How the chart is divided: the zoom of the screen, unless it took too many sheets beside each other.
function scalesFor({ ground, extent }: Printed, width: number, most: number): TimeScale[] {
    const [from, to] = extent;
    const length = Math.max(to - from, 3600) * 1.02;
    const wanted = Math.max(ground.drawing.scale.perSecond, (width - 40) / length);
    const sheets = Math.min(most, Math.max(1, Math.ceil((length * wanted) / width)));
    const perSecond = sheets === 1 ? (width - 40) / length : Math.min(wanted, (sheets * width) / length);
    const start = from - 20 / perSecond;
    return Array.from({ length: sheets }, (_, sheet) => new TimeScale(start + (sheet * width) / perSecond, perSecond, width));
}

const lookOfCell = (column: Column): string => (column.isNumeric ? "cell numeric" : "cell");

interface Fitted {
    readonly columns: readonly Column[];
    readonly widths: readonly number[];
}

const indentOf = (row: Row): number => 6 + (Math.min(row.level, 12) - 1) * 12;
const foremost = ["number", "title", "start", "end"];
const sumOf = (values: readonly number[]): number => values.reduce((sum, value) => sum + value, 0);

// The columns that have room: the titles and dates before all others, and the titles get what is left, as far as they
// need it.
function fit(columns: readonly Column[], rows: readonly Row[], room: number): Fitted {
    const byRank = [...columns.filter((column) => foremost.includes(column.id)), ...columns.filter((column) => !foremost.includes(column.id))];
    const taken = new Set<Column>();
    let left = room;
    for (const column of byRank) {
        if (column.width > left && !column.isTree) continue;
        taken.add(column);
        left -= column.width;
    }
    const kept = columns.filter((column) => taken.has(column));
    const widths = kept.map((column) => {
        if (!column.isTree) return column.width;
        const longest = rows.reduce((most, row) => Math.max(most, indentOf(row) + textWidth(column.text(row.item)) * 1.1 + 16), 0);
        return Math.ceil(Math.min(Math.max(column.width, longest), column.width + Math.max(left, 0)));
    });
    return { columns: kept, widths };
}

function tableOf(rows: readonly Row[], { columns, widths }: Fitted): HTMLElement {
    const head = make("div", { class: "print-row print-head" }, ...columns.map((column) => make("div", { class: lookOfCell(column), "data-column": column.id }, column.label)));
    const lines = rows.map((row) => {
        const kind = row.item.type === "task" ? row.item.task.kind : row.item.type;
        const cells = columns.map((column) => {
            const cell = make("div", { class: lookOfCell(column), "data-column": column.id }, column.text(row.item));
            if (column.isTree) cell.style.paddingInlineStart = `${indentOf(row)}px`;
            return cell;
        });
        return make("div", { class: `print-row ${kind}` }, ...cells);
    });
    const table = make("div", { class: "print-table" }, head, ...lines);
    table.style.width = `${sumOf(widths) + 1}px`;
    table.style.setProperty("--columns", widths.map((width) => `${width}px`).join(" "));
    return table;
}

function chartOf(printed: Printed, links: LinkIndex | null, first: number, last: number, scale: TimeScale): SVGElement {
    const ground = { ...printed.ground, drawing: { ...printed.ground.drawing, scale } };
    const height = (last - first + 1) * rowHeight;
    const svg = makeSVG("svg", { class: "canvas", width: scale.width, height: axisHeight + height });
    const group = makeSVG("g", { transform: `translate(0 ${axisHeight})` });
    group.append(...groundShapes(ground, height).map(shapeElement));
    const moving = makeSVG("g", { transform: `translate(0 ${-first * rowHeight})` });
    for (const { link, from, to } of links?.touching(first, last, 400) ?? []) {
        moving.append(...linkShapes(ground.drawing, link, from, to).map(shapeElement));
    }
    for (let index = first; index <= last; ++index) {
        const row = printed.rows[index] as Row;
        moving.append(shapeGroup(rowShapes(ground, row), lookOf(row), index * rowHeight));
    }
    group.append(moving, ...todayShapes(ground, height).map(shapeElement));
    const axis = makeSVG("g");
    axis.append(makeSVG("rect", { class: "surface", width: scale.width, height: axisHeight }), ...axisShapes(scale).map(shapeElement));
    svg.append(group, axis);
    return svg;
}

// All sheets, row after row of them.
export function sheetsOf(printed: Printed, paper: Paper): HTMLElement[] {
    const { width, height } = room[paper];
    const table = fit(printed.columns, printed.rows, width * mostTable);
    const narrow = fit(printed.columns.filter((column) => column.isTree || column.id === "number"), printed.rows, sumOf(table.widths));
    const tableWidth = sumOf(table.widths) + 1;
    const perSheet = Math.max(1, Math.floor((height - headHeight - footHeight - axisHeight) / rowHeight));
    const down = Math.max(1, Math.ceil(printed.rows.length / perSheet));
    const scales = scalesFor(printed, width - tableWidth, Math.max(1, Math.min(mostAcross, Math.floor(mostSheets / down))));
    const links = printed.hasLinks ? new LinkIndex(printed.model, printed.rows) : null;
    const sheets: HTMLElement[] = [];
    for (let strip = 0; strip < down; ++strip) {
        const from = strip * perSheet;
        const to = Math.min(printed.rows.length, from + perSheet) - 1;
        scales.forEach((scale, across) => {
            const page = word("page", { page: sheets.length + 1, pages: down * scales.length });
            const columns = across === 0 ? table : narrow;
            const body = make("div", { class: across === 0 ? "print-body" : "print-body continued" }, tableOf(printed.rows.slice(from, to + 1), columns));
            if (to >= from) body.append(chartOf(printed, links, from, to, scale));
            sheets.push(
                make(
                    "section",
                    { class: `sheet ${paper}` },
                    make("header", {}, make("h1", {}, printed.title), make("span", {}, printed.note)),
                    body,
                    make("footer", {}, make("span", {}, printed.model.source), make("span", {}, page)),
                ),
            );
        });
    }
    return sheets;
}
