// The data of the page as the program writes it: KZDXPageData and its neighbours make exactly this.

export type Cell = string | number | readonly unknown[] | null;

// The values of one field of all rows.
export type Column<T> =
    | null
    | undefined
    | { all: T }
    | { values: T[]; at: number[] }
    | { rows: number[]; values: T[] }
    | (T | null)[];

// Seconds on the clock on the wall since 1970, and the offset of that clock in seconds to the east of Greenwich.
export type WrittenDate = [number, number] | null;

export interface DateColumn {
    base: number;
    unit: number;
    at: Column<number>;
    offset: Column<number>;
}

export type WrittenPiece = [WrittenDate, WrittenDate, number | null];

export interface WrittenTasks {
    count: number;
    outside: number;
    level: Column<number>;
    pieces?: Column<WrittenPiece[]>;
    id?: Column<string>;
    title?: Column<string>;
    kind?: Column<string>;
    "start-date"?: DateColumn;
    "end-date"?: DateColumn;
    "leveled-start"?: DateColumn;
    "locked-start-date"?: DateColumn;
    "locked-end-date"?: DateColumn;
    "start-constraint-date"?: DateColumn;
    "end-constraint-date"?: DateColumn;
    effort?: Column<number>;
    "effort-done"?: Column<number>;
    "completion-percentage"?: Column<number>;
    note?: Column<string>;
    assigned?: Column<number[]>;
    facts: [string, Column<string>][];
    fields: [string, Column<string>][];
}

export type WrittenEvent = [start: WrittenDate, end: WrittenDate, calendar?: string];

export interface WrittenSchedule {
    days: ([number, number][] | null)[];
    off: WrittenEvent[];
    over: WrittenEvent[];
}

export interface WrittenResource {
    id: string;
    name?: string;
    type?: string;
    "cost-per-use"?: string;
    "cost-per-hour"?: string;
    "units-available"?: string;
    note?: string;
    fields: [string, string][];
    facts: [string, string][];
    schedule: WrittenSchedule | null;
}

interface WrittenHead {
    name: string;
    "start-date": WrittenDate;
    "end-date": WrittenDate;
    "fixed-end": boolean;
    granularity: string | null;
}

export interface WrittenScenario extends WrittenHead {
    project?: { "start-date": WrittenDate; "end-date": WrittenDate };
    schedule: WrittenSchedule | null;
    resources: (WrittenResource | null)[];
    tasks: WrittenTasks;
    links: { from: number[]; to: number[]; kind: string };
}

export interface WrittenBaseline extends WrittenHead {
    tasks: {
        count: number;
        gone: [string, string][];
        row?: number[];
        pieces?: Column<WrittenPiece[]>;
        "start-date"?: DateColumn;
        "end-date"?: DateColumn;
        effort?: Column<number>;
    };
}

// What a value of the plan means; at most one of the first five is there.
export interface WrittenMeaning {
    work?: number; // seconds
    percentage?: number;
    constraint?: number; // 0 to 7
    date?: number; // seconds on the clock on the wall since 1970
    target?: [kind: string, uid: string, name: string];
    link?: [uid: string, name: string]; // the other end of the link whose lag it is
}

export interface WrittenLoss {
    kind: string;
    count: number;
    what: string;
    element: string;
    where: [path: string, name: string, value: string, item: string, meaning?: WrittenMeaning][];
}

export interface WrittenDocument {
    format: number;
    title: string;
    source: string;
    maker: string;
    settings: Record<string, unknown>;
    scenario: WrittenScenario;
    comparison: number | null;
    baselines: WrittenBaseline[];
    losses: { leaves: Record<string, number>; kinds: WrittenLoss[] } | null;
    notes: string[];
}
