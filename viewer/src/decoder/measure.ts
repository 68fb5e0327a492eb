// What is computed of a surface: normals, and how far each vertex has moved. The arithmetic is that of the program
// (single precision where it has it), so that the same numbers come out.

const DEGENERATE = Math.fround(1e-7);

/** Unit vertex normals, 3V: plain averages of the unit normals of the faces around each vertex. */
export function vertexNormals(positions: Float32Array, faces: Uint32Array): Float32Array<ArrayBuffer> {
    const round = Math.fround;
    const normals = new Float32Array(positions.length);
    const counts = new Float32Array(positions.length / 3);
    for (let i = 0; i < faces.length; i += 3) {
        const a = 3 * faces[i];
        const b = 3 * faces[i + 1];
        const c = 3 * faces[i + 2];
        const ux = round(positions[a] - positions[b]);
        const uy = round(positions[a + 1] - positions[b + 1]);
        const uz = round(positions[a + 2] - positions[b + 2]);
        const vx = round(positions[b] - positions[c]);
        const vy = round(positions[b + 1] - positions[c + 1]);
        const vz = round(positions[b + 2] - positions[c + 2]);
        let nx = round(round(uy * vz) - round(uz * vy));
        let ny = round(round(uz * vx) - round(ux * vz));
        let nz = round(round(ux * vy) - round(uy * vx));
        const size = round(Math.sqrt(round(round(round(nx * nx) + round(ny * ny)) + round(nz * nz))));
        const by = size <= DEGENERATE ? 1 : size;
        nx = round(nx / by);
        ny = round(ny / by);
        nz = round(nz / by);
        for (let k = i; k < i + 3; k++) {
            const v = faces[k];
            normals[3 * v] += nx;
            normals[3 * v + 1] += ny;
            normals[3 * v + 2] += nz;
            counts[v] += 1;
        }
    }
    for (let v = 0; v < counts.length; v++) {
        normalise(normals, 3 * v, counts[v]);
    }
    return normals;
}

function normalise(normals: Float32Array, at: number, count: number): void {
    const round = Math.fround;
    if (count === 0) {
        return;
    }
    const x = round(normals[at] / count);
    const y = round(normals[at + 1] / count);
    const z = round(normals[at + 2] / count);
    const size = round(Math.sqrt(round(round(round(x * x) + round(y * y)) + round(z * z))));
    normals[at] = size === 0 ? 0 : x / size;
    normals[at + 1] = size === 0 ? 0 : y / size;
    normals[at + 2] = size === 0 ? 0 : z / size;
}

/** Normals for drawing, faces counting by their areas: quicker, for nothing is measured with them. */
export function drawnNormals(positions: Float32Array, faces: Uint32Array): Int16Array<ArrayBuffer> {
    const sums = new Float32Array(positions.length);
    for (let i = 0; i < faces.length; i += 3) {
        const a = 3 * faces[i];
        const b = 3 * faces[i + 1];
        const c = 3 * faces[i + 2];
        const [ax, ay, az] = [positions[a], positions[a + 1], positions[a + 2]];
        const ux = positions[b] - ax;
        const uy = positions[b + 1] - ay;
        const uz = positions[b + 2] - az;
        const vx = positions[c] - ax;
        const vy = positions[c + 1] - ay;
        const vz = positions[c + 2] - az;
        const nx = uy * vz - uz * vy;
        const ny = uz * vx - ux * vz;
        const nz = ux * vy - uy * vx;
        sums[a] += nx;
        sums[a + 1] += ny;
        sums[a + 2] += nz;
        sums[b] += nx;
        sums[b + 1] += ny;
        sums[b + 2] += nz;
        sums[c] += nx;
        sums[c + 1] += ny;
        sums[c + 2] += nz;
    }
    const packed = new Int16Array((sums.length / 3) * 4);
    for (let from = 0, to = 0; from < sums.length; from += 3, to += 4) {
        const [x, y, z] = [sums[from], sums[from + 1], sums[from + 2]];
        const scale = 32767 / (Math.sqrt(x * x + y * y + z * z) || 1);
        packed[to] = x * scale;
        packed[to + 1] = y * scale;
        packed[to + 2] = z * scale;
    }
    return packed;
}

/** Displacements along the first normals, in millimetres: negative where stone was lost. */
export function displacements(
    first: Float32Array,
    normals: Float32Array,
    positions: Float32Array,
): Float64Array<ArrayBuffer> {
    const moved = new Float64Array(first.length / 3);
    for (let v = 0, i = 0; v < moved.length; v++, i += 3) {
        moved[v] = displacementOf(first, normals, positions, i);
    }
    return moved;
}

function displacementOf(
    first: Float32Array,
    normals: Float32Array,
    positions: Float32Array,
    i: number,
): number {
    const nx = normals[i];
    const ny = normals[i + 1];
    const nz = normals[i + 2];
    const size = Math.sqrt(nx * nx + ny * ny + nz * nz) || 1;
    return (
        (positions[i] - first[i]) * (nx / size) +
        (positions[i + 1] - first[i + 1]) * (ny / size) +
        (positions[i + 2] - first[i + 2]) * (nz / size)
    );
}

