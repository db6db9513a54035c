// Which links touch a range of rows: those that end there, and those that only pass.

import type { Link, Model, Task } from "./model";
import type { Row } from "./rows";

export interface PlacedLink {
    readonly index: number;
    readonly link: Link;
    readonly from: number; // rows
    readonly to: number;
}

// Each link is kept at the few nodes of a binary tree over the rows that together are its range, so that a range of
// rows finds its links without looking at all.
export class LinkIndex {
    private readonly nodes = new Map<number, PlacedLink[]>();
    private readonly size: number;

    constructor(private readonly model: Model, rows: readonly Row[]) {
        const rowOf = new Map<Task, number>();
        rows.forEach((row, index) => {
            if (row.item.type === "task") rowOf.set(row.item.task, index);
        });
        let size = 1;
        while (size < rows.length) size *= 2;
        this.size = size;
        model.links.forEach((link, index) => {
            const from = rowOf.get(link.from);
            const to = rowOf.get(link.to);
            if (from !== undefined && to !== undefined) this.add({ index, link, from, to });
        });
    }

    linkAt(index: number): Link | undefined {
        return this.model.links[index];
    }

    private add(link: PlacedLink): void {
        let low = Math.min(link.from, link.to) + this.size;
        let high = Math.max(link.from, link.to) + this.size + 1;
        while (low < high) {
            if (low % 2 === 1) this.keep(low++, link);
            if (high % 2 === 1) this.keep(--high, link);
            low >>= 1;
            high >>= 1;
        }
    }

    private keep(node: number, link: PlacedLink): void {
        const kept = this.nodes.get(node);
        if (kept) kept.push(link);
        else this.nodes.set(node, [link]);
    }

    // The links that touch rows first to last, up to a number of them: those that end there come before those that pass.
    touching(first: number, last: number, most: number): PlacedLink[] {
        const found = new Map<number, PlacedLink>();
        const passing: PlacedLink[] = [];
        const visit = (node: number, from: number, to: number): void => {
            if (to < first || from > last) return;
            for (const link of this.nodes.get(node) ?? []) {
                const ends = (row: number): boolean => row >= first && row <= last;
                if (ends(link.from) || ends(link.to)) found.set(link.index, link);
                else if (passing.length < most) passing.push(link);
            }
            if (from === to) return;
            const middle = (from + to) >> 1;
            visit(2 * node, from, middle);
            visit(2 * node + 1, middle + 1, to);
        };
        visit(1, 0, this.size - 1);
        for (const link of passing) {
            if (found.size >= most) break;
            found.set(link.index, link);
        }
        return [...found.values()].slice(0, most);
    }
}
