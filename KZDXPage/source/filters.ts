// The panel of the filters.

import { button, make } from "./dom";
import type { Model } from "./model";
import type { Wanted } from "./search";
import { checkbox, select } from "./toolbar";
import { word } from "./texts";

export function filterPanel(model: Model, wanted: Wanted, want: (part: Partial<Wanted>) => void, clear: () => void): HTMLElement {
    const resources = [
        { value: "", label: word("allResources") },
        { value: "none", label: word("withoutResource") },
        ...model.resources.map((resource) => ({ value: String(resource.index), label: resource.name === "" ? resource.id : resource.name })),
    ];
    const resourceOf = (value: string): Wanted["resource"] =>
        value === "none" ? "none" : model.resources.find((resource) => String(resource.index) === value) ?? null;
    const panel = make(
        "div",
        { class: "filters" },
        select(word("resource"), resources, "", (value) => want({ resource: resourceOf(value) })),
        checkbox(word("missedDates"), wanted.isMissed, (isMissed) => want({ isMissed })),
    );
    if (model.fields.length > 0) {
        const fields = [{ value: "", label: word("anyField") }, ...model.fields.map(([name], index) => ({ value: String(index), label: name }))];
        const text = make("input", { type: "text", "aria-label": word("fieldHolds"), placeholder: word("fieldHolds") });
        text.addEventListener("input", () => want({ fieldText: text.value }));
        panel.append(
            select(word("field"), fields, "", (value) => want({ field: value === "" ? null : model.fields[Number(value)]?.[0] ?? null })),
            text,
        );
    }
    panel.append(button(word("clear"), clear, { class: "clear" }));
    return panel;
}
