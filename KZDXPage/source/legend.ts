// What the shapes of the chart mean.

import { make, makeSVG } from "./dom";
import { barHeight, barTop, beam, diamond, markPath, middle, type Shape } from "./drawing";
import { shapeElement } from "./svg";
import { word, type Word } from "./texts";

const width = 36;
const height = 28;
const bar: Shape = { tag: "rect", look: "bar", x: 3, y: barTop, width: 30, height: barHeight, round: 3 };
const half = (x: number): Shape => ({ ...bar, x, width: 11 });
const mark = (look: string, path: string): Shape => ({ tag: "path", look, path });

const entries: readonly (readonly [Word, readonly Shape[]])[] = [
    ["task", [bar]],
    ["completion", [bar, { tag: "rect", look: "done", x: 3, y: barTop + 4, width: 18, height: barHeight - 8, round: 1.5 }]],
    ["split", [half(2), mark("gap", `M13 ${middle}H23`), half(23)]],
    ["group", [mark("group", beam({ from: 3, to: 33 }))]],
    ["milestone", [mark("milestone", diamond(11, middle, 7)), mark("milestone reached", diamond(27, middle, 7))]],
    ["legendLink", [mark("link", `M3 6H18V${middle}H26`), mark("arrow", `M31 ${middle}L26 ${middle - 3.5}V${middle + 3.5}Z`)]],
    ["legendBound", [mark("mark", markPath("start-constraint-date", 9)), mark("mark", markPath("end-constraint-date", 27))]],
    ["legendLocked", [mark("mark", markPath("locked-start-date", 18))]],
    ["legendMissed", [mark("mark missed", markPath("end-constraint-date", 16)), { tag: "text", look: "warning", x: 20, y: barTop + 4, text: "!" }]],
    ["baseline", [{ tag: "rect", look: "baseline", x: 3, y: 12, width: 30, height: 4.5, round: 1 }]],
    ["legendRest", [{ tag: "rect", look: "rest framed", x: 9, y: 2, width: 18, height: height - 4 }]],
    ["daysOff", [{ tag: "rect", look: "off", x: 9, y: 2, width: 18, height: height - 4 }]],
    ["today", [mark("today", `M18 1V${height - 1}`)]],
];

export function legend(): HTMLElement {
    const list = make("dl", { class: "legend" });
    for (const [meaning, shapes] of entries) {
        const picture = makeSVG("svg", { width, height, viewBox: `0 0 ${width} ${height}`, "aria-hidden": "true" });
        picture.append(...shapes.map(shapeElement));
        list.append(make("div", {}, make("dt", {}, picture), make("dd", {}, word(meaning))));
    }
    return list;
}
