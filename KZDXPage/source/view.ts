// A table with its chart, scrolled together: which rows are in the window, which is active, and what keys and the wheel
// do.

import { elementScroll, observeElementOffset, Virtualizer } from "@tanstack/virtual-core";
import { Bar } from "./bar";
import { axisHeight, Chart } from "./chart";
import type { Column, Setting } from "./columns";
import { make, setAttribute } from "./dom";
import { rowHeight } from "./drawing";
import { dragged, Grid } from "./grid";
import { LinkIndex } from "./links";
import type { Model, Moment, Task } from "./model";
import { rowsOf, type Item, type Row, type Tree } from "./rows";
import { fitting, TimeScale } from "./scale";
import type { Clock } from "./time";
import { word } from "./texts";

export interface ViewEvents {
    readonly selected: (item: Item | null) => void;
    readonly opened: (item: Item) => void;
}

const zoomStep = 1.4;
// Milliseconds that rows may take before their links wait for the next frame.
const longest = 8;

export class View {
    readonly element = make("section", { class: "view" });
    private readonly scroller = make("div", { class: "scroller", tabindex: -1 });
    private readonly stage = make("div", { class: "stage" });
    private readonly spacer = make("div", { class: "spacer" });
    private readonly divider = make("div", {
        class: "divider",
        role: "separator",
        tabindex: 0,
        "aria-orientation": "vertical",
        "aria-label": word("divider"),
    });
    private readonly empty = make("p", { class: "empty", role: "status" });
    private readonly gridBar = new Bar("table-bar");
    private readonly chartBar = new Bar("chart-bar");
    readonly grid: Grid;
    private readonly chart = new Chart();
    private readonly virtualizer: Virtualizer<HTMLElement, Element>;
    private tree: Tree | null = null;
    private setting: Setting;
    private readonly folded = new Set<string>();
    private isFiltered = false;
    rows: readonly Row[] = [];
    private activeKey: string | null = null;
    private active = -1;
    private scale: TimeScale | null = null;
    private isFitting = true;
    private gridWidth = 0;
    private isDivided = false; // by the person, whose width is kept
    private settling = 0;
    private later = 0; // the frame that will draw links

    constructor(
        label: string,
        private readonly model: Model,
        setting: Setting,
        private readonly hasLinks: boolean,
        private readonly events: ViewEvents,
    ) {
        this.setting = setting;
        this.grid = new Grid(label, {
            activate: (index) => this.activate(index, false),
            toggle: (index) => this.toggle(index),
            open: (index) => this.open(index),
            resize: (column, width) => {
                this.grid.setWidth(column, width);
                this.updateBars();
            },
        });
        this.stage.append(this.grid.element, this.divider, this.chart.element, this.empty);
        this.scroller.append(this.stage, this.spacer);
        this.element.append(this.scroller, make("div", { class: "bars" }, this.gridBar.element, this.chartBar.element));
        this.virtualizer = new Virtualizer<HTMLElement, Element>({
            count: 0,
            overscan: 4,
            getScrollElement: () => this.scroller,
            estimateSize: () => rowHeight,
            scrollToFn: elementScroll,
            observeElementOffset,
            observeElementRect: (_, tell) => {
                const observer = new ResizeObserver(() => {
                    tell({ width: this.scroller.clientWidth, height: this.bodyHeight });
                    this.resized();
                });
                observer.observe(this.scroller);
                tell({ width: this.scroller.clientWidth, height: this.bodyHeight });
                return () => observer.disconnect();
            },
        });
        this.listen();
    }

    private isMounted = false;

    // The element is to be seen now.
    mount(): void {
        if (this.isMounted) return;
        this.isMounted = true;
        // Before the listeners of the virtualizer, whose work is counted.
        let begun = 0;
        this.scroller.addEventListener("scroll", () => (begun = performance.now()), { passive: true, capture: true });
        this.virtualizer._didMount();
        this.virtualizer._willUpdate();
        this.scroller.addEventListener("scroll", () => this.measured(begun, () => this.show(begun)), { passive: true });
        this.resized();
    }

    private get bodyHeight(): number {
        return Math.max(0, this.scroller.clientHeight - axisHeight);
    }

    // ---- rows ----

    setTree(tree: Tree, isFiltered: boolean): void {
        this.tree = tree;
        this.isFiltered = isFiltered;
        this.updateRows();
    }

