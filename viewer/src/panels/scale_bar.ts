// A bar of known length over the picture. One drawing serves the screen and saved pictures.

import type { Stage } from "../scene/stage";
import { briefNumber } from "../data/run";
import { make } from "../dom";

const LONGEST = 150;

/** The longest round length that fits, in millimetres, and how it is called. */
export function scaleBarFor(millimetresPerPixel: number): { pixels: number; label: string } {
    const longest = LONGEST * millimetresPerPixel;
    const power = 10 ** Math.floor(Math.log10(longest));
    const length = power * [5, 2, 1].find((each) => each * power <= longest)!;
    const [value, unit] =
        length >= 1000 ? [length / 1000, "m"] : length < 0.1 ? [length * 1000, "µm"] : [length, "mm"];
    return { pixels: length / millimetresPerPixel, label: `${briefNumber(value)} ${unit}` };
}

export function scaleBar(stage: Stage): HTMLElement {
    const bar = make("div", { id: "scale-bar" });
    stage.onDrawn(() => {
        const { pixels, label } = scaleBarFor(
            stage.view.millimetresHigh / Math.max(stage.canvas.clientHeight, 1),
        );
        bar.style.width = `${String(pixels)}px`;
        bar.textContent = label;
    });
    return bar;
}

/** Draws with its lower right end at a place. */
export function drawScaleBar(
    pen: CanvasRenderingContext2D,
    right: number,
    bottom: number,
    millimetresPerPixel: number,
    ink: string,
): void {
    const { pixels, label } = scaleBarFor(millimetresPerPixel);
    pen.strokeStyle = ink;
    pen.fillStyle = ink;
    pen.lineWidth = 2;
    pen.beginPath();
    pen.moveTo(right - pixels, bottom - 8);
    pen.lineTo(right - pixels, bottom);
    pen.lineTo(right, bottom);
    pen.lineTo(right, bottom - 8);
    pen.stroke();
    pen.font = `13px ${getComputedStyle(document.body).fontFamily}`;
    pen.textAlign = "center";
    pen.fillText(label, right - pixels / 2, bottom - 6);
    pen.textAlign = "start";
}
