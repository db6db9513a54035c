// What of the plan does not reach the document: one section for each kind, each place with its task.

import { button, make } from "./dom";
import type { WrittenLoss } from "./contract";
import { lossText } from "./kinds";
import { meaningText } from "./meaning";
import type { Model, Resource, Task } from "./model";
import type { Paper } from "./print";
import { word } from "./texts";
import { numberText } from "./time";

type GoTo = (item: Task | Resource) => void;

function placeRow([path, name, value, id, meaning]: WrittenLoss["where"][number], model: Model, goTo: GoTo | null): HTMLElement {
    const item = model.byId.get(id);
    const title = item ? ("title" in item ? `${item.number} ${item.title}` : item.name) : name;
    return make(
        "tr",
        {},
        make("td", {}, item && goTo ? button(title === "" ? item.id : title, () => goTo(item), { class: "link" }) : title),
        make("td", {}, meaning ? meaningText(meaning) : value),
        make("td", { class: "path" }, path),
    );
}

const headOf = (): HTMLElement =>
    make("thead", {}, make("tr", {}, ...(["task", "value", "place"] as const).map((key) => make("th", { scope: "col" }, word(key)))));

// The places of a loss, and how many more there are.
function placeRows(loss: WrittenLoss, model: Model, goTo: GoTo | null): HTMLElement[] {
    const rows = loss.where.map((place) => placeRow(place, model, goTo));
    const more = loss.count - loss.where.length;
    return more > 0 ? [...rows, make("tr", {}, make("td", { colspan: 3 }, word("andMore", { count: more })))] : rows;
}

function lossSection(loss: WrittenLoss, model: Model, goTo: GoTo): HTMLElement {
    const table = make("table", {}, headOf());
    const body = make("tbody");
    const element = make(
        "details",
        { class: "loss", "data-kind": loss.kind },
        make("summary", {}, make("span", { class: "count" }, numberText(loss.count)), " ", make("span", { class: "what" }, lossText(loss)), " ", make("code", {}, loss.kind)),
        table,
    );
    table.append(body);
    // Rows are made when they are looked at: a plan may have thousands.
    element.addEventListener("toggle", () => {
        if (!element.open || body.childElementCount > 0) return;
        body.append(...placeRows(loss, model, goTo));
    });
    return element;
}

export function lossesView(model: Model, goTo: GoTo): HTMLElement {
    const losses = model.losses;
    const element = make("section", { class: "losses", tabindex: -1 });
    if (!losses) return element;
    element.append(
        make("h2", {}, word("lossesOf")),
        make("p", { class: "summary" }, word("lossesSummary", losses.leaves)),
        ...(losses.kinds.length > 0 ? losses.kinds.map((loss) => lossSection(loss, model, goTo)) : [make("p", {}, word("noLosses"))]),
    );
    return element;
}

// All losses on paper, everything unfolded.
export function printedLosses(model: Model, title: string, paper: Paper): HTMLElement {
    const { leaves, kinds } = model.losses ?? { leaves: {}, kinds: [] };
    const element = make("section", { class: `print-losses ${paper}` });
    element.append(
        make("h1", {}, title),
        make("p", { class: "note" }, `${word("lossesOf")} · ${model.source}`),
        make("p", {}, word("lossesSummary", leaves)),
        ...kinds.flatMap((loss) => [
            make("h2", {}, `${numberText(loss.count)} × ${lossText(loss)}`),
            make("table", {}, headOf(), make("tbody", {}, ...placeRows(loss, model, null))),
        ]),
    );
    if (kinds.length === 0) element.append(make("p", {}, word("noLosses")));
    return element;
}
