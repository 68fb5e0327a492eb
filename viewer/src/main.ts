// Builds the page: reads the header, starts the worker, puts the panels together.

import workerSource from "worker:./decoder/worker.ts";

import type { Context } from "./context";
import { BlockTexts } from "./data/blocks";
import { type Header, readHeader } from "./data/header";
import { DamagedPage, Decoder } from "./decoder/client";
import { button, make } from "./dom";
import { comparePanel, wipeEdge } from "./panels/compare";
import { curvesPanel } from "./panels/curves";
import { epochsPanel } from "./panels/epochs";
import { filmDialog } from "./panels/film";
import { helpDialog } from "./panels/help";
import { Legend } from "./panels/legend";
import { lightPanel } from "./panels/light";
import { pictureDialog } from "./panels/picture";
import { Points } from "./panels/points";
import { scaleBar } from "./panels/scale_bar";
import { sectionPanel } from "./panels/section";
import { enlargementText, surfacePanel } from "./panels/surface";
import { togglePlaying, yearsBar } from "./panels/years";
import { Player } from "./player";
import { addGestures, VIEW_KEYS } from "./scene/gestures";
import { Stage } from "./scene/stage";
import { initialState, Store } from "./state";
import { text } from "./text/english";

const THIN_VERTICES = 60000;

function makeStage(canvas: HTMLCanvasElement): Stage | null {
    try {
        return new Stage(canvas);
    } catch {
        return null;
    }
}

function readPage(): Header | null {
    try {
        return readHeader(document.getElementById("header")!.textContent);
    } catch {
        return null;
    }
}

function message(words: string): HTMLElement {
    return make("p", { class: "message", role: "alert" }, words);
}

function startState(header: Header): Store {
    const store = new Store(initialState());
    const [low, high] = header.scale;
    store.set({
        frame: header.frames.length - 1,
        low,
        high,
        palette: header.palettes[0].name,
        unit: high < 0.1 ? "µm" : "mm",
        isDark: window.matchMedia("(prefers-color-scheme: dark)").matches,
    });
    return store;
}

/** Tells a failure once. */
function failureList(place: HTMLElement): (error: unknown) => void {
    const told = new Set<string>();
    return (error) => {
        const words =
            error instanceof DamagedPage
                ? text.damaged(error.epoch)
                : text.unexpected(error instanceof Error ? error.message : String(error));
        if (!told.has(words)) {
            told.add(words);
            place.append(message(words));
        }
    };
}

function notices(header: Header): HTMLElement[] {
    const made = header.epochs[header.epochs.length - 1].number;
    const kept = header.epochs.length - 1;
    const held = header.frames.length - 1;
    return [
        ...(made < header.plannedEpochs ? [text.cancelled(made, header.plannedEpochs)] : []),
        ...(kept < made ? [text.kept(kept, made)] : []),
        ...(held < kept ? [text.fewer(held, kept)] : []),
    ].map((words) => make("p", { class: "notice" }, words));
}

function viewButtons(stage: Stage): HTMLElement {
    const show = (action: () => void) => () => {
        action();
        stage.drawTurning();
    };
    return make(
        "div",
        { id: "views", role: "group", "aria-label": text.views.group },
        ...VIEW_KEYS.map((name) =>
            button(
                text.views[name],
                show(() => {
                    stage.view.show(name);
                }),
            ),
        ),
        button(
            "+",
            show(() => {
                stage.view.zoom(1.25);
            }),
            { "aria-label": text.views.nearer, title: text.views.nearer },
        ),
        button(
            "−",
            show(() => {
                stage.view.zoom(0.8);
            }),
            { "aria-label": text.views.farther, title: text.views.farther },
        ),
    );
}

function keepSize(stage: Stage, place: HTMLElement): void {
    new ResizeObserver(() => {
        stage.setSize(
            place.clientWidth,
            place.clientHeight,
            Math.min(Math.max(window.devicePixelRatio, 1), 2),
        );
    }).observe(place);
}

function addKeys(context: Context): void {
    document.addEventListener("keydown", (event) => {
        const { store, header } = context;
        const target = event.target as Element;
        if (
            event.ctrlKey ||
            event.metaKey ||
            event.altKey ||
            target.closest("input, select, button, summary, dialog")
        ) {
            return;
        }
        const step = { ",": -1, ".": 1 }[event.key];
        if (event.key === " ") {
            togglePlaying(context);
        } else if (step !== undefined) {
            const frame = Math.min(Math.max(store.state.frame + step, 0), header.frames.length - 1);
            store.set({ frame, isPlaying: false });
        } else {
            return;
        }
        event.preventDefault();
    });
}

