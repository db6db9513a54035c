// The chart beside a table: its axis, the time behind the rows, bars and links. Only what is in the window exists.

import { make, makeSVG, setAttribute } from "./dom";
import { linkShapes, linkText, rowHeight, taskShapes, type Drawing, type Shape } from "./drawing";
import type { LinkIndex } from "./links";
import type { Schedule } from "./model";
import type { Row } from "./rows";
import type { TimeScale } from "./scale";
import { shownRest } from "./schedule";
import { shapeElement, shapeGroup, titleElement } from "./svg";
import { word } from "./texts";

export const axisHeight = 48;
const mostLinks = 400;

export interface Ground {
    readonly schedule: Schedule | null;
    readonly drawing: Drawing;
}

// The axis as shapes, from y 0 to its height.
export function axisShapes(scale: TimeScale): Shape[] {
    const { major, minor } = scale.axis();
    const half = axisHeight / 2;
    const shapes: Shape[] = [];
    for (const tick of major) {
        // A title stays in sight as long as its time does.
        const x = Math.max(tick.x, 0);
        shapes.push({ tag: "path", look: "tick", path: `M${tick.x} 0V${half}` });
        if (tick.x + tick.width - x > 60) {
            shapes.push({ tag: "text", look: "major", x: x + 8, y: half - 8, text: tick.label });
        }
    }
    for (const tick of minor) {
        shapes.push({ tag: "path", look: "tick", path: `M${tick.x} ${half}V${axisHeight}` });
        shapes.push({ tag: "text", look: tick.isWeekend ? "minor weekend" : "minor", x: tick.x + tick.width / 2, y: axisHeight - 8, text: tick.label });
    }
    return shapes;
}

// What lies behind the rows: time without work, and the lines of the axis.
export function groundShapes({ schedule, drawing }: Ground, height: number): Shape[] {
    const { scale, clock } = drawing;
    const shapes: Shape[] = [];
    if (schedule && scale.showsDays) {
        for (const rest of shownRest(schedule, clock, scale.start, scale.end, !scale.showsHours)) {
            const from = Math.max(scale.x(rest.from), 0);
            const to = Math.min(scale.x(rest.to), scale.width);
            if (to > from) shapes.push({ tag: "rect", look: "rest", x: from, y: 0, width: to - from, height });
        }
    }
    const { major } = scale.axis();
    for (const tick of major) shapes.push({ tag: "path", look: "line", path: `M${tick.x} 0V${height}` });
    return shapes;
}

export function todayShapes({ drawing }: Ground, height: number): Shape[] {
    const x = drawing.scale.x(drawing.clock.now());
    return x < 0 || x > drawing.scale.width
        ? []
        : [{ tag: "path", look: "today", path: `M${x} 0V${height}`, title: word("today") }];
}

// What is drawn on a row; the bars of a resource are those of its tasks, and behind them lie its days off.
export function rowShapes(ground: Ground, row: Row): Shape[] {
    const { drawing } = ground;
    if (row.item.type === "task") return taskShapes(drawing, row.item.task);
    if (row.item.type !== "resource") return [];
    const { resource } = row.item;
    const off = resource.schedule
        ? shownRest({ ...resource.schedule, days: [] }, drawing.clock, drawing.scale.start, drawing.scale.end, true)
        : [];
    // Tasks that look the same are drawn once: somebody may have thousands of them.
    const drawn = new Set<string>();
    const loads = resource.tasks.flatMap((task): Shape[] => {
        if (!task.start || !task.end) return [];
        const from = drawing.scale.x(drawing.clock.shown(task.start));
        const to = drawing.scale.x(drawing.clock.shown(task.end));
        if (to < 0 || from > drawing.scale.width) return [];
        const left = Math.max(from, -10);
        const key = `${Math.round(left)} ${Math.round(to)}`;
        if (drawn.has(key)) return [];
        drawn.add(key);
        return [{ tag: "rect", look: "load", x: left, y: 10, width: Math.max(Math.min(to, drawing.scale.width + 10) - left, 2), height: 9, round: 2, title: task.title }];
    });
    const rests = off.flatMap((rest): Shape[] => {
        const from = Math.max(drawing.scale.x(rest.from), 0);
        const to = Math.min(drawing.scale.x(rest.to), drawing.scale.width);
        if (to - from < 0.5) return [];
        return [{ tag: "rect", look: "off", x: from, y: 2, width: to - from, height: rowHeight - 4, title: word("daysOff") }];
    });
    return [...rests, ...loads];
}

