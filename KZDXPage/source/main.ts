// The page: reads the data, makes the views and connects what a person does with what is shown.

import { columnsChoice } from "./choice";
import type { Column, Setting } from "./columns";
import { planColumns, resourceColumns } from "./columns";
import type { WrittenDocument } from "./contract";
import { Details } from "./details";
import { button, fileName, make, saveFile } from "./dom";
import { filterPanel } from "./filters";
import { lossesView, printedLosses } from "./losses";
import { groupsOf, modelOf, type Model, type Resource, type Task } from "./model";
import { sheetsOf, type Paper } from "./print";
import { planTree, resourceTree, sectionsOf, type Item } from "./rows";
import { TimeScale } from "./scale";
import { csvOf, drawingOf, svgFile } from "./save";
import { everything, filterFor, Haystack, type Wanted } from "./search";
import { clockOf, offsetText, zones } from "./time";
import { disclosure, helpDialog, select } from "./toolbar";
import { language, word, type Word } from "./texts";
import { View } from "./view";

type Tab = "plan" | "resources" | "losses";

class Page {
    private readonly haystack: Haystack;
    private setting: Setting;
    private wanted: Wanted = everything;
    private tab: Tab = "plan";
    private readonly chosen = new Map<Tab, Set<string>>();
    private readonly views: { plan: View; resources: View };
    private readonly details: Details;
    private readonly losses: HTMLElement;
    private readonly tabs = new Map<Tab, HTMLButtonElement>();
    private readonly search = make("input", { type: "search", placeholder: word("searchHint"), "aria-label": word("search"), autocomplete: "off", spellcheck: "false" });
    private readonly filterHolder = make("div");
    private readonly columnHolder = make("div");
    private readonly filterMenu = disclosure(word("filter"), "filter-panel", this.filterHolder);
    private readonly columnMenu = disclosure(word("columns"), "column-panel", this.columnHolder);
    private readonly count = make("span", { class: "row-count", role: "status", "aria-live": "polite" });
    private readonly zoneNote = make("span", { class: "zone-note" });
    private readonly help = helpDialog();
    private readonly chartTools = make("div", { class: "tools chart-tools" });
    private readonly tableTools = make("div", { class: "tools" });
    private readonly sheets = make("div", { id: "sheets" });
    private readonly fileEntries: HTMLButtonElement[] = []; // of a chart and its table
    private paper: Paper = "a4";

    constructor(
        private readonly model: Model,
        private readonly root: HTMLElement,
    ) {
        this.haystack = new Haystack(model);
        this.setting = { model, clock: clockOf(null, model.offsetAt), baseline: model.comparison };
        const events = { selected: (item: Item | null) => this.selected(item), opened: (item: Item) => this.open(item) };
        this.views = {
            plan: new View(word("plan"), model, this.setting, true, events),
            resources: new View(word("resources"), model, this.setting, false, events),
        };
        this.details = new Details(model, this.setting.clock, { goTo: (item) => this.goTo(item), close: () => this.closeDetails() });
        this.details.set(this.setting.clock, this.setting.baseline);
        this.losses = lossesView(model, (item) => this.goTo(item));
        this.build();
        this.updateColumns();
        this.updateTrees();
        this.choose("plan");
        this.listen();
        performance.mark("first-rows");
    }

    // ---- parts ----

    private build(): void {
        document.documentElement.lang = language;
        document.documentElement.classList.add("live");
        const title = make("h1", {}, button(this.model.title === "" ? "–" : this.model.title, () => this.showProject(), { title: word("project") }));
        this.panels().forEach(([name, panel]) => {
            panel.id = `panel-${name}`;
            panel.setAttribute("role", "tabpanel");
            panel.setAttribute("aria-labelledby", `tab-${name}`);
        });
        this.root.append(
            make("header", { class: "top" }, title, this.tabList(), this.search),
            make("div", { class: "toolbar", role: "toolbar" }, this.tableTools, this.chartTools, this.outputTools()),
            make("main", {}, this.views.plan.element, this.views.resources.element, this.losses, this.details.element),
            this.statusBar(),
            this.help,
            this.sheets,
        );
        this.buildTools();
    }

    private panels(): [Tab, HTMLElement][] {
        return [
            ["plan", this.views.plan.element],
            ["resources", this.views.resources.element],
            ["losses", this.losses],
        ];
    }