/** The first surface with the movement from there enlarged. */
export function enlarged(
    first: Float32Array,
    positions: Float32Array,
    factor: number,
): Float32Array<ArrayBuffer> {
    const result = new Float32Array(first.length);
    for (let i = 0; i < result.length; i++) {
        result[i] = first[i] + factor * (positions[i] - first[i]);
    }
    return result;
}

/** The share of faces that an enlarged movement turns over. */
function turnedOver(
    first: Float32Array,
    positions: Float32Array,
    faces: Uint32Array,
    factor: number,
): number {
    const moved = enlarged(first, positions, factor);
    const count = faces.length / 3;
    const step = Math.max(1, Math.floor(count / 200000));
    let turned = 0;
    let seen = 0;
    for (let face = 0; face < count; face += step, seen++) {
        turned += isTurned(first, moved, faces, 3 * face) ? 1 : 0;
    }
    return turned / Math.max(seen, 1);
}

function isTurned(first: Float32Array, moved: Float32Array, faces: Uint32Array, at: number): boolean {
    const before = areaVector(first, faces, at);
    const after = areaVector(moved, faces, at);
    return before[0] * after[0] + before[1] * after[1] + before[2] * after[2] < 0;
}

function areaVector(positions: Float32Array, faces: Uint32Array, at: number): [number, number, number] {
    const a = 3 * faces[at];
    const b = 3 * faces[at + 1];
    const c = 3 * faces[at + 2];
    const ux = positions[b] - positions[a];
    const uy = positions[b + 1] - positions[a + 1];
    const uz = positions[b + 2] - positions[a + 2];
    const vx = positions[c] - positions[a];
    const vy = positions[c + 1] - positions[a + 1];
    const vz = positions[c + 2] - positions[a + 2];
    return [uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx];
}

/** The largest factor, at most the wanted one, by which the movement can be drawn without tearing the surface. */
export function largestFactor(
    first: Float32Array,
    positions: Float32Array,
    faces: Uint32Array,
    wanted: number,
): number {
    const torn = 0.02 + turnedOver(first, positions, faces, 1);
    if (wanted <= 1 || turnedOver(first, positions, faces, wanted) <= torn) {
        return wanted;
    }
    let low = 1;
    let high = wanted;
    for (let i = 0; i < 8; i++) {
        const middle = Math.sqrt(low * high);
        if (turnedOver(first, positions, faces, middle) <= torn) {
            low = middle;
        } else {
            high = middle;
        }
    }
    return low > 10 ? Math.floor(low) : Math.floor(10 * low) / 10;
}

/** Normals of the surroundings: what relief stands out from. Averaged along the edges, again and again. */
export function surroundingNormals(
    normals: Float32Array,
    faces: Uint32Array,
    rounds: number,
): Float32Array<ArrayBuffer> {
    let current = new Float32Array(normals);
    for (let n = 0; n < rounds; n++) {
        const next = new Float32Array(current);
        for (let i = 0; i < faces.length; i += 3) {
            const a = 3 * faces[i];
            const b = 3 * faces[i + 1];
            const c = 3 * faces[i + 2];
            for (let k = 0; k < 3; k++) {
                next[a + k] += current[b + k];
                next[b + k] += current[c + k];
                next[c + k] += current[a + k];
            }
        }
        for (let at = 0; at < next.length; at += 3) {
            normalise(next, at, 1);
        }
        current = next;
    }
    return current;
}

/** Unit vectors as the graphics memory holds them, four shorts each. */
export function packNormals(normals: Float32Array): Int16Array<ArrayBuffer> {
    const packed = new Int16Array((normals.length / 3) * 4);
    for (let from = 0, to = 0; from < normals.length; from += 3, to += 4) {
        packed[to] = normals[from] * 32767;
        packed[to + 1] = normals[from + 1] * 32767;
        packed[to + 2] = normals[from + 2] * 32767;
    }
    return packed;
}

/** How many values fall into each of equal steps from low to high; those outside count with the nearest. */
export function histogramOf(values: Float64Array, low: number, high: number, steps: number): number[] {
    const counts = new Array<number>(steps).fill(0);
    for (const value of values) {
        if (Number.isFinite(value)) {
            const step = Math.floor(((value - low) / (high - low)) * steps);
            counts[Math.min(Math.max(step, 0), steps - 1)]++;
        }
    }
    return counts;
}

/** The values below which the given shares of all values lie. */
export function quantiles(values: Float64Array, shares: number[]): number[] {
    const sorted = values.filter((value) => Number.isFinite(value)).sort();
    return shares.map((share) => sorted[Math.round(share * (sorted.length - 1))] ?? 0);
}
