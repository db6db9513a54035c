// The document in the page's own form: objects with references instead of columns with indices.

import type { Column, DateColumn, WrittenDate, WrittenDocument, WrittenEvent, WrittenPiece, WrittenResource, WrittenSchedule } from "./contract";

// A time as it is written: what the clock on the wall shows, in seconds since 1970, and that clock's offset.
export interface Moment {
    readonly wall: number;
    readonly offset: number;
}

export type Kind = "task" | "group" | "milestone" | "split";
export type LinkKind = "FF" | "FS" | "SF" | "SS" | "";

export interface Piece {
    readonly start: Moment | null;
    readonly end: Moment | null;
    readonly effort: number | null;
}

// What a baseline says of a task.
export interface Planned {
    readonly start: Moment | null;
    readonly end: Moment | null;
    readonly effort: number | null;
    readonly pieces: readonly Piece[];
}

export interface Task {
    readonly row: number; // its place in the outline
    readonly id: string;
    readonly title: string;
    readonly kind: Kind;
    readonly level: number;
    readonly number: string; // "1.2.3"
    readonly parent: Task | null;
    readonly children: Task[];
    readonly isOutside: boolean; // no group leads to it
    readonly start: Moment | null;
    readonly end: Moment | null;
    readonly effort: number | null; // seconds of work
    readonly effortDone: number | null;
    readonly completion: number; // 0 to 1
    readonly pieces: readonly Piece[];
    readonly dates: ReadonlyMap<DateName, Moment>; // what bounds it
    readonly note: string;
    readonly resources: readonly Resource[];
    readonly before: Link[]; // the links that it depends by
    readonly after: Link[];
    readonly planned: (Planned | null)[]; // by baseline
}

export interface Link {
    readonly from: Task;
    readonly to: Task;
    readonly kind: LinkKind;
}

export interface Span {
    readonly start: Moment;
    readonly end: Moment;
    readonly calendar: string; // its name, where it has one of its own
}

export interface Schedule {
    readonly days: readonly (readonly (readonly [number, number])[] | null)[]; // from Sunday on; null: not said
    readonly off: readonly Span[];
    readonly over: readonly Span[];
}

export interface Resource {
    readonly index: number;
    readonly id: string;
    readonly name: string;
    readonly type: string;
    readonly isMaterial: boolean;
    readonly costPerUse: number | null;
    readonly costPerHour: number | null;
    readonly units: number | null;
    readonly note: string;
    readonly fields: readonly (readonly [string, string])[];
    readonly facts: readonly (readonly [string, string])[];
    readonly schedule: Schedule | null;
    readonly tasks: Task[];
}

export interface Baseline {
    readonly index: number;
    readonly name: string;
    readonly start: Moment | null;
    readonly end: Moment | null;
    readonly gone: readonly (readonly [string, string])[];
}

export const dateNames = [
    "start-constraint-date",
    "end-constraint-date",
    "locked-start-date",
    "locked-end-date",
    "leveled-start",
] as const;
export type DateName = (typeof dateNames)[number];

// A value of each row; `undefined` where there is none.
type Values = (row: number) => string | undefined;
export type Named = readonly [name: string, value: Values];

export interface Model {
    readonly title: string;
    readonly source: string;
    readonly maker: string;
    readonly currency: string;
    readonly hoursPerDay: number;
    readonly tasks: readonly Task[];
    readonly roots: readonly Task[];
    readonly links: readonly Link[];
    readonly resources: readonly Resource[];
    readonly baselines: readonly Baseline[];
    readonly comparison: number | null;
    readonly schedule: Schedule | null;
    readonly start: Moment | null;
    readonly end: Moment | null;
    readonly isFixedEnd: boolean;
    readonly granularity: string | null;
    readonly fields: readonly Named[]; // custom fields of tasks
    readonly facts: readonly Named[]; // all else that tasks hold
    readonly losses: WrittenDocument["losses"];
    readonly notes: readonly string[];
    readonly byId: ReadonlyMap<string, Task | Resource>;
    // The offset of the clock on the wall at a time that it shows, taken from the nearest date of the document.
    readonly offsetAt: (wall: number) => number;
}

function reader<T>(column: Column<T>): (row: number) => T | undefined {
    if (column === null || column === undefined) return () => undefined;
    if (Array.isArray(column)) return (row) => column[row] ?? undefined;
    if ("all" in column) return () => column.all;
    if ("at" in column) {
        return (row) => {
            const at = column.at[row];
            return at === undefined || at < 0 ? undefined : column.values[at];
        };
    }
    const values = new Map<number, T>();
    column.rows.forEach((row, index) => values.set(row, column.values[index] as T));
    return (row) => values.get(row);
}

