// The rows of a table: what is unfolded and passes the filter, in their order.

import type { Model, Resource, Task } from "./model";
import { groupsOf } from "./model";
import { word, type Word } from "./texts";

export interface Section {
    readonly key: Word;
    readonly resources: readonly Resource[];
}

export type Item =
    | { readonly type: "task"; readonly task: Task }
    | { readonly type: "resource"; readonly resource: Resource }
    | { readonly type: "section"; readonly section: Section };

export interface Row {
    readonly key: string;
    readonly item: Item;
    readonly level: number;
    readonly parent: number; // its row; -1 at the top
    readonly hasChildren: boolean;
    readonly isOpen: boolean;
    readonly place: number; // among the rows of its group, from 1
    readonly siblings: number;
}

// A tree of items; where it is asked for children it gives those that are shown.
export interface Tree {
    readonly roots: () => readonly Item[];
    readonly children: (item: Item) => readonly Item[];
    readonly key: (item: Item, above: string) => string;
}

export type Filter = ((task: Task) => boolean) | null;

const taskItem = (task: Task): Item => ({ type: "task", task });

// The tasks that a filter shows: those that match, and the groups that they are in.
export function shownTasks(tasks: readonly Task[], filter: Filter): Set<Task> | null {
    if (!filter) return null;
    const shown = new Set<Task>();
    for (const task of tasks) {
        if (!filter(task)) continue;
        shown.add(task);
        for (const group of groupsOf(task)) {
            if (shown.has(group)) break;
            shown.add(group);
        }
    }
    return shown;
}

export function planTree(model: Model, filter: Filter): Tree {
    const shown = shownTasks(model.tasks, filter);
    const items = (tasks: readonly Task[]): Item[] =>
        (shown ? tasks.filter((task) => shown.has(task)) : tasks).map(taskItem);
    return {
        roots: () => items(model.roots),
        children: (item) => (item.type === "task" ? items(item.task.children) : []),
        key: (item) => (item.type === "task" ? `t${item.task.row}` : ""),
    };
}

export function sectionsOf(model: Model): Section[] {
    const staff = model.resources.filter((resource) => resource.type === "Staff");
    const material = model.resources.filter((resource) => resource.isMaterial);
    const others = model.resources.filter((resource) => resource.type !== "Staff" && !resource.isMaterial);
    const sections: Section[] = [
        { key: "staff", resources: staff },
        { key: "material", resources: material },
        { key: "otherResources", resources: others },
    ];
    return sections.filter((section) => section.resources.length > 0);
}

// Resources by kind, and below each its tasks.
export function resourceTree(model: Model, filter: Filter): Tree {
    const sections = sectionsOf(model);
    const tasksOf = (resource: Resource): Task[] => (filter ? resource.tasks.filter(filter) : resource.tasks);
    const isShown = (resource: Resource): boolean => !filter || tasksOf(resource).length > 0;
    return {
        roots: () => sections.map((section) => ({ type: "section", section })),
        children: (item) => {
            if (item.type === "section") {
                return item.section.resources.filter(isShown).map((resource) => ({ type: "resource", resource }));
            }
            return item.type === "resource" ? tasksOf(item.resource).map(taskItem) : [];
        },
        key: (item, above) => {
            if (item.type === "section") return item.section.key;
            return item.type === "resource" ? `r${item.resource.index}` : `${above}/t${item.task.row}`;
        },
    };
}

// All rows that are shown, without recursion: outlines may be deep.
export function rowsOf(tree: Tree, isFolded: (key: string) => boolean): Row[] {
    const rows: Row[] = [];
    interface Step {
        readonly items: readonly Item[];
        readonly level: number;
        readonly parent: number;
        next: number;
    }
    const steps: Step[] = [{ items: tree.roots(), level: 1, parent: -1, next: 0 }];
    for (let step = steps[steps.length - 1]; step; step = steps[steps.length - 1]) {
        const item = step.items[step.next];
        if (item === undefined) {
            steps.pop();
            continue;
        }
        step.next += 1;
        const key = tree.key(item, rows[step.parent]?.key ?? "");
        const children = tree.children(item);
        const hasChildren = children.length > 0;
        const isOpen = hasChildren && !isFolded(key);
        rows.push({
            key,
            item,
            level: step.level,
            parent: step.parent,
            hasChildren,
            isOpen,
            place: step.next,
            siblings: step.items.length,
        });
        if (isOpen) steps.push({ items: children, level: step.level + 1, parent: rows.length - 1, next: 0 });
    }
    return rows;
}

export function itemTitle(item: Item): string {
    switch (item.type) {
        case "task":
            return item.task.title;
        case "resource":
            return item.resource.name;
        case "section":
            return word(item.section.key);
    }
}
