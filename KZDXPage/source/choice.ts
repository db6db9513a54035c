// Which columns are shown.

import type { Column } from "./columns";
import { make } from "./dom";
import { checkbox } from "./toolbar";

export function columnsChoice(columns: readonly Column[], shown: ReadonlySet<string>, change: (id: string, isShown: boolean) => void): HTMLElement {
    const list = make("div", { class: "choices" });
    for (const column of columns) {
        if (column.isTree) continue;
        list.append(checkbox(column.label, shown.has(column.id), (isShown) => change(column.id, isShown)));
    }
    return list;
}
