// The legend: colour bar, ticks and histogram. One drawing serves the screen and saved pictures.

import type { Context } from "../context";
import { briefNumber, epochOf, ticksBetween } from "../data/run";
import { make } from "../dom";
import { cssColour, PALETTE_SIZE, paletteColours } from "../scene/palettes";
import type { State } from "../state";
import { text } from "../text/english";

export const LEGEND_WIDTH = 150;
export const LEGEND_HEIGHT = 262;
export const HISTOGRAM_STEPS = 48;

export interface Colours {
    ink: string;
    faint: string;
    card: string;
    bars: string;
}

export function coloursOf(isDark: boolean): Colours {
    return isDark
        ? { ink: "#eceae6", faint: "#b4b3b8", card: "rgb(36 38 42 / 88%)", bars: "#85868c" }
        : { ink: "#1d1e22", faint: "#585a66", card: "rgb(255 255 255 / 86%)", bars: "#a3a5ad" };
}

/** "loss, mm" */
export function legendTitle(context: Context, state: State): string {
    return `${text.legend[context.header.kind]}, ${state.unit}`;
}

export function inUnit(state: State, millimetres: number): number {
    return state.unit === "µm" ? millimetres * 1000 : millimetres;
}

const BAR = { x: 54, y: 38, width: 18, height: 190 };

/** Draws with its upper left corner at 0, 0. */
export function drawLegend(
    pen: CanvasRenderingContext2D,
    context: Context,
    state: State,
    counts: number[],
    colours: Colours,
): void {
    const font = getComputedStyle(document.body).fontFamily;
    pen.fillStyle = colours.card;
    pen.beginPath();
    pen.roundRect(0, 0, LEGEND_WIDTH, LEGEND_HEIGHT, 8);
    pen.fill();
    pen.fillStyle = colours.ink;
    pen.font = `600 14px ${font}`;
    pen.textBaseline = "alphabetic";
    pen.fillText(legendTitle(context, state), 12, 24);
    drawBar(pen, context, state, colours);
    drawHistogram(pen, counts, colours);
    pen.font = `13.5px ${font}`;
    drawTicks(pen, state, colours);
    pen.fillStyle = colours.faint;
    pen.font = `12px ${font}`;
    pen.fillText(
        context.header.kind === "both" ? text.legend.bothHint : text.legend.same,
        12,
        LEGEND_HEIGHT - 12,
    );
}

function drawBar(pen: CanvasRenderingContext2D, context: Context, state: State, colours: Colours): void {
    const palette = paletteColours(context.header, state.palette);
    for (let y = 0; y < BAR.height; y += 0.5) {
        pen.fillStyle = cssColour(palette, 1 - y / BAR.height);
        pen.fillRect(BAR.x, BAR.y + y, BAR.width, Math.min(1, BAR.height - y));
    }
    pen.strokeStyle = colours.faint;
    pen.lineWidth = 1;
    pen.strokeRect(BAR.x - 0.5, BAR.y - 0.5, BAR.width + 1, BAR.height + 1);
}

function drawHistogram(pen: CanvasRenderingContext2D, counts: number[], colours: Colours): void {
    const most = Math.max(...counts, 1);
    const step = BAR.height / Math.max(counts.length, 1);
    pen.fillStyle = colours.bars;
    counts.forEach((count, i) => {
        // Few vertices are still to be seen beside many.
        const length = count === 0 ? 0 : Math.max(1, 40 * Math.sqrt(count / most));
        pen.fillRect(BAR.x - 4 - length, BAR.y + BAR.height - (i + 1) * step + 0.5, length, step - 1);
    });
}

function drawTicks(pen: CanvasRenderingContext2D, state: State, colours: Colours): void {
    pen.fillStyle = colours.ink;
    pen.strokeStyle = colours.ink;
    pen.textBaseline = "middle";
    const low = inUnit(state, state.low);
    const high = inUnit(state, state.high);
    for (const tick of ticksBetween(low, high, 5)) {
        const y = BAR.y + BAR.height * (1 - (tick - low) / (high - low));
        pen.beginPath();
        pen.moveTo(BAR.x + BAR.width + 1, y);
        pen.lineTo(BAR.x + BAR.width + 6, y);
        pen.stroke();
        pen.fillText(briefNumber(tick), BAR.x + BAR.width + 10, y);
    }
    pen.textBaseline = "alphabetic";
}

export class Legend {
    readonly element = make("canvas", { id: "legend", role: "img" });
    counts: number[] = [];

    constructor(private readonly context: Context) {
        context.store.on(["frame", "low", "high"], (state) => {
            void this.count(state);
        });
        context.store.on(["palette", "unit", "isDark", "show", "low", "high", "frame"], (state) => {
            this.draw(state);
        });
    }

    private async count(state: State): Promise<void> {
        const { frame, low, high } = state;
        const sign = this.context.header.kind === "loss" ? -1 : 1;
        try {
            const reply = await this.context.decoder.ask("histogram", {
                frame,
                low: sign < 0 ? -high : low,
                high: sign < 0 ? -low : high,
                steps: HISTOGRAM_STEPS,
            });
            this.counts = sign < 0 ? reply.counts.reverse() : reply.counts;
        } catch {
            this.counts = [];
        }
        this.draw(this.context.store.state);
    }

    private draw(state: State): void {
        const { element } = this;
        element.hidden = state.show !== "change";
        const ratio = Math.max(window.devicePixelRatio, 1);
        element.width = LEGEND_WIDTH * ratio;
        element.height = LEGEND_HEIGHT * ratio;
        const pen = element.getContext("2d");
        if (!pen) {
            return;
        }
        pen.scale(ratio, ratio);
        drawLegend(pen, this.context, state, this.counts, coloursOf(state.isDark));
        const end = (value: number): string => briefNumber(inUnit(state, value));
        const title = legendTitle(this.context, state);
        element.setAttribute("aria-label", text.legend.label(title, end(state.low), end(state.high)));
        element.dataset.epoch = String(epochOf(this.context.header, state.frame));
        element.dataset.steps = String(PALETTE_SIZE);
    }
}
