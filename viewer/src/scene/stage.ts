// The stone in 3D: what is drawn, and when.

import {
    BufferAttribute,
    BufferGeometry,
    Float32BufferAttribute,
    Mesh,
    Scene,
    Vector3,
    WebGLRenderer,
} from "three";

import type { CutLines } from "../decoder/cut";
import type { CutAway, Ray } from "../decoder/pick";
import type { Replies } from "../decoder/protocol";
import type { Side } from "../state";
import { hatchMaterial, insideMaterial, sharedUniforms, surfaceMaterial } from "./materials";
import { View } from "./view";

type Surface = Replies["surface"];

/** Beyond this many faces a turning stone is drawn with fewer. */
const MANY_FACES = 400000;
const SETTLED_AFTER = 160;

export class Stage {
    readonly uniforms = sharedUniforms();
    readonly view = new View();
    private readonly renderer: WebGLRenderer;
    private readonly scene = new Scene();
    private readonly after: Mesh;
    private readonly before: Mesh;
    private readonly inside = new Mesh(new BufferGeometry(), insideMaterial());
    private readonly hatched: Mesh;
    private faces: BufferAttribute | null = null;
    private thinned: BufferAttribute | null = null;
    private isTurning = false;
    private settle = 0;
    private asked = 0;
    private side: Side = "after";
    private edge = 0.5;
    private cutCorners: Vector3[] = [];
    private readonly listeners: (() => void)[] = [];

    /** Throws where the browser has no WebGL 2. */
    constructor(readonly canvas: HTMLCanvasElement) {
        this.renderer = new WebGLRenderer({ canvas, antialias: true, alpha: true, stencil: true });
        this.renderer.setClearColor(0x000000, 0);
        this.renderer.autoClear = false;
        const material = surfaceMaterial(this.uniforms);
        this.after = new Mesh(new BufferGeometry(), material);
        this.before = new Mesh(new BufferGeometry(), material);
        this.hatched = new Mesh(new BufferGeometry(), hatchMaterial(this.uniforms));
        this.inside.renderOrder = 1;
        this.hatched.renderOrder = 2;
        for (const mesh of [this.after, this.before, this.inside, this.hatched]) {
            mesh.frustumCulled = false;
            this.scene.add(mesh);
        }
    }

    /** Calls after every drawing, for what lies over the picture. */
    onDrawn(listener: () => void): void {
        this.listeners.push(listener);
    }

    setFaces(faces: Uint32Array): void {
        this.faces = new BufferAttribute(faces, 1);
    }

    /** Fewer faces over the same vertices. */
    setThinned(faces: Uint32Array): void {
        this.thinned = new BufferAttribute(faces, 1);
    }

    get hasManyFaces(): boolean {
        return (this.faces?.count ?? 0) / 3 > MANY_FACES;
    }

    setBefore(surface: Surface): void {
        fill(this.before.geometry, surface);
        // Until the surroundings are known there is no relief to bring out.
        for (const geometry of [this.before.geometry, this.after.geometry]) {
            geometry.setAttribute("surround", new BufferAttribute(surface.normals, 4, true));
        }
        this.fitBox(surface.positions);
    }

    setAfter(surface: Surface): void {
        fill(this.after.geometry, surface);
        this.draw();
    }

    setSurroundings(normals: Int16Array): void {
        const attribute = new BufferAttribute(normals, 4, true);
        this.before.geometry.setAttribute("surround", attribute);
        this.after.geometry.setAttribute("surround", attribute);
        this.draw();
    }

    setSide(side: Side, edge: number): void {
        this.side = side;
        this.edge = edge;
        this.draw();
    }

    /** What lies beyond is not drawn. */
    setCut(cut: CutAway | null): void {
        const plane = this.uniforms.cut.value.set(0, 0, 0, 1);
        if (cut) {
            plane.setComponent(cut.axis, cut.sign);
            plane.w = cut.sign * cut.at;
        }
        this.draw();
    }

    /** The outlines whose inside is hatched. */
    setOutlines(lines: CutLines | null): void {
        this.inside.geometry.dispose();
        this.hatched.geometry.dispose();
        this.inside.geometry = new BufferGeometry();
        this.hatched.geometry = new BufferGeometry();
        const fan = lines ? fanOf(lines) : [];
        this.inside.visible = this.hatched.visible = fan.length > 0;
        if (lines && fan.length > 0) {
            this.inside.geometry.setAttribute("position", new BufferAttribute(lines.points, 3));
            this.inside.geometry.setIndex(fan);
            this.hatched.geometry.setAttribute("position", rectangleAround(lines.points));
            this.hatched.geometry.setIndex([0, 1, 2, 2, 1, 3]);
        }
        this.draw();
    }

    setSize(width: number, height: number, ratio: number): void {
        this.renderer.setPixelRatio(ratio);
        this.renderer.setSize(width, height, false);
        this.uniforms.hatch.value = 6 * ratio;
        this.view.setAspect(width / Math.max(height, 1));
        this.draw();
    }

    /** Draws soon, once for all changes until then. */
    draw(): void {
        this.asked ||= requestAnimationFrame(() => {
            this.drawNow();
        });
    }

    /** Draws soon, with fewer faces while it goes on. */
    drawTurning(): void {
        this.isTurning = true;
        window.clearTimeout(this.settle);
        this.settle = window.setTimeout(() => {
            this.isTurning = false;
            this.draw();
        }, SETTLED_AFTER);
        this.draw();
    }

