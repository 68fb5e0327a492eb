// What every panel is given.

import type { Header } from "./data/header";
import type { Decoder } from "./decoder/client";
import type { Stage } from "./scene/stage";
import type { Store } from "./state";

export interface Context {
    header: Header;
    store: Store;
    decoder: Decoder;
    /** Absent where the browser has no 3D graphics. */
    stage: Stage | null;
    /** Shows a message about something that went wrong. */
    fail: (error: unknown) => void;
}
