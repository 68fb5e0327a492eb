// The decoder gives back what a plain encoder of the same form has put in. That it gives back what the program has put
// in is tested on whole pages.
import assert from "node:assert/strict";
import { test } from "node:test";

import { coordinatesOf, decodeFaces, decodeFirst, decodeFrame, unpack } from "../../src/decoder/codec";
import { crc32, crc32OfNumbers } from "../../src/decoder/crc32";

const zigzag = (difference: number): number => ((difference << 1) ^ (difference >> 31)) >>> 0;

function orderedOf(value: number): number {
    const bits = new Uint32Array(new Float32Array([value]).buffer)[0];
    return bits >>> 31 ? ~bits >>> 0 : (bits | 0x80000000) >>> 0;
}

/** The planes of numbers, the escapes behind them. */
function pack(numbers: number[], width: number): { bytes: Uint8Array; escapes: number } {
    const largest = 2 ** (8 * width) - 1;
    const bytes: number[] = [];
    for (let plane = 0; plane < width; plane++) {
        bytes.push(...numbers.map((number) => (Math.min(number, largest) / 2 ** (8 * plane)) & 0xff));
    }
    const escaped = width < 4 ? numbers.filter((number) => number >= largest) : [];
    for (const number of escaped) {
        bytes.push(...[0, 8, 16, 24].map((shift) => (number >>> shift) & 0xff));
    }
    return { bytes: new Uint8Array(bytes), escapes: escaped.length };
}

test("numbers come out of planes of every width, with escapes", () => {
    const numbers = [0, 1, 254, 255, 256, 65534, 65535, 70000, 0xfffffe, 0xffffff, 0xffffffff];
    for (const width of [1, 2, 3, 4]) {
        const { bytes, escapes } = pack(numbers, width);
        const unpacked = unpack({ width, escapes, bytes: 0 }, bytes, numbers.length);
        assert.deepEqual([...unpacked], numbers, `width ${String(width)}`);
    }
});

test("a block with too few or too many bytes is refused", () => {
    assert.throws(() => unpack({ width: 1, escapes: 0, bytes: 0 }, new Uint8Array(5), 6));
    assert.throws(() => unpack({ width: 1, escapes: 0, bytes: 0 }, new Uint8Array(7), 6));
    assert.throws(() => unpack({ width: 1, escapes: 1, bytes: 0 }, new Uint8Array(10), 6), /in full/);
});

test("every coordinate comes back with its bits", () => {
    const values = [0, -0, 1, -1, 150.25, -3e38, 1e-45, Infinity, -Infinity, NaN, 3.1415927, 42];
    const ordered = [0, 1, 2].flatMap((plane) =>
        values.filter((_, i) => i % 3 === plane).map((value) => orderedOf(value)),
    );
    const numbers = ordered.map((value, i) => zigzag(value - (i % 4 === 0 ? 0 : ordered[i - 1])));
    const coordinates = coordinatesOf(decodeFirst(new Uint32Array(numbers)));
    assert.deepEqual(new Uint32Array(coordinates.buffer), new Uint32Array(new Float32Array(values).buffer));
});

test("faces come back, and a corner that names no vertex is refused", () => {
    const faces = [0, 2, 1, 5, 4, 3, 5, 0, 5];
    const count = faces.length / 3;
    const numbers = new Uint32Array(faces.length);
    faces.forEach((corner, i) => {
        const before = i === 0 ? 0 : faces[i % 3 === 0 ? i - 3 : i - 1];
        numbers[(i % 3) * count + Math.floor(i / 3)] = zigzag(corner - before);
    });
    assert.deepEqual([...decodeFaces(numbers, 6)], faces);
    assert.throws(() => decodeFaces(numbers, 5));
});

test("a surface is what its references foretell and the difference to it", () => {
    const make = (f: (i: number) => number): Uint32Array => Uint32Array.from({ length: 300 }, (_, i) => f(i));
    const surfaces = [
        make((i) => 0xc2000000 + 17 * i),
        make((i) => 0xc2000000 + 23 * i),
        make((i) => (i * 2654435761) >>> 0),
        make((i) => 0xffffffff - i),
    ];
    const weights = [4000, 9000, -2500, 5884];
    for (const count of [1, 2, 3, 4]) {
        const references = surfaces.slice(0, count).map((values, i) => ({ values, weight: weights[i] }));
        const wanted = make((i) => (i * 40503 * 65537) >>> 0);
        const numbers = wanted.map((value, i) => {
            const base = BigInt(surfaces[0][i]);
            let sum = 8192n;
            for (const { values, weight } of references.slice(1)) {
                sum += BigInt(weight) * (BigInt(values[i]) - base);
            }
            const foretold = Number(BigInt.asUintN(32, base + (sum >> 14n)));
            return zigzag((value - foretold) | 0);
        });
        assert.deepEqual(decodeFrame(numbers, references), wanted, `${String(count)} references`);
    }
});

test("checksums are the known ones", () => {
    assert.equal(crc32(new TextEncoder().encode("123456789")), 0xcbf43926);
    for (const length of [0, 1, 2, 3, 8, 101]) {
        const numbers = Uint32Array.from({ length }, (_, i) => (i * 2654435761) >>> 0);
        assert.equal(crc32OfNumbers(numbers), crc32(new Uint8Array(numbers.buffer)));
    }
});
