// What is computed of surfaces, against what is known of simple ones.
import assert from "node:assert/strict";
import { test } from "node:test";

import { cutSurface } from "../../src/decoder/cut";
import { displacements, histogramOf, largestFactor, vertexNormals } from "../../src/decoder/measure";
import { pickVertex } from "../../src/decoder/pick";
import { thinFaces } from "../../src/decoder/thin";

/** A cube of n by n squares to a side, from 0 to n, closed. */
function cube(n: number): { positions: Float32Array; faces: Uint32Array } {
    const known = new Map<string, number>();
    const positions: number[] = [];
    const faces: number[] = [];
    const vertex = (point: number[]): number => {
        const key = point.join();
        if (!known.has(key)) {
            known.set(key, known.size);
            positions.push(...point);
        }
        return known.get(key)!;
    };
    for (const axis of [0, 1, 2]) {
        for (const end of [0, n]) {
            for (let i = 0; i < n; i++) {
                for (let j = 0; j < n; j++) {
                    const at = (a: number, b: number): number => {
                        const point = [0, 0, 0];
                        point[axis] = end;
                        point[(axis + 1) % 3] = a;
                        point[(axis + 2) % 3] = b;
                        return vertex(point);
                    };
                    const square = [at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)];
                    const [a, b, c, d] = end === 0 ? square.reverse() : square;
                    faces.push(a, b, c, a, c, d);
                }
            }
        }
    }
    return { positions: new Float32Array(positions), faces: new Uint32Array(faces) };
}

test("normals of a plane's inside are upright, and a movement along them is told with its sign", () => {
    const { positions, faces } = cube(4);
    const normals = vertexNormals(positions, faces);
    const top = [...positions.keys()].find(
        (i) => i % 3 === 0 && positions[i] === 2 && positions[i + 1] === 2 && positions[i + 2] === 4,
    )!;
    assert.deepEqual([...normals.subarray(top, top + 3)], [0, 0, 1]);
    const moved = positions.slice();
    moved[top + 2] -= 0.25;
    assert.equal(displacements(positions, normals, moved)[top / 3], -0.25);
});

test("a plane cuts a cube in one closed line of the right length", () => {
    const { positions, faces } = cube(4);
    const lines = cutSurface(positions, faces, 2, 1.5);
    assert.deepEqual(lines.closed, [true]);
    let length = 0;
    for (let i = 3; i < lines.points.length; i += 3) {
        length += Math.hypot(
            lines.points[i] - lines.points[i - 3],
            lines.points[i + 1] - lines.points[i - 2],
        );
        assert.equal(lines.points[i + 2], 1.5);
    }
    assert.ok(Math.abs(length - 16) < 1e-5);
});

test("a plane cuts an open surface in lines that end", () => {
    const { positions, faces } = cube(4);
    const open = cutSurface(positions, faces.subarray(0, faces.length - 96), 0, 1.5);
    assert.deepEqual(open.closed, [false]);
    assert.deepEqual(cutSurface(positions, faces, 0, 9).closed, []);
});

test("a ray meets the near side, and beyond a cut the far one", () => {
    const { positions, faces } = cube(4);
    const ray = {
        origin: [1.1, 2.1, 9] as [number, number, number],
        direction: [0, 0, -1] as [number, number, number],
    };
    const near = pickVertex(positions, faces, ray, null);
    assert.deepEqual([...positions.subarray(3 * near, 3 * near + 3)], [1, 2, 4]);
    const far = pickVertex(positions, faces, ray, { axis: 2, at: 3, sign: 1 });
    assert.deepEqual([...positions.subarray(3 * far, 3 * far + 3)], [1, 2, 0]);
    assert.equal(pickVertex(positions, faces, { ...ray, origin: [9, 9, 9] }, null), -1);
});

test("a movement is enlarged as far as it does not turn faces over", () => {
    const { positions, faces } = cube(8);
    const shrunk = positions.map((value) => 4 + (value - 4) * 0.98);
    assert.equal(largestFactor(positions, shrunk, faces, 20), 20);
    const limit = largestFactor(positions, shrunk, faces, 100);
    const noisy = positions.map((value, i) => value + 0.05 * Math.sin(i * 7.3));
    assert.ok(limit >= 50 && limit <= 100);
    assert.ok(largestFactor(positions, noisy, faces, 100) < 40);
});

test("a thinned surface has fewer faces over the same vertices", () => {
    const { positions, faces } = cube(40);
    const thin = thinFaces(positions, faces, 600);
    assert.ok(thin.length < faces.length / 4 && thin.length > 600);
    assert.ok(thin.every((corner) => 3 * corner < positions.length));
});

test("a histogram counts every value once", () => {
    const counts = histogramOf(Float64Array.of(-5, 0, 0.1, 0.5, 1, 9, NaN), 0, 1, 4);
    assert.deepEqual(counts, [3, 0, 1, 2]);
});
