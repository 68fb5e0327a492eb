// The bar below the stone: which epoch is shown, and playing through them.

import type { Context } from "../context";
import { epochOf, epochPhrase, figureOf, heldEpochs, timePhrase, timeText } from "../data/run";
import { button, make, select, setSlider, slider } from "../dom";
import type { State, TimeUnit } from "../state";
import { text } from "../text/english";
import { columnLabel } from "./epochs";

const words = text.years;
const FIGURES = ["mean", "largest", "volume"];

export function yearsBar(context: Context, table: HTMLTableElement): HTMLElement {
    const { header, store } = context;
    const last = header.frames.length - 1;
    const go = (frame: number): void => {
        store.set({ frame: Math.min(Math.max(frame, 0), last), isPlaying: false });
    };
    const track = slider(0, last, 1, go);
    track.setAttribute("aria-label", words.slider);
    const play = button("", () => {
        togglePlaying(context);
    });
    const speed = select(
        [1, 2, 4, 8].map((n) => ({ value: String(n), label: words.perSecond(n) })),
        (value) => {
            store.set({ speed: Number(value) });
        },
    );
    speed.setAttribute("aria-label", words.speed);
    const hasDates = header.epochs.some(({ date }) => date !== "");
    const units = (hasDates ? ["years", "days", "dates"] : ["years", "days"]) as TimeUnit[];
    const unit = select<TimeUnit>(
        units.map((value) => ({ value, label: words.units[value] })),
        (timeUnit) => {
            store.set({ timeUnit });
        },
    );
    unit.setAttribute("aria-label", words.unit);
    const time = make("div", { class: "time" });
    const ticks = make("div", { class: "ticks", "aria-hidden": "true" });
    const figures = make("dl", { class: "figures" });
    const status = make("p", { class: "unseen", role: "status" });
    store.on(["frame", "timeUnit"], (state) => {
        const epoch = epochOf(header, state.frame);
        const phrase = timePhrase(header, epoch, state.timeUnit);
        setSlider(track, state.frame);
        track.setAttribute("aria-valuetext", words.status(phrase, epochPhrase(header, epoch)));
        time.replaceChildren(...timeParts(context, epoch, state));
        ticks.replaceChildren(...tickMarks(context, state));
        figures.replaceChildren(...figureParts(context, table, epoch));
        if (!state.isPlaying) {
            status.textContent = words.status(phrase, epochPhrase(header, epoch));
        }
    });
    store.on(["isPlaying"], (state) => {
        play.className = state.isPlaying ? "icon pause" : "icon play";
        play.setAttribute("aria-label", state.isPlaying ? words.pause : words.play);
        play.title = state.isPlaying ? words.pause : words.play;
    });
    speed.value = String(store.state.speed);
    return make(
        "section",
        { id: "years", "aria-label": words.group },
        time,
        make(
            "div",
            { class: "buttons" },
            icon("first", words.first, () => {
                go(0);
            }),
            icon("back", words.before, () => {
                go(store.state.frame - 1);
            }),
            play,
            icon("next", words.next, () => {
                go(store.state.frame + 1);
            }),
            speed,
            unit,
        ),
        make("div", { class: "track" }, track, ticks),
        figures,
        status,
    );
}

function icon(name: string, label: string, action: () => void): HTMLButtonElement {
    return button("", action, { class: `icon ${name}`, "aria-label": label, title: label });
}

function timeParts({ header }: Context, epoch: number, state: State): Node[] {
    const shown = timeText(header, epoch, state.timeUnit);
    const word = { years: words.year, days: words.day, dates: "" }[state.timeUnit];
    return [
        make("span", {}, word, " ", make("strong", {}, shown)),
        make("small", {}, epochPhrase(header, epoch)),
    ];
}

/** Some of the epochs by their times, spread along the slider. */
function tickMarks({ header }: Context, state: State): Node[] {
    const held = heldEpochs(header);
    const last = held.length - 1;
    const step = Math.max(1, Math.ceil(last / (state.timeUnit === "dates" ? 3 : 5)));
    return held.map((epoch, frame) => {
        const isLabelled = frame % step === 0 || frame === last;
        const isCrowded = frame !== last && last - frame < step * 0.6;
        const label = isLabelled && !isCrowded ? timeText(header, epoch, state.timeUnit) : "";
        const mark = make("span", { class: last > 60 && !label ? "none" : "tick" }, label);
        mark.style.left = `${String((100 * frame) / Math.max(last, 1))}%`;
        return mark;
    });
}

function figureParts({ header }: Context, table: HTMLTableElement, epoch: number): Node[] {
    return FIGURES.flatMap((key) => {
        const figure = figureOf(header, epoch, key);
        if (!figure) {
            return [];
        }
        const unit = table.querySelector(`th[data-key="${key}"] .unit`)?.textContent ?? "";
        const value = make("strong", {}, figure.text.replace("-", "−"));
        return [
            make(
                "div",
                { "data-key": key },
                make("dt", {}, columnLabel(table, key)),
                make("dd", {}, value, ` ${unit}`),
            ),
        ];
    });
}

export function togglePlaying({ store, header }: Context): void {
    const { isPlaying, frame } = store.state;
    const isAtEnd = frame === header.frames.length - 1;
    store.set({ isPlaying: !isPlaying, ...(isAtEnd && !isPlaying ? { frame: 0 } : {}) });
}