    private updateRows(): void {
        if (!this.tree) return;
        // What was searched for is seen wherever it is.
        this.rows = rowsOf(this.tree, (key) => !this.isFiltered && this.folded.has(key));
        this.grid.setRows(this.rows);
        this.chart.setRows(this.rows, this.hasLinks && this.model.links.length > 0 ? new LinkIndex(this.model, this.rows) : null);
        this.active = this.rows.findIndex((row) => row.key === this.activeKey);
        this.updateSpacer();
        this.virtualizer.setOptions({ ...this.virtualizer.options, count: this.rows.length });
        this.virtualizer._willUpdate();
        this.empty.textContent = this.rows.length > 0 ? "" : word(this.isFiltered ? "nothingFound" : this.hasLinks ? "noTasks" : "noResources");
        this.empty.hidden = this.rows.length > 0;
        this.show();
    }

    // What stays in its place takes the height of the window; the spacer is what can be scrolled besides.
    private updateSpacer(): void {
        this.spacer.style.height = `${Math.max(0, this.rows.length * rowHeight - this.bodyHeight)}px`;
    }

    setColumns(columns: readonly Column[]): void {
        this.grid.setColumns(columns);
        if (!this.isDivided) this.resized();
        this.updateBars();
        this.show();
    }

    set(setting: Setting): void {
        const before = this.setting.clock;
        this.knownExtent = null;
        this.setting = setting;
        if (this.isFitting) this.scale = this.fitted(); // a baseline may reach farther
        else if (this.scale && before !== setting.clock) this.keepPlace(before, setting.clock);
        this.grid.setRows(this.rows);
        this.draw();
    }

    // Another zone moves everything by some hours; the window moves along.
    private keepPlace(before: Clock, now: Clock): void {
        const anchor = this.model.start;
        if (anchor && this.scale) {
            this.scale = this.scale.moved((now.shown(anchor) - before.shown(anchor)) * this.scale.perSecond);
        }
    }

    // ---- selection and folding ----

    get activeItem(): Item | null {
        return this.rows[this.active]?.item ?? null;
    }

    activate(index: number, isToBeSeen = true): void {
        const row = this.rows[index];
        this.active = row ? index : -1;
        this.activeKey = row?.key ?? null;
        if (row && isToBeSeen) this.virtualizer.scrollToIndex(index, { align: "auto" });
        this.show();
        this.events.selected(row?.item ?? null);
    }

    private open(index: number): void {
        this.activate(index);
        const row = this.rows[index];
        if (row) this.events.opened(row.item);
    }

    toggle(index: number): void {
        const row = this.rows[index];
        if (!row?.hasChildren || this.isFiltered) return;
        if (row.isOpen) this.folded.add(row.key);
        else this.folded.delete(row.key);
        this.updateRows();
        this.activate(this.rows.findIndex((other) => other.key === row.key));
    }

    foldAll(isFolded: boolean): void {
        const key = this.rows[this.active]?.key;
        this.folded.clear();
        this.updateRows();
        if (isFolded) {
            this.rows.forEach((row) => {
                if (row.hasChildren) this.folded.add(row.key);
            });
            this.updateRows();
        }
        this.activate(Math.max(0, this.rows.findIndex((row) => row.key === key)));
    }

    // Makes a row active that an item is shown on, unfolding what hides it; false where the filter hides it.
    reveal(key: string, groups: readonly string[]): boolean {
        if (groups.some((group) => this.folded.delete(group))) this.updateRows();
        const index = this.rows.findIndex((row) => row.key === key);
        if (index < 0) return false;
        this.activate(index);
        this.virtualizer.scrollToIndex(index, { align: "center" });
        const { item } = this.rows[index] as Row;
        if (item.type === "task") this.bringIntoSight(item.task);
        this.show();
        return true;
    }

    focus(): void {
        this.grid.element.focus({ preventScroll: true });
    }

    // ---- time ----

    // All that is shown in time, from the first start to the last end.
    private get extent(): [number, number] {
        const { clock, baseline } = this.setting;
        let from = Infinity;
        let to = -Infinity;
        const see = (moment: Moment | null | undefined): void => {
            if (!moment) return;
            const seconds = clock.shown(moment);
            from = Math.min(from, seconds);
            to = Math.max(to, seconds);
        };
        for (const task of this.model.tasks) {
            see(task.start);
            see(task.end);
            if (baseline !== null) {
                see(task.planned[baseline]?.start);
                see(task.planned[baseline]?.end);
            }
        }
        if (from > to) {
            see(this.model.start);
            see(this.model.end);
        }
        return from > to ? [clock.now(), clock.now() + 30 * 86_400] : [from, to];
    }

    private knownExtent: [number, number] | null = null;