    private tabList(): HTMLElement {
        const list = make("div", { class: "tabs", role: "tablist", "aria-label": word("views") });
        const names: Tab[] = this.model.losses ? ["plan", "resources", "losses"] : ["plan", "resources"];
        for (const name of names) {
            const tab = button(word(name), () => this.choose(name), { role: "tab", "data-tab": name, id: `tab-${name}`, "aria-controls": `panel-${name}` });
            tab.addEventListener("keydown", (event) => {
                const step = event.key === "ArrowRight" ? 1 : event.key === "ArrowLeft" ? -1 : 0;
                const next = names[(names.indexOf(name) + step + names.length) % names.length];
                if (step === 0 || !next) return;
                this.choose(next);
                this.tabs.get(next)?.focus();
            });
            this.tabs.set(name, tab);
            list.append(tab);
        }
        return list;
    }

    private buildTools(): void {
        this.fillFilters();
        this.tableTools.append(
            this.filterMenu.element,
            this.columnMenu.element,
            button("⊞", () => this.view?.foldAll(false), { class: "icon", title: word("expandAll"), "aria-label": word("expandAll") }),
            button("⊟", () => this.view?.foldAll(true), { class: "icon", title: word("collapseAll"), "aria-label": word("collapseAll") }),
        );
        if (this.model.baselines.length > 0) {
            const choices = [
                { value: "", label: word("noBaseline") },
                ...this.model.baselines.map((baseline) => ({ value: String(baseline.index), label: baseline.name })),
            ];
            this.tableTools.append(
                select(word("compare"), choices, String(this.setting.baseline ?? ""), (value) => this.set({ ...this.setting, baseline: value === "" ? null : Number(value) })),
            );
        }
        this.chartTools.append(
            button("−", () => this.view?.zoomOut(), { class: "icon", title: word("zoomOut"), "aria-label": word("zoomOut") }),
            button("+", () => this.view?.zoomIn(), { class: "icon", title: word("zoomIn"), "aria-label": word("zoomIn") }),
            button(word("fit"), () => this.view?.fit()),
            button(word("today"), () => this.view?.goToToday()),
        );
    }

    private outputTools(): HTMLElement {
        const list = make("div", { class: "choices" });
        const menu = disclosure(word("save"), "save-panel", list);
        const entry = (label: Word, act: () => void): HTMLButtonElement =>
            button(word(label), () => {
                menu.close();
                act();
            });
        this.fileEntries.push(entry("saveSVG", () => this.saveSVG()), entry("saveCSV", () => this.saveCSV()));
        list.append(
            ...this.fileEntries,
            entry("printA4", () => this.print("a4")),
            entry("printA3", () => this.print("a3")),
        );
        return make("div", { class: "tools end" }, menu.element, button("?", () => this.showHelp(), { class: "icon", title: word("help"), "aria-label": word("help") }));
    }

    private statusBar(): HTMLElement {
        const zone = select(
            word("zone"),
            [{ value: "", label: word("zoneOfDocument") }, ...zones().map((name) => ({ value: name, label: name.replace(/_/gu, " ") }))],
            "",
            (name) => this.set({ ...this.setting, clock: clockOf(name === "" ? null : name, this.model.offsetAt) }),
        );
        return make("footer", { class: "status" }, this.count, make("span", { class: "source" }, `${this.model.source} · ${this.model.maker}`), this.zoneNote, zone);
    }

    private fillFilters(): void {
        this.filterHolder.replaceChildren(filterPanel(this.model, this.wanted, (part) => this.want({ ...this.wanted, ...part }), () => this.clearFilter()));
    }

    // ---- state ----

    private get view(): View | null {
        return this.tab === "losses" ? null : this.views[this.tab];
    }

    private choose(tab: Tab): void {
        this.tab = tab;
        for (const [name, element] of this.tabs) {
            element.setAttribute("aria-selected", String(name === tab));
            element.tabIndex = name === tab ? 0 : -1;
        }
        for (const [name, panel] of this.panels()) panel.hidden = name !== tab;
        this.root.classList.toggle("without-chart", tab === "losses");
        for (const entry of this.fileEntries) entry.hidden = tab === "losses";
        this.view?.mount();
        this.fillColumnChoice();
        this.updateCount();
    }

