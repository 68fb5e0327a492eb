// All that the worker knows of a run, and what it answers.

import type { Header } from "../data/header";
import { bytesOfBase64, inflate } from "./bytes";
import { coordinatesOf, decodeFaces, unpack } from "./codec";
import { cutSurface } from "./cut";
import {
    displacements,
    drawnNormals,
    enlarged,
    histogramOf,
    largestFactor,
    packNormals,
    quantiles,
    surroundingNormals,
    vertexNormals,
} from "./measure";
import { pickVertex } from "./pick";
import type { Drawn, Replies, Requests } from "./protocol";
import { DamagedError, Surfaces } from "./surfaces";
import { thinFaces } from "./thin";

const RELIEF_ROUNDS = 12;

export class Run {
    private readonly surfaces: Surfaces;
    private firstPositions: Float32Array<ArrayBuffer> | null = null;
    private firstNormals: Float32Array<ArrayBuffer> | null = null;
    private latest: { frame: number; positions: Float32Array<ArrayBuffer> } | null = null;

    private constructor(
        header: Header,
        private readonly faces: Uint32Array<ArrayBuffer>,
        private readonly minerals: Uint8Array | null,
    ) {
        this.surfaces = new Surfaces(header);
    }

    static async start(request: Requests["start"]): Promise<{ run: Run; reply: Replies["start"] }> {
        const { header } = request;
        let faces;
        let minerals = null;
        try {
            const bytes = await inflate(bytesOfBase64(request.faces));
            const numbers = unpack(header.faceBlock, bytes, 3 * header.faces);
            faces = decodeFaces(numbers, header.vertices) as Uint32Array<ArrayBuffer>;
            if (header.mineralBlock) {
                minerals = await inflate(bytesOfBase64(request.minerals));
            }
        } catch {
            throw new DamagedError(0);
        }
        return { run: new Run(header, faces, minerals), reply: { faces: faces.slice() } };
    }

    blocks(request: Requests["blocks"]): Replies["blocks"] {
        let bytes: Uint8Array<ArrayBuffer>;
        try {
            bytes = bytesOfBase64(request.parts);
        } catch {
            // Taken for damaged when it is decoded.
            bytes = new Uint8Array(0);
        }
        this.surfaces.addBlock(request.place, bytes);
        return {};
    }

    async surface(request: Requests["surface"]): Promise<Replies["surface"]> {
        const first = await this.first();
        const positions = await this.positions(request.frame);
        const change = Float32Array.from(displacements(first, await this.normals(), positions));
        const drawn = await this.drawn(request);
        return { positions: drawn.slice(), normals: drawnNormals(drawn, this.faces), change };
    }

    async relief(): Promise<Replies["relief"]> {
        return { normals: packNormals(surroundingNormals(await this.normals(), this.faces, RELIEF_ROUNDS)) };
    }

    async thin(request: Requests["thin"]): Promise<Replies["thin"]> {
        return { faces: thinFaces(await this.first(), this.faces, request.vertices) };
    }

    async factor(request: Requests["factor"]): Promise<Replies["factor"]> {
        const positions = await this.positions(request.frame);
        return { factor: largestFactor(await this.first(), positions, this.faces, request.wanted) };
    }

    async histogram(request: Requests["histogram"]): Promise<Replies["histogram"]> {
        const values = await this.changes(request.frame);
        return { counts: histogramOf(values, request.low, request.high, request.steps) };
    }

    async spread(request: Requests["spread"]): Promise<Replies["spread"]> {
        const [low, high] = quantiles(await this.changes(request.frame), [0.02, 0.98]);
        return { low, high };
    }

    async cut(request: Requests["cut"]): Promise<Replies["cut"]> {
        return cutSurface(await this.drawn(request), this.faces, request.axis, request.at);
    }

    async pick(request: Requests["pick"]): Promise<Replies["pick"]> {
        return { vertex: pickVertex(await this.drawn(request), this.faces, request.ray, request.cut) };
    }

    async point(request: Requests["point"]): Promise<Replies["point"]> {
        const at = 3 * request.vertex;
        const triple = (values: Float32Array): [number, number, number] => [
            values[at],
            values[at + 1],
            values[at + 2],
        ];
        const first = Float32Array.from(triple(await this.first()));
        const normals = Float32Array.from(triple(await this.normals()));
        const position = triple(await this.positions(request.frame));
        return {
            change: displacements(first, normals, Float32Array.from(position))[0],
            position,
            normal: [normals[0], normals[1], normals[2]],
            mineral: this.minerals ? this.minerals[request.vertex] : -1,
        };
    }

    private async first(): Promise<Float32Array<ArrayBuffer>> {
        this.firstPositions ??= coordinatesOf(await this.surfaces.get(0));
        return this.firstPositions;
    }

    private async normals(): Promise<Float32Array<ArrayBuffer>> {
        this.firstNormals ??= vertexNormals(await this.first(), this.faces);
        return this.firstNormals;
    }

    private async positions(frame: number): Promise<Float32Array<ArrayBuffer>> {
        if (this.latest?.frame !== frame) {
            this.latest = { frame, positions: coordinatesOf(await this.surfaces.get(frame)) };
        }
        return this.latest.positions;
    }

    private async drawn({ frame, factor }: Drawn): Promise<Float32Array<ArrayBuffer>> {
        const positions = await this.positions(frame);
        return factor === 1 ? positions : enlarged(await this.first(), positions, factor);
    }

    private async changes(frame: number): Promise<Float64Array<ArrayBuffer>> {
        return displacements(await this.first(), await this.normals(), await this.positions(frame));
    }
}
