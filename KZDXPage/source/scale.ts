// From times to places on the chart, and the two rows of its axis.

import { scaleUtc } from "d3-scale";
import { utcDay, utcHour, utcMonday, utcMonth, utcYear, type CountableTimeInterval, type TimeInterval } from "d3-time";
import { formatted } from "./time";
import { word } from "./texts";

export interface Tick {
    readonly x: number;
    readonly width: number;
    readonly label: string;
    readonly isWeekend: boolean;
}

export interface Axis {
    readonly major: Tick[];
    readonly minor: Tick[];
}

const hour = 3600;
const day = 24 * hour;
const year = 365.2425 * day;

// Pixels for a second, at the closest and the farthest zoom.
export const closest = 160 / hour;
export const farthest = 12 / year;

interface Grade {
    readonly every: TimeInterval;
    readonly seconds: number; // about
    readonly width: number; // pixels that a label of it takes
    readonly label: (seconds: number) => string;
    readonly major: TimeInterval;
    readonly majorLabel: (seconds: number) => string;
}

const label =
    (options: Intl.DateTimeFormatOptions): ((seconds: number) => string) =>
    (seconds) =>
        formatted(seconds, options);

// The number of a week by ISO 8601: that of its Thursday in the year.
function weekLabel(seconds: number): string {
    const thursday = new Date((seconds + 3 * day) * 1000);
    const first = Date.UTC(thursday.getUTCFullYear(), 0, 1);
    return `${word("week")}${Math.floor((thursday.getTime() - first) / 1000 / day / 7) + 1}`;
}

const every = (interval: CountableTimeInterval, step: number): TimeInterval => interval.every(step) ?? interval;
const monthAndYear = label({ month: "long", year: "numeric" });
const dayAndMonth = label({ weekday: "short", day: "numeric", month: "long", year: "numeric" });
const yearLabel = label({ year: "numeric" });
const quarterLabel = (seconds: number): string => `Q${Math.floor(new Date(seconds * 1000).getUTCMonth() / 3) + 1}`;
const hourLabel = label({ hour: "numeric", minute: "2-digit", hourCycle: "h23" });

// From the finest to the coarsest.
const grades: Grade[] = [
    { every: utcHour, seconds: hour, width: 44, label: hourLabel, major: utcDay, majorLabel: dayAndMonth },
    { every: every(utcHour, 6), seconds: 6 * hour, width: 44, label: hourLabel, major: utcDay, majorLabel: dayAndMonth },
    { every: utcDay, seconds: day, width: 46, label: label({ weekday: "short", day: "numeric" }), major: utcMonth, majorLabel: monthAndYear },
    { every: utcDay, seconds: day, width: 22, label: label({ day: "numeric" }), major: utcMonth, majorLabel: monthAndYear },
    { every: utcMonday, seconds: 7 * day, width: 40, label: weekLabel, major: utcMonth, majorLabel: monthAndYear },
    { every: utcMonth, seconds: 30 * day, width: 36, label: label({ month: "short" }), major: utcYear, majorLabel: yearLabel },
    { every: every(utcMonth, 3), seconds: 91 * day, width: 28, label: quarterLabel, major: utcYear, majorLabel: yearLabel },
    { every: utcYear, seconds: year, width: 44, label: yearLabel, major: every(utcYear, 10), majorLabel: (s) => `${yearLabel(s)} –` },
    { every: every(utcYear, 5), seconds: 5 * year, width: 44, label: yearLabel, major: every(utcYear, 50), majorLabel: (s) => `${yearLabel(s)} –` },
];

// A window of the time on `width` pixels. Times are shown seconds.
export class TimeScale {
    readonly start: number;
    readonly perSecond: number;
    readonly width: number;
    private readonly scale;

    constructor(start: number, perSecond: number, width: number) {
        this.start = start;
        this.perSecond = perSecond;
        this.width = width;
        this.scale = scaleUtc()
            .domain([new Date(start * 1000), new Date(this.end * 1000)])
            .range([0, width]);
    }

    get end(): number {
        return this.start + this.width / this.perSecond;
    }

    x(seconds: number): number {
        return (seconds - this.start) * this.perSecond;
    }

    timeAt(x: number): number {
        return this.scale.invert(x).getTime() / 1000;
    }

    // The same window with another zoom, the time at `x` kept in its place.
    zoomed(factor: number, x: number): TimeScale {
        const perSecond = Math.min(closest, Math.max(farthest, this.perSecond * factor));
        return new TimeScale(this.start + x / this.perSecond - x / perSecond, perSecond, this.width);
    }

    moved(pixels: number): TimeScale {
        return new TimeScale(this.start + pixels / this.perSecond, this.perSecond, this.width);
    }

    resized(width: number): TimeScale {
        return new TimeScale(this.start, this.perSecond, width);
    }

    private grade(): Grade {
        const fits = grades.find((grade) => grade.seconds * this.perSecond >= grade.width);
        return fits ?? (grades[grades.length - 1] as Grade);
    }

    // Whether single hours are wide enough to be told apart.
    get showsHours(): boolean {
        return this.perSecond * hour >= 4;
    }

    get showsDays(): boolean {
        return this.perSecond * day >= 1.5;
    }

    axis(): Axis {
        const grade = this.grade();
        return {
            minor: this.ticks(grade.every, grade.label, grade.seconds <= day),
            major: this.ticks(grade.major, grade.majorLabel, false),
        };
    }

    private ticks(interval: TimeInterval, text: (seconds: number) => string, marksWeekends: boolean): Tick[] {
        const first = interval.floor(new Date(this.start * 1000));
        const last = interval.ceil(new Date(this.end * 1000));
        const times = [...interval.range(first, last), last].map((date) => date.getTime() / 1000);
        return times.slice(0, -1).map((seconds, index) => {
            const weekday = new Date(seconds * 1000).getUTCDay();
            const x = this.x(seconds);
            return {
                x,
                width: this.x(times[index + 1] as number) - x,
                label: text(seconds),
                isWeekend: marksWeekends && (weekday === 0 || weekday === 6),
            };
        });
    }
}

// A window that holds a stretch of time with some room around it.
export function fitting(from: number, to: number, width: number): TimeScale {
    const room = Math.max(width - 120, 60);
    const length = Math.max(to - from, hour);
    const perSecond = Math.min(closest, Math.max(farthest, room / length));
    return new TimeScale((from + to) / 2 - width / 2 / perSecond, perSecond, width);
}