    private get chartWidth(): number {
        return Math.max(0, this.scroller.clientWidth - this.gridWidth - this.divider.offsetWidth);
    }

    get timeScale(): TimeScale {
        return this.scale ?? this.fitted();
    }

    get wholeExtent(): [number, number] {
        return (this.knownExtent ??= this.extent);
    }

    private fitted(): TimeScale {
        return fitting(...this.wholeExtent, Math.max(this.chartWidth, 100));
    }

    fit(): void {
        this.isFitting = true;
        this.scale = this.fitted();
        this.draw();
    }

    // The row that somebody looks at stays in sight.
    private get zoomCentre(): number {
        const item = this.activeItem;
        const moment = item?.type === "task" ? item.task.start ?? item.task.end : null;
        const x = moment ? this.timeScale.x(this.setting.clock.shown(moment)) : -1;
        return x >= 0 && x <= this.chartWidth ? x : this.chartWidth / 2;
    }

    zoom(factor: number, x = this.zoomCentre): void {
        this.setScale(this.timeScale.zoomed(factor, x));
    }

    zoomIn(): void {
        this.zoom(zoomStep);
    }

    zoomOut(): void {
        this.zoom(1 / zoomStep);
    }

    pan(pixels: number): void {
        this.setScale(this.timeScale.moved(pixels));
    }

    private setScale(scale: TimeScale): void {
        this.isFitting = false;
        this.scale = scale;
        this.draw();
    }

    private centre(seconds: number): void {
        const scale = this.timeScale;
        this.pan(scale.x(seconds) - scale.width / 2);
    }

    goToToday(): void {
        this.centre(this.setting.clock.now());
    }

    private bringIntoSight(task: Task): void {
        const moment = task.start ?? task.end;
        if (!moment) return;
        const x = this.timeScale.x(this.setting.clock.shown(moment));
        if (x < 0 || x > this.chartWidth - 40) this.setScale(this.timeScale.moved(x - Math.min(120, this.chartWidth / 4)));
    }

    goToBar(): void {
        const item = this.activeItem;
        if (item?.type === "task") this.bringIntoSight(item.task);
    }

    // ---- drawing ----

    private setGridWidth(width: number): void {
        const whole = this.scroller.clientWidth || this.element.clientWidth;
        this.gridWidth = Math.round(Math.min(Math.max(width, 120), Math.max(whole - 120, 120)));
        this.element.style.setProperty("--grid-width", `${this.gridWidth}px`);
        setAttribute(this.divider, "aria-valuenow", String(this.gridWidth));
        setAttribute(this.divider, "aria-valuemin", "120");
        setAttribute(this.divider, "aria-valuemax", String(Math.max(whole - 120, 120)));
    }

    private divide(width: number): void {
        this.isDivided = true;
        this.setGridWidth(width);
        this.resized();
    }

    private resized(): void {
        if (this.scroller.clientWidth === 0) return;
        this.setGridWidth(this.isDivided ? this.gridWidth : Math.min(this.grid.fullWidth, this.element.clientWidth * (this.element.clientWidth < 1200 ? 0.5 : 0.58)));
        this.updateSpacer();
        this.scale = this.isFitting || !this.scale ? this.fitted() : this.scale.resized(this.chartWidth);
        this.draw();
    }

    private draw(): void {
        if (!this.scale) return;
        this.chart.setGround(
            {
                schedule: this.model.schedule,
                drawing: { scale: this.scale, clock: this.setting.clock, baseline: this.setting.baseline },
            },
            this.bodyHeight,
        );
        this.updateBars();
        this.show();
    }

    private updateBars(): void {
        this.gridBar.set(this.grid.fullWidth, this.gridWidth, this.grid.element.scrollLeft);
        if (!this.scale) return;
        const [from, to] = this.wholeExtent;
        const left = Math.min(from, this.scale.start);
        const right = Math.max(to, this.scale.end);
        this.chartBar.set((right - left) * this.scale.perSecond, this.chartWidth, (this.scale.start - left) * this.scale.perSecond);
    }

    private show(begun = performance.now()): void {
        const items = this.virtualizer.getVirtualItems();
        const first = items[0]?.index ?? 0;
        const last = items[items.length - 1]?.index ?? -1;
        const top = this.scroller.scrollTop;
        this.grid.show(first, last, top, this.active);
        this.chart.show(first, last, top, this.active);
        if (performance.now() - begun < longest) this.showLinks();
        else this.later ||= requestAnimationFrame(() => this.measured(performance.now(), () => this.showLinks()));
        window.clearTimeout(this.settling);
        this.settling = window.setTimeout(() => this.grid.sort(), 200);
    }

