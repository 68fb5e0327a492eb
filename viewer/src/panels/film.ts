// Saving a film of all years: WebM where the browser makes it, or one picture for every epoch.

import type { Context } from "../context";
import { epochOf } from "../data/run";
import { button, make, row, saveAs, select } from "../dom";
import { text } from "../text/english";
import { composePicture, type PictureSize } from "./composition";
import type { Legend } from "./legend";
import { pngOf, sizeChoice, sizeOf } from "./picture";
import type { Points } from "./points";
import { zipOf } from "./zip";

const words = text.film;
const WEBM = "video/webm";

interface Film {
    size: PictureSize;
    perSecond: number;
    isStopped: () => boolean;
    progress: (done: number) => void;
}

export function filmDialog(
    context: Context,
    legend: Legend,
    points: Points,
    shown: (frame: number) => Promise<void>,
): HTMLDialogElement {
    const canRecord = "MediaRecorder" in window && MediaRecorder.isTypeSupported(WEBM);
    const kind = select(
        [
            ...(canRecord ? [{ value: "webm", label: words.webm }] : []),
            { value: "series", label: words.series },
        ],
        () => undefined,
    );
    const size = sizeChoice();
    const speed = select(
        [1, 2, 4, 8].map((n) => ({ value: String(n), label: String(n) })),
        () => undefined,
    );
    speed.value = "2";
    const progress = make("progress", { max: 1, value: 0, "aria-label": words.heading });
    let isStopped = false;
    const save = async (): Promise<void> => {
        const { header, store } = context;
        const frame = store.state.frame;
        isStopped = false;
        start.disabled = true;
        const film: Film = {
            size: sizeOf(context, size.value),
            perSecond: Number(speed.value),
            isStopped: () => isStopped,
            progress: (done) => {
                progress.value = done / header.frames.length;
                progress.textContent = words.progress(done, header.frames.length);
            },
        };
        const draw = async (each: number): Promise<HTMLCanvasElement> => {
            await shown(each);
            return composePicture(context, legend, points, film.size);
        };
        const made =
            kind.value === "webm" ? await record(context, film, draw) : await series(context, film, draw);
        if (!isStopped) {
            saveAs(`${header.mesh}.${kind.value === "webm" ? "webm" : "zip"}`, made);
            dialog.close();
        }
        await shown(frame);
        start.disabled = false;
        film.progress(0);
    };
    const start = button(text.save, () => void save().catch(context.fail), { class: "main" });
    const dialog = make(
        "dialog",
        { "aria-labelledby": "film-heading", id: "film-dialog" },
        make("h2", { id: "film-heading" }, words.heading),
        row(words.kind, kind),
        row(words.size, size),
        row(words.speed, speed),
        progress,
        make(
            "div",
            { class: "buttons" },
            start,
            button(text.close, () => {
                isStopped = true;
                dialog.close();
            }),
        ),
    );
    return dialog;
}

type Draw = (frame: number) => Promise<HTMLCanvasElement>;

async function series({ header }: Context, film: Film, draw: Draw): Promise<Blob> {
    const entries = [];
    for (let frame = 0; frame < header.frames.length && !film.isStopped(); frame++) {
        const png = await pngOf(await draw(frame));
        const name = `${header.mesh}-${String(epochOf(header, frame)).padStart(4, "0")}.png`;
        entries.push({ name, bytes: new Uint8Array(await png.arrayBuffer()) });
        film.progress(frame + 1);
    }
    return zipOf(entries);
}

/** Every picture stays as long as its epoch is to be seen: a recorder takes what there is at that time. */
async function record({ header }: Context, film: Film, draw: Draw): Promise<Blob> {
    const canvas = document.createElement("canvas");
    canvas.width = film.size.width;
    canvas.height = film.size.height;
    const pen = canvas.getContext("2d")!;
    const recorder = new MediaRecorder(canvas.captureStream(30), {
        mimeType: WEBM,
        videoBitsPerSecond: 12e6,
    });
    const pieces: Blob[] = [];
    recorder.ondataavailable = (event) => pieces.push(event.data);
    const ended = new Promise((resolve) => (recorder.onstop = resolve));
    for (let frame = 0; frame < header.frames.length && !film.isStopped(); frame++) {
        if (recorder.state === "recording") {
            recorder.pause();
        }
        const picture = await draw(frame);
        if (recorder.state === "paused") {
            recorder.resume();
        } else {
            recorder.start();
        }
        // Drawn twice: recorders drop the first picture behind a pause.
        for (let part = 0; part < 2; part++) {
            pen.drawImage(picture, 0, 0);
            await new Promise((resolve) => setTimeout(resolve, 500 / film.perSecond));
        }
        film.progress(frame + 1);
    }
    recorder.stop();
    await ended;
    return new Blob(pieces, { type: WEBM });
}
