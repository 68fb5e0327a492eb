// What is shown on the surface, in which colours, and how large the change is drawn.

import type { Context } from "../context";
import { briefNumber, ticksBetween } from "../data/run";
import { button, checkbox, make, panel, row, select, setChoices } from "../dom";
import { paletteTexture, SHOW } from "../scene/materials";
import { paletteColours } from "../scene/palettes";
import type { Show, State } from "../state";
import { text } from "../text/english";
import { inUnit } from "./legend";

const words = text.surface;
const FACTORS = [1, 5, 10, 20, 50, 100];

export function surfacePanel(context: Context): HTMLElement {
    const { store, header } = context;
    const names: Record<string, string> = header.kind === "both" ? words.palettesBoth : words.palettes;
    const show = select<Show>(
        [
            { value: "change", label: words.change },
            { value: "stone", label: words.stone },
        ],
        (value) => {
            store.set({ show: value });
        },
    );
    const colours = select(
        header.palettes.map(({ name }) => ({ value: name, label: names[name] ?? name })),
        (palette) => {
            store.set({ palette });
        },
    );
    const unit = select<State["unit"]>(
        [
            { value: "mm", label: "mm" },
            { value: "µm", label: "µm" },
        ],
        (value) => {
            store.set({ unit: value });
        },
    );
    const contours = checkbox(words.contours, (hasContours) => {
        store.set({ hasContours });
    });
    const factor = select<string>(
        FACTORS.map((each) => ({
            value: String(each),
            label: each === 1 ? words.trueToScale : words.times(String(each)),
        })),
        (value) => {
            void draw(context, Number(value));
        },
    );
    const upright = select<"1" | "2">(
        [
            { value: "2", label: "z" },
            { value: "1", label: "y" },
        ],
        (value) => {
            store.set({ upAxis: value === "1" ? 1 : 2 });
        },
    );
    store.on(["show", "palette", "unit", "hasContours", "wantedFactor"], (state) => {
        show.value = state.show;
        colours.value = state.palette;
        unit.value = state.unit;
        contours.box.checked = state.hasContours;
        factor.value = String(state.wantedFactor);
    });
    setChoices(upright, [
        { value: "2", label: "z" },
        { value: "1", label: "y" },
    ]);
    bindUniforms(context);
    return panel(
        words.heading,
        "surface-panel",
        row(words.show, show),
        row(words.colours, colours),
        row(words.unit, unit),
        ...scaleRows(context),
        contours.row,
        row(words.draw, factor),
        row(words.upright, upright),
    );
}

/** Asks how far the movement can be enlarged at its largest, and draws all years alike. */
async function draw(context: Context, wantedFactor: number): Promise<void> {
    const last = context.header.frames.length - 1;
    const { factor } = await context.decoder.ask("factor", { frame: last, wanted: wantedFactor });
    context.store.set({ wantedFactor, factor });
}

function scaleRows(context: Context): HTMLElement[] {
    const { store } = context;
    const take = (): void => {
        const [low, high] = [from, to].map((field) => field.valueAsNumber / inUnit(store.state, 1));
        const isScale = Number.isFinite(low) && Number.isFinite(high) && low < high;
        for (const field of [from, to]) {
            field.setAttribute("aria-invalid", String(!isScale));
        }
        if (isScale) {
            store.set({ low, high });
        }
    };
    const field = (name: string): HTMLInputElement =>
        make("input", { type: "number", step: "any", "aria-label": name, onchange: take });
    const from = field(words.from);
    const to = field(words.to);
    const label = make("span", { class: "label" });
    store.on(["low", "high", "unit"], (state) => {
        label.textContent = words.scale(state.unit);
        from.value = String(Number(inUnit(state, state.low).toPrecision(5)));
        to.value = String(Number(inUnit(state, state.high).toPrecision(5)));
    });
    const spread = async (): Promise<void> => {
        const reply = await context.decoder.ask("spread", { frame: context.header.frames.length - 1 });
        const [low, high] =
            context.header.kind === "loss" ? [-reply.high, -reply.low] : [reply.low, reply.high];
        if (high > low) {
            store.set({ low: Number(low.toPrecision(3)), high: Number(high.toPrecision(3)) });
        }
    };
    return [
        make("div", { class: "row" }, label, make("span", { class: "pair" }, from, words.to, to)),
        make(
            "div",
            { class: "row" },
            make("span"),
            make(
                "span",
                { class: "joined" },
                button(words.fromZero, () => {
                    store.set({ low: context.header.scale[0], high: context.header.scale[1] });
                }),
                button(words.spread, () => void spread()),
            ),
        ),
    ];
}

function bindUniforms({ store, stage, header }: Context): void {
    if (!stage) {
        return;
    }
    const { uniforms } = stage;
    uniforms.sign.value = header.kind === "loss" ? -1 : 1;
    store.on(["palette"], (state) => {
        uniforms.palette.value.dispose();
        uniforms.palette.value = paletteTexture(paletteColours(header, state.palette));
        stage.draw();
    });
    store.on(["show", "low", "high", "hasContours"], (state) => {
        uniforms.show.value = SHOW[state.show];
        uniforms.low.value = state.low;
        uniforms.high.value = state.high;
        const ticks = ticksBetween(state.low, state.high, 10);
        uniforms.contourStep.value = state.hasContours && ticks.length > 1 ? ticks[1] - ticks[0] : 0;
        stage.draw();
    });
    store.on(["upAxis"], (state) => {
        stage.view.setUpAxis(state.upAxis);
        stage.view.show("corner");
        stage.draw();
    });
}

/** What a picture says about a change that is not drawn to scale; empty where it is. */
export function enlargementText({ factor, wantedFactor }: State): string {
    if (wantedFactor === 1) {
        return "";
    }
    return factor < wantedFactor
        ? words.drawnLess(briefNumber(factor), String(wantedFactor))
        : words.drawn(briefNumber(factor));
}
