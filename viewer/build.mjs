// Builds dist/page.html, the template that becomes part of the program: style, script and texts in one file.
//
//     node build.mjs            writes it
//     node build.mjs --check    fails unless it is there as this build would write it

import { createHash } from "node:crypto";
import { readFile, writeFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

import { build } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));
const common = {
    bundle: true,
    minify: true,
    write: false,
    format: "iife",
    target: ["chrome115", "firefox115", "safari16.4"],
    legalComments: "none",
    absWorkingDir: here,
    logLevel: "error",
};

async function bundle(entry, plugins = []) {
    const result = await build({ ...common, entryPoints: [entry], plugins });
    return result.outputFiles[0].text.trim();
}

/** "worker:./file.ts" is the bundled script of that file, as text. */
const workerPlugin = {
    name: "worker",
    setup(setup) {
        setup.onResolve({ filter: /^worker:/ }, ({ path, resolveDir }) => ({
            path: join(resolveDir, path.slice("worker:".length)),
            namespace: "worker",
        }));
        setup.onLoad({ filter: /.*/, namespace: "worker" }, async ({ path }) => ({
            contents: await bundle(path),
            loader: "text",
        }));
    },
};

/** The texts are a module; bundled on its own it can be imported as it is. */
async function englishTexts() {
    const { outputFiles } = await build({ ...common, format: "esm", entryPoints: ["src/text/english.ts"] });
    return import("data:text/javascript;base64," + Buffer.from(outputFiles[0].text).toString("base64"));
}

const hash = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;

async function page() {
    const licence = await readFile(join(here, "node_modules/three/LICENSE"), "utf8");
    const code = await bundle("src/main.ts", [workerPlugin]);
    // "</script" inside of a script would end it, and the bundler writes it as "<\/script" already.
    const script = `/*!\nThe 3D graphics are three.js.\n\n${licence.trim()}\n*/\n${code}\n`;
    const styles = await build({ ...common, entryPoints: ["src/page.css"] });
    const style = styles.outputFiles[0].text.trim();
    const { text, programTexts } = await englishTexts();
    const texts = Object.entries({ ...programTexts, title: text.title("{mesh}") })
        .map(([name, value]) => `${name}=${value}`)
        .join("\n");
    const parts = {
        "script-hash": hash(script),
        "style-hash": hash(style),
        "no-script": text.noScript,
        style,
        script,
        texts,
    };
    const template = await readFile(join(here, "src/page.html"), "utf8");
    return template.replace(/\{\{([a-z-]+)\}\}/g, (_, name) => parts[name]);
}

const path = join(here, "dist/page.html");
const made = await page();
if (process.argv.includes("--check")) {
    const known = await readFile(path, "utf8").catch(() => "");
    if (known !== made) {
        console.error("viewer/dist/page.html is not what the sources give; run: scripts/do viewer");
        process.exit(1);
    }
} else {
    await writeFile(path, made);
    console.log(`dist/page.html: ${String(Math.round(made.length / 1000))} kB`);
}
