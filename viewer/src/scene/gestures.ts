// Turning, moving and coming nearer by mouse, touch and keyboard.

import type { Stage } from "./stage";
import type { ViewName } from "./view";

const DEGREES_PER_PIXEL = 0.35;
const CLICK_PIXELS = 4;
export const VIEW_KEYS: ViewName[] = ["front", "back", "left", "right", "top", "bottom", "corner"];

/** Listens on the canvas. `choose` gets places of the canvas that were clicked, both coordinates from -1 to 1. */
export function addGestures(stage: Stage, choose: (x: number, y: number) => void): void {
    const { canvas, view } = stage;
    const held = new Map<number, { x: number; y: number }>();
    let travelled = 0;

    canvas.addEventListener("pointerdown", (event) => {
        canvas.setPointerCapture(event.pointerId);
        held.set(event.pointerId, { x: event.clientX, y: event.clientY });
        travelled = held.size > 1 ? Infinity : 0;
    });
    canvas.addEventListener("pointermove", (event) => {
        const last = held.get(event.pointerId);
        if (!last) {
            return;
        }
        const dx = event.clientX - last.x;
        const dy = event.clientY - last.y;
        travelled += Math.abs(dx) + Math.abs(dy);
        if (held.size === 2) {
            pinch(stage, held, event);
        } else if (event.buttons & 6 || event.shiftKey) {
            view.move(dx / canvas.clientHeight, -dy / canvas.clientHeight);
        } else if (travelled > CLICK_PIXELS) {
            view.turn(dx * DEGREES_PER_PIXEL, dy * DEGREES_PER_PIXEL);
        }
        held.set(event.pointerId, { x: event.clientX, y: event.clientY });
        stage.drawTurning();
    });
    canvas.addEventListener("pointerup", (event) => {
        held.delete(event.pointerId);
        if (travelled <= CLICK_PIXELS && event.button === 0) {
            const box = canvas.getBoundingClientRect();
            choose(
                (2 * (event.clientX - box.left)) / box.width - 1,
                1 - (2 * (event.clientY - box.top)) / box.height,
            );
        }
    });
    canvas.addEventListener("pointercancel", (event) => {
        held.delete(event.pointerId);
    });
    canvas.addEventListener("contextmenu", (event) => {
        event.preventDefault();
    });
    canvas.addEventListener(
        "wheel",
        (event) => {
            event.preventDefault();
            view.zoom(Math.exp(-event.deltaY * (event.deltaMode === 1 ? 0.05 : 0.0015)));
            stage.drawTurning();
        },
        { passive: false },
    );
    canvas.addEventListener("keydown", (event) => {
        if (!event.ctrlKey && !event.altKey && !event.metaKey && pressed(stage, event, choose)) {
            event.preventDefault();
            stage.drawTurning();
        }
    });
}

/** Two fingers move and zoom. */
function pinch(stage: Stage, held: Map<number, { x: number; y: number }>, event: PointerEvent): void {
    const other = [...held].find(([id]) => id !== event.pointerId)![1];
    const last = held.get(event.pointerId)!;
    const before = Math.hypot(last.x - other.x, last.y - other.y);
    const now = Math.hypot(event.clientX - other.x, event.clientY - other.y);
    stage.view.zoom(now / Math.max(before, 1));
    stage.view.move(
        (event.clientX - last.x) / 2 / stage.canvas.clientHeight,
        -(event.clientY - last.y) / 2 / stage.canvas.clientHeight,
    );
}

const ARROWS: Record<string, [number, number]> = {
    ArrowLeft: [-1, 0],
    ArrowRight: [1, 0],
    ArrowUp: [0, 1],
    ArrowDown: [0, -1],
};

function pressed(stage: Stage, event: KeyboardEvent, choose: (x: number, y: number) => void): boolean {
    const { view } = stage;
    if (event.key in ARROWS) {
        const [x, y] = ARROWS[event.key];
        if (event.shiftKey) {
            view.move(0.05 * x, 0.05 * y);
        } else {
            view.turn(7.5 * x, -7.5 * y);
        }
    } else if (event.key === "+" || event.key === "=") {
        view.zoom(1.2);
    } else if (event.key === "-") {
        view.zoom(1 / 1.2);
    } else if (event.key === "Enter") {
        choose(0, 0);
    } else if (/^[1-7]$/.test(event.key)) {
        view.show(VIEW_KEYS[Number(event.key) - 1]);
    } else {
        return false;
    }
    return true;
}