function dateReader(column: DateColumn | undefined): (row: number) => Moment | null {
    if (!column) return () => null;
    const at = reader(column.at);
    const offset = reader(column.offset);
    return (row) => {
        const value = at(row);
        return value === undefined ? null : { wall: column.base + value * column.unit, offset: offset(row) ?? 0 };
    };
}

const momentOf = (date: WrittenDate): Moment | null => (date ? { wall: date[0], offset: date[1] } : null);

const piecesOf = (written: WrittenPiece[] | undefined): readonly Piece[] =>
    written?.map(([start, end, effort]) => ({ start: momentOf(start), end: momentOf(end), effort })) ?? [];

function scheduleOf(written: WrittenSchedule | null): Schedule | null {
    if (!written) return null;
    const spans = (events: WrittenEvent[]): Span[] =>
        events.flatMap(([start, end, calendar]) => {
            const from = momentOf(start);
            const to = momentOf(end);
            return from && to ? [{ start: from, end: to, calendar: calendar ?? "" }] : [];
        });
    return { days: written.days, off: spans(written.off), over: spans(written.over) };
}

const numberOf = (text: string | undefined): number | null => {
    const value = text === undefined || text === "" ? NaN : Number(text);
    return Number.isFinite(value) ? value : null;
};

// Amounts that are no numbers are told as they stand.
function unreadable(written: WrittenResource): [string, string][] {
    const names = ["units-available", "cost-per-hour", "cost-per-use"] as const;
    return names.flatMap((name) => {
        const text = written[name];
        return text !== undefined && numberOf(text) === null ? [[name, text] as [string, string]] : [];
    });
}

function resourcesOf(document: WrittenDocument): (Resource | null)[] {
    return document.scenario.resources.map((written, index) =>
        written === null
            ? null
            : {
                  index,
                  id: written.id,
                  name: written.name ?? "",
                  type: written.type ?? "",
                  isMaterial: written.type === "Material",
                  costPerUse: numberOf(written["cost-per-use"]),
                  costPerHour: numberOf(written["cost-per-hour"]),
                  units: numberOf(written["units-available"]),
                  note: written.note ?? "",
                  fields: written.fields,
                  facts: [...written.facts, ...unreadable(written)],
                  schedule: scheduleOf(written.schedule),
                  tasks: [],
              },
    );
}

// Numbers of the outline: "1", "1.1", "1.2", "2" ...
function numbering(): (level: number) => string {
    const counts: number[] = [];
    return (level) => {
        while (counts.length < level) counts.push(0);
        counts.length = level;
        counts[level - 1] = (counts[level - 1] ?? 0) + 1;
        return counts.join(".");
    };
}

function tasksOf(document: WrittenDocument, resources: (Resource | null)[]): Task[] {
    const written = document.scenario.tasks;
    const level = reader(written.level);
    const id = reader(written.id);
    const title = reader(written.title);
    const kind = reader(written.kind);
    const start = dateReader(written["start-date"]);
    const end = dateReader(written["end-date"]);
    const effort = reader(written.effort);
    const effortDone = reader(written["effort-done"]);
    const completion = reader(written["completion-percentage"]);
    const pieces = reader(written.pieces);
    const note = reader(written.note);
    const assigned = reader(written.assigned);
    const bounds = dateNames.map((name) => [name, dateReader(written[name])] as const);
    const numberFor = numbering();
    const open: Task[] = [];
    const tasks: Task[] = [];
    for (let row = 0; row < written.count; ++row) {
        const depth = level(row) ?? 1;
        open.length = Math.min(open.length, depth - 1);
        const parent = depth > 1 ? open[depth - 2] ?? null : null;
        const dates = new Map<DateName, Moment>();
        for (const [name, read] of bounds) {
            const moment = read(row);
            if (moment) dates.set(name, moment);
        }
        const task: Task = {
            row,
            id: id(row) ?? "",
            title: title(row) ?? "",
            kind: (kind(row) ?? "task") as Kind,
            level: depth,
            number: numberFor(depth),
            parent,
            children: [],
            isOutside: row >= written.outside,
            start: start(row),
            end: end(row),
            effort: effort(row) ?? null,
            effortDone: effortDone(row) ?? null,
            completion: Math.min(1, Math.max(0, completion(row) ?? 0)),
            pieces: piecesOf(pieces(row)),
            dates,
            note: note(row) ?? "",
            resources: (assigned(row) ?? []).flatMap((index) => resources[index] ?? []),
            before: [],
            after: [],
            planned: [],
        };
        parent?.children.push(task);
        task.resources.forEach((resource) => resource.tasks.push(task));
        open.push(task);
        tasks.push(task);
    }
    return tasks;
}

