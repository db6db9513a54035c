// What is drawn for a row, a link or the time behind them: plain shapes, the same for the screen, print and saved files.

import type { DateName, Link, Moment, Piece, Task } from "./model";
import type { TimeScale } from "./scale";
import type { Clock } from "./time";
import { longDateText } from "./time";
import { word } from "./texts";
import { missedDates } from "./dates";

export interface Shape {
    readonly tag: "rect" | "path" | "text";
    readonly look: string; // the classes of its style
    readonly x?: number;
    readonly y?: number;
    readonly width?: number;
    readonly height?: number;
    readonly round?: number;
    readonly path?: string;
    readonly text?: string;
    readonly title?: string; // told when pointed at
}

export const rowHeight = 30;
export const barTop = 8;
export const barHeight = 13;
export const middle = barTop + barHeight / 2;
// About what a letter of a caption takes.
const letter = 6.6;
// How far a link leaves its bar before it turns.
const stub = 9;
// Far outside of the window everything is the same.
const margin = 2000;

export interface Drawing {
    readonly scale: TimeScale;
    readonly clock: Clock;
    readonly baseline: number | null;
}

const round = (value: number): number => Math.round(value * 10) / 10;

function place(drawing: Drawing, moment: Moment): number {
    const x = drawing.scale.x(drawing.clock.shown(moment));
    return round(Math.min(drawing.scale.width + margin, Math.max(-margin, x)));
}

export interface Extent {
    readonly from: number;
    readonly to: number;
}

function extent(drawing: Drawing, start: Moment | null, end: Moment | null): Extent | null {
    if (!start && !end) return null;
    const from = place(drawing, (start ?? end) as Moment);
    const to = place(drawing, (end ?? start) as Moment);
    return { from: Math.min(from, to), to: Math.max(from, to) };
}

function isVisible(drawing: Drawing, { from, to }: Extent): boolean {
    return to >= -40 && from <= drawing.scale.width + 40;
}

const rectangle = (look: string, { from, to }: Extent, y: number, height: number, corner = 0): Shape => ({
    tag: "rect",
    look,
    x: from,
    y,
    width: Math.max(round(to - from), 2),
    height,
    round: corner,
});

export const diamond = (x: number, y: number, size: number): string =>
    `M${x} ${y - size}L${x + size} ${y}L${x} ${y + size}L${x - size} ${y}Z`;

// A group's bar: a beam with a foot at each end.
export function beam({ from, to }: Extent): string {
    const top = barTop + 1;
    const foot = Math.min(5, Math.max((to - from) / 2, 1));
    return `M${from} ${top}H${to}V${top + 11}L${round(to - foot)} ${top + 5}H${round(from + foot)}L${from} ${top + 11}Z`;
}

function barShapes(drawing: Drawing, start: Moment | null, end: Moment | null, completion: number): Shape[] {
    const bar = extent(drawing, start, end);
    if (!bar || !isVisible(drawing, bar)) return [];
    const shapes = [rectangle("bar", bar, barTop, barHeight, 3)];
    if (completion > 0) {
        const done = { from: bar.from, to: bar.from + (bar.to - bar.from) * completion };
        shapes.push(rectangle("done", done, barTop + 4, barHeight - 8, 1.5));
    }
    return shapes;
}

// The pieces of a split task, with its completion spread over them in their order, and a dotted line over the gaps.
function pieceShapes(drawing: Drawing, pieces: readonly Piece[], completion: number): Shape[] {
    const length = (piece: Piece): number =>
        piece.start && piece.end ? Math.max(0, piece.end.wall - piece.start.wall) : 0;
    const total = pieces.reduce((sum, piece) => sum + length(piece), 0);
    let done = total * completion;
    const shapes: Shape[] = [];
    let last: Extent | null = null;
    for (const piece of pieces) {
        const here = extent(drawing, piece.start, piece.end);
        if (!here) continue;
        if (last && here.from > last.to) {
            shapes.push({ tag: "path", look: "gap", path: `M${last.to} ${middle}H${here.from}` });
        }
        const part = length(piece) > 0 ? Math.min(1, Math.max(0, done / length(piece))) : 0;
        done -= length(piece);
        shapes.push(...barShapes(drawing, piece.start, piece.end, part));
        last = here;
    }
    return shapes;
}

