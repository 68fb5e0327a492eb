// Surfaces from the bytes of their blocks, without loss. tools/talvek/view/frame_codec.h describes the form.

import type { BlockHead } from "../data/header";

/** The weights of a foretelling add up to this. */
const UNIT_WEIGHT = 1 << 14;

export interface Reference {
    values: Uint32Array;
    weight: number;
}

/** The numbers of a block: from byte planes and what stands in full behind them. Throws where bytes are missing. */
export function unpack(head: BlockHead, bytes: Uint8Array, count: number): Uint32Array {
    if (bytes.length !== head.width * count + 4 * head.escapes) {
        throw new Error("a block has " + String(bytes.length) + " bytes");
    }
    const numbers = new Uint32Array(count);
    for (let plane = 0; plane < head.width; plane++) {
        const from = plane * count;
        const shift = 8 * plane;
        for (let i = 0; i < count; i++) {
            numbers[i] |= bytes[from + i] << shift;
        }
    }
    putEscapes(head, bytes, numbers);
    return numbers;
}

function putEscapes(head: BlockHead, bytes: Uint8Array, numbers: Uint32Array): void {
    if (head.escapes === 0) {
        return;
    }
    const largest = 2 ** (8 * head.width) - 1;
    const view = new DataView(bytes.buffer, bytes.byteOffset + head.width * numbers.length);
    let escape = 0;
    for (let i = 0; i < numbers.length; i++) {
        if (numbers[i] === largest) {
            numbers[i] = view.getUint32(4 * escape++, true);
        }
    }
    if (escape !== head.escapes) {
        throw new Error("a block has " + String(escape) + " numbers in full");
    }
}

/** A zigzag number as the difference it stands for, modulo 2^32. */
function unzigzag(number: number): number {
    return (number >>> 1) ^ -(number & 1);
}

/** Three planes, each of differences to the number before, become ordered integers. */
export function decodeFirst(numbers: Uint32Array): Uint32Array {
    const count = numbers.length / 3;
    for (let plane = 0; plane < 3; plane++) {
        let before = 0;
        for (let i = plane * count; i < (plane + 1) * count; i++) {
            before = (before + unzigzag(numbers[i])) | 0;
            numbers[i] = before;
        }
    }
    return numbers;
}

/** Corner by corner; throws where one names no vertex. */
export function decodeFaces(numbers: Uint32Array, vertices: number): Uint32Array {
    const count = numbers.length / 3;
    const corners = new Uint32Array(numbers.length);
    let first = 0;
    for (let face = 0; face < count; face++) {
        first = (first + unzigzag(numbers[face])) | 0;
        const second = (first + unzigzag(numbers[count + face])) | 0;
        const third = (second + unzigzag(numbers[2 * count + face])) | 0;
        corners[3 * face] = first;
        corners[3 * face + 1] = second;
        corners[3 * face + 2] = third;
    }
    if (corners.some((corner) => corner >= vertices)) {
        throw new Error("a face names a vertex that is not there");
    }
    return corners;
}

/** What the references foretell, and the difference to it; the ordered integers take the numbers' place. */
export function decodeFrame(numbers: Uint32Array, references: Reference[]): Uint32Array {
    const base = references[0].values;
    const terms = references.slice(1).filter((term) => term.weight !== 0);
    if (terms.length === 1) {
        addOneTerm(numbers, base, terms[0]);
    } else if (terms.length === 3) {
        addThreeTerms(numbers, base, terms);
    } else {
        addTerms(numbers, base, terms);
    }
    return numbers;
}

// Sums stay below 2^53, so they are whole numbers in double precision too.

function addOneTerm(numbers: Uint32Array, base: Uint32Array, term: Reference): void {
    const { values, weight } = term;
    for (let i = 0; i < numbers.length; i++) {
        const sum = UNIT_WEIGHT / 2 + weight * (values[i] - base[i]);
        numbers[i] = base[i] + Math.floor(sum / UNIT_WEIGHT) + unzigzag(numbers[i]);
    }
}

function addThreeTerms(numbers: Uint32Array, base: Uint32Array, terms: Reference[]): void {
    const [a, b, c] = terms.map((term) => term.values);
    const [wa, wb, wc] = terms.map((term) => term.weight);
    for (let i = 0; i < numbers.length; i++) {
        const from = base[i];
        const sum = UNIT_WEIGHT / 2 + wa * (a[i] - from) + wb * (b[i] - from) + wc * (c[i] - from);
        numbers[i] = from + Math.floor(sum / UNIT_WEIGHT) + unzigzag(numbers[i]);
    }
}

function addTerms(numbers: Uint32Array, base: Uint32Array, terms: Reference[]): void {
    for (let i = 0; i < numbers.length; i++) {
        let sum = UNIT_WEIGHT / 2;
        for (const term of terms) {
            sum += term.weight * (term.values[i] - base[i]);
        }
        numbers[i] = base[i] + Math.floor(sum / UNIT_WEIGHT) + unzigzag(numbers[i]);
    }
}

/** Ordered integers, plane after plane, as the coordinates x, y, z of each vertex. */
export function coordinatesOf(ordered: Uint32Array): Float32Array<ArrayBuffer> {
    const count = ordered.length / 3;
    const bits = new Uint32Array(ordered.length);
    for (let plane = 0; plane < 3; plane++) {
        for (let v = 0, from = plane * count, to = plane; v < count; v++, from++, to += 3) {
            const number = ordered[from];
            bits[to] = number >>> 31 ? number & 0x7fffffff : ~number;
        }
    }
    return new Float32Array(bits.buffer);
}
