// What the program tells the page about a run. tools/talvek/view/page_header.cpp writes it.

export interface Figure {
    value: number;
    /** As the program writes it; the page never turns these numbers into text itself. */
    text: string;
}

export interface BlockHead {
    /** Bytes of a number, 1 to 4. */
    width: number;
    /** Numbers that stand in full. */
    escapes: number;
    /** Compressed. */
    bytes: number;
}

export interface FrameHead {
    /** Place in the list of epochs. */
    epoch: number;
    /** Place among the surfaces of the page, in order of time. */
    frame: number;
    /** Surfaces that this one is foretold from, and their weights. */
    references: number[];
    weights: number[];
    checksum: number;
    block: BlockHead;
}

export interface PaletteHead {
    name: string;
    /** 256 colours, six hexadecimal digits each. */
    colours: string;
}

export type ChangeKind = "loss" | "growth" | "both";

export interface EpochHead {
    /** 0 is the first surface. */
    number: number;
    figures: Record<string, Figure>;
    date: string;
}

export interface Header {
    version: number;
    mesh: string;
    mode: string;
    model: string;
    kind: ChangeKind;
    isClosed: boolean;
    vertices: number;
    faces: number;
    plannedEpochs: number;
    /** The scale that holds the changes of all epochs, in millimetres, counting as the kind of change counts. */
    scale: [number, number];
    palettes: PaletteHead[];
    minerals?: string[];
    faceBlock: BlockHead;
    mineralBlock?: BlockHead;
    frames: FrameHead[];
    /** The first surface, then the epochs, whether or not the page holds their surfaces. */
    epochs: EpochHead[];
}

/** Reads the header; throws where it is damaged or of a later program. */
export function readHeader(text: string): Header {
    const header = JSON.parse(text) as Header;
    if (header.version !== 1) {
        throw new Error("version " + String(header.version));
    }
    return header;
}
