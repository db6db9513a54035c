// What the page uses of its libraries, for type checks where these are not installed: tools/check-page --debian.

declare module "d3-time" {
    export interface TimeInterval {
        floor(date: Date): Date;
        ceil(date: Date): Date;
        range(start: Date, stop: Date): Date[];
    }
    export interface CountableTimeInterval extends TimeInterval {
        every(step: number): TimeInterval | null;
    }
    export const utcHour: CountableTimeInterval;
    export const utcDay: CountableTimeInterval;
    export const utcMonday: CountableTimeInterval;
    export const utcMonth: CountableTimeInterval;
    export const utcYear: CountableTimeInterval;
}

declare module "d3-scale" {
    interface ScaleUtc {
        domain(ends: [Date, Date]): ScaleUtc;
        range(ends: [number, number]): ScaleUtc;
        invert(place: number): Date;
    }
    export function scaleUtc(): ScaleUtc;
}

declare module "@tanstack/virtual-core" {
    interface Options<Scroller> {
        count: number;
        overscan?: number;
        getScrollElement: () => Scroller | null;
        estimateSize: (index: number) => number;
        scrollToFn: (...given: never[]) => void;
        observeElementOffset: (...given: never[]) => (() => void) | undefined;
        observeElementRect: (scroller: unknown, tell: (room: { width: number; height: number }) => void) => (() => void) | undefined;
    }
    export class Virtualizer<Scroller extends Element, Item extends Element> {
        constructor(options: Options<Scroller>);
        readonly options: Required<Options<Scroller>>;
        readonly elementsCache: Map<unknown, Item>;
        setOptions(options: Options<Scroller>): void;
        getVirtualItems(): { index: number }[];
        scrollToIndex(index: number, options?: { align?: "start" | "center" | "end" | "auto" }): void;
        _didMount(): () => void;
        _willUpdate(): void;
    }
    export const elementScroll: (...given: never[]) => void;
    export const observeElementOffset: (...given: never[]) => (() => void) | undefined;
}
