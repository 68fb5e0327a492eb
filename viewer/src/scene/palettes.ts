// Colours for a change, as the program gives them: even to the eye, and told apart by colour-blind eyes.

import type { Header } from "../data/header";

export const PALETTE_SIZE = 256;

/** Red, green and blue of every step, 0 to 255. */
export function paletteColours(header: Header, name: string): Uint8Array<ArrayBuffer> {
    const palette = header.palettes.find((each) => each.name === name) ?? header.palettes[0];
    const colours = new Uint8Array(3 * PALETTE_SIZE);
    for (let i = 0; i < colours.length; i++) {
        colours[i] = parseInt(palette.colours.slice(2 * i, 2 * i + 2), 16);
    }
    return colours;
}

export function cssColour(colours: Uint8Array, share: number): string {
    const step = Math.round(Math.min(Math.max(share, 0), 1) * (PALETTE_SIZE - 1));
    return `rgb(${colours.subarray(3 * step, 3 * step + 3).join(" ")})`;
}
