// Which of its dates a task misses.

import { dateNames, type DateName, type Moment, type Task } from "./model";

const instant = (moment: Moment): number => moment.wall - moment.offset;

function isMissed(task: Task, name: DateName, bound: Moment): boolean {
    const { start, end } = task;
    switch (name) {
        case "start-constraint-date":
            return start !== null && instant(start) < instant(bound);
        case "end-constraint-date":
            return end !== null && instant(end) > instant(bound);
        case "locked-start-date":
            return start !== null && instant(start) !== instant(bound);
        case "locked-end-date":
            return end !== null && instant(end) !== instant(bound);
        case "leveled-start":
            return false;
    }
}

export function missedDates(task: Task): DateName[] {
    if (task.dates.size === 0) return [];
    return dateNames.filter((name) => {
        const bound = task.dates.get(name);
        return bound !== undefined && isMissed(task, name, bound);
    });
}

// How much later a task ends than a baseline planned, in seconds; none where either does not say.
export function slipOf(task: Task, baseline: number | null): number | null {
    const planned = baseline === null ? null : task.planned[baseline];
    const now = task.end ?? task.start;
    const then = planned ? planned.end ?? planned.start : null;
    return now && then ? instant(now) - instant(then) : null;
}