    private set(setting: Setting): void {
        this.setting = setting;
        this.updateColumns();
        this.views.plan.set(setting);
        this.views.resources.set(setting);
        this.details.set(setting.clock, setting.baseline);
        this.updateZoneNote();
    }

    private allColumns(tab: Tab): Column[] {
        return tab === "resources" ? resourceColumns(this.setting) : planColumns(this.setting);
    }

    private shownColumns(tab: Tab): Column[] {
        const chosen = this.chosen.get(tab);
        return this.allColumns(tab).filter((column) => column.isTree || (chosen ? chosen.has(column.id) : column.isShownFirst));
    }

    private updateColumns(): void {
        this.views.plan.setColumns(this.shownColumns("plan"));
        this.views.resources.setColumns(this.shownColumns("resources"));
        this.fillColumnChoice();
        this.updateZoneNote();
    }

    private fillColumnChoice(): void {
        const { tab } = this;
        if (tab === "losses") return;
        const shown = new Set(this.shownColumns(tab).map((column) => column.id));
        this.columnHolder.replaceChildren(
            columnsChoice(this.allColumns(tab), shown, (id, isShown) => {
                if (isShown) shown.add(id);
                else shown.delete(id);
                this.chosen.set(tab, shown);
                this.views[tab].setColumns(this.shownColumns(tab));
            }),
        );
    }

    private updateTrees(): void {
        const filter = filterFor(this.wanted, this.model, this.haystack);
        this.views.plan.setTree(planTree(this.model, filter), filter !== null);
        this.views.resources.setTree(resourceTree(this.model, filter), filter !== null);
        this.filterMenu.button.classList.toggle("active", filter !== null && this.wanted.text === "");
        this.matching = filter ? this.model.tasks.reduce((sum, task) => sum + (filter(task) ? 1 : 0), 0) : null;
        this.updateCount();
    }

    private matching: number | null = null;

    private updateCount(): void {
        const all = this.model.tasks.length;
        if (this.tab === "resources" && this.matching === null) {
            this.count.textContent = word("resourceCount", { all: this.model.resources.length });
        } else {
            this.count.textContent = this.matching === null ? word("allRows", { all }) : word("rowsOf", { shown: this.matching, all });
        }
    }

    private updateZoneNote(): void {
        const { zone } = this.setting.clock;
        const start = this.model.start ?? this.model.tasks[0]?.start ?? null;
        const offset = start ? ` (${offsetText(start.offset)})` : "";
        this.zoneNote.textContent = zone === null ? word("zoneNote") + offset : `${word("zoneNoteOther")} ${zone}`;
    }

    private want(wanted: Wanted): void {
        this.wanted = wanted;
        if (this.tab === "losses") this.choose("plan");
        this.updateTrees();
    }

    private clearFilter(): void {
        this.search.value = "";
        this.want(everything);
        this.fillFilters();
    }

    // ---- selection ----

    private selected(item: Item | null): void {
        if (this.details.isOpen && item && item.type !== "section") this.details.show(item);
    }

    private open(item: Item): void {
        if (item.type === "section") return;
        this.details.show(item);
        this.details.element.focus({ preventScroll: true });
    }

    private showProject(): void {
        this.details.show(null);
        this.details.element.focus({ preventScroll: true });
    }

    private closeDetails(): void {
        this.details.hide();
        if (this.view) this.view.focus();
        else this.losses.focus();
    }

    private goTo(item: Task | Resource): void {
        const isTask = "title" in item;
        this.choose(isTask ? "plan" : "resources");
        const reveal = (): boolean =>
            isTask
                ? this.views.plan.reveal(`t${item.row}`, [...groupsOf(item)].map((group) => `t${group.row}`))
                : this.views.resources.reveal(`r${item.index}`, sectionsOf(this.model).map((section) => section.key));
        // What the filter hides is shown all the same when it is asked for.
        if (!reveal()) {
            this.clearFilter();
            reveal();
        }
        this.details.show(isTask ? { type: "task", task: item } : { type: "resource", resource: item });
        this.view?.focus();
    }

    // ---- output ----

    private title(): string {
        return this.model.title === "" ? this.model.source : this.model.title;
    }

    private saveCSV(): void {
        const tab = this.tab === "resources" ? "resources" : "plan";
        saveFile(fileName(this.title(), "csv"), "text/csv;charset=utf-8", csvOf(this.shownColumns(tab), this.views[tab].rows));
    }

