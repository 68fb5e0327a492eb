// Before, after, or both with an edge between them that can be moved.

import type { Context } from "../context";
import { epochOf, timePhrase } from "../data/run";
import { choiceOf, make, panel } from "../dom";
import type { Side } from "../state";
import { text } from "../text/english";

const words = text.compare;

export function comparePanel({ store, stage }: Context): HTMLElement {
    const sides = choiceOf<Side>(
        "side",
        words.heading,
        [
            { value: "after", label: words.after },
            { value: "wipe", label: words.wipe },
            { value: "before", label: words.before },
        ],
        (side) => {
            store.set({ side });
        },
    );
    store.on(["side", "edge"], (state) => {
        sides.set(state.side);
        stage?.setSide(state.side, state.edge);
    });
    return panel(words.heading, "compare-panel", sides.element);
}

/** The edge over the picture: dragged by its handle, moved by the arrow keys. */
export function wipeEdge({ store, header }: Context): HTMLElement {
    const after = make("span", { class: "tag right" });
    const handle = make("div", {
        class: "handle",
        role: "slider",
        tabindex: 0,
        "aria-label": words.edge,
        "aria-valuemin": 0,
        "aria-valuemax": 100,
    });
    const edge = make(
        "div",
        { id: "edge" },
        make("span", { class: "tag left" }, words.beforeTag),
        after,
        handle,
    );
    const moveTo = (share: number): void => {
        store.set({ edge: Math.min(Math.max(share, 0), 1) });
    };
    handle.addEventListener("pointerdown", (event) => {
        handle.setPointerCapture(event.pointerId);
    });
    handle.addEventListener("pointermove", (event) => {
        if (handle.hasPointerCapture(event.pointerId)) {
            const box = edge.parentElement!.getBoundingClientRect();
            moveTo((event.clientX - box.left) / box.width);
        }
    });
    handle.addEventListener("keydown", (event) => {
        const step = { ArrowLeft: -0.02, ArrowDown: -0.02, ArrowRight: 0.02, ArrowUp: 0.02 }[event.key];
        if (step !== undefined) {
            moveTo(store.state.edge + step);
            event.preventDefault();
        }
    });
    store.on(["side", "edge", "frame", "timeUnit"], (state) => {
        edge.hidden = state.side !== "wipe";
        edge.style.left = `${String(100 * state.edge)}%`;
        handle.setAttribute("aria-valuenow", String(Math.round(100 * state.edge)));
        after.textContent = timePhrase(header, epochOf(header, state.frame), state.timeUnit);
    });
    return edge;
}
