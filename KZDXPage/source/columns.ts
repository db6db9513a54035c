// The columns of both tables: what each row says in them, for people and for saved files.

import { slipOf } from "./dates";
import { textWidth } from "./dom";
import { factText, fieldText } from "./fields";
import { moneyFormat } from "./money";
import type { Model, Moment, Resource, Task } from "./model";
import type { Item } from "./rows";
import { itemTitle } from "./rows";
import type { Clock } from "./time";
import { dateText, hoursText, numberText, percentText, plainDate, slipText } from "./time";
import { word, wordFor } from "./texts";

export interface Column {
    readonly id: string;
    readonly label: string;
    readonly width: number;
    readonly isNumeric: boolean;
    readonly isShownFirst: boolean; // without having been chosen
    readonly isTree: boolean; // bears the triangles and the indentation
    readonly text: (item: Item) => string;
    readonly plain: (item: Item) => string; // for spreadsheets
}

export interface Setting {
    readonly model: Model;
    readonly clock: Clock;
    readonly baseline: number | null;
}

interface Optional {
    readonly plain?: (item: Item) => string;
    readonly isNumeric?: boolean;
    readonly isShownFirst?: boolean;
    readonly isTree?: boolean;
}

// Room for the title of a column, which is bold, as far as it is no long one of somebody's own.
const roomFor = (label: string): number => Math.min(Math.ceil(textWidth(label) * 1.12) + 18, 200);

function column(id: string, label: string, width: number, text: (item: Item) => string, rest: Optional = {}): Column {
    return {
        id,
        label,
        width: Math.max(width, roomFor(label)),
        isNumeric: rest.isNumeric ?? false,
        isShownFirst: rest.isShownFirst ?? false,
        isTree: rest.isTree ?? false,
        text,
        plain: rest.plain ?? text,
    };
}

const ofTask =
    (text: (task: Task) => string): ((item: Item) => string) =>
    (item) =>
        item.type === "task" ? text(item.task) : "";
const ofResource =
    (text: (resource: Resource) => string): ((item: Item) => string) =>
    (item) =>
        item.type === "resource" ? text(item.resource) : "";

// Room for any date of a year in the browser's language, its words being of different lengths.
let knownDateWidth = 0;
function dateWidth(): number {
    if (knownDateWidth === 0) {
        const late = Array.from({ length: 12 }, (_, month) => Date.UTC(2028, month, 28, 22, 58) / 1000);
        knownDateWidth = Math.ceil(Math.max(...late.map((seconds) => textWidth(dateText(seconds))))) + 20;
    }
    return knownDateWidth;
}

function dateColumn(
    id: string,
    label: string,
    clock: Clock,
    moment: (item: Item) => Moment | null | undefined,
    isShownFirst = false,
): Column {
    const shown =
        (form: (seconds: number) => string) =>
        (item: Item): string => {
            const value = moment(item);
            return value ? form(clock.shown(value)) : "";
        };
    return column(id, label, dateWidth(), shown(dateText), { plain: shown(plainDate), isShownFirst, isNumeric: true });
}

function numberColumn(
    id: string,
    label: string,
    width: number,
    value: (item: Item) => number | null | undefined,
    form: (value: number) => string,
    plain: (value: number) => string = String,
    isShownFirst = false,
): Column {
    const shown =
        (of: (value: number) => string) =>
        (item: Item): string => {
            const present = value(item);
            return present === null || present === undefined ? "" : of(present);
        };
    return column(id, label, width, shown(form), { plain: shown(plain), isShownFirst, isNumeric: true });
}

// Saved files hold a field as the document does.
function fieldColumn(name: string, clock: Clock, value: (item: Item) => string | undefined): Column {
    const shown = (item: Item): string => fieldText(value(item) ?? "", clock, dateText);
    return column(`field:${name}`, name, 130, shown, { plain: (item) => value(item) ?? "" });
}

const hours = (seconds: number): string => String(Math.round((seconds / 3600) * 1e4) / 1e4);
const resourceNames = (task: Task): string => task.resources.map((resource) => resource.name).join(", ");
const taskOf = (item: Item): Task | null => (item.type === "task" ? item.task : null);
const plannedOf = (item: Item, baseline: number | null) =>
    baseline === null ? null : taskOf(item)?.planned[baseline] ?? null;

export const numberColumnOf = (): Column =>
    column("number", word("number"), 58, ofTask((task) => task.number), { isShownFirst: true });

// How much later each row ends than the baseline planned: what who compares looks for first.
function slipColumn(baseline: number | null): Column[] {
    if (baseline === null) return [];
    const slip = (item: Item): number | null => {
        const task = taskOf(item);
        return task && slipOf(task, baseline);
    };
    return [numberColumn("slip", word("slip"), 138, slip, slipText, hours, true)];
}

