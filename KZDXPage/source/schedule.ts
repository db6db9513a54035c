// When nobody works: from the weekly times of a schedule and its days off.

import type { Schedule, Span } from "./model";
import type { Clock } from "./time";

export interface Stretch {
    readonly from: number; // shown seconds
    readonly to: number;
}

const day = 86_400;

// The weekday of a day that begins at a multiple of 86,400 seconds: 0 is Sunday, and 1970-01-01 was a Thursday.
const weekdayOf = (wall: number): number => (((Math.floor(wall / day) + 4) % 7) + 7) % 7;

const wallOf = (span: Span): Stretch => ({ from: span.start.wall, to: span.end.wall });

// An end at 23:59:59 is the end of its day.
const rounded = (stretch: Stretch): Stretch => ({
    from: stretch.from,
    to: stretch.to % 60 === 59 ? stretch.to + 1 : stretch.to,
});

function subtract(from: Stretch[], holes: readonly Stretch[]): Stretch[] {
    return holes.reduce<Stretch[]>(
        (rest, hole) =>
            rest.flatMap((stretch) =>
                hole.to <= stretch.from || hole.from >= stretch.to
                    ? [stretch]
                    : [
                          { from: stretch.from, to: hole.from },
                          { from: hole.to, to: stretch.to },
                      ].filter((piece) => piece.to > piece.from),
            ),
        from,
    );
}

function joined(stretches: Stretch[]): Stretch[] {
    const result: Stretch[] = [];
    for (const stretch of stretches.sort((one, other) => one.from - other.from)) {
        const last = result[result.length - 1];
        if (last && stretch.from <= last.to) {
            result[result.length - 1] = { from: last.from, to: Math.max(last.to, stretch.to) };
        } else {
            result.push(stretch);
        }
    }
    return result;
}

// The stretches without work that touch a range of the wall clock. With `daysOnly` working days count as worked from
// midnight to midnight, so that only whole days are told.
export function restBetween(schedule: Schedule, from: number, to: number, daysOnly: boolean): Stretch[] {
    const within = (stretch: Stretch): boolean => stretch.to > from && stretch.from < to;
    const off = schedule.off.map(wallOf).map(rounded).filter(within);
    const over = schedule.over.map(wallOf).filter(within);
    const rest: Stretch[] = [];
    const hasWeek = schedule.days.some((times) => times !== null);
    for (let start = Math.floor(from / day) * day; start < to && hasWeek; start += day) {
        const times = schedule.days[weekdayOf(start)] ?? [];
        const works = times.map(([begin, end]) => ({ from: start + begin, to: start + end }));
        if (!daysOnly) rest.push(...subtract([{ from: start, to: start + day }], works));
        else if (works.length === 0) rest.push({ from: start, to: start + day });
    }
    const worked = daysOnly
        ? over.map((stretch) => ({
              from: Math.floor(stretch.from / day) * day,
              to: Math.ceil(stretch.to / day) * day,
          }))
        : over;
    return subtract(joined([...rest, ...off]), worked);
}

// The same on the clock that the page shows.
export function shownRest(schedule: Schedule, clock: Clock, from: number, to: number, daysOnly: boolean): Stretch[] {
    if (clock.zone === null) return restBetween(schedule, from, to, daysOnly);
    return restBetween(schedule, from - day, to + day, daysOnly).map((stretch) => ({
        from: clock.shownWall(stretch.from),
        to: clock.shownWall(stretch.to),
    }));
}
