// The table as a tree grid: only the rows in the window exist, and assistive programs are told of all.

import type { Column } from "./columns";
import { make, setAttribute, setText } from "./dom";
import { rowHeight } from "./drawing";
import { itemTitle, type Row } from "./rows";
import { word } from "./texts";

export interface GridEvents {
    readonly activate: (index: number) => void;
    readonly toggle: (index: number) => void;
    readonly open: (index: number) => void; // show its details
    readonly resize: (column: Column, width: number) => void;
}

const narrowest = 36;
const widest = 900;
const indentation = 16;

interface RowElement {
    readonly element: HTMLElement;
    readonly cells: HTMLElement[];
    readonly triangle: HTMLElement | null;
    readonly title: HTMLElement | null;
    index: number;
}

let grids = 0;

export class Grid {
    readonly element: HTMLElement;
    private readonly head = make("div", { class: "head", role: "rowgroup" });
    private readonly headRow = make("div", { class: "head-row", role: "row", "aria-rowindex": 1 });
    private readonly body = make("div", { class: "body", role: "rowgroup" });
    private readonly moving = make("div", { class: "moving", role: "presentation" });
    private readonly name = `grid${++grids}`;
    private columns: readonly Column[] = [];
    private widths = new Map<string, number>();
    private rows: readonly Row[] = [];
    private shown = new Map<number, RowElement>();
    private spare: RowElement[] = [];

    constructor(
        label: string,
        private readonly events: GridEvents,
    ) {
        this.element = make("div", {
            class: "grid",
            role: "treegrid",
            tabindex: 0,
            "aria-label": label,
            "aria-readonly": "true",
        });
        this.head.append(this.headRow);
        this.body.append(this.moving);
        this.element.append(this.head, this.body);
        this.body.addEventListener("click", (event) => this.click(event));
        this.body.addEventListener("dblclick", (event) => {
            const index = this.indexAt(event);
            if (index !== null) this.events.open(index);
        });
    }

    widthOf(column: Column): number {
        return this.widths.get(column.id) ?? column.width;
    }

    get fullWidth(): number {
        return this.columns.reduce((sum, column) => sum + this.widthOf(column), 0);
    }

    setColumns(columns: readonly Column[]): void {
        this.columns = columns;
        setAttribute(this.element, "aria-colcount", String(columns.length));
        this.headRow.replaceChildren(...columns.map((column, index) => this.header(column, index)));
        this.forget();
        this.applyWidths();
    }

    setWidth(column: Column, width: number): void {
        this.widths.set(column.id, Math.min(widest, Math.max(narrowest, Math.round(width))));
        this.applyWidths();
    }

    setRows(rows: readonly Row[]): void {
        this.rows = rows;
        setAttribute(this.element, "aria-rowcount", String(rows.length + 1));
        // What stands in the window is the text of other rows now.
        for (const row of this.shown.values()) row.index = -1;
    }

    private forget(): void {
        this.shown.clear();
        this.spare = [];
        this.moving.replaceChildren();
    }

    // One grid template for all rows; a property of the page's own, since styles are its own only.
    private applyWidths(): void {
        const template = this.columns.map((column) => `${this.widthOf(column)}px`).join(" ");
        this.element.style.setProperty("--columns", template);
        this.element.style.setProperty("--full-width", `${this.fullWidth}px`);
    }

    private header(column: Column, index: number): HTMLElement {
        const handle = make("span", {
            class: "handle",
            role: "separator",
            tabindex: 0,
            "aria-orientation": "vertical",
            "aria-label": word("width", { column: column.label }),
            "aria-valuemin": narrowest,
            "aria-valuemax": widest,
            "aria-valuenow": this.widthOf(column),
        });
        const widen = (width: number): void => {
            this.events.resize(column, width);
            setAttribute(handle, "aria-valuenow", String(this.widthOf(column)));
        };
        handle.addEventListener("keydown", (event) => {
            const step = event.key === "ArrowRight" ? 10 : event.key === "ArrowLeft" ? -10 : 0;
            if (step === 0) return;
            event.preventDefault();
            event.stopPropagation();
            widen(this.widthOf(column) + step);
        });
        dragged(handle, () => {
            const width = this.widthOf(column);
            return (dx) => widen(width + dx);
        });
        return make(
            "div",
            {
                class: column.isNumeric ? "cell numeric" : "cell",
                role: "columnheader",
                "aria-colindex": index + 1,
                "data-column": column.id,
                title: column.label,
            },
            make("span", { class: "label" }, column.label),
            handle,
        );
    }