function headBar(context: Context, dialogs: { label: string; dialog: HTMLDialogElement }[]): HTMLElement {
    const { store } = context;
    return make(
        "div",
        { class: "buttons" },
        ...dialogs.map(({ label, dialog }) =>
            button(label, () => {
                dialog.showModal();
            }),
        ),
        button(text.theme, () => {
            store.set({ isDark: !store.state.isDark });
        }),
    );
}

/** Everything over the picture that belongs to it. */
function overlay(context: Context, legend: Legend, points: Points): HTMLElement[] {
    const { stage, store } = context;
    if (!stage) {
        return [];
    }
    const drawn = make("p", { id: "enlarged" });
    store.on(["factor", "wantedFactor"], (state) => {
        drawn.textContent = enlargementText(state);
        drawn.hidden = drawn.textContent === "";
    });
    return [viewButtons(stage), legend.element, scaleBar(stage), points.marks, wipeEdge(context), drawn];
}

async function firstSurface(context: Context): Promise<void> {
    const { decoder, stage } = context;
    const { faces } = await decoder.start();
    const first = await decoder.ask("surface", { frame: 0, factor: 1 });
    if (stage) {
        stage.setFaces(faces);
        stage.setBefore(first);
        stage.view.show("corner");
    }
}

/** What can wait until the stone is to be seen. */
async function afterwards({ decoder, stage }: Context): Promise<void> {
    if (!stage) {
        return;
    }
    if (stage.hasManyFaces) {
        stage.setThinned((await decoder.ask("thin", { vertices: THIN_VERTICES })).faces);
    }
    stage.setSurroundings((await decoder.ask("relief", {})).normals);
    document.body.dataset.complete = "yes";
}

function build(context: Context, stagePlace: HTMLElement, table: HTMLTableElement): void {
    const { header, store, stage } = context;
    const legend = new Legend(context);
    const points = new Points(context);
    const player = new Player(context);
    stagePlace.append(...overlay(context, legend, points));
    const extent = (axis: number): [number, number] => stage?.extent(axis) ?? [0, 1];
    const [low, high] = extent(store.state.cutAxis);
    store.set({ cutAt: (low + high) / 2 });
    const side = make(
        "aside",
        { "aria-label": text.surface.heading },
        ...notices(header),
        ...(stage
            ? [
                  surfacePanel(context),
                  comparePanel(context),
                  lightPanel(context),
                  sectionPanel(context, extent),
                  points.panel,
              ]
            : []),
        curvesPanel(context, table),
        epochsPanel(context, table),
    );
    const help = { label: text.help, dialog: helpDialog() };
    const dialogs = stage
        ? [
              { label: text.savePicture, dialog: pictureDialog(context, legend, points) },
              {
                  label: text.saveFilm,
                  dialog: filmDialog(context, legend, points, (frame) => player.show(frame)),
              },
              help,
          ]
        : [help];
    document.getElementById("head")!.append(headBar(context, dialogs));
    document.getElementById("page")!.append(yearsBar(context, table), side);
    document.body.append(...dialogs.map(({ dialog }) => dialog));
    if (stage) {
        keepSize(stage, stagePlace);
        addGestures(stage, (x, y) => void points.choose(x, y).catch(context.fail));
    }
    addKeys(context);
}

async function start(): Promise<void> {
    const page = document.getElementById("page")!;
    const table = document.getElementById("epochs") as HTMLTableElement;
    const header = readPage();
    if (!header) {
        page.prepend(message(text.damagedPage));
        return;
    }
    if (!("DecompressionStream" in window)) {
        page.prepend(message(text.noWorker));
        return;
    }
    const store = startState(header);
    store.on(["isDark"], (state) => {
        document.documentElement.dataset.theme = state.isDark ? "dark" : "light";
    });
    const canvas = make("canvas", {
        id: "stone",
        tabindex: 0,
        role: "application",
        "aria-label": text.stage,
    });
    const loading = make("p", { class: "loading", role: "status" }, text.loading);
    const stagePlace = make(
        "section",
        { id: "stage", "aria-label": text.title(header.mesh) },
        canvas,
        loading,
    );
    page.classList.add("running");
    page.prepend(stagePlace);
    const stage = makeStage(canvas);
    if (!stage) {
        stagePlace.append(message(text.noGraphics));
    }
    const decoder = new Decoder(
        workerSource,
        header,
        new BlockTexts(header, document.querySelectorAll(".block")),
    );
    let context: Context = { header, store, decoder, stage, fail: failureList(stagePlace) };
    try {
        await firstSurface(context);
    } catch (error) {
        context.fail(error);
        context = { ...context, stage: null };
    }
    canvas.hidden = context.stage === null;
    loading.remove();
    build(context, stagePlace, table);
    await afterwards(context);
}

document.addEventListener("DOMContentLoaded", () => void start());
