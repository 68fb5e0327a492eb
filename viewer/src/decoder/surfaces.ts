// The surfaces of a run, decoded when they are asked for. Those used last are kept.

import type { FrameHead, Header } from "../data/header";
import { inflate } from "./bytes";
import { decodeFirst, decodeFrame, unpack } from "./codec";
import { crc32OfNumbers } from "./crc32";

/** A surface of the page did not come out as the program wrote it. */
export class DamagedError extends Error {
    constructor(readonly epoch: number) {
        super("epoch " + String(epoch));
    }
}

const KEPT_BYTES = 400e6;

export class Surfaces {
    private readonly heads: FrameHead[] = [];
    private readonly places: number[] = [];
    private readonly blocks = new Map<number, Uint8Array<ArrayBuffer>>();
    /** In the order of last use. */
    private readonly decoded = new Map<number, Uint32Array>();
    private readonly kept: number;

    constructor(private readonly header: Header) {
        header.frames.forEach((head, place) => {
            this.heads[head.frame] = head;
            this.places[head.frame] = place;
        });
        this.kept = Math.max(6, Math.floor(KEPT_BYTES / (12 * header.vertices)));
    }

    addBlock(place: number, bytes: Uint8Array<ArrayBuffer>): void {
        this.blocks.set(place, bytes);
    }

    /** The ordered integers of a surface. Throws DamagedError. */
    async get(frame: number): Promise<Uint32Array> {
        const known = this.decoded.get(frame);
        if (known) {
            this.decoded.delete(frame);
            this.decoded.set(frame, known);
            return known;
        }
        const head = this.heads[frame];
        const references = [];
        for (const [i, reference] of head.references.entries()) {
            references.push({ values: await this.get(reference), weight: head.weights[i] });
        }
        const decoded = await this.decode(head, references);
        this.decoded.set(frame, decoded);
        this.forget();
        return decoded;
    }

    private async decode(head: FrameHead, references: { values: Uint32Array; weight: number }[]) {
        let positions;
        try {
            const block = this.blocks.get(this.places[head.frame]);
            const numbers = unpack(head.block, await inflate(block!), 3 * this.header.vertices);
            positions = references.length === 0 ? decodeFirst(numbers) : decodeFrame(numbers, references);
        } catch {
            throw new DamagedError(head.epoch);
        }
        if (crc32OfNumbers(positions) !== head.checksum) {
            throw new DamagedError(head.epoch);
        }
        return positions;
    }

    /** The first surface and the last one stay: all others need them. */
    private forget(): void {
        for (const frame of this.decoded.keys()) {
            if (this.decoded.size <= this.kept) {
                return;
            }
            if (frame !== 0 && frame !== this.heads.length - 1) {
                this.decoded.delete(frame);
            }
        }
    }
}

/** The places, in the header's list, of a surface and of all that it is made of. */
export function placesNeeded(header: Header, frame: number): number[] {
    const needed = new Set<number>();
    const add = (wanted: number): void => {
        const place = header.frames.findIndex((head) => head.frame === wanted);
        if (!needed.has(place)) {
            needed.add(place);
            header.frames[place].references.forEach(add);
        }
    };
    add(frame);
    return [...needed];
}
