// The page's side of the worker.

import type { BlockTexts } from "../data/blocks";
import type { Header } from "../data/header";
import type { Kind, Replies, Reply, Requests } from "./protocol";
import { placesNeeded } from "./surfaces";

export class DamagedPage extends Error {
    constructor(readonly epoch: number) {
        super("damaged");
    }
}

interface Waiting {
    resolve: (data: never) => void;
    reject: (error: Error) => void;
}

export class Decoder {
    private readonly worker: Worker;
    private readonly waiting = new Map<number, Waiting>();
    private readonly sent = new Set<number>();
    private readonly firstSurfaceBlock: number;
    private next = 0;

    /** `source` is the script of the worker: a page in a folder can load it from nowhere else. */
    constructor(
        source: string,
        private readonly header: Header,
        private readonly texts: BlockTexts,
    ) {
        this.worker = new Worker(URL.createObjectURL(new Blob([source], { type: "text/javascript" })));
        this.worker.onmessage = (event: MessageEvent<Reply>) => {
            this.take(event.data);
        };
        this.firstSurfaceBlock = header.mineralBlock ? 2 : 1;
    }

    start(): Promise<Replies["start"]> {
        const minerals = this.header.mineralBlock ? this.texts.take(1) : [];
        return this.post("start", { header: this.header, faces: this.texts.take(0), minerals });
    }

    /** Sends the blocks that a request about a surface needs, then the request. */
    ask<K extends Kind>(kind: K, request: Requests[K]): Promise<Replies[K]> {
        const frame = "frame" in request ? request.frame : 0;
        for (const place of [...placesNeeded(this.header, 0), ...placesNeeded(this.header, frame)]) {
            if (!this.sent.has(place)) {
                this.sent.add(place);
                void this.post("blocks", { place, parts: this.texts.take(this.firstSurfaceBlock + place) });
            }
        }
        return this.post(kind, request);
    }

    private post<K extends Kind>(kind: K, data: Requests[K]): Promise<Replies[K]> {
        const id = this.next++;
        this.worker.postMessage({ id, kind, data });
        return new Promise((resolve, reject) => this.waiting.set(id, { resolve, reject }));
    }

    private take(reply: Reply): void {
        const waiting = this.waiting.get(reply.id)!;
        this.waiting.delete(reply.id);
        if (reply.damagedEpoch !== undefined) {
            waiting.reject(
                reply.damagedEpoch >= 0 ? new DamagedPage(reply.damagedEpoch) : new Error(reply.error),
            );
        } else {
            waiting.resolve(reply.data as never);
        }
    }
}
