// A ZIP archive of files that are compressed already.

import { crc32 } from "../decoder/crc32";

export interface ZipEntry {
    name: string;
    bytes: Uint8Array<ArrayBuffer>;
}

/** Little-endian fields: two bytes where the number stands in a pair, four otherwise. */
function fields(...values: ([number] | number)[]): Uint8Array<ArrayBuffer> {
    const size = values.reduce<number>((sum, value) => sum + (Array.isArray(value) ? 2 : 4), 0);
    const view = new DataView(new ArrayBuffer(size));
    let at = 0;
    for (const value of values) {
        if (Array.isArray(value)) {
            view.setUint16(at, value[0], true);
            at += 2;
        } else {
            view.setUint32(at, value, true);
            at += 4;
        }
    }
    return new Uint8Array(view.buffer);
}

const VERSION = 20;
const UTF8_NAMES = 0x0800;
/** The first of January 1980: the format has no way to leave the date out. */
const DATE = 0x0021;

export function zipOf(entries: ZipEntry[]): Blob {
    const parts: Uint8Array<ArrayBuffer>[] = [];
    const directory: Uint8Array<ArrayBuffer>[] = [];
    let offset = 0;
    for (const { name, bytes } of entries) {
        const encoded = new TextEncoder().encode(name);
        const common = [
            [VERSION],
            [UTF8_NAMES],
            [0],
            [0],
            [DATE],
            crc32(bytes),
            bytes.length,
            bytes.length,
            [encoded.length],
            [0],
        ] as ([number] | number)[];
        const head = fields(0x04034b50, ...common);
        directory.push(fields(0x02014b50, [VERSION], ...common, [0], [0], [0], 0, offset), encoded);
        parts.push(head, encoded, bytes);
        offset += head.length + encoded.length + bytes.length;
    }
    const size = directory.reduce((sum, part) => sum + part.length, 0);
    const count: [number] = [entries.length];
    const end = fields(0x06054b50, [0], [0], count, count, size, offset, [0]);
    return new Blob([...parts, ...directory, end], { type: "application/zip" });
}