export class Chart {
    readonly element = make("div", { class: "chart", role: "group", "aria-label": word("chart") });
    readonly plot = make("div", { class: "plot" });
    private readonly axis = makeSVG("svg", { class: "axis", height: axisHeight, "aria-hidden": "true" });
    private readonly canvas = makeSVG("svg", { class: "canvas", "aria-hidden": "true" });
    private readonly behind = makeSVG("g");
    private readonly moving = makeSVG("g");
    private readonly stripes = makeSVG("rect", { class: "active-row", x: 0, height: rowHeight });
    private readonly arrows = makeSVG("g");
    private readonly bars = makeSVG("g");
    private readonly front = makeSVG("g");
    private readonly drawnRows = new Map<number, SVGElement>();
    private readonly drawnLinks = new Map<number, SVGElement>();
    private rows: readonly Row[] = [];
    private links: LinkIndex | null = null;
    private ground: Ground | null = null;
    private height = 0;

    constructor() {
        this.moving.append(this.stripes, this.arrows, this.bars);
        this.canvas.append(this.behind, this.moving, this.front);
        this.plot.append(this.canvas);
        this.element.append(this.axis, this.plot);
        this.arrows.addEventListener("pointerover", (event) => this.tellLink(event));
    }

    setRows(rows: readonly Row[], links: LinkIndex | null): void {
        this.rows = rows;
        this.links = links;
        this.forget();
    }

    // Everything has another place in time now.
    setGround(ground: Ground, height: number): void {
        this.ground = ground;
        this.height = height;
        this.forget();
        const { width } = ground.drawing.scale;
        for (const canvas of [this.axis, this.canvas]) setAttribute(canvas, "width", String(width));
        setAttribute(this.canvas, "height", String(height));
        setAttribute(this.stripes, "width", String(width));
        this.axis.replaceChildren(...axisShapes(ground.drawing.scale).map(shapeElement));
        this.behind.replaceChildren(...groundShapes(ground, height).map(shapeElement));
        this.front.replaceChildren(...todayShapes(ground, height).map(shapeElement));
    }

    private forget(): void {
        this.drawnRows.clear();
        this.drawnLinks.clear();
        this.bars.replaceChildren();
        this.arrows.replaceChildren();
    }

    // Draws the rows first to last where they are after scrolling by `top` pixels; their links are `showLinks`.
    show(first: number, last: number, top: number, active: number): void {
        if (!this.ground || this.height === 0) return;
        setAttribute(this.moving, "transform", `translate(0 ${-top})`);
        setAttribute(this.stripes, "y", String(active * rowHeight));
        setAttribute(this.stripes, "visibility", active >= first && active <= last ? "visible" : "hidden");
        this.showRows(this.ground, first, last);
    }

    private showRows(ground: Ground, first: number, last: number): void {
        for (const [index, element] of this.drawnRows) {
            if (index < first || index > last) {
                element.remove();
                this.drawnRows.delete(index);
            }
        }
        for (let index = first; index <= last; ++index) {
            const row = this.rows[index];
            if (!row || this.drawnRows.has(index)) continue;
            const element = shapeGroup(rowShapes(ground, row), lookOf(row), index * rowHeight);
            element.setAttribute("data-row", row.key);
            this.drawnRows.set(index, element);
            this.bars.append(element);
        }
    }

    showLinks(first: number, last: number): void {
        const { ground } = this;
        if (!ground || this.height === 0) return;
        const placed = this.links?.touching(first, last, mostLinks) ?? [];
        const wanted = new Set(placed.map((link) => link.index));
        for (const [index, element] of this.drawnLinks) {
            if (!wanted.has(index)) {
                element.remove();
                this.drawnLinks.delete(index);
            }
        }
        for (const { index, link, from, to } of placed) {
            if (this.drawnLinks.has(index)) continue;
            const element = makeSVG("g", { class: "dependency", "data-kind": link.kind });
            // What a link tells is made when somebody points at it: few are, of the many that pass while scrolling.
            element.append(...linkShapes(ground.drawing, link, from, to).map((shape) => shapeElement({ ...shape, title: undefined })));
            this.drawnLinks.set(index, element);
            this.arrows.append(element);
        }
    }

    private tellLink(event: Event): void {
        const element = event.target instanceof Element ? event.target.closest(".dependency") : null;
        if (!element || element.querySelector("title")) return;
        const index = [...this.drawnLinks].find(([, drawn]) => drawn === element)?.[0];
        const link = index === undefined ? undefined : this.links?.linkAt(index);
        if (link) element.append(titleElement(linkText(link)));
    }
}

export function lookOf(row: Row): string {
    if (row.item.type !== "task") return `row ${row.item.type}-row`;
    return row.item.task.completion >= 1 ? `row ${row.item.task.kind}-row complete` : `row ${row.item.task.kind}-row`;
}