function mainShapes(drawing: Drawing, task: Task): Shape[] {
    const whole = extent(drawing, task.start, task.end);
    if (!whole) return [];
    if (task.kind === "milestone") {
        return [{ tag: "path", look: task.completion >= 1 ? "milestone reached" : "milestone", path: diamond(whole.from, middle, 7) }];
    }
    if (task.kind === "group") {
        const shapes: Shape[] = [{ tag: "path", look: "group", path: beam(whole) }];
        if (task.completion > 0) {
            const done = { from: whole.from, to: whole.from + (whole.to - whole.from) * task.completion };
            shapes.push(rectangle("group-done", done, barTop - 2, 2.5));
        }
        return shapes;
    }
    return task.pieces.length > 0
        ? pieceShapes(drawing, task.pieces, task.completion)
        : barShapes(drawing, task.start, task.end, task.completion);
}

function baselineShapes(drawing: Drawing, task: Task): Shape[] {
    const planned = drawing.baseline === null ? null : task.planned[drawing.baseline];
    const whole = planned ? extent(drawing, planned.start, planned.end) : null;
    if (!planned || !whole || !isVisible(drawing, whole)) return [];
    const top = barTop + barHeight + 2;
    if (task.kind === "milestone") {
        return [{ tag: "path", look: "baseline", path: diamond(whole.from, top + 2, 4) }];
    }
    const parts = planned.pieces.length > 0 ? planned.pieces.map((piece) => extent(drawing, piece.start, piece.end)) : [whole];
    return parts.flatMap((part) => (part ? [rectangle("baseline", part, top, 4.5, 1)] : []));
}

// Marks of the dates that bound a task: a bracket for the earliest start and the latest end, a bolt for a locked date.
// One that is missed is filled and has an exclamation mark beside it.
export function markPath(name: DateName, x: number): string {
    const top = barTop - 3;
    const bottom = barTop + barHeight + 3;
    switch (name) {
        case "start-constraint-date":
            return `M${x + 4} ${top}H${x}V${bottom}H${x + 4}`;
        case "end-constraint-date":
            return `M${x - 4} ${top}H${x}V${bottom}H${x - 4}`;
        default:
            return `M${x} ${bottom}V${top + 4}M${x - 3.5} ${top - 2}h7v6h-7z`;
    }
}

function markShapes(drawing: Drawing, task: Task): Shape[] {
    const missed = missedDates(task);
    return [...task.dates].flatMap(([name, moment]) => {
        if (name === "leveled-start") return [];
        const x = place(drawing, moment);
        if (!isVisible(drawing, { from: x, to: x })) return [];
        const isMissed = missed.includes(name);
        const told = `${word(name)}: ${longDateText(drawing.clock.shown(moment))}${isMissed ? ` (${word("missed")})` : ""}`;
        const mark: Shape = { tag: "path", look: isMissed ? "mark missed" : "mark", path: markPath(name, x), title: told };
        if (!isMissed) return [mark];
        return [mark, { tag: "text", look: "warning", x: x + (name.includes("start") ? -9 : 4), y: barTop + 2, text: "!", title: told }];
    });
}

// How far links reach to the right of a task's end on its own row; what reaches far is crossed by the caption.
function reachOfLinks(drawing: Drawing, task: Task, end: number): number {
    const others = [...task.after, ...task.before].flatMap((link) => {
        const other = link.from === task ? link.to : link.from;
        const reach = link.kind === "FF" ? ends(drawing, other)?.to : undefined;
        return reach === undefined ? [] : [reach];
    });
    return others.reduce((most, reach) => (reach > most && reach < end + 60 ? reach : most), end) + stub;
}

