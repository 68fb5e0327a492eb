// From the text of a block to its bytes.

/** Throws where the text is no base64. */
export function bytesOfBase64(parts: string[]): Uint8Array<ArrayBuffer> {
    const texts = parts.map((part) => atob(part));
    const bytes = new Uint8Array(texts.reduce((sum, text) => sum + text.length, 0));
    let at = 0;
    for (const text of texts) {
        for (let i = 0; i < text.length; i++) {
            bytes[at++] = text.charCodeAt(i);
        }
    }
    return bytes;
}

/** Undoes raw deflate; throws where the stream is damaged. */
export async function inflate(bytes: Uint8Array<ArrayBuffer>): Promise<Uint8Array<ArrayBuffer>> {
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
    return new Uint8Array(await new Response(stream).arrayBuffer());
}