function baselineColumns({ clock, baseline }: Setting): Column[] {
    if (baseline === null) return [];
    return [
        dateColumn("baseline-start", word("baselineStart"), clock, (item) => plannedOf(item, baseline)?.start),
        dateColumn("baseline-end", word("baselineEnd"), clock, (item) => plannedOf(item, baseline)?.end),
        numberColumn("baseline-effort", word("baselineEffort"), 90, (item) => plannedOf(item, baseline)?.effort, hoursText, hours),
    ];
}

// The columns of the outline.
export function planColumns(setting: Setting): Column[] {
    const { model, clock } = setting;
    return [
        numberColumnOf(),
        column("title", word("title"), 230, itemTitle, { isShownFirst: true, isTree: true }),
        ...slipColumn(setting.baseline),
        dateColumn("start", word("start"), clock, (item) => taskOf(item)?.start, true),
        dateColumn("end", word("end"), clock, (item) => taskOf(item)?.end, true),
        ...baselineColumns(setting),
        numberColumn("effort", word("effort"), 78, (item) => taskOf(item)?.effort, hoursText, hours, true),
        numberColumn("completion", word("completion"), 64, (item) => taskOf(item)?.completion, percentText, String, true),
        column("resources", word("resources"), 134, ofTask(resourceNames), { isShownFirst: true }),
        numberColumn("effort-done", word("effortDone"), 90, (item) => taskOf(item)?.effortDone, hoursText, hours),
        ...(["start-constraint-date", "end-constraint-date", "locked-start-date", "locked-end-date"] as const).map((name) =>
            dateColumn(name, word(name), clock, (item) => taskOf(item)?.dates.get(name)),
        ),
        ...model.facts.map(([name, value]) => column(`fact:${name}`, wordFor(name), 110, ofTask((task) => factText(name, value(task.row) ?? "", model.currency)), { plain: ofTask((task) => value(task.row) ?? "") })),
        ...model.fields.map(([name, value]) => fieldColumn(name, clock, (item) => (item.type === "task" ? value(item.task.row) : undefined))),
        column("note", word("note"), 200, ofTask((task) => task.note.replace(/\n/gu, " "))),
        column("id", word("id"), 64, ofTask((task) => task.id)),
    ];
}

// The names of all custom fields of resources, in the order of their first appearance.
function resourceFields(model: Model): string[] {
    return [...new Set(model.resources.flatMap((resource) => resource.fields.map(([name]) => name)))];
}

function taskTotal(item: Item): number | null {
    if (item.type === "task") return item.task.effort;
    if (item.type !== "resource" || item.resource.tasks.length === 0) return null;
    return item.resource.tasks.reduce((sum, task) => sum + (task.effort ?? 0), 0);
}

export function countOf(item: Item): string {
    if (item.type === "section") return numberText(item.section.resources.length);
    return item.type === "resource" ? numberText(item.resource.tasks.length) : "";
}

// The columns of the resources and their tasks.
export function resourceColumns({ model, clock }: Setting): Column[] {
    const money = moneyFormat(model.currency);
    const amount = (value: (resource: Resource) => number | null) => (item: Item) =>
        item.type === "resource" ? value(item.resource) : null;
    return [
        column("title", word("title"), 250, itemTitle, { isShownFirst: true, isTree: true }),
        column("tasks", word("tasks"), 80, countOf, { isNumeric: true, isShownFirst: true }),
        numberColumn("units", word("units"), 86, amount((resource) => resource.units), numberText, String, true),
        numberColumn("cost-per-hour", word("costPerHour"), 116, amount((resource) => resource.costPerHour), money, String, true),
        numberColumn("cost-per-use", word("costPerUse"), 116, amount((resource) => resource.costPerUse), money, String, true),
        numberColumn("effort", word("effort"), 96, taskTotal, hoursText, hours),
        dateColumn("start", word("start"), clock, (item) => taskOf(item)?.start),
        dateColumn("end", word("end"), clock, (item) => taskOf(item)?.end),
        column("email", word("email-address"), 180, ofResource((resource) => resource.facts.find(([name]) => name === "email-address")?.[1] ?? "")),
        ...resourceFields(model).map((name) =>
            fieldColumn(name, clock, (item) => (item.type === "resource" ? item.resource.fields.find(([key]) => key === name)?.[1] : undefined)),
        ),
        column("id", word("id"), 64, (item) => (item.type === "task" ? item.task.id : item.type === "resource" ? item.resource.id : "")),
    ];
}
