// What the surface as a whole does over the years, and the air and rain of the epochs.

import type { Context } from "../context";
import { epochOf } from "../data/run";
import { make, panel } from "../dom";
import { chart, type Series } from "../plot/chart";
import type { State } from "../state";
import { text } from "../text/english";
import { columnLabel } from "./epochs";

const words = text.curves;

const CHARTS: { label: string; keys: string[]; kind: "lines" | "bars" }[] = [
    { label: words.displacement, keys: ["largest", "mean", "smallest"], kind: "lines" },
    { label: words.area, keys: ["area"], kind: "lines" },
    { label: words.volume, keys: ["epochVolume"], kind: "bars" },
];

/** Everything about an epoch that is none of the surface's figures. */
const FIGURES = new Set(["days", "years", "mean", "largest", "smallest", "area", "volume", "epochVolume"]);

export function curvesPanel(context: Context, table: HTMLTableElement): HTMLElement {
    const { header, store } = context;
    const place = make("div", {});
    const environment = Object.keys(header.epochs[1].figures).filter((key) => !FIGURES.has(key));
    const charts = [
        ...CHARTS.filter(({ keys }) => keys[0] in header.epochs[0].figures),
        ...environment.map((key) => ({ label: columnLabel(table, key), keys: [key], kind: "bars" as const })),
    ];
    store.on(["frame", "timeUnit", "isDark"], (state) => {
        place.replaceChildren(...charts.flatMap((each) => chartOf(context, table, each, state)));
    });
    return panel(words.heading, "curves-panel", place);
}

function chartOf(
    { header }: Context,
    table: HTMLTableElement,
    { label, keys, kind }: (typeof CHARTS)[number],
    state: State,
): Element[] {
    const epoch = epochOf(header, state.frame);
    const unitOfTime = state.timeUnit === "days" ? "days" : "years";
    const colours = state.isDark ? ["#e2a55c", "#e39bbd", "#9aa3b5"] : ["#b06a1e", "#7a2a55", "#5d6678"];
    const series: Series[] = keys.map((key, i) => ({
        values: header.epochs.map(({ figures }) => figures[key].value),
        colour: keys.length === 1 ? colours[1] : colours[i],
        isDashed: keys.length > 1 && i !== 1,
    }));
    const unit = table.querySelector(`th[data-key="${keys[0]}"] .unit`)?.textContent ?? "";
    const drawn = chart({
        label,
        unit,
        times: header.epochs.map(({ figures }) => figures[unitOfTime].value),
        series,
        kind,
        current: epoch,
        startsAtZero: keys[0] !== "area",
    });
    const legend = make(
        "p",
        { class: "keys" },
        ...keys.map((key, i) => {
            const swatch = make("span", { class: "swatch" });
            swatch.style.setProperty("--colour", series[i].colour);
            const figure = header.epochs[epoch].figures[key].text;
            return make(
                "span",
                { "data-key": key },
                swatch,
                `${columnLabel(table, key)} `,
                make("strong", {}, figure.replace("-", "−")),
                ` ${unit}`,
            );
        }),
    );
    return [drawn, legend];
}
