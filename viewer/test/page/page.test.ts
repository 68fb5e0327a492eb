// Pages of real runs in a real browser: every control does what it says, and the numbers are the program's.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";

import { type BrowserContext, chromium, type Page } from "playwright-core";

const folder = mkdtempSync(join(tmpdir(), "talvek-page-"));
const EPOCHS = 4;
let browser: BrowserContext;
let page: Page;
const requests: string[] = [];
const faults: string[] = [];

interface Results {
    epochs: {
        epoch: number;
        displacement: { mean: number; smallest: number; largest: number };
        area: number;
    }[];
}

const ARGUMENTS = [
    "--no-sandbox",
    "--use-gl=angle",
    "--use-angle=swiftshader",
    "--enable-unsafe-swiftshader",
    "--disable-quic",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
];

function talvek(...args: string[]): string {
    return execFileSync(process.env.TALVEK!, args, { cwd: folder, encoding: "utf8" });
}

async function launch(more: string[] = []): Promise<BrowserContext> {
    const context = await chromium.launchPersistentContext(mkdtempSync(join(folder, "profile-")), {
        executablePath: "/usr/bin/chromium",
        headless: true,
        args: [...ARGUMENTS, ...more],
        viewport: { width: 1360, height: 860 },
        acceptDownloads: true,
    });
    context.setDefaultTimeout(60000);
    return context;
}

async function open(context: BrowserContext, file: string): Promise<Page> {
    const opened = await context.newPage();
    opened.on("request", (request) => requests.push(request.url()));
    opened.on("pageerror", (error) => faults.push(error.message));
    opened.on("console", (message) => {
        if (message.type() === "error" && !message.text().includes("WebGL")) {
            faults.push(message.text());
        }
    });
    await opened.goto(`file://${join(folder, file)}`);
    return opened;
}

async function openStone(): Promise<Page> {
    const opened = await open(browser, "stone.obj.html");
    await opened.waitForSelector("body[data-complete]");
    return opened;
}

/** A number that changes when the picture does. */
async function picture(of: Page): Promise<string> {
    await of.waitForTimeout(500);
    return (await of.locator("#stage").screenshot()).toString("base64");
}

async function changes(of: Page, what: string, action: () => Promise<unknown>): Promise<void> {
    const known = await picture(of);
    await action();
    assert.notEqual(await picture(of), known, `${what} changes the picture`);
}

before(async () => {
    execFileSync(process.env.TALVEK_EXAMPLE_STONE!, ["stone.obj"], { cwd: folder });
    talvek("run", "stone.obj", "--mode", "3", "--epochs", String(EPOCHS), "--days", "3650");
    talvek("view", "stone.obj");
    browser = await launch();
    page = await openStone();
});

after(async () => {
    await browser.close();
    rmSync(folder, { recursive: true, force: true });
});

test("the page shows the last year without asking anything of anyone", async () => {
    assert.equal(await page.locator(".time strong").textContent(), "40");
    assert.equal(await page.locator(".message").count(), 0);
    const foreign = requests.filter((url) => !url.startsWith("file:") && !url.startsWith("blob:file"));
    assert.deepEqual(
        foreign.filter((url) => !url.startsWith("blob:null")),
        [],
    );
});

test("the table's numbers are those of talvek results", async () => {
    const results = JSON.parse(talvek("results", "stone.obj", "--json")) as Results;
    const rows = await page.locator("#epochs tbody tr").allInnerTexts();
    assert.equal(rows.length, results.epochs.length);
    for (const [i, epoch] of results.epochs.entries()) {
        const cells = rows[i].split("\t");
        for (const [column, value] of [
            [3, -epoch.displacement.mean],
            [4, -epoch.displacement.smallest],
            [5, -epoch.displacement.largest],
            [6, epoch.area / 100],
        ]) {
            const decimals = cells[column].split(".")[1].length;
            assert.ok(Math.abs(Number(cells[column]) - value) <= 0.5000001 * 10 ** -decimals, rows[i]);
        }
    }
});

test("play, one on, one back, first and the slider go through the epochs", async () => {
    const time = page.locator(".time small");
    await page.getByRole("button", { name: "First" }).click();
    assert.equal(await time.textContent(), "epoch 0 of 4");
    await page.getByRole("button", { name: "One on" }).click();
    assert.equal(await time.textContent(), "epoch 1 of 4");
    await page.getByRole("button", { name: "One back" }).click();
    await page.getByLabel("Speed").selectOption("8");
    await changes(page, "playing", async () => {
        await page.getByRole("button", { name: "Play" }).click();
        await page.waitForSelector("body[data-shown='4']");
    });
    await page.getByRole("slider", { name: "Epoch" }).fill("2");
    assert.equal(await time.textContent(), "epoch 2 of 4");
    await page.getByLabel("Time in").selectOption("days");
    assert.equal(await page.locator(".time strong").textContent(), "7300");
    await page.getByLabel("Time in").selectOption("years");
    await page.getByRole("slider", { name: "Epoch" }).fill("4");
    await page.waitForSelector("body[data-shown='4']");
});