    private newRow(): RowElement {
        const element = make("div", { class: "row", role: "row" });
        let triangle: HTMLElement | null = null;
        let title: HTMLElement | null = null;
        const cells = this.columns.map((column, index) => {
            const cell = make("div", {
                class: column.isNumeric ? "cell numeric" : "cell",
                role: "gridcell",
                "aria-colindex": index + 1,
                "data-column": column.id,
            });
            if (column.isTree) {
                triangle = make("span", { class: "triangle", "aria-hidden": "true" });
                title = make("span", { class: "label" });
                cell.append(triangle, title);
            }
            element.append(cell);
            return cell;
        });
        return { element, cells, triangle, title, index: -1 };
    }

    private fill(target: RowElement, index: number, row: Row): void {
        const { element, cells, triangle, title } = target;
        target.index = index;
        const kind = row.item.type === "task" ? row.item.task.kind : row.item.type;
        setAttribute(element, "class", `row ${kind}`);
        setAttribute(element, "id", `${this.name}-${index}`);
        setAttribute(element, "aria-rowindex", String(index + 2));
        setAttribute(element, "aria-level", String(row.level));
        setAttribute(element, "aria-posinset", String(row.place));
        setAttribute(element, "aria-setsize", String(row.siblings));
        setAttribute(element, "aria-expanded", row.hasChildren ? String(row.isOpen) : null);
        element.style.transform = `translateY(${index * rowHeight}px)`;
        this.columns.forEach((column, at) => {
            const cell = cells[at] as HTMLElement;
            const text = column.text(row.item);
            if (column.isTree && title && triangle) {
                setText(title, text === "" ? "–" : text);
                setAttribute(triangle, "class", row.hasChildren ? (row.isOpen ? "triangle open" : "triangle") : "triangle none");
                cell.style.paddingInlineStart = `${8 + (Math.min(row.level, 40) - 1) * indentation}px`;
            } else {
                setText(cell, text);
            }
            setAttribute(cell, "title", text.length > 12 ? text : null);
        });
    }

    // Shows rows first to last, and the active one wherever it is, after scrolling by `top` pixels.
    show(first: number, last: number, top: number, active: number): void {
        this.moving.style.transform = `translateY(${-top}px)`;
        const isWanted = (index: number): boolean =>
            (index >= first && index <= last) || (index === active && index < this.rows.length);
        for (const [index, row] of this.shown) {
            if (!isWanted(index)) {
                this.shown.delete(index);
                this.spare.push(row);
            }
        }
        for (let index = first; index <= last; ++index) this.showRow(index);
        if (active >= 0 && isWanted(active)) this.showRow(active);
        for (const row of this.spare.splice(24)) row.element.remove();
        for (const row of this.spare) {
            if (row.element.parentNode) row.element.remove();
        }
        for (const [index, row] of this.shown) {
            setAttribute(row.element, "aria-selected", String(index === active));
        }
        setAttribute(this.element, "aria-activedescendant", active >= 0 && this.shown.has(active) ? `${this.name}-${active}` : null);
    }

    private showRow(index: number): void {
        const row = this.rows[index];
        if (!row) return;
        let target = this.shown.get(index);
        if (!target) {
            target = this.spare.pop() ?? this.newRow();
            this.shown.set(index, target);
            if (!target.element.parentNode) this.moving.append(target.element);
        }
        if (target.index !== index) this.fill(target, index, row);
    }

    private indexAt(event: Event): number | null {
        const element = event.target instanceof Element ? event.target.closest(".row") : null;
        for (const [index, row] of this.shown) {
            if (row.element === element) return index;
        }
        return null;
    }

    private click(event: MouseEvent): void {
        const index = this.indexAt(event);
        if (index === null) return;
        const isTriangle = event.target instanceof Element && event.target.classList.contains("triangle");
        this.events.activate(index);
        if (isTriangle && this.rows[index]?.hasChildren) this.events.toggle(index);
    }

    // Brings the rows into their order for who reads the page's tree; on the screen they are in it anyway.
    sort(): void {
        const rows = [...this.shown].sort(([one], [other]) => one - other).map(([, row]) => row.element);
        if (rows.some((row, index) => this.moving.children[index] !== row)) this.moving.replaceChildren(...rows);
    }

    titleOf(index: number): string {
        const row = this.rows[index];
        return row ? itemTitle(row.item) : "";
    }
}

// Calls what `begin` gives with the distance from where the dragging began.
export function dragged(element: HTMLElement, begin: (event: PointerEvent) => (dx: number, dy: number) => void): void {
    element.addEventListener("pointerdown", (down) => {
        if (down.button !== 0) return;
        down.preventDefault();
        const move = begin(down);
        element.setPointerCapture(down.pointerId);
        const follow = (event: PointerEvent): void => move(event.clientX - down.clientX, event.clientY - down.clientY);
        const end = (): void => {
            element.removeEventListener("pointermove", follow);
            element.removeEventListener("pointerup", end);
            element.removeEventListener("pointercancel", end);
        };
        element.addEventListener("pointermove", follow);
        element.addEventListener("pointerup", end);
        element.addEventListener("pointercancel", end);
    });
}
