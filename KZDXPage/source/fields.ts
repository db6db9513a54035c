// Values of custom fields, and of what has no column of its own, as people read them. The document holds all of them as texts: only durations and dates have a
// form that no person types, so that nothing else is taken for more than a text.

import { moneyFormat } from "./money";
import { wordOfValue } from "./texts";
import type { Clock } from "./time";
import { hoursText } from "./time";

const durationForm = /^(-?)PT(\d+)H(\d+)M(\d+)S$/u;
const dateForm = /^(\d{4}-\d\d-\d\d) (\d\d:\d\d:\d\d) ([+-])(\d\d)(\d\d)$/u;

function durationText(value: string): string | null {
    const parts = durationForm.exec(value);
    if (!parts) return null;
    const seconds = Number(parts[2]) * 3600 + Number(parts[3]) * 60 + Number(parts[4]);
    return hoursText(parts[1] === "-" ? -seconds : seconds);
}

// Where the date is one: "2024-02-30 …" stays what it is.
function wallOf(day: string, time: string): number | null {
    const wall = Date.parse(`${day}T${time}Z`);
    return Number.isNaN(wall) || !new Date(wall).toISOString().startsWith(day) ? null : wall / 1000;
}

// "PT20H30M0S" as "20.5 h", and "2024-07-01 12:00:00 +0000" as a date on the clock that the page shows.
export function fieldText(value: string, clock: Clock, dated: (seconds: number) => string): string {
    const parts = dateForm.exec(value);
    if (!parts) return durationText(value) ?? value;
    const wall = wallOf(parts[1] ?? "", parts[2] ?? "");
    const offset = (Number(parts[4]) * 3600 + Number(parts[5]) * 60) * (parts[3] === "-" ? -1 : 1);
    return wall === null ? value : dated(clock.shown({ wall, offset }));
}

// Other values of tasks: amounts of money, and names of the document that the page has words for.
export function factText(name: string, value: string, currency: string): string {
    const amount = value === "" ? NaN : Number(value);
    if (name === "static-cost" && Number.isFinite(amount)) return moneyFormat(currency)(amount);
    return wordOfValue(name, value);
}
