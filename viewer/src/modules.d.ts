/** A script of its own, bundled, as text. */
declare module "worker:*" {
    const source: string;
    export default source;
}