    // The links of the rows in the window. Where the rows took long they come with the next frame.
    private showLinks(): void {
        cancelAnimationFrame(this.later);
        this.later = 0;
        const items = this.virtualizer.getVirtualItems();
        this.chart.showLinks(items[0]?.index ?? 0, items[items.length - 1]?.index ?? -1);
    }

    // Each step of scrolling is an entry of the browser's own measurements, "scroll-frame".
    private measured(begun: number, act: () => void): void {
        act();
        performance.measure("scroll-frame", { start: begun, end: performance.now() });
    }

    // ---- keys, wheel, dragging ----

    private listen(): void {
        this.grid.element.addEventListener("focus", () => {
            if (this.active < 0 && this.rows.length > 0) this.activate(0);
        });
        this.grid.element.addEventListener("keydown", (event) => this.key(event));
        this.chart.element.addEventListener("wheel", (event) => this.wheel(event), { passive: false });
        this.grid.element.addEventListener("scroll", () => this.updateBars(), { passive: true });
        this.gridBar.moved = (left) => (this.grid.element.scrollLeft = left);
        this.chartBar.moved = (left) => {
            const [from] = this.wholeExtent;
            const scale = this.timeScale;
            this.setScale(new TimeScale(Math.min(from, scale.start) + left / scale.perSecond, scale.perSecond, scale.width));
        };
        this.divider.addEventListener("keydown", (event) => {
            const step = event.key === "ArrowRight" ? 24 : event.key === "ArrowLeft" ? -24 : 0;
            if (step === 0) return;
            event.preventDefault();
            this.divide(this.gridWidth + step);
        });
        dragged(this.divider, () => {
            const width = this.gridWidth;
            return (dx) => {
                this.divide(width + dx);
            };
        });
        this.dragChart();
    }

    private dragChart(): void {
        dragged(this.chart.plot, (down) => {
            const scale = this.timeScale;
            const top = this.scroller.scrollTop;
            const index = Math.floor((down.clientY - this.chart.plot.getBoundingClientRect().top + top) / rowHeight);
            let isMoved = false;
            this.activate(Math.min(index, this.rows.length - 1), false);
            this.grid.element.focus({ preventScroll: true });
            return (dx, dy) => {
                isMoved ||= Math.abs(dx) + Math.abs(dy) > 3;
                if (!isMoved) return;
                this.scroller.scrollTop = top - dy;
                this.setScale(scale.moved(-dx));
            };
        });
    }

    private wheel(event: WheelEvent): void {
        const isOnAxis = event.target instanceof Element && event.target.closest(".axis") !== null;
        if (event.ctrlKey || event.metaKey || isOnAxis) {
            event.preventDefault();
            const x = event.clientX - this.chart.element.getBoundingClientRect().left;
            this.zoom(Math.pow(1.0018, -event.deltaY), x);
        } else if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY)) {
            event.preventDefault();
            this.pan(event.deltaX || event.deltaY);
        }
    }

    private key(event: KeyboardEvent): void {
        if (event.ctrlKey || event.metaKey || event.altKey || event.target !== this.grid.element) return;
        const page = Math.max(1, Math.floor(this.bodyHeight / rowHeight) - 1);
        const act = this.actions(page).get(event.shiftKey ? `Shift+${event.key}` : event.key);
        if (!act) return;
        event.preventDefault();
        act();
    }

    private actions(page: number): Map<string, () => void> {
        const last = this.rows.length - 1;
        const move = (by: number) => (): void => this.activate(Math.min(last, Math.max(0, this.active + by)));
        return new Map<string, () => void>([
            ["ArrowDown", move(1)],
            ["ArrowUp", move(-1)],
            ["PageDown", move(page)],
            ["PageUp", move(-page)],
            ["Home", () => this.activate(Math.min(0, last))],
            ["End", () => this.activate(last)],
            ["ArrowRight", () => this.unfoldOrEnter()],
            ["ArrowLeft", () => this.foldOrLeave()],
            ["Enter", () => this.open(this.active)],
            [" ", () => this.toggle(this.active)],
        ]);
    }

    private unfoldOrEnter(): void {
        const row = this.rows[this.active];
        if (!row?.hasChildren) return;
        if (row.isOpen) this.activate(this.active + 1);
        else this.toggle(this.active);
    }

    private foldOrLeave(): void {
        const row = this.rows[this.active];
        if (!row) return;
        if (row.isOpen && !this.isFiltered) this.toggle(this.active);
        else if (row.parent >= 0) this.activate(row.parent);
    }
}
