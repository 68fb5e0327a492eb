// What the page asks of the worker, and what comes back.

import type { Header } from "../data/header";
import type { CutLines } from "./cut";
import type { CutAway, Ray } from "./pick";

/** A surface of the page, the movement from the first one enlarged. */
export interface Drawn {
    frame: number;
    factor: number;
}

export interface Requests {
    start: { header: Header; faces: string[]; minerals: string[] };
    blocks: { place: number; parts: string[] };
    surface: Drawn;
    relief: Record<string, never>;
    thin: { vertices: number };
    factor: { frame: number; wanted: number };
    histogram: { frame: number; low: number; high: number; steps: number };
    spread: { frame: number };
    cut: Drawn & { axis: number; at: number };
    pick: Drawn & { ray: Ray; cut: CutAway | null };
    point: { frame: number; vertex: number };
}

export interface Replies {
    start: { faces: Uint32Array<ArrayBuffer> };
    blocks: Record<string, never>;
    surface: {
        positions: Float32Array<ArrayBuffer>;
        normals: Int16Array<ArrayBuffer>;
        /** Millimetres, negative where stone was lost. */
        change: Float32Array<ArrayBuffer>;
    };
    relief: { normals: Int16Array<ArrayBuffer> };
    thin: { faces: Uint32Array<ArrayBuffer> };
    factor: { factor: number };
    histogram: { counts: number[] };
    /** Nearly all values lie between these. */
    spread: { low: number; high: number };
    cut: CutLines;
    pick: { vertex: number };
    point: {
        change: number;
        position: [number, number, number];
        normal: [number, number, number];
        mineral: number;
    };
}

export type Kind = keyof Requests;

export interface Request {
    id: number;
    kind: Kind;
    data: unknown;
}

export interface Reply {
    id: number;
    data?: unknown;
    /** The surface of this epoch is damaged; -1 for anything else that went wrong. */
    damagedEpoch?: number;
    error?: string;
}