    /** A picture of any size with all faces, on a canvas of its own. */
    picture(width: number, height: number, ratio: number): HTMLCanvasElement {
        const { clientWidth, clientHeight } = this.canvas;
        const screenRatio = this.renderer.getPixelRatio();
        this.isTurning = false;
        this.setSize(width / ratio, height / ratio, ratio);
        this.drawNow();
        const copy = document.createElement("canvas");
        copy.width = width;
        copy.height = height;
        copy.getContext("2d")!.drawImage(this.canvas, 0, 0);
        this.setSize(clientWidth, clientHeight, screenRatio);
        this.drawNow();
        return copy;
    }

    /** The ray under a place of the canvas, both coordinates from -1 to 1, upwards. */
    rayAt(x: number, y: number): Ray {
        const origin = new Vector3(x, y, -1).unproject(this.view.camera);
        const direction = new Vector3(x, y, 1).unproject(this.view.camera).sub(origin).normalize();
        return { origin: origin.toArray(), direction: direction.toArray() };
    }

    /** Where a point lies on the canvas, in shares of its width and height from the upper left. */
    placeOf(point: [number, number, number]): [number, number] {
        const { x, y } = new Vector3(...point).project(this.view.camera);
        return [(x + 1) / 2, (1 - y) / 2];
    }

    /** Low and high end of the stone along an axis. */
    extent(axis: number): [number, number] {
        return [this.cutCorners[0].getComponent(axis), this.cutCorners[1].getComponent(axis)];
    }

    private fitBox(positions: Float32Array): void {
        const low = new Vector3(Infinity, Infinity, Infinity);
        const high = new Vector3(-Infinity, -Infinity, -Infinity);
        const point = new Vector3();
        for (let i = 0; i < positions.length; i += 3) {
            point.fromArray(positions, i);
            if (Number.isFinite(point.x + point.y + point.z)) {
                low.min(point);
                high.max(point);
            }
        }
        this.cutCorners = [low, high];
        this.view.setBox(low, high);
    }

    private drawNow(): void {
        cancelAnimationFrame(this.asked);
        this.asked = 0;
        if (!this.after.geometry.hasAttribute("position")) {
            return;
        }
        const index = this.isTurning && this.thinned ? this.thinned : this.faces;
        this.after.geometry.setIndex(index);
        this.before.geometry.setIndex(index);
        this.renderer.setScissorTest(false);
        this.renderer.clear();
        const { width, height } = this.sizeInPixels();
        const split = Math.round(width * (this.side === "before" ? 1 : this.side === "wipe" ? this.edge : 0));
        this.drawPart(this.before, 0, split, height);
        this.drawPart(this.after, split, width - split, height);
        for (const listener of this.listeners) {
            listener();
        }
    }

    private sizeInPixels(): { width: number; height: number } {
        const ratio = this.renderer.getPixelRatio();
        return { width: this.canvas.width / ratio, height: this.canvas.height / ratio };
    }

    private drawPart(mesh: Mesh, from: number, width: number, height: number): void {
        if (width <= 0) {
            return;
        }
        this.before.visible = mesh === this.before;
        this.after.visible = mesh === this.after;
        this.renderer.setScissorTest(true);
        this.renderer.setScissor(from, 0, width, height);
        this.renderer.render(this.scene, this.view.camera);
    }
}

function fill(geometry: BufferGeometry, surface: Surface): void {
    replace(geometry, "position", surface.positions, 3, false);
    replace(geometry, "normal", surface.normals, 4, true);
    replace(geometry, "change", surface.change, 1, false);
}

/** The graphics memory of a surface is used again by the next one. */
function replace(
    geometry: BufferGeometry,
    name: string,
    values: Float32Array | Int16Array,
    size: number,
    isNormalised: boolean,
): void {
    const known = geometry.getAttribute(name) as BufferAttribute | undefined;
    if (known?.array.length === values.length) {
        known.array = values;
        known.needsUpdate = true;
    } else {
        geometry.setAttribute(name, new BufferAttribute(values, size, isNormalised));
    }
}

/** Triangles from the first point of each closed line: every place inside is covered an odd number of times. */
function fanOf({ starts, closed }: CutLines): number[] {
    const index: number[] = [];
    closed.forEach((isClosed, line) => {
        for (let i = starts[line] + 1; isClosed && i + 1 < starts[line + 1]; i++) {
            index.push(starts[line], i, i + 1);
        }
    });
    return index;
}

/** Four corners in the plane of the points. */
function rectangleAround(points: Float32Array): Float32BufferAttribute {
    const low = [Infinity, Infinity, Infinity];
    const high = [-Infinity, -Infinity, -Infinity];
    for (let i = 0; i < points.length; i++) {
        low[i % 3] = Math.min(low[i % 3], points[i]);
        high[i % 3] = Math.max(high[i % 3], points[i]);
    }
    const flat = [0, 1, 2].find((k) => low[k] === high[k]) ?? 0;
    const [a, b] = [0, 1, 2].filter((k) => k !== flat);
    const corners = [0, 1, 2, 3].flatMap((i) => {
        const corner = [...low];
        corner[a] = i & 1 ? high[a] : low[a];
        corner[b] = i & 2 ? high[b] : low[b];
        return corner;
    });
    return new Float32BufferAttribute(corners, 3);
}
