// From where the stone is seen: parallel rays, so that a millimetre is as long everywhere in the picture.

import { Matrix4, OrthographicCamera, Vector3 } from "three";

export type ViewName = "front" | "back" | "left" | "right" | "top" | "bottom" | "corner";

/** Degrees round the upright axis and above the ground. */
const VIEWS: Record<ViewName, [number, number]> = {
    front: [0, 0],
    back: [180, 0],
    left: [-90, 0],
    right: [90, 0],
    top: [0, 90],
    bottom: [0, -90],
    corner: [-36, 34],
};

/** Room around the stone for what lies over the picture. */
const MARGIN = 1.3;

export class View {
    readonly camera = new OrthographicCamera();
    private azimuth = 0;
    private elevation = 0;
    private readonly target = new Vector3();
    /** Half the height of the picture in millimetres. */
    private reach = 1;
    private aspect = 1;
    private radius = 1;
    private readonly centre = new Vector3();
    private corners: Vector3[] = [];
    /** Nobody has come nearer or gone away since a standard view was chosen. */
    private isFitted = false;
    private upAxis: 1 | 2 = 2;

    /** The box that standard views fit. */
    setBox(low: Vector3, high: Vector3): void {
        this.centre.addVectors(low, high).multiplyScalar(0.5);
        this.radius = Math.max(low.distanceTo(high) / 2, 1e-6);
        this.corners = Array.from(
            { length: 8 },
            (_, i) => new Vector3(i & 1 ? high.x : low.x, i & 2 ? high.y : low.y, i & 4 ? high.z : low.z),
        );
    }

    setUpAxis(axis: 1 | 2): void {
        this.upAxis = axis;
        this.apply();
    }

    show(name: ViewName): void {
        [this.azimuth, this.elevation] = VIEWS[name];
        this.target.copy(this.centre);
        this.isFitted = true;
        this.fit();
    }

    setAspect(aspect: number): void {
        this.aspect = aspect;
        if (this.isFitted) {
            this.fit();
        } else {
            this.apply();
        }
    }

    turn(across: number, up: number): void {
        this.azimuth -= across;
        this.elevation = Math.min(Math.max(this.elevation + up, -90), 90);
        this.apply();
    }

    /** Moves the picture by shares of its height. */
    move(across: number, up: number): void {
        const [x, y] = this.axes();
        this.target.addScaledVector(x, -2 * this.reach * across).addScaledVector(y, -2 * this.reach * up);
        this.apply();
    }

    zoom(factor: number): void {
        this.isFitted = false;
        this.reach = Math.min(Math.max(this.reach / factor, this.radius / 2000), this.radius * 20);
        this.apply();
    }

    get millimetresHigh(): number {
        return 2 * this.reach;
    }

    /** The axes of the picture: to the right, up, and towards the eye. */
    axes(): [Vector3, Vector3, Vector3] {
        const a = (this.azimuth * Math.PI) / 180;
        const e = (this.elevation * Math.PI) / 180;
        const right = this.upright(Math.cos(a), Math.sin(a), 0);
        const out = this.upright(Math.sin(a) * Math.cos(e), -Math.cos(a) * Math.cos(e), Math.sin(e));
        return [right, new Vector3().crossVectors(out, right), out];
    }

    /** Turns a direction with the third axis upright into one with the chosen axis upright. */
    private upright(x: number, y: number, z: number): Vector3 {
        return this.upAxis === 2 ? new Vector3(x, y, z) : new Vector3(x, z, -y);
    }

    private fit(): void {
        const [x, y] = this.axes();
        const half = (axis: Vector3): number =>
            Math.max(...this.corners.map((corner) => Math.abs(corner.clone().sub(this.centre).dot(axis))));
        this.reach = Math.max(half(y), half(x) / this.aspect) * MARGIN;
        this.apply();
    }

    private apply(): void {
        const [x, y, z] = this.axes();
        const { camera } = this;
        const away = 4 * this.radius + this.target.distanceTo(this.centre);
        camera.quaternion.setFromRotationMatrix(new Matrix4().makeBasis(x, y, z));
        camera.position.copy(this.target).addScaledVector(z, away);
        camera.top = this.reach;
        camera.bottom = -this.reach;
        camera.right = this.reach * this.aspect;
        camera.left = -camera.right;
        camera.near = 0.01 * this.radius;
        camera.far = 2 * away;
        camera.updateProjectionMatrix();
        camera.updateMatrixWorld();
    }
}
