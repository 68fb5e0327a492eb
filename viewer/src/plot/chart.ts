// Line and bar charts as SVG.

import { briefNumber, ticksBetween } from "../data/run";

export interface Series {
    /** Gaps are not finite. */
    values: number[];
    colour: string;
    isDashed?: boolean;
}

export interface ChartInput {
    label: string;
    unit: string;
    /** Where along the horizontal axis each value stands. */
    times: number[];
    series: Series[];
    kind: "lines" | "bars";
    /** Place, among the values, of the one that is shown now. */
    current: number;
    startsAtZero: boolean;
}

const SIZE = { width: 340, height: 150, left: 46, right: 8, top: 18, bottom: 20 };
const NAMESPACE = "http://www.w3.org/2000/svg";

export function svg(
    tag: string,
    attributes: Record<string, string | number>,
    ...children: (Node | string)[]
) {
    const element = document.createElementNS(NAMESPACE, tag);
    for (const [name, value] of Object.entries(attributes)) {
        element.setAttribute(name, String(value));
    }
    element.append(...children);
    return element;
}

interface Scale {
    low: number;
    high: number;
    at: (value: number) => number;
}

function scaleOf(low: number, high: number, from: number, to: number): Scale {
    const span = high - low || 1;
    return { low, high, at: (value) => from + ((value - low) / span) * (to - from) };
}

export function chart(input: ChartInput): SVGElement {
    const values = input.series.flatMap((series) => series.values).filter(Number.isFinite);
    const low = Math.min(...values, input.startsAtZero ? 0 : Infinity);
    const high = Math.max(...values, input.startsAtZero ? 0 : -Infinity);
    const margin = high > low ? 0.04 * (high - low) : Math.abs(high) * 0.1 || 1;
    const x = scaleOf(
        input.times[0],
        input.times[input.times.length - 1],
        SIZE.left,
        SIZE.width - SIZE.right,
    );
    const y = scaleOf(
        input.startsAtZero && low >= 0 ? 0 : low - margin,
        high + margin,
        SIZE.height - SIZE.bottom,
        SIZE.top,
    );
    const element = svg("svg", {
        class: "chart",
        viewBox: `0 0 ${String(SIZE.width)} ${String(SIZE.height)}`,
        role: "img",
        "aria-label": input.label,
    });
    element.append(...axes(x, y, input.unit));
    if (input.kind === "bars") {
        element.append(...bars(input, x, y));
    } else {
        element.append(...input.series.map((series) => line(series, input.times, x, y)));
    }
    element.append(...marker(input, x, y));
    return element;
}

function axes(x: Scale, y: Scale, unit: string): SVGElement[] {
    const right = SIZE.width - SIZE.right;
    const parts = ticksBetween(y.low, y.high, 4).flatMap((tick) => [
        svg("line", { class: "grid", x1: SIZE.left, x2: right, y1: y.at(tick), y2: y.at(tick) }),
        svg("text", { x: SIZE.left - 6, y: y.at(tick) + 4, "text-anchor": "end" }, briefNumber(tick)),
    ]);
    for (const tick of ticksBetween(x.low, x.high, 5)) {
        const anchor = x.at(tick) > right - 10 ? "end" : "middle";
        parts.push(
            svg("text", { x: x.at(tick), y: SIZE.height - 5, "text-anchor": anchor }, briefNumber(tick)),
        );
    }
    parts.push(svg("text", { x: SIZE.left, y: 11 }, unit));
    return parts;
}

function line(series: Series, times: number[], x: Scale, y: Scale): SVGElement {
    let path = "";
    let isOn = false;
    series.values.forEach((value, i) => {
        const isFinite = Number.isFinite(value);
        if (isFinite) {
            path += `${isOn ? "L" : "M"}${x.at(times[i]).toFixed(2)} ${y.at(value).toFixed(2)}`;
        }
        isOn = isFinite;
    });
    return svg("path", {
        class: "curve",
        d: path,
        stroke: series.colour,
        ...(series.isDashed ? { "stroke-dasharray": "5 3" } : {}),
    });
}

/** A bar stands over the time of its epoch, from the end of the one before. */
function bars({ times, series, current }: ChartInput, x: Scale, y: Scale): SVGElement[] {
    const [{ values, colour }] = series;
    return values.slice(1).map((value, i) => {
        const from = x.at(times[i]);
        const width = x.at(times[i + 1]) - from;
        const [top, bottom] = [y.at(Math.max(value, 0)), y.at(Math.min(value, 0))];
        return svg("rect", {
            x: from + 0.08 * width,
            width: Math.max(0.84 * width, 0.4),
            y: top,
            height: Math.max(bottom - top, 0),
            fill: colour,
            "fill-opacity": i + 1 === current ? 1 : 0.55,
        });
    });
}

function marker({ series, times, current, kind }: ChartInput, x: Scale, y: Scale): SVGElement[] {
    const at = x.at(times[current]);
    const parts = [
        svg("line", { class: "now", x1: at, x2: at, y1: SIZE.top - 2, y2: SIZE.height - SIZE.bottom }),
    ];
    for (const { values, colour } of kind === "lines" ? series : []) {
        if (Number.isFinite(values[current])) {
            parts.push(svg("circle", { cx: at, cy: y.at(values[current]), r: 3.2, fill: colour }));
        }
    }
    return parts;
}