test("every control of the surface and the light changes the picture", async () => {
    const show = page.getByLabel("Show", { exact: true });
    await changes(page, "bare stone", () => show.selectOption("stone"));
    for (const [i, value] of ["100", "60", "0.9", "0.8", "2"].entries()) {
        const slider = page.locator("#light-panel input[type=range]").nth(i);
        await changes(page, `slider ${String(i)} of the light`, () => slider.fill(value));
    }
    await changes(page, "the change in colour", () => show.selectOption("change"));
    await changes(page, "the palette", () =>
        page.getByLabel("Colours", { exact: true }).selectOption("viridis"),
    );
    await changes(page, "contour lines", () => page.getByLabel("Contour lines").check());
    await changes(page, "the spread", () => page.getByRole("button", { name: "Spread" }).click());
    await changes(page, "from 0", () => page.getByRole("button", { name: "From 0" }).click());
    await changes(page, "the scale", async () => {
        await page.getByLabel("Scale from").fill("0.2");
        await page.getByLabel("Scale from").press("Tab");
    });
    await changes(page, "the unit", () => page.getByLabel("Unit", { exact: true }).selectOption("µm"));
    await changes(page, "drawing the change larger", async () => {
        await page.getByLabel("Draw the change").selectOption("10");
        await page.waitForSelector("#enlarged:not([hidden])");
    });
    assert.match(await page.locator("#enlarged").innerText(), /times as large/);
    await page.getByLabel("Draw the change").selectOption("1");
});

test("views, keys, wheel and dragging turn the stone", async () => {
    for (const name of ["Front", "Back", "Left", "Right", "Top", "Bottom", "Corner", "Nearer", "Farther"]) {
        await changes(page, name, () => page.getByRole("button", { name, exact: true }).click());
    }
    await page.locator("#stone").focus();
    for (const key of ["ArrowLeft", "ArrowUp", "Shift+ArrowRight", "+", "-", "5", "7"]) {
        await changes(page, key, () => page.keyboard.press(key));
    }
    await changes(page, "dragging", async () => {
        await page.mouse.move(450, 400);
        await page.mouse.down();
        await page.mouse.move(550, 430, { steps: 4 });
        await page.mouse.up();
    });
    await changes(page, "the wheel", () => page.mouse.wheel(0, -300));
    await page.getByRole("button", { name: "Corner" }).click();
});

test("before, after and the edge between them", async () => {
    await changes(page, "before", () => page.getByText("Before", { exact: true }).click());
    await changes(page, "wipe", () => page.getByText("Wipe", { exact: true }).click());
    const edge = page.getByRole("slider", { name: "Edge between before and after" });
    await edge.focus();
    await changes(page, "the edge", () => page.keyboard.press("ArrowLeft"));
    assert.equal(await edge.getAttribute("aria-valuenow"), "48");
    await page.getByText("After", { exact: true }).click();
});

test("a section is cut, moved, turned and plotted", async () => {
    await changes(page, "the cut", async () => {
        await page.getByLabel("Cut the stone").check();
        await page.waitForSelector(".profile.after");
    });
    const profile = (): Promise<string | null> => page.locator(".profile.after").getAttribute("d");
    const known = await profile();
    await changes(page, "the other half", () => page.getByLabel("Show the other half").click());
    await changes(page, "another axis", () => page.getByLabel("Across", { exact: true }).selectOption("0"));
    await page.getByLabel("Distance between the lines").selectOption("10");
    await page.waitForTimeout(500);
    assert.notEqual(await profile(), known);
    await page.getByLabel("Cut the stone").uncheck();
});

test("a chosen point has a mark, a mineral and the curve of its own movement", async () => {
    await page.locator("#stone").click({ position: { x: 490, y: 420 } });
    await page.waitForSelector(".points li");
    await page.waitForFunction(() => !document.querySelector(".points strong")!.textContent.includes("…"));
    const item = page.locator(".points li");
    const vertex = Number(await item.getAttribute("data-vertex"));
    const line = (file: string): number[] => {
        const lines = readFileSync(join(folder, file), "utf8").split("\n");
        const coordinates = lines.filter((each) => each.startsWith("v "))[vertex];
        return coordinates.slice(2).split(" ").map(Number);
    };
    const [a, b] = [line("stone.obj.obj_i.obj"), line(`stone.obj.obj_w_${String(EPOCHS)}.obj`)];
    const distance = Math.hypot(...a.map((value, k) => value - b[k]));
    const shown = Number(await item.locator("strong").innerText());
    assert.ok(
        shown > 0 && shown <= distance * 1.0001 && shown > 0.9 * distance,
        `${String(shown)} ${String(distance)}`,
    );
    assert.match(await item.innerText(), /mineral \d+/);
    assert.equal(await page.locator(".mark").count(), 1);
    await page.locator("#stone").focus();
    await page.keyboard.press("Enter");
    await page.waitForFunction(() => document.querySelectorAll(".mark").length === 2);
    await page.getByRole("button", { name: "Remove points" }).click();
    assert.equal(await page.locator(".mark").count(), 0);
});