    private saveSVG(): void {
        const view = this.view ?? this.views.plan;
        const [from, to] = view.wholeExtent;
        const { perSecond } = view.timeScale;
        // Other programs do not take drawings of any width.
        const fitted = Math.min(perSecond, 20_000 / Math.max(to - from, 3600));
        const scale = new TimeScale(from - 40 / fitted, fitted, (to - from) * fitted + 200);
        const ground = { schedule: this.model.schedule, drawing: { scale, clock: this.setting.clock, baseline: this.setting.baseline } };
        const drawing = drawingOf(this.model, view.rows, ground, view === this.views.plan);
        saveFile(fileName(this.title(), "svg"), "image/svg+xml", svgFile(this.title(), drawing));
    }

    private print(paper: Paper): void {
        this.paper = paper;
        window.print();
    }

    private makeSheets(): void {
        const { tab } = this;
        if (tab === "losses") {
            this.sheets.replaceChildren(printedLosses(this.model, this.title(), this.paper));
            return;
        }
        const view = this.views[tab];
        const baseline = this.setting.baseline === null ? null : this.model.baselines[this.setting.baseline];
        const sheets = sheetsOf(
            {
                model: this.model,
                title: this.title(),
                note: [this.zoneNote.textContent, baseline ? `${word("compare")}: ${baseline.name}` : ""].filter((text) => text !== "").join(" · "),
                rows: view.rows,
                columns: this.shownColumns(tab),
                ground: {
                    schedule: this.model.schedule,
                    drawing: { scale: view.timeScale, clock: this.setting.clock, baseline: this.setting.baseline },
                },
                extent: view.wholeExtent,
                hasLinks: tab === "plan",
            },
            this.paper,
        );
        this.sheets.replaceChildren(...sheets);
    }

    private showHelp(): void {
        if (!this.help.open) this.help.showModal();
    }

    // ---- keys for the whole page ----

    private listen(): void {
        let pending = 0;
        this.search.addEventListener("input", () => {
            // A large plan takes longer than a quick typist's next letter.
            window.clearTimeout(pending);
            pending = window.setTimeout(() => this.want({ ...this.wanted, text: this.search.value }), this.model.tasks.length > 5000 ? 120 : 0);
        });
        this.search.addEventListener("keydown", (event) => {
            if (event.key === "ArrowDown" || event.key === "Enter") {
                event.preventDefault();
                this.view?.focus();
            } else if (event.key === "Escape" && this.search.value === "") {
                this.view?.focus();
            }
        });
        document.addEventListener("keydown", (event) => this.key(event));
        window.addEventListener("beforeprint", () => this.makeSheets());
        window.addEventListener("afterprint", () => this.sheets.replaceChildren());
    }

    private key(event: KeyboardEvent): void {
        const isTyping = event.target instanceof Element && event.target.closest("input, select, textarea, dialog") !== null;
        if (event.defaultPrevented || event.ctrlKey || event.metaKey || event.altKey || isTyping) return;
        const keys = new Map<string, () => void>([
            ["+", () => this.view?.zoomIn()],
            ["=", () => this.view?.zoomIn()],
            ["-", () => this.view?.zoomOut()],
            ["0", () => this.view?.fit()],
            ["t", () => this.view?.goToToday()],
            ["b", () => this.view?.goToBar()],
            ["*", () => this.view?.foldAll(false)],
            ["_", () => this.view?.foldAll(true)],
            ["Shift+ArrowLeft", () => this.view?.pan(-120)],
            ["Shift+ArrowRight", () => this.view?.pan(120)],
            ["/", () => this.search.focus()],
            ["1", () => this.choose("plan")],
            ["2", () => this.choose("resources")],
            ["3", () => this.model.losses && this.choose("losses")],
            ["?", () => this.showHelp()],
            ["Escape", () => this.details.isOpen && this.closeDetails()],
        ]);
        const act = keys.get(event.shiftKey && event.key.startsWith("Arrow") ? `Shift+${event.key}` : event.key);
        if (!act) return;
        event.preventDefault();
        act();
    }
}

const data = document.getElementById("document");
const root = document.getElementById("page");
if (data instanceof HTMLScriptElement && root) {
    const model = modelOf(JSON.parse(data.text) as WrittenDocument);
    // The text is not needed twice.
    data.remove();
    new Page(model, root);
}