// Behind the bar, and behind the links and marks that a text of that width met there.
function captionPlace(drawing: Drawing, task: Task, end: number, width: number): number {
    const places = [...task.dates].flatMap(([name, moment]) => (name === "leveled-start" ? [] : [place(drawing, moment)]));
    const begin = reachOfLinks(drawing, task, ends(drawing, task)?.to ?? end) + 8;
    return places
        .sort((one, other) => one - other)
        .reduce((x, mark) => (mark > x - 12 && mark < x + width + 6 ? mark + 12 : x), begin);
}

const names = (task: Task): string => task.resources.map((resource) => resource.name).join(", ");

// Everything of a task on its row, from y 0 to the height of a row.
export function taskShapes(drawing: Drawing, task: Task): Shape[] {
    const whole = extent(drawing, task.start, task.end);
    const shapes = [...baselineShapes(drawing, task), ...mainShapes(drawing, task), ...markShapes(drawing, task)];
    const caption = names(task);
    if (whole && caption !== "" && isVisible(drawing, whole) && task.kind !== "group") {
        const shown = caption.length > 60 ? `${caption.slice(0, 59)}…` : caption;
        shapes.push({ tag: "text", look: "caption", x: captionPlace(drawing, task, whole.to, shown.length * letter), y: middle + 4, text: shown });
    }
    return shapes;
}

// Where a task's own bar begins and ends, for links.
function ends(drawing: Drawing, task: Task): Extent | null {
    const whole = extent(drawing, task.start, task.end);
    if (!whole || task.kind !== "milestone") return whole;
    return { from: whole.from - 6, to: whole.from + 6 };
}

// "FS – Finish to start: 1.1 Dig → 1.2 Paint"
export function linkText(link: Link): string {
    const kind = link.kind === "" ? "?" : `${link.kind} – ${word(`link:${link.kind}`)}`;
    return `${kind}: ${link.from.number} ${link.from.title} → ${link.to.number} ${link.to.title}`;
}

// A link from the middle of one row to the middle of another, `rows` rows further down (or up): an arrow that leaves
// the end or the start of the first and meets the start or the end of the second.
export function linkShapes(drawing: Drawing, link: Link, fromRow: number, toRow: number): Shape[] {
    const from = ends(drawing, link.from);
    const to = ends(drawing, link.to);
    if (!from || !to) return [];
    const kind = link.kind === "" ? "FS" : link.kind;
    const x1 = kind.startsWith("F") ? from.to : from.from;
    const x2 = kind.endsWith("S") ? to.from : to.to;
    if (Math.max(x1, x2) < -40 || Math.min(x1, x2) > drawing.scale.width + 40) return [];
    const y1 = fromRow * rowHeight + middle;
    const y2 = toRow * rowHeight + middle;
    const out = kind.startsWith("F") ? 1 : -1; // to the right, or to the left
    const into = kind.endsWith("S") ? 1 : -1;
    const head = into * 5;
    const tip = `M${x2} ${y2}L${x2 - head} ${y2 - 3.5}V${y2 + 3.5}Z`;
    return [
        { tag: "path", look: "link", path: route(x1, y1, x2 - head, y2, out * stub, into * stub), title: linkText(link) },
        { tag: "path", look: "arrow", path: tip },
    ];
}

function route(x1: number, y1: number, x2: number, y2: number, out: number, into: number): string {
    if (y1 === y2) return `M${x1} ${y1}H${x2}`;
    if (Math.sign(out) !== Math.sign(into)) {
        // Both on the same side: around the farther one.
        const side = out > 0 ? Math.max(x1, x2) + out : Math.min(x1, x2) + out;
        return `M${x1} ${y1}H${side}V${y2}H${x2}`;
    }
    if ((x2 - x1) * out >= 0) {
        const turn = Math.abs(x2 - x1) > Math.abs(out) ? x1 + out : round((x1 + x2) / 2);
        return `M${x1} ${y1}H${turn}V${y2}H${x2}`;
    }
    const between = y1 + Math.sign(y2 - y1) * (rowHeight / 2);
    return `M${x1} ${y1}H${x1 + out}V${between}H${x2 - into}V${y2}H${x2}`;
}
