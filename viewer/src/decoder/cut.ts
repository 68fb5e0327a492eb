// The lines in which a plane cuts a surface.

/** Chains of points, 3 numbers each. Those that end where they begin are closed. */
export interface CutLines {
    points: Float32Array<ArrayBuffer>;
    /** Where each line begins, in points; one more at the end. */
    starts: Uint32Array<ArrayBuffer>;
    closed: boolean[];
}

/** Cuts where the coordinate along an axis (0, 1, 2) has a value. */
export function cutSurface(positions: Float32Array, faces: Uint32Array, axis: number, at: number): CutLines {
    return chain(segmentsOf(positions, faces, axis, at), positions, axis, at);
}

/** Two edges of the mesh for each face that the plane cuts; an edge is its two vertices in one number. */
function segmentsOf(positions: Float32Array, faces: Uint32Array, axis: number, at: number): number[] {
    const segments: number[] = [];
    const count = positions.length / 3;
    const edge = (a: number, b: number): number => Math.min(a, b) * count + Math.max(a, b);
    for (let i = 0; i < faces.length; i += 3) {
        const a = faces[i];
        const b = faces[i + 1];
        const c = faces[i + 2];
        const aboveA = positions[3 * a + axis] >= at;
        const aboveB = positions[3 * b + axis] >= at;
        const aboveC = positions[3 * c + axis] >= at;
        if (aboveA === aboveB && aboveB === aboveC) {
            continue;
        }
        if (aboveA !== aboveB) {
            segments.push(edge(a, b));
        }
        if (aboveB !== aboveC) {
            segments.push(edge(b, c));
        }
        if (aboveC !== aboveA) {
            segments.push(edge(c, a));
        }
    }
    return segments;
}

/** Which segments meet at an edge. */
function segmentsByEdge(segments: number[]): Map<number, number[]> {
    const at = new Map<number, number[]>();
    segments.forEach((edge, i) => {
        const known = at.get(edge);
        if (known) {
            known.push(i >> 1);
        } else {
            at.set(edge, [i >> 1]);
        }
    });
    return at;
}

function chain(segments: number[], positions: Float32Array, axis: number, at: number): CutLines {
    const byEdge = segmentsByEdge(segments);
    const used = new Uint8Array(segments.length / 2);
    const points: number[] = [];
    const starts = [0];
    const closed: boolean[] = [];
    const follow = (from: number): void => {
        let segment = from;
        let edge = segments[2 * from];
        pushPoint(points, edge, positions, axis, at);
        for (;;) {
            used[segment] = 1;
            edge = segments[2 * segment] === edge ? segments[2 * segment + 1] : segments[2 * segment];
            pushPoint(points, edge, positions, axis, at);
            const next = byEdge.get(edge)!.find((each) => !used[each]);
            if (next === undefined) {
                break;
            }
            segment = next;
        }
        closed.push(edge === segments[2 * from]);
        starts.push(points.length / 3);
    };
    // Lines that end somewhere begin at an end.
    for (const [edge, meeting] of byEdge) {
        if (meeting.length === 1 && !used[meeting[0]]) {
            const segment = meeting[0];
            if (segments[2 * segment] !== edge) {
                segments[2 * segment + 1] = segments[2 * segment];
                segments[2 * segment] = edge;
            }
            follow(segment);
        }
    }
    for (let segment = 0; segment < used.length; segment++) {
        if (!used[segment]) {
            follow(segment);
        }
    }
    return { points: new Float32Array(points), starts: new Uint32Array(starts), closed };
}

function pushPoint(points: number[], edge: number, positions: Float32Array, axis: number, at: number): void {
    const count = positions.length / 3;
    const a = 3 * Math.floor(edge / count);
    const b = 3 * (edge % count);
    const share = (at - positions[a + axis]) / (positions[b + axis] - positions[a + axis]);
    for (let k = 0; k < 3; k++) {
        points.push(k === axis ? at : positions[a + k] + share * (positions[b + k] - positions[a + k]));
    }
}
