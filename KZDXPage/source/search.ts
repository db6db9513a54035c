// Which tasks a search and the filters show.

import { missedDates } from "./dates";
import type { Model, Resource, Task } from "./model";
import type { Filter } from "./rows";

export interface Wanted {
    readonly text: string;
    readonly resource: Resource | "none" | null;
    readonly isMissed: boolean;
    readonly field: string | null; // none: any
    readonly fieldText: string;
}

export const everything: Wanted = { text: "", resource: null, isMissed: false, field: null, fieldText: "" };

// Letters alike in either case, whatever marks they bear.
const plain = (text: string): string => text.normalize("NFKD").replace(/\p{M}/gu, "").toLowerCase();

// What of each task can be found, made when it is first searched for.
export class Haystack {
    private readonly texts: (string | undefined)[] = [];

    constructor(private readonly model: Model) {}

    textOf(task: Task): string {
        return (this.texts[task.row] ??= plain(
            [
                task.title,
                task.number,
                task.id,
                task.note,
                ...task.resources.map((resource) => resource.name),
                ...this.model.fields.map(([, value]) => value(task.row) ?? ""),
            ].join("\n"),
        ));
    }
}

export function filterFor(wanted: Wanted, model: Model, haystack: Haystack): Filter {
    const conditions: ((task: Task) => boolean)[] = [];
    const words = plain(wanted.text).split(/\s+/u).filter((word) => word !== "");
    if (words.length > 0) {
        conditions.push((task) => {
            const text = haystack.textOf(task);
            return words.every((word) => text.includes(word));
        });
    }
    const { resource } = wanted;
    if (resource === "none") conditions.push((task) => task.resources.length === 0);
    else if (resource) conditions.push((task) => task.resources.includes(resource));
    if (wanted.isMissed) conditions.push((task) => missedDates(task).length > 0);
    if (wanted.field !== null || wanted.fieldText !== "") {
        const fields = model.fields.filter(([name]) => wanted.field === null || name === wanted.field);
        const part = plain(wanted.fieldText);
        conditions.push((task) => fields.some(([, value]) => {
            const text = value(task.row);
            return text !== undefined && plain(text).includes(part);
        }));
    }
    return conditions.length === 0 ? null : (task) => conditions.every((condition) => condition(task));
}
