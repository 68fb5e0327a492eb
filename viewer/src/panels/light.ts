// Raking light: where it comes from, how low, and how strong beside the light of the room.

import type { Context } from "../context";
import { make, panel, row, setSlider, slider } from "../dom";
import type { State } from "../state";
import { text } from "../text/english";

const words = text.light;

export function lightPanel({ store, stage }: Context): HTMLElement {
    const from = slider(0, 360, 1, (lightFrom) => {
        store.set({ lightFrom });
    });
    const height = slider(2, 90, 1, (lightHeight) => {
        store.set({ lightHeight });
    });
    const strength = slider(0, 1, 0.02, (value) => {
        store.set({ strength: value });
    });
    const room = slider(0, 1, 0.02, (value) => {
        store.set({ room: value });
    });
    const relief = slider(0, 4, 0.1, (value) => {
        store.set({ relief: value });
    });
    const fromText = make("output", {});
    const heightText = make("output", {});
    store.on(["lightFrom", "lightHeight", "strength", "room", "relief"], (state) => {
        setSlider(from, state.lightFrom);
        setSlider(height, state.lightHeight);
        setSlider(strength, state.strength);
        setSlider(room, state.room);
        setSlider(relief, state.relief);
        fromText.textContent = `${String(Math.round(state.lightFrom))}°`;
        heightText.textContent = `${String(Math.round(state.lightHeight))}°`;
        if (stage) {
            lightUniforms(stage.uniforms, state);
            stage.draw();
        }
    });
    return panel(
        words.heading,
        "light-panel",
        make(
            "div",
            { class: "lamp" },
            dial(store),
            make("div", {}, row(words.from, from, fromText), row(words.height, height, heightText)),
        ),
        row(words.strength, strength),
        row(words.room, room),
        row(words.relief, relief),
    );
}

function lightUniforms(uniforms: NonNullable<Context["stage"]>["uniforms"], state: State): void {
    const from = (state.lightFrom * Math.PI) / 180;
    const height = (state.lightHeight * Math.PI) / 180;
    const across = Math.cos(height);
    uniforms.light.value.set(Math.sin(from) * across, Math.cos(from) * across, Math.sin(height));
    uniforms.strength.value = state.strength;
    uniforms.room.value = state.room;
    uniforms.relief.value = state.relief;
}

/** A lamp over a round plate: in the middle it is overhead, at the rim it rakes. */
function dial(store: Context["store"]): HTMLElement {
    const knob = make("span", { class: "knob" });
    const plate = make("div", { class: "dial", "aria-hidden": "true", title: words.dial }, knob);
    const turn = (event: PointerEvent): void => {
        const box = plate.getBoundingClientRect();
        const x = (2 * (event.clientX - box.left)) / box.width - 1;
        const y = 1 - (2 * (event.clientY - box.top)) / box.height;
        const lightFrom = ((Math.atan2(x, y) * 180) / Math.PI + 360) % 360;
        const lightHeight = Math.max(90 - 88 * Math.min(Math.hypot(x, y), 1), 2);
        store.set({ lightFrom: Math.round(lightFrom), lightHeight: Math.round(lightHeight) });
    };
    plate.addEventListener("pointerdown", (event) => {
        plate.setPointerCapture(event.pointerId);
        turn(event);
    });
    plate.addEventListener("pointermove", (event) => {
        if (plate.hasPointerCapture(event.pointerId)) {
            turn(event);
        }
    });
    store.on(["lightFrom", "lightHeight"], (state) => {
        const from = (state.lightFrom * Math.PI) / 180;
        const out = (90 - state.lightHeight) / 88;
        knob.style.left = `${String(50 + 42 * out * Math.sin(from))}%`;
        knob.style.top = `${String(50 - 42 * out * Math.cos(from))}%`;
    });
    return plate;
}
