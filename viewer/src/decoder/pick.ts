// Which vertex lies under a ray.

export type Vector = [number, number, number];

export interface Ray {
    origin: Vector;
    direction: Vector;
}

/** What has been cut away: the part where the coordinate along an axis lies beyond a value, times a sign. */
export interface CutAway {
    axis: number;
    at: number;
    sign: number;
}

/** The vertex nearest to where the ray first meets the surface; -1 where it does not. */
export function pickVertex(
    positions: Float32Array,
    faces: Uint32Array,
    ray: Ray,
    cut: CutAway | null,
): number {
    let nearest = Infinity;
    let vertex = -1;
    for (let i = 0; i < faces.length; i += 3) {
        const hit = meets(positions, 3 * faces[i], 3 * faces[i + 1], 3 * faces[i + 2], ray);
        if (hit && hit.distance < nearest && !isCutAway(ray, hit.distance, cut)) {
            nearest = hit.distance;
            const [u, v] = hit.weights;
            const w = 1 - u - v;
            vertex = faces[i + (w >= u && w >= v ? 0 : u >= v ? 1 : 2)];
        }
    }
    return vertex;
}

function isCutAway(ray: Ray, distance: number, cut: CutAway | null): boolean {
    return (
        cut !== null && cut.sign * (ray.origin[cut.axis] + distance * ray.direction[cut.axis] - cut.at) > 0
    );
}

/** Where a ray meets a triangle, after Möller and Trumbore; from either side. */
function meets(positions: Float32Array, a: number, b: number, c: number, ray: Ray) {
    const [dx, dy, dz] = ray.direction;
    const ux = positions[b] - positions[a];
    const uy = positions[b + 1] - positions[a + 1];
    const uz = positions[b + 2] - positions[a + 2];
    const vx = positions[c] - positions[a];
    const vy = positions[c + 1] - positions[a + 1];
    const vz = positions[c + 2] - positions[a + 2];
    const px = dy * vz - dz * vy;
    const py = dz * vx - dx * vz;
    const pz = dx * vy - dy * vx;
    const determinant = ux * px + uy * py + uz * pz;
    const tx = ray.origin[0] - positions[a];
    const ty = ray.origin[1] - positions[a + 1];
    const tz = ray.origin[2] - positions[a + 2];
    const u = (tx * px + ty * py + tz * pz) / determinant;
    if (!(u >= 0 && u <= 1)) {
        return null;
    }
    const qx = ty * uz - tz * uy;
    const qy = tz * ux - tx * uz;
    const qz = tx * uy - ty * ux;
    const v = (dx * qx + dy * qy + dz * qz) / determinant;
    const distance = (vx * qx + vy * qy + vz * qz) / determinant;
    if (!(v >= 0 && u + v <= 1 && distance >= 0)) {
        return null;
    }
    return { distance, weights: [u, v] as const };
}
