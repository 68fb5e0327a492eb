// Chosen points: numbered marks on the stone, and the curve of each.

import type { Context } from "../context";
import { briefNumber, figureOf, heldEpochs, shownSign, timeText } from "../data/run";
import type { Header } from "../data/header";
import { button, make, panel } from "../dom";
import { chart } from "../plot/chart";
import { text } from "../text/english";

const words = text.points;
const COLOURS = ["#0f766e", "#b45309", "#6d28d9", "#be185d", "#1d4ed8", "#4d7c0f", "#a21caf", "#b91c1c"];
const COLOURS_IN_THE_DARK = [
    "#5eead4",
    "#fdba74",
    "#c4b5fd",
    "#f9a8d4",
    "#93c5fd",
    "#bef264",
    "#f0abfc",
    "#fca5a5",
];

export interface ChosenPoint {
    vertex: number;
    /** By surface; not a number until it is known. */
    changes: number[];
    place: [number, number, number];
    normal: [number, number, number];
    mineral: number;
}

export class Points {
    readonly marks = make("div", { id: "marks" });
    readonly panel: HTMLElement;
    readonly chosen: ChosenPoint[] = [];
    private readonly list = make("ol", { class: "points" });
    private readonly plot = make("div", {});
    private readonly hint = make("p", { class: "hint" }, words.hint);
    private readonly remove = button(words.remove, () => {
        this.chosen.length = 0;
        this.context.store.set({ points: [] });
    });

    constructor(private readonly context: Context) {
        this.panel = panel(words.heading, "points-panel", this.hint, this.plot, this.list, this.remove);
        context.store.on(["points", "frame", "timeUnit", "isDark"], () => {
            this.show();
        });
        context.store.on(["frame"], () => {
            void this.place();
        });
        context.stage?.onDrawn(() => {
            this.placeMarks();
        });
    }

    /** Chooses the vertex under a place of the picture, both coordinates from -1 to 1. */
    async choose(x: number, y: number): Promise<void> {
        const { store, stage, decoder } = this.context;
        const { frame, factor, side, edge, isCut, cutAxis, cutAt, isCutTurned } = store.state;
        const isBefore = side === "before" || (side === "wipe" && (x + 1) / 2 < edge);
        const { vertex } = await decoder.ask("pick", {
            frame: isBefore ? 0 : frame,
            factor: isBefore ? 1 : factor,
            ray: stage!.rayAt(x, y),
            cut: isCut ? { axis: cutAxis, at: cutAt, sign: isCutTurned ? -1 : 1 } : null,
        });
        if (vertex >= 0 && !this.chosen.some((point) => point.vertex === vertex)) {
            await this.add(vertex);
        }
    }

    colour(i: number): string {
        const colours = this.context.store.state.isDark ? COLOURS_IN_THE_DARK : COLOURS;
        return colours[i % colours.length];
    }

    private async add(vertex: number): Promise<void> {
        const { header, decoder, store } = this.context;
        const count = header.frames.length;
        const now = await decoder.ask("point", { frame: store.state.frame, vertex });
        const point: ChosenPoint = {
            vertex,
            changes: new Array<number>(count).fill(NaN),
            place: now.position,
            normal: now.normal,
            mineral: now.mineral,
        };
        point.changes[store.state.frame] = now.change;
        this.chosen.push(point);
        store.set({ points: [...store.state.points, { vertex }] });
        // In the order in which surfaces are made of each other, so that each is made once.
        for (const { frame } of header.frames) {
            point.changes[frame] = (await decoder.ask("point", { frame, vertex })).change;
            this.show();
        }
    }

    private async place(): Promise<void> {
        const { frame } = this.context.store.state;
        for (const point of this.chosen) {
            point.place = (await this.context.decoder.ask("point", { frame, vertex: point.vertex })).position;
        }
        this.placeMarks();
    }

    private show(): void {
        const { header, store } = this.context;
        const { frame, timeUnit } = store.state;
        const sign = shownSign(header);
        const isEmpty = this.chosen.length === 0;
        this.hint.hidden = !isEmpty;
        this.remove.hidden = isEmpty;
        this.list.replaceChildren(
            ...this.chosen.map((point, i) => this.entry(point, i, sign * point.changes[frame])),
        );
        const unit = timeUnit === "days" ? "days" : "years";
        const times = heldEpochs(header).map((epoch) => figureOf(header, epoch, unit)!.value);
        const series = this.chosen.map((point, i) => ({
            values: point.changes.map((value) => sign * value),
            colour: this.colour(i),
        }));
        const label = `${words.plot}, ${timeText(header, heldEpochs(header)[frame], timeUnit)}`;
        this.plot.replaceChildren(
            ...(isEmpty
                ? []
                : [
                      chart({
                          label,
                          unit: "mm",
                          times,
                          series,
                          kind: "lines",
                          current: frame,
                          startsAtZero: true,
                      }),
                  ]),
        );
        this.marks.replaceChildren(
            ...this.chosen.map((_, i) => {
                const mark = make("span", { class: "mark" }, String(i + 1));
                mark.style.setProperty("--colour", COLOURS[i % COLOURS.length]);
                return mark;
            }),
        );
        this.placeMarks();
    }

    private entry(point: ChosenPoint, i: number, change: number): HTMLElement {
        const { header } = this.context;
        const swatch = make("span", { class: "swatch" });
        swatch.style.setProperty("--colour", this.colour(i));
        const value = Number.isFinite(change) ? change.toFixed(decimals(header)) : "…";
        const parts: (Node | string)[] = [
            swatch,
            `${words.name(i + 1)}, ${words.vertex(point.vertex)} `,
            make("strong", {}, value.replace("-", "−")),
            " mm",
        ];
        const mineral = header.minerals?.[point.mineral];
        if (mineral) {
            parts.push(make("span", { class: "mineral" }, words.mineral(mineral)));
        }
        return make("li", { "data-vertex": point.vertex, "data-change": briefNumber(change) }, ...parts);
    }

    /** Marks on the far side are faint. */
    private placeMarks(): void {
        const { stage } = this.context;
        const marks = [...this.marks.children] as HTMLElement[];
        marks.forEach((mark, i) => {
            const { place, normal } = this.chosen[i];
            const [x, y] = stage!.placeOf(place);
            const out = stage!.view.axes()[2];
            mark.style.left = `${String(100 * x)}%`;
            mark.style.top = `${String(100 * y)}%`;
            mark.classList.toggle("far", out.x * normal[0] + out.y * normal[1] + out.z * normal[2] < -0.05);
        });
    }
}

/** As many as the table has. */
function decimals(header: Header): number {
    return header.epochs[0].figures.largest.text.split(".")[1]?.length ?? 0;
}
