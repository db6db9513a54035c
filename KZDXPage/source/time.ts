// Which clock the page shows, and how times, lengths and numbers read.

import type { Moment } from "./model";
import { locale, word } from "./texts";

// Beyond these seconds the browser has no dates.
const farthest = 8.64e12;

// The clock that times are shown on: that of the document, or that of a chosen zone. Times on it are "shown seconds":
// seconds since 1970 as if its face were that of Greenwich.
export interface Clock {
    readonly zone: string | null;
    readonly shown: (moment: Moment) => number;
    // The shown seconds of a time on the document's wall whose offset is not written.
    readonly shownWall: (wall: number) => number;
    readonly now: () => number;
}

function zoneOffsets(zone: string): (instant: number) => number {
    const format = new Intl.DateTimeFormat("en-US", {
        timeZone: zone,
        hourCycle: "h23",
        era: "short",
        year: "numeric",
        month: "numeric",
        day: "numeric",
        hour: "numeric",
        minute: "numeric",
        second: "numeric",
    });
    const exact = (instant: number): number => {
        const parts = new Map<string, string>();
        for (const part of format.formatToParts(new Date(instant * 1000))) parts.set(part.type, part.value);
        const field = (name: string): number => Number(parts.get(name));
        const year = parts.get("era") === "BC" ? 1 - field("year") : field("year");
        const date = new Date(0);
        date.setUTCFullYear(year, field("month") - 1, field("day"));
        date.setUTCHours(field("hour"), field("minute"), field("second"));
        return date.getTime() / 1000 - Math.floor(instant);
    };
    // Asking for an offset is slow, and it changes twice a year: blocks with the same offset at both ends have it
    // throughout.
    const block = 8 * 86_400;
    const ends = new Map<number, number>();
    const atEnd = (index: number): number => {
        let offset = ends.get(index);
        if (offset === undefined) ends.set(index, (offset = exact(index * block)));
        return offset;
    };
    return (instant) => {
        if (Math.abs(instant) > farthest - block) return 0;
        const index = Math.floor(instant / block);
        const offset = atEnd(index);
        return offset === atEnd(index + 1) ? offset : exact(instant);
    };
}

export function clockOf(zone: string | null, offsetAt: (wall: number) => number): Clock {
    const present = (): number => Date.now() / 1000;
    if (zone === null) {
        return {
            zone,
            shown: (moment) => moment.wall,
            shownWall: (wall) => wall,
            now: () => present() + offsetAt(present()),
        };
    }
    const offset = zoneOffsets(zone);
    const inZone = (instant: number): number => instant + offset(instant);
    return {
        zone,
        shown: (moment) => inZone(moment.wall - moment.offset),
        shownWall: (wall) => inZone(wall - offsetAt(wall)),
        now: () => inZone(present()),
    };
}

// The zones that the browser knows.
export function zones(): string[] {
    const own = Intl.DateTimeFormat().resolvedOptions().timeZone;
    const listed = (Intl as { supportedValuesOf?: (key: string) => string[] }).supportedValuesOf?.("timeZone") ?? [];
    return [...new Set(["UTC", own, ...listed].filter((zone) => zone !== ""))];
}

const formats = new Map<string, Intl.DateTimeFormat>();

export function formatted(seconds: number, options: Intl.DateTimeFormatOptions): string {
    if (!(Math.abs(seconds) <= farthest)) return "–";
    const key = JSON.stringify(options);
    let format = formats.get(key);
    if (!format) {
        format = new Intl.DateTimeFormat(locale, { timeZone: "UTC", ...options });
        formats.set(key, format);
    }
    return format.format(new Date(seconds * 1000));
}

const dayOptions: Intl.DateTimeFormatOptions = { day: "numeric", month: "short", year: "numeric" };
const timeOptions: Intl.DateTimeFormatOptions = { hour: "numeric", minute: "2-digit" };

export const dateText = (seconds: number): string => formatted(seconds, { ...dayOptions, ...timeOptions });
export const longDateText = (seconds: number): string =>
    formatted(seconds, { weekday: "short", ...dayOptions, ...timeOptions });
export const dayText = (seconds: number): string => formatted(seconds, { weekday: "short", ...dayOptions });

// "2024-01-15 08:00:00", as spreadsheets take it.
export function plainDate(seconds: number): string {
    if (!(Math.abs(seconds) <= farthest)) return "";
    return new Date(seconds * 1000).toISOString().replace("T", " ").replace(/\.\d+Z$/u, "");
}

// "+02:00" of 7200
export function offsetText(seconds: number): string {
    const minutes = Math.round(Math.abs(seconds) / 60);
    const two = (value: number): string => String(value).padStart(2, "0");
    return `${seconds < 0 ? "-" : "+"}${two(Math.floor(minutes / 60))}:${two(minutes % 60)}`;
}

// "08:00" of 28800 seconds after midnight
export function timeOfDayText(seconds: number): string {
    if (seconds >= 86_400) return "24:00";
    return formatted(seconds, timeOptions);
}

export const numberText = (value: number, digits = 2): string =>
    value.toLocaleString(locale, { maximumFractionDigits: digits });
export const hoursText = (seconds: number): string => `${numberText(seconds / 3600, 2)} ${word("hours")}`;
export const percentText = (fraction: number, digits = 0): string =>
    fraction.toLocaleString(locale, { style: "percent", maximumFractionDigits: digits });

// A length of calendar time without its sign: "3 d", "3 d 4 h", "30 min".
export function lengthText(seconds: number): string {
    const minutes = Math.round(Math.abs(seconds) / 60);
    const parts: string[] = [];
    const days = Math.floor(minutes / 1440);
    const hours = Math.floor((minutes % 1440) / 60);
    if (days > 0) parts.push(`${numberText(days)} ${word("days")}`);
    if (hours > 0) parts.push(`${hours} ${word("hours")}`);
    if (minutes % 60 > 0 && days === 0) parts.push(`${minutes % 60} ${word("minutes")}`);
    return parts.length > 0 ? parts.join(" ") : `0 ${word("days")}`;
}

// How much later than a plan: "+3 d later", "−2 d earlier", "as planned".
export function slipText(seconds: number): string {
    if (Math.abs(seconds) < 60) return word("onTime");
    return seconds > 0 ? `+${lengthText(seconds)} ${word("later")}` : `−${lengthText(seconds)} ${word("earlier")}`;
}
