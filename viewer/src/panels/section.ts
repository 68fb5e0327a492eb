// A plane through the stone: the cut in the picture, and the lines before and after in a plot of their own.

import type { Context } from "../context";
import { briefNumber, ticksBetween } from "../data/run";
import type { CutLines } from "../decoder/cut";
import { checkbox, make, panel, row, select, setSlider, slider } from "../dom";
import { svg } from "../plot/chart";
import type { State } from "../state";
import { text } from "../text/english";

const words = text.section;
const AXES = ["x", "y", "z"];
const LINE_FACTORS = [1, 2, 5, 10, 20, 50, 100];
const PLOT = { width: 340, height: 220, margin: 14 };

export function sectionPanel(context: Context, extent: (axis: number) => [number, number]): HTMLElement {
    const { store } = context;
    const cut = checkbox(words.cut, (isCut) => {
        store.set({ isCut, isCutTurned: facesAway(context, store.state.cutAxis) });
    });
    const across = select(
        AXES.map((label, i) => ({ value: String(i), label })),
        (value) => {
            const cutAxis = Number(value);
            const [low, high] = extent(cutAxis);
            store.set({ cutAxis, cutAt: (low + high) / 2, isCutTurned: facesAway(context, cutAxis) });
        },
    );
    const at = slider(0, 1, 0.002, (share) => {
        const [low, high] = extent(store.state.cutAxis);
        store.set({ cutAt: low + share * (high - low) });
    });
    const turned = checkbox(words.turn, (isCutTurned) => {
        store.set({ isCutTurned });
    });
    const distance = select(
        LINE_FACTORS.map((each) => ({
            value: String(each),
            label: each === 1 ? text.surface.trueToScale : text.surface.times(String(each)),
        })),
        (value) => {
            store.set({ lineFactor: Number(value) });
        },
    );
    const atText = make("output", {});
    const plot = make("div", { class: "section-plot" });
    const more = make(
        "div",
        {},
        row(words.across, across),
        row(words.at, at, atText),
        turned.row,
        row(words.distance, distance),
        plot,
    );
    store.on(["isCut", "cutAxis", "cutAt", "isCutTurned", "lineFactor"], (state) => {
        const [low, high] = extent(state.cutAxis);
        cut.box.checked = state.isCut;
        turned.box.checked = state.isCutTurned;
        across.value = String(state.cutAxis);
        distance.value = String(state.lineFactor);
        setSlider(at, (state.cutAt - low) / (high - low || 1));
        atText.textContent = `${state.cutAt.toFixed(1)} mm`;
        more.hidden = !state.isCut;
    });
    new Cutter(context, plot);
    return panel(words.heading, "section-panel", cut.row, more);
}

/** Whether the eye looks along an axis: then the half before the plane has to go, for the cut to be seen. */
function facesAway({ stage }: Context, axis: number): boolean {
    return stage ? stage.view.axes()[2].getComponent(axis) < 0 : false;
}

/** Cuts one after the other: while one is on its way, only the last wish is kept. */
class Cutter {
    private isBusy = false;
    private isWanted = false;

    constructor(
        private readonly context: Context,
        private readonly plot: HTMLElement,
    ) {
        const keys = [
            "isCut",
            "cutAxis",
            "cutAt",
            "isCutTurned",
            "lineFactor",
            "frame",
            "factor",
            "side",
        ] as const;
        context.store.on(keys, () => {
            this.isWanted = true;
            void this.work();
        });
    }

    private async work(): Promise<void> {
        while (this.isWanted && !this.isBusy) {
            this.isWanted = false;
            this.isBusy = true;
            try {
                await this.cut({ ...this.context.store.state });
            } catch (error) {
                this.context.fail(error);
            }
            this.isBusy = false;
        }
    }

    private async cut(state: State): Promise<void> {
        const { stage, decoder } = this.context;
        if (!state.isCut) {
            stage?.setCut(null);
            stage?.setOutlines(null);
            return;
        }
        const place = { axis: state.cutAxis, at: state.cutAt };
        const ask = (frame: number, factor: number): Promise<CutLines> =>
            decoder.ask("cut", { ...place, frame, factor });
        const before = await ask(0, 1);
        const after = await ask(state.frame, state.lineFactor);
        const shown = state.side === "before" ? before : await ask(state.frame, state.factor);
        stage?.setCut({ ...place, sign: state.isCutTurned ? -1 : 1 });
        stage?.setOutlines(shown);
        this.plot.replaceChildren(plotOf(state, before, after));
    }
}

/** Both lines as they lie in the plane, as large as the plot allows. */
function plotOf(state: State, before: CutLines, after: CutLines): Element {
    const [across, up] = [0, 1, 2].filter((axis) => axis !== state.cutAxis);
    const box = boxOf([before, after], across, up);
    if (!box) {
        return make("p", { class: "hint" }, words.none);
    }
    const scale = Math.min(
        (PLOT.width - 2 * PLOT.margin) / (box.right - box.left || 1),
        (PLOT.height - 2 * PLOT.margin - 16) / (box.top - box.bottom || 1),
    );
    const x = (value: number): number => PLOT.width / 2 + (value - (box.left + box.right) / 2) * scale;
    const y = (value: number): number =>
        (PLOT.height - 16) / 2 - (value - (box.bottom + box.top) / 2) * scale;
    const line = (lines: CutLines, name: string): Element =>
        svg("path", { class: `profile ${name}`, d: pathOf(lines, across, up, x, y) });
    const length = ticksBetween(0, (PLOT.width * 0.35) / scale, 2).at(-1)!;
    return svg(
        "svg",
        {
            class: "chart",
            viewBox: `0 0 ${String(PLOT.width)} ${String(PLOT.height)}`,
            role: "img",
            "aria-label": words.plot(AXES[state.cutAxis], state.cutAt.toFixed(1)),
        },
        line(before, "before"),
        line(after, "after"),
        svg("path", { class: "bar", d: `M12 ${String(PLOT.height - 10)}v4h${String(length * scale)}v-4` }),
        svg("text", { x: 16, y: PLOT.height - 10 }, `${briefNumber(length)} mm`),
        svg(
            "text",
            { class: "before", x: PLOT.width - 58, y: PLOT.height - 6, "text-anchor": "end" },
            words.before,
        ),
        svg(
            "text",
            { class: "after", x: PLOT.width - 10, y: PLOT.height - 6, "text-anchor": "end" },
            words.after,
        ),
    );
}

function boxOf(all: CutLines[], across: number, up: number) {
    const box = { left: Infinity, right: -Infinity, bottom: Infinity, top: -Infinity };
    for (const { points } of all) {
        for (let i = 0; i < points.length; i += 3) {
            box.left = Math.min(box.left, points[i + across]);
            box.right = Math.max(box.right, points[i + across]);
            box.bottom = Math.min(box.bottom, points[i + up]);
            box.top = Math.max(box.top, points[i + up]);
        }
    }
    return box.left <= box.right ? box : null;
}

function pathOf(
    { points, starts, closed }: CutLines,
    across: number,
    up: number,
    x: (value: number) => number,
    y: (value: number) => number,
): string {
    let path = "";
    closed.forEach((isClosed, line) => {
        for (let i = starts[line]; i < starts[line + 1]; i++) {
            const command = i === starts[line] ? "M" : "L";
            path += `${command}${x(points[3 * i + across]).toFixed(2)} ${y(points[3 * i + up]).toFixed(2)}`;
        }
        path += isClosed ? "Z" : "";
    });
    return path;
}
