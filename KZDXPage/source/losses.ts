// What of the plan does not reach the document: one section for each kind, each place with its task.

import { button, make } from "./dom";
import type { WrittenLoss } from "./contract";
import type { Model, Resource, Task } from "./model";
import { word } from "./texts";
import { numberText } from "./time";

function placeRow([path, name, value, id]: WrittenLoss["where"][number], model: Model, goTo: (item: Task | Resource) => void): HTMLElement {
    const item = model.byId.get(id);
    const title = item ? ("title" in item ? `${item.number} ${item.title}` : item.name) : name;
    return make(
        "tr",
        {},
        make("td", {}, item ? button(title === "" ? item.id : title, () => goTo(item), { class: "link" }) : title),
        make("td", {}, value),
        make("td", { class: "path" }, path),
    );
}

function lossSection(loss: WrittenLoss, model: Model, goTo: (item: Task | Resource) => void): HTMLElement {
    const table = make("table", {}, make("thead", {}, make("tr", {}, ...(["task", "value", "place"] as const).map((key) => make("th", { scope: "col" }, word(key))))));
    const body = make("tbody");
    const element = make(
        "details",
        { class: "loss", "data-kind": loss.kind },
        make("summary", {}, make("span", { class: "count" }, numberText(loss.count)), " ", make("span", { class: "what" }, loss.what), " ", make("code", {}, loss.kind)),
        table,
    );
    table.append(body);
    // Rows are made when they are looked at: a plan may have thousands.
    element.addEventListener("toggle", () => {
        if (!element.open || body.childElementCount > 0) return;
        body.append(...loss.where.map((place) => placeRow(place, model, goTo)));
        if (loss.where.length < loss.count) {
            body.append(make("tr", {}, make("td", { colspan: 3 }, word("andMore", { count: loss.count - loss.where.length }))));
        }
    });
    return element;
}

export function lossesView(model: Model, goTo: (item: Task | Resource) => void): HTMLElement {
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
