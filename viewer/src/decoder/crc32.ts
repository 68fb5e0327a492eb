// The CRC-32 of zlib, PNG and ZIP, eight bytes at a time.

const tables = makeTables();

function makeTables(): Uint32Array[] {
    const all = Array.from({ length: 8 }, () => new Uint32Array(256));
    for (let n = 0; n < 256; n++) {
        let c = n;
        for (let k = 0; k < 8; k++) {
            c = c & 1 ? 0xedb88320 ^ (c >>> 1) : c >>> 1;
        }
        all[0][n] = c >>> 0;
    }
    for (let t = 1; t < 8; t++) {
        for (let n = 0; n < 256; n++) {
            const before = all[t - 1][n];
            all[t][n] = (all[0][before & 0xff] ^ (before >>> 8)) >>> 0;
        }
    }
    return all;
}

/** Of bytes. */
export function crc32(bytes: Uint8Array): number {
    let crc = 0xffffffff;
    for (const byte of bytes) {
        crc = tables[0][(crc ^ byte) & 0xff] ^ (crc >>> 8);
    }
    return ~crc >>> 0;
}

/** Of whole numbers as a file holds them, the lowest byte first. */
export function crc32OfNumbers(numbers: Uint32Array): number {
    const [t0, t1, t2, t3, t4, t5, t6, t7] = tables;
    let crc = 0xffffffff;
    let i = 0;
    for (; i + 1 < numbers.length; i += 2) {
        const a = numbers[i] ^ crc;
        const b = numbers[i + 1];
        crc =
            t7[a & 0xff] ^
            t6[(a >>> 8) & 0xff] ^
            t5[(a >>> 16) & 0xff] ^
            t4[a >>> 24] ^
            t3[b & 0xff] ^
            t2[(b >>> 8) & 0xff] ^
            t1[(b >>> 16) & 0xff] ^
            t0[b >>> 24];
    }
    for (; i < numbers.length; i++) {
        const a = numbers[i] ^ crc;
        crc = t3[a & 0xff] ^ t2[(a >>> 8) & 0xff] ^ t1[(a >>> 16) & 0xff] ^ t0[a >>> 24];
    }
    return ~crc >>> 0;
}
