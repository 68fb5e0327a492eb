// Saving a picture of what is shown.

import type { Context } from "../context";
import { epochOf } from "../data/run";
import { button, make, row, saveAs, select } from "../dom";
import { text } from "../text/english";
import { composePicture, type PictureSize } from "./composition";
import type { Legend } from "./legend";
import type { Points } from "./points";

export const SIZES = ["screen", "1600x1200", "2400x1800", "1920x1080", "3840x2160"];

export function sizeOf(context: Context, choice: string): PictureSize {
    if (choice === "screen") {
        const { clientWidth, clientHeight } = context.stage!.canvas;
        const ratio = Math.max(window.devicePixelRatio, 1);
        return { width: Math.round(clientWidth * ratio), height: Math.round(clientHeight * ratio) };
    }
    const [width, height] = choice.split("x").map(Number);
    return { width, height };
}

export function sizeChoice(): HTMLSelectElement {
    return select(
        SIZES.map((value) => ({
            value,
            label: value === "screen" ? text.picture.screen : value.replace("x", " × "),
        })),
        () => undefined,
    );
}

export function pngOf(canvas: HTMLCanvasElement): Promise<Blob> {
    return new Promise((resolve, reject) => {
        canvas.toBlob((blob) => {
            if (blob) {
                resolve(blob);
            } else {
                reject(new Error("PNG"));
            }
        }, "image/png");
    });
}

export function pictureDialog(context: Context, legend: Legend, points: Points): HTMLDialogElement {
    const size = sizeChoice();
    const save = async (): Promise<void> => {
        const epoch = epochOf(context.header, context.store.state.frame);
        const picture = composePicture(context, legend, points, sizeOf(context, size.value));
        saveAs(`${context.header.mesh}-${String(epoch).padStart(4, "0")}.png`, await pngOf(picture));
        dialog.close();
    };
    const dialog = make(
        "dialog",
        { "aria-labelledby": "picture-heading", id: "picture-dialog" },
        make("h2", { id: "picture-heading" }, text.picture.heading),
        row(text.picture.size, size),
        make(
            "div",
            { class: "buttons" },
            button(text.save, () => void save().catch(context.fail), { class: "main" }),
            button(text.close, () => {
                dialog.close();
            }),
        ),
    );
    return dialog;
}
