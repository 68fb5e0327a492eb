// The blocks of the page: base64 in elements of their own, a large block in several of them.

import type { Header } from "./header";

/** Which block is where: the faces, the minerals where there are any, then the surfaces in the header's order. */
export class BlockTexts {
    private readonly parts: Element[][] = [];

    constructor(header: Header, elements: Iterable<Element>) {
        const sizes = [header.faceBlock.bytes];
        if (header.mineralBlock) {
            sizes.push(header.mineralBlock.bytes);
        }
        sizes.push(...header.frames.map((frame) => frame.block.bytes));
        const rest = elements[Symbol.iterator]();
        for (const size of sizes) {
            const block: Element[] = [];
            // Parts are full but for the last one.
            for (let left = Math.max(size, 1); left > 0;) {
                const next = rest.next();
                if (next.done) {
                    break;
                }
                block.push(next.value);
                left -= partSize(next.value.textContent);
            }
            this.parts.push(block);
        }
    }

    /** Hands the text of a block over; the page keeps it no longer. */
    take(block: number): string[] {
        const parts = this.parts[block] ?? [];
        return parts.map((element) => {
            const text = element.textContent;
            element.textContent = "";
            return text;
        });
    }
}

function partSize(base64: string): number {
    const padding = base64.endsWith("==") ? 2 : base64.endsWith("=") ? 1 : 0;
    return (base64.length / 4) * 3 - padding;
}
