// Everything that the document holds on one task, resource, or on the project.

import { missedDates, slipOf } from "./dates";
import { button, make } from "./dom";
import { factText, fieldText } from "./fields";
import { moneyFormat } from "./money";
import type { Link, Model, Moment, Resource, Schedule, Span, Task } from "./model";
import { dateNames } from "./model";
import type { Item } from "./rows";
import type { Clock } from "./time";
import { dateText, dayText, formatted, hoursText, longDateText, numberText, offsetText, percentText, slipText, timeOfDayText } from "./time";
import { word, wordFor, wordOfValue } from "./texts";

export interface DetailsEvents {
    readonly goTo: (item: Task | Resource) => void;
    readonly close: () => void;
}

type Value = string | Node;
const mostListed = 200;

export class Details {
    readonly element = make("aside", { class: "details", "aria-label": word("details"), tabindex: -1, hidden: true });
    private clock: Clock;
    private baseline: number | null = null;
    private item: Item | null = null;

    constructor(
        private readonly model: Model,
        clock: Clock,
        private readonly events: DetailsEvents,
    ) {
        this.clock = clock;
    }

    get isOpen(): boolean {
        return !this.element.hidden;
    }

    set(clock: Clock, baseline: number | null): void {
        this.clock = clock;
        this.baseline = baseline;
        if (this.isOpen) this.show(this.item);
    }

    // Shows an item; none is the project.
    show(item: Item | null): void {
        this.item = item;
        this.element.hidden = false;
        const close = button("×", this.events.close, { class: "close", "aria-label": word("close"), title: word("close") });
        this.element.replaceChildren(close, ...this.contentOf(item));
        this.element.scrollTop = 0;
    }

    hide(): void {
        this.element.hidden = true;
    }

    private contentOf(item: Item | null): Node[] {
        if (item?.type === "task") return this.task(item.task);
        if (item?.type === "resource") return this.resource(item.resource);
        return this.project();
    }

    // ---- pieces of it ----

    private heading(kind: string, title: string): Node[] {
        return [make("p", { class: "kind" }, kind), make("h2", {}, title === "" ? "–" : title)];
    }

    private list(pairs: readonly (readonly [string, Value] | null | false | "")[]): Node[] {
        const present = pairs.filter((pair): pair is readonly [string, Value] => Boolean(pair) && (pair as [string, Value])[1] !== "");
        if (present.length === 0) return [];
        const list = make("dl");
        for (const [name, value] of present) list.append(make("dt", {}, name), make("dd", {}, value));
        return [list];
    }

    private section(title: string, ...content: Node[]): Node[] {
        return content.length === 0 ? [] : [make("section", {}, make("h3", {}, title), ...content)];
    }

    // The offset is told where the page shows the document's own clock.
    private moment(moment: Moment | null | undefined): string {
        if (!moment) return "";
        const text = longDateText(this.clock.shown(moment));
        return this.clock.zone === null ? `${text} (${offsetText(moment.offset)})` : text;
    }

    private link(item: Task | Resource, text: string): HTMLElement {
        return button(text === "" ? item.id : text, () => this.events.goTo(item), { class: "link" });
    }

    private items(nodes: Node[]): Node[] {
        if (nodes.length === 0) return [];
        const list = make("ul");
        nodes.slice(0, mostListed).forEach((node) => list.append(make("li", {}, node)));
        if (nodes.length > mostListed) list.append(make("li", {}, word("andMore", { count: nodes.length - mostListed })));
        return [list];
    }

    private note(text: string): Node[] {
        return text === "" ? [] : this.section(word("note"), make("p", { class: "note" }, text));
    }

    // ---- tasks ----

    private task(task: Task): Node[] {
        const missed = missedDates(task);
        const bounds = dateNames.map((name) => {
            const moment = task.dates.get(name);
            const isMissed = missed.includes(name);
            const value = make("span", { class: isMissed ? "missed" : null }, this.moment(moment), isMissed ? ` – ${word("missed")}` : "");
            return moment ? ([word(name), value] as const) : null;
        });
        return [
            ...this.heading(`${word(task.kind)} ${task.number}`, task.title),
            ...(task.isOutside ? [make("p", { class: "hint" }, word("outside"))] : []),
            ...this.list([
                [word("start"), this.moment(task.start)],
                [word("end"), this.moment(task.end)],
                ...bounds,
                [word("effort"), task.effort === null ? "" : hoursText(task.effort)],
                [word("effortDone"), task.effortDone === null ? "" : hoursText(task.effortDone)],
                [word("completion"), percentText(task.completion)],
                [word("group"), task.parent ? this.link(task.parent, task.parent.title) : ""],
                [word("id"), task.id],
            ]),
            ...this.section(word("assigned"), ...this.items(task.resources.map((resource) => this.link(resource, resource.name)))),
            ...this.note(task.note),
            ...this.section(word("fields"), ...this.list(this.model.fields.map(([name, value]) => [name, this.field(value(task.row) ?? "")] as const))),
            ...this.section(word("predecessors"), ...this.items(task.before.map((link) => this.dependency(link, link.from)))),
            ...this.section(word("successors"), ...this.items(task.after.map((link) => this.dependency(link, link.to)))),
            ...this.pieces(task),
            ...this.baselines(task),
            ...this.section(word("further"), ...this.list(this.model.facts.map(([name, value]) => [wordFor(name), factText(name, value(task.row) ?? "", this.model.currency)] as const))),
        ];
    }