function linkTasks(document: WrittenDocument, tasks: Task[]): Link[] {
    const { from, to, kind } = document.scenario.links;
    const kinds: LinkKind[] = ["FF", "FS", "SF", "SS", ""];
    return from.flatMap((before, index) => {
        const source = tasks[before];
        const target = tasks[to[index] ?? -1];
        if (!source || !target) return [];
        const link = { from: source, to: target, kind: kinds[Number(kind[index])] ?? "" };
        source.after.push(link);
        target.before.push(link);
        return [link];
    });
}

function baselinesOf(document: WrittenDocument, tasks: Task[]): Baseline[] {
    return document.baselines.map((written, index) => {
        tasks.forEach((task) => task.planned.push(null));
        const start = dateReader(written.tasks["start-date"]);
        const end = dateReader(written.tasks["end-date"]);
        const effort = reader(written.tasks.effort);
        const pieces = reader(written.tasks.pieces);
        for (let row = 0; row < written.tasks.count; ++row) {
            const task = tasks[written.tasks.row ? written.tasks.row[row] ?? -1 : row];
            if (task) {
                task.planned[index] = {
                    start: start(row),
                    end: end(row),
                    effort: effort(row) ?? null,
                    pieces: piecesOf(pieces(row)),
                };
            }
        }
        return {
            index,
            name: written.name,
            start: momentOf(written["start-date"]),
            end: momentOf(written["end-date"]),
            gone: written.tasks.gone,
        };
    });
}

// The offset of the nearest known date, since nothing else in a document tells its zone.
function offsetsOf(moments: Moment[]): (wall: number) => number {
    const known = moments.slice().sort((one, other) => one.wall - other.wall);
    const changes: Moment[] = [];
    known.forEach((moment, index) => {
        const last = changes[changes.length - 1];
        if (!last) {
            changes.push({ wall: -Infinity, offset: moment.offset });
        } else if (last.offset !== moment.offset) {
            const before = known[index - 1] as Moment;
            changes.push({ wall: (before.wall + moment.wall) / 2, offset: moment.offset });
        }
    });
    return (wall) => {
        let low = 0;
        let high = changes.length;
        while (low + 1 < high) {
            const middle = (low + high) >> 1;
            if ((changes[middle] as Moment).wall <= wall) low = middle;
            else high = middle;
        }
        return changes[low]?.offset ?? 0;
    };
}

function namedOf(pairs: [string, Column<string>][]): Named[] {
    return pairs.map(([name, column]) => [name, reader(column)] as const);
}

function hoursPerDay(settings: Record<string, unknown>): number {
    const format = settings["effort-format"] as Record<string, number> | undefined;
    const hours = format?.["hours-per-day"];
    return typeof hours === "number" && hours > 0 ? hours : 8;
}

export function modelOf(document: WrittenDocument): Model {
    const resources = resourcesOf(document);
    const tasks = tasksOf(document, resources);
    const links = linkTasks(document, tasks);
    const baselines = baselinesOf(document, tasks);
    const shown = resources.filter((resource): resource is Resource => resource !== null);
    const byId = new Map<string, Task | Resource>();
    [...shown, ...tasks].forEach((item) => {
        if (item.id !== "" && !byId.has(item.id)) byId.set(item.id, item);
    });
    const head = document.scenario;
    const start = momentOf(head["start-date"]) ?? momentOf(head.project?.["start-date"] ?? null);
    const end = momentOf(head["end-date"]) ?? momentOf(head.project?.["end-date"] ?? null);
    const moments = tasks.flatMap((task) => [task.start, task.end]);
    const currency = document.settings["currency-format"];
    return {
        title: document.title,
        source: document.source,
        maker: document.maker,
        currency: typeof currency === "string" ? currency : "1,234.56",
        hoursPerDay: hoursPerDay(document.settings),
        tasks,
        roots: tasks.filter((task) => task.parent === null),
        links,
        resources: shown,
        baselines,
        comparison: document.comparison,
        schedule: scheduleOf(head.schedule),
        start,
        end,
        isFixedEnd: head["fixed-end"],
        granularity: head.granularity,
        fields: namedOf(document.scenario.tasks.fields),
        facts: namedOf(document.scenario.tasks.facts),
        losses: document.losses,
        notes: document.notes,
        byId,
        offsetAt: offsetsOf([...moments, start, end].filter((moment): moment is Moment => moment !== null)),
    };
}

// The ancestors of a task, from its own group upwards.
export function* groupsOf(task: Task): Generator<Task> {
    for (let group = task.parent; group; group = group.parent) yield group;
}
