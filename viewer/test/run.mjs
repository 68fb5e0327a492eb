// Bundles the tests of a folder and runs them with node's test runner.

import { spawnSync } from "node:child_process";
import { mkdtempSync, readdirSync, rmSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

import { build } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));
const folder = join(here, process.argv[2]);
const out = mkdtempSync(join(here, "../node_modules/.tests-"));
try {
    await build({
        entryPoints: readdirSync(folder)
            .filter((name) => name.endsWith(".test.ts"))
            .map((name) => join(folder, name)),
        bundle: true,
        platform: "node",
        format: "esm",
        packages: "external",
        outExtension: { ".js": ".mjs" },
        outdir: out,
        logLevel: "error",
    });
    const files = readdirSync(out).map((name) => join(out, name));
    const run = spawnSync(process.execPath, ["--test", "--test-concurrency=1", ...files], {
        stdio: "inherit",
        env: { ...process.env, VIEWER_FOLDER: join(here, "..") },
    });
    process.exitCode = run.status ?? 1;
} finally {
    rmSync(out, { recursive: true });
}