    private field(value: string): string {
        return fieldText(value, this.clock, longDateText);
    }

    private dependency(link: Link, other: Task): Node {
        return make("span", {}, make("span", { class: "badge", title: wordOfValue("link", link.kind) }, link.kind === "" ? "?" : link.kind), " ", this.link(other, `${other.number} ${other.title}`));
    }

    private pieces(task: Task): Node[] {
        const rows = task.pieces.map((piece) => {
            const shown = (moment: Moment | null): string => (moment ? dateText(this.clock.shown(moment)) : "");
            return make("span", {}, `${shown(piece.start)} – ${shown(piece.end)}${piece.effort === null ? "" : `, ${hoursText(piece.effort)}`}`);
        });
        return this.section(word("pieces"), ...this.items(rows));
    }

    private baselines(task: Task): Node[] {
        return this.model.baselines.flatMap((baseline) => {
            const planned = task.planned[baseline.index];
            if (!planned) return [];
            const slip = slipOf(task, baseline.index);
            const title = baseline.index === this.baseline ? `${baseline.name} ✓` : baseline.name;
            return this.section(
                title,
                ...this.list([
                    [word("start"), this.moment(planned.start)],
                    [word("end"), this.moment(planned.end)],
                    [word("effort"), planned.effort === null ? "" : hoursText(planned.effort)],
                    [word("slip"), slip === null ? "" : slipText(slip)],
                ]),
            );
        });
    }

    // ---- resources ----

    private resource(resource: Resource): Node[] {
        const money = moneyFormat(this.model.currency);
        const amount = (value: number | null): string => (value === null ? "" : money(value));
        return [
            ...this.heading(resource.isMaterial ? word("material") : resource.type === "Staff" ? word("staff") : resource.type || word("resource"), resource.name),
            ...this.list([
                [word("units"), resource.units === null ? "" : numberText(resource.units)],
                [word("costPerHour"), amount(resource.costPerHour)],
                [word("costPerUse"), amount(resource.costPerUse)],
                ...resource.facts.map(([name, value]) => [wordFor(name), value] as const),
                [word("id"), resource.id],
            ]),
            ...this.note(resource.note),
            ...this.section(word("fields"), ...this.list(resource.fields.map(([name, value]) => [name, this.field(value)] as const))),
            ...(resource.isMaterial ? [] : this.section(word("workingWeek"), ...this.week(resource.schedule))),
            ...this.timesOff(resource.schedule),
            ...this.section(`${word("tasks")} (${numberText(resource.tasks.length)})`, ...this.items(resource.tasks.map((task) => this.link(task, `${task.number} ${task.title}`)))),
        ];
    }

    private week(schedule: Schedule | null): Node[] {
        if (!schedule || schedule.days.every((times) => times === null)) return [make("p", {}, word("noWeek"))];
        const monday = 4 * 86_400; // 1970-01-05
        return this.list(
            [1, 2, 3, 4, 5, 6, 0].map((day, index) => {
                const times = schedule.days[day];
                const name = formatted(monday + index * 86_400, { weekday: "long" });
                if (!times) return [name, word("asProject")] as const;
                const spans = times.map(([from, to]) => make("span", { class: "whole" }, `${timeOfDayText(from)}–${timeOfDayText(to)}`));
                const told = make("span", {}, ...spans.flatMap((span, at) => (at === 0 ? [span] : [", ", span])));
                return [name, spans.length > 0 ? told : word("noWork")] as const;
            }),
        );
    }

    private timesOff(schedule: Schedule | null): Node[] {
        if (!schedule) return [];
        const days = (form: (seconds: number) => string) => (span: Span): Node => {
            const from = form(this.clock.shown(span.start));
            const to = form(this.clock.shown(span.end));
            return make("span", {}, from === to ? from : `${from} – ${to}`, span.calendar === "" ? "" : ` (${span.calendar})`);
        };
        return [
            ...this.section(word("daysOff"), ...this.items(schedule.off.map(days(dayText)))),
            ...this.section(word("overtime"), ...this.items(schedule.over.map(days(longDateText)))),
        ];
    }

    // ---- the project ----

    private project(): Node[] {
        const { model } = this;
        return [
            ...this.heading(word("project"), model.title),
            ...this.list([
                [word("start"), this.moment(model.start)],
                [word("end"), this.moment(model.end)],
                model.isFixedEnd && [word("fixedEnd"), "✓"],
                model.granularity !== null && [word("granularity"), wordOfValue("granularity", model.granularity)],
                [word("tasks"), numberText(model.tasks.length)],
                [word("resources"), numberText(model.resources.length)],
                [word("source"), model.source],
            ]),
            ...model.baselines.flatMap((baseline) =>
                this.section(
                    baseline.name,
                    ...this.list([
                        [word("start"), this.moment(baseline.start)],
                        [word("end"), this.moment(baseline.end)],
                    ]),
                    ...(baseline.gone.length === 0
                        ? []
                        : [make("p", {}, word("gone", { count: baseline.gone.length })), ...this.items(baseline.gone.map(([id, title]) => make("span", {}, `${title} (${id})`)))]),
                ),
            ),
            ...this.section(word("projectSchedule"), ...this.week(model.schedule)),
            ...this.timesOff(model.schedule),
            ...this.section(word("noteLeftOut"), ...this.items(model.notes.map((note) => make("span", {}, note)))),
        ];
    }
}
