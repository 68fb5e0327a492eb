// Shows the surface that the state asks for, and plays through the years.

import type { Context } from "./context";
import type { State } from "./state";

export class Player {
    private shown = "";
    private isBusy = false;
    private timer = 0;
    private waiting: (() => void)[] = [];

    constructor(private readonly context: Context) {
        context.store.on(["frame", "factor"], () => void this.work());
        context.store.on(["isPlaying", "speed"], (state) => {
            window.clearInterval(this.timer);
            if (state.isPlaying) {
                this.timer = window.setInterval(() => {
                    this.step();
                }, 1000 / state.speed);
            }
        });
    }

    /** Goes to a surface and waits until it is drawn. */
    async show(frame: number): Promise<void> {
        this.context.store.set({ frame });
        if (this.shown !== this.keyOf(this.context.store.state)) {
            await new Promise<void>((resolve) => this.waiting.push(resolve));
        }
    }

    private keyOf({ frame, factor }: State): string {
        return `${String(frame)} ${String(factor)}`;
    }

    private step(): void {
        const { store, header } = this.context;
        const last = header.frames.length - 1;
        if (this.isBusy) {
            return;
        }
        if (store.state.frame >= last) {
            store.set({ isPlaying: false });
        } else {
            store.set({ frame: store.state.frame + 1, isPlaying: store.state.frame + 1 < last });
        }
    }

    /** One surface after the other; of those asked for meanwhile only the last. */
    private async work(): Promise<void> {
        const { store, decoder, stage } = this.context;
        while (!this.isBusy && this.shown !== this.keyOf(store.state)) {
            this.isBusy = true;
            const key = this.keyOf(store.state);
            const { frame, factor } = store.state;
            try {
                const surface = await decoder.ask("surface", { frame, factor });
                stage?.setAfter(surface);
                document.body.dataset.shown = String(frame);
            } catch (error) {
                this.context.fail(error);
            }
            this.shown = key;
            this.isBusy = false;
        }
        for (const resolve of this.waiting.splice(0)) {
            resolve();
        }
    }
}