test("picture, film and table are saved", async () => {
    const saved = async (action: () => Promise<unknown>): Promise<{ name: string; bytes: Buffer }> => {
        const [download] = await Promise.all([page.waitForEvent("download"), action()]);
        return { name: download.suggestedFilename(), bytes: readFileSync(await download.path()) };
    };
    await page.getByRole("button", { name: "Save picture" }).click();
    await page.locator("#picture-dialog select").selectOption("1600x1200");
    const png = await saved(() => page.locator("#picture-dialog button.main").click());
    assert.equal(png.name, "stone.obj-0004.png");
    assert.deepEqual([png.bytes.readUInt32BE(16), png.bytes.readUInt32BE(20)], [1600, 1200]);
    await page.getByRole("button", { name: "Save film" }).click();
    await page.locator("#film-dialog select").first().selectOption("series");
    await page.locator("#film-dialog select").nth(1).selectOption("screen");
    const zip = await saved(() => page.locator("#film-dialog button.main").click());
    writeFileSync(join(folder, "film.zip"), zip.bytes);
    const listing = execFileSync("python3", ["-m", "zipfile", "-l", "film.zip"], {
        cwd: folder,
        encoding: "utf8",
    });
    assert.equal(listing.match(/stone\.obj-000[0-4]\.png/g)?.length, EPOCHS + 1);
    const csv = await saved(() => page.getByRole("button", { name: "Save as CSV" }).click());
    assert.equal(csv.bytes.toString("utf8").trim().split("\r\n").length, EPOCHS + 2);
});

test("light and dark, help, and nothing for axe-core to find", async () => {
    const axe = readFileSync(join(process.env.VIEWER_FOLDER!, "node_modules/axe-core/axe.min.js"), "utf8");
    const violations = async (): Promise<string[]> => {
        await page.evaluate(axe);
        return page.evaluate(async () => {
            const found = await (
                window as never as { axe: { run: () => Promise<{ violations: never[] }> } }
            ).axe.run();
            return found.violations.map(
                (each: { id: string; nodes: { html: string }[] }) => `${each.id}: ${each.nodes[0].html}`,
            );
        });
    };
    assert.deepEqual(await violations(), []);
    await changes(page, "the dark", () => page.getByRole("button", { name: "Light / dark" }).click());
    assert.deepEqual(await violations(), []);
    await page.getByRole("button", { name: "Help" }).click();
    assert.deepEqual(await violations(), []);
    await page.locator("#help-dialog button").click();
});

test("a damaged page says so and shows what is whole", async () => {
    const whole = readFileSync(join(folder, "stone.obj.html"), "utf8");
    const at = whole.lastIndexOf("</script>") - 400;
    const other = whole[at] === "A" ? "B" : "A";
    writeFileSync(join(folder, "damaged.html"), whole.slice(0, at) + other + whole.slice(at + 1));
    const damaged = await open(browser, "damaged.html");
    await damaged.waitForSelector("body[data-complete]");
    for (const frame of ["0", "1", "2", "3", "4"]) {
        await damaged.getByRole("slider", { name: "Epoch" }).fill(frame);
        await damaged.waitForTimeout(300);
    }
    assert.match(
        await damaged.locator(".message").first().innerText(),
        /This page is damaged: the surface of epoch \d/,
    );
    await damaged.close();
});

test("hostile names stay text", async () => {
    const name = `<script>alert(1)<b>"'&x.obj`;
    writeFileSync(join(folder, name), readFileSync(join(folder, "stone.obj")));
    talvek("run", name, "--epochs", "1");
    talvek("view", name, "-o", "hostile.html");
    const hostile = await open(browser, "hostile.html");
    await hostile.waitForSelector("body[data-shown]");
    assert.equal(await hostile.locator("h1").innerText(), `Weathering of ${name}`);
    assert.equal(await hostile.locator("h1 *").count(), 0);
    await hostile.close();
});

test("without WebGL the figures are there", async () => {
    const plain = await launch(["--disable-3d-apis"]);
    const opened = await open(plain, "stone.obj.html");
    await opened.waitForSelector("#curves-panel");
    assert.match(await opened.locator(".message").innerText(), /no 3D graphics/);
    assert.equal(await opened.locator("#epochs tbody tr").count(), EPOCHS + 1);
    await plain.close();
});

test("nothing went wrong on the way", () => {
    assert.deepEqual(faults, []);
});
