// The worker: takes one request after the other and answers it.

import type { Kind, Reply, Request, Requests } from "./protocol";
import { Run } from "./run";
import { DamagedError } from "./surfaces";

let run: Run | null = null;
let queue: Promise<void> = Promise.resolve();

async function answer(kind: Kind, data: unknown): Promise<unknown> {
    if (kind === "start") {
        const started = await Run.start(data as Requests["start"]);
        run = started.run;
        return started.reply;
    }
    const methods = run as unknown as Record<Kind, (request: unknown) => unknown>;
    return methods[kind](data);
}

/** Arrays change hands; they are not copied. */
function buffersIn(data: unknown): Transferable[] {
    return Object.values(data as Record<string, unknown>)
        .filter((value) => ArrayBuffer.isView(value))
        .map((view) => view.buffer as ArrayBuffer);
}

async function handle(request: Request): Promise<void> {
    const reply: Reply = { id: request.id };
    let transfer: Transferable[] = [];
    try {
        reply.data = await answer(request.kind, request.data);
        transfer = buffersIn(reply.data);
    } catch (error) {
        reply.damagedEpoch = error instanceof DamagedError ? error.epoch : -1;
        reply.error = String(error);
    }
    self.postMessage(reply, { transfer });
}

self.onmessage = (event: MessageEvent<Request>) => {
    queue = queue.then(() => handle(event.data));
};
