// What the user has chosen. Panels change it and listen to it; nothing else connects them.

export type Show = "change" | "stone";
export type Side = "after" | "wipe" | "before";
export type TimeUnit = "years" | "days" | "dates";

export interface Point {
    vertex: number;
}

export interface State {
    /** Place among the surfaces of the page, in order of time. */
    frame: number;
    isPlaying: boolean;
    speed: number;
    timeUnit: TimeUnit;
    show: Show;
    palette: string;
    /** Of the legend: millimetres or thousandths. */
    unit: "mm" | "µm";
    /** Ends of the scale in millimetres, counting as the run's kind of change counts. */
    low: number;
    high: number;
    hasContours: boolean;
    /** How many times as large the change is asked to be drawn, and is drawn. */
    wantedFactor: number;
    factor: number;
    side: Side;
    /** Where the edge between before and after stands, as a share of the width. */
    edge: number;
    /** Degrees clockwise from the top of the picture, and above its plane. */
    lightFrom: number;
    lightHeight: number;
    strength: number;
    room: number;
    relief: number;
    isCut: boolean;
    cutAxis: number;
    cutAt: number;
    isCutTurned: boolean;
    lineFactor: number;
    points: Point[];
    isDark: boolean;
    upAxis: 1 | 2;
}

type Listener = (state: State) => void;

export class Store {
    private readonly listeners: { keys: readonly (keyof State)[]; call: Listener }[] = [];

    constructor(readonly state: State) {}

    set(changes: Partial<State>): void {
        const changed = (Object.keys(changes) as (keyof State)[]).filter(
            (key) => this.state[key] !== changes[key],
        );
        if (changed.length === 0) {
            return;
        }
        Object.assign(this.state, changes);
        for (const { keys, call } of [...this.listeners]) {
            if (keys.some((key) => changed.includes(key))) {
                call(this.state);
            }
        }
    }

    /** Calls now and whenever one of the keys has changed. */
    on(keys: readonly (keyof State)[], call: Listener): void {
        this.listeners.push({ keys, call });
        call(this.state);
    }
}

export function initialState(): State {
    return {
        frame: 0,
        isPlaying: false,
        speed: 2,
        timeUnit: "years",
        show: "change",
        palette: "",
        unit: "mm",
        low: 0,
        high: 1,
        hasContours: false,
        wantedFactor: 1,
        factor: 1,
        side: "after",
        edge: 0.5,
        lightFrom: 315,
        lightHeight: 30,
        strength: 0.6,
        room: 0.5,
        relief: 0,
        isCut: false,
        cutAxis: 1,
        cutAt: 0,
        isCutTurned: false,
        lineFactor: 1,
        points: [],
        isDark: false,
        upAxis: 2,
    };
}
