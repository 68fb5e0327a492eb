// A coarser set of faces over the same vertices, for turning a large stone: vertices in one cell of a grid become one.

/** About as many cells as there are to be vertices. */
export function thinFaces(
    positions: Float32Array,
    faces: Uint32Array,
    vertices: number,
): Uint32Array<ArrayBuffer> {
    const cellOf = cells(positions, vertices);
    const standsFor = new Map<number, number>();
    const thinned: number[] = [];
    const corner = (vertex: number): number => {
        const cell = cellOf(vertex);
        const known = standsFor.get(cell);
        if (known === undefined) {
            standsFor.set(cell, vertex);
            return vertex;
        }
        return known;
    };
    for (let i = 0; i < faces.length; i += 3) {
        const a = corner(faces[i]);
        const b = corner(faces[i + 1]);
        const c = corner(faces[i + 2]);
        if (a !== b && b !== c && c !== a) {
            thinned.push(a, b, c);
        }
    }
    return new Uint32Array(thinned);
}

function cells(positions: Float32Array, vertices: number): (vertex: number) => number {
    const low = [Infinity, Infinity, Infinity];
    const high = [-Infinity, -Infinity, -Infinity];
    for (let i = 0; i < positions.length; i++) {
        low[i % 3] = Math.min(low[i % 3], positions[i]);
        high[i % 3] = Math.max(high[i % 3], positions[i]);
    }
    const [x, y, z] = [0, 1, 2].map((k) => Math.max(high[k] - low[k], 1e-9));
    // A box has about this surface, and a cell of it is a square of this size.
    const size = Math.sqrt((2 * (x * y + y * z + z * x)) / vertices);
    const columns = Math.ceil(x / size) + 1;
    const rows = Math.ceil(y / size) + 1;
    return (vertex) => {
        const i = Math.floor((positions[3 * vertex] - low[0]) / size);
        const j = Math.floor((positions[3 * vertex + 1] - low[1]) / size);
        const k = Math.floor((positions[3 * vertex + 2] - low[2]) / size);
        return (k * rows + j) * columns + i;
    };
}
