// Questions about a run that several panels ask.

import type { TimeUnit } from "../state";
import { text } from "../text/english";
import type { Figure, Header } from "./header";

/** The epochs whose surfaces the page holds, in order of time. */
export function heldEpochs(header: Header): number[] {
    return header.frames.map((frame) => frame.epoch).sort((a, b) => a - b);
}

export function epochOf(header: Header, frame: number): number {
    return heldEpochs(header)[frame];
}

/** "100.00" is 100 to a reader. */
function withoutZeros(number: string): string {
    return number.includes(".") ? number.replace(/\.?0+$/, "") : number;
}

/** The end of an epoch in years or days, or its date. */
export function timeText(header: Header, epoch: number, unit: TimeUnit): string {
    const { figures, date } = header.epochs[epoch];
    if (unit === "dates") {
        return epoch === 0 ? text.years.start : date;
    }
    return withoutZeros(figures[unit].text);
}

/** "epoch 3 of 10" */
export function epochPhrase(header: Header, epoch: number): string {
    return text.years.epochOf(header.epochs[epoch].number, header.plannedEpochs);
}

/** "year 50", for captions and for screen readers. */
export function timePhrase(header: Header, epoch: number, unit: TimeUnit): string {
    return text.years.time[unit](timeText(header, epoch, unit));
}

export function figureOf(header: Header, epoch: number, key: string): Figure | undefined {
    return header.epochs[epoch].figures[key];
}

/** Losses count as positive where a run only loses. */
export function shownSign(header: Header): 1 | -1 {
    return header.kind === "loss" ? -1 : 1;
}

/** A number for people: as many digits as tell something. */
export function briefNumber(value: number): string {
    if (value === 0) {
        return "0";
    }
    return String(Number(value.toPrecision(4))).replace("-", "−");
}

/** Evenly spaced round numbers between two ends, about as many as asked for. */
export function ticksBetween(low: number, high: number, count: number): number[] {
    const span = high - low;
    if (!(span > 0)) {
        return [low];
    }
    const power = 10 ** Math.floor(Math.log10(span / count));
    const step = power * ([1, 2, 5, 10].find((each) => span / (each * power) <= count) ?? 10);
    const ticks = [];
    for (let n = Math.ceil(low / step - 1e-9); n * step <= high + 1e-9 * span; n++) {
        ticks.push(Number((n * step).toPrecision(12)));
    }
    return ticks;
}
