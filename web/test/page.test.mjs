import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { existsSync, mkdtempSync, readdirSync, readFileSync, rmSync, truncateSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { basename, join } from "node:path";
import { after, before, test } from "node:test";
import { pathToFileURL } from "node:url";
import puppeteer from "puppeteer-core";

const tool = process.env.ZRCONVERT;
const directory = mkdtempSync(join(tmpdir(), "page-"));
const faults = []; // what the browser's console complained of
let browser, page;

before(async () => {
  browser = await puppeteer.launch({
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    userDataDir: join(directory, "profile"),
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
           "--disable-component-update", "--disable-sync"],
  });
  page = await browser.newPage();
  page.on("console", (message) => ["error", "warn"].includes(message.type()) && faults.push(message.text()));
  page.on("pageerror", (error) => faults.push(error.message));
  page.on("request", (request) => /^(file|blob|data):/.test(request.url()) || faults.push(`request of ${request.url()}`));
  await page.setViewport({ width: 1280, height: 800 });
  await page.goto(pathToFileURL(process.env.ZR_PAGE).href);
  await page.waitForSelector("body.ready");
});

after(async () => {
  await browser?.close();
  rmSync(directory, { recursive: true, force: true });
});

const text = (id) => page.$eval(`#${id}`, (element) => element.textContent);
const inDirectory = (name) => join(directory, name);

// The page has read the file and shows its first guess, or says why it shows nothing.
async function open(path) {
  const marks = await countPictures();
  await (await page.$("#file")).uploadFile(path);
  await page.waitForFunction((name, before) => document.getElementById("name").textContent.startsWith(name) &&
    (performance.getEntriesByName("picture").length > before || document.querySelector("#message.error")),
    { timeout: 60000 }, basename(path), marks);
}

const countPictures = () => page.evaluate(() => performance.getEntriesByName("picture").length);

// Sets inputs as a user does; the picture on show afterwards is of these settings.
async function set(values) {
  const marks = await countPictures();
  await page.evaluate((wanted) => {
    for (const [id, value] of Object.entries(wanted)) {
      const input = document.getElementById(id);
      const option = [...(input.options ?? [])].find(({ text }) => text === value);
      input.value = option?.value ?? value;
    }
    document.getElementById("settings").dispatchEvent(new Event("input"));
  }, values);
  await page.waitForFunction((before) => performance.getEntriesByName("picture").length > before, {}, marks);
}

// Red, green and blue of all pixels on the canvas.
async function canvasPixels() {
  const base64 = await page.$eval("#picture", (canvas) => {
    const { width, height } = canvas;
    const copy = Object.assign(document.createElement("canvas"), { width, height });
    const context = copy.getContext("2d", { willReadFrequently: true });
    context.drawImage(canvas, 0, 0);
    const { data } = context.getImageData(0, 0, width, height);
    const colours = data.filter((_, i) => i % 4 !== 3);
    return new Promise((resolve) => {
      const reader = new FileReader();
      reader.onload = () => resolve(reader.result.split(",")[1]);
      reader.readAsDataURL(new Blob([colours]));
    });
  });
  return Buffer.from(base64, "base64");
}

// Runs the command that the page shows, for a .ppm file instead of the .png file, in the file's directory.
async function toolPixels(path) {
  const command = (await text("command")).replace(/\.png( |'|$)/, ".ppm$1").replace(/^zrconvert/, '"$ZRCONVERT"');
  const copy = join(directory, basename(path));
  if (copy !== path) writeFileSync(copy, readFileSync(path));
  execFileSync("bash", ["-c", `${command} --quiet`], { cwd: directory });
  const picture = readFileSync(copy.replace(/\.[^.]*$/, "") + ".ppm");
  return picture.subarray(/^P6\s+\d+\s+\d+\s+\d+\s/.exec(picture.subarray(0, 64).toString("latin1"))[0].length);
}

async function assertSame(path, what = "") {
  const [shown, written] = [await canvasPixels(), await toolPixels(path)];
  assert.ok(written.length > 0 && shown.equals(written), `canvas and tool differ: ${what} ${await text("command")}`);
}

function chart(format, size, ...options) {
  const path = inDirectory(`${format}.raw`);
  execFileSync(tool, ["chart", path, "--format", format, "--size", size, ...options]);
  return path;
}

test("every source format shows what the tool writes", async (t) => {
  const formats = await page.$$eval("#format option", (options) => options.map(({ text }) => text));
  const known = execFileSync(tool, ["formats", "--names"], { encoding: "utf8" }).split("\n");
  assert.ok(formats.length > 60 && formats.every((name) => known.includes(name)));
  for (const format of formats) {
    await t.test(format, async () => {
      const path = chart(format, "64x48");
      await open(path);
      await set({ format, width: 64, height: 48 });
      assert.match(await text("command"), new RegExp(`--format ${format} --size 64x48 `));
      await assertSame(path);
    });
  }
});

test("every setting does what the tool's option does", async () => {
  const path = chart("Bayer12p", "640x480", "--frames", "3", "--pattern", "RGGB");
  await open(path);
  await set({ format: "Bayer12p", width: 640, height: 480 });
  const changes = [{ pattern: "BGGR" }, { demosaic: "fast" }, { demosaic: "interpolate" }, { demosaic: "directional" }, { gamma: 2.2 },
                   { black: 100 }, { white: 3900 }, { red: 1.85 }, { blue: 0.6, green: 1.1 }, { number: 2 }, { header: 960 }, { stride: 970 },
                   { height: 200 }, { width: 638 }];
  for (const change of changes) {
    await set(change);
    await assertSame(path, JSON.stringify(change));
  }
  await page.click("#reset");
  await set({ header: 0, stride: 0, number: 0 });
  const colour = chart("YCbCr422_8", "64x48");
  await open(colour);
  for (const matrix of ["601", "709", "jpeg"]) {
    await set({ format: "YCbCr422_8", width: 64, height: 48, matrix });
    await assertSame(colour, matrix);
  }
});

test("every order of packed samples is the tool's", async () => {
  for (const [format, orders] of [["Bayer12p", ["type", "csi2"]], ["Mono12Packed", ["gige-vision", "type"]]]) {
    const path = chart(format, "64x48");
    await open(path);
    await set({ format, width: 64, height: 48, gamma: 2.2, white: 300 }); // the low bits can be seen
    assert.deepEqual(await page.$$eval("#packing option", (options) => options.map(({ text }) => text)), orders);
    const pictures = [];
    for (const packing of orders) {
      await set({ packing });
      assert.match(await text("command"), new RegExp(`--packing ${packing} `));
      await assertSame(path, packing);
      pictures.push(await canvasPixels());
    }
    assert.ok(!pictures[0].equals(pictures[1]));
  }
  await page.click("#reset");
});

test("automatic tone is the tool's", async () => {
  const path = chart("Bayer12p", "640x480", "--pattern", "RGGB");
  await open(path);
  await set({ format: "Bayer12p", width: 640, height: 480, pattern: "RGGB", demosaic: "interpolate" });
  const before = await canvasPixels();
  const marks = await countPictures();
  await page.click("#auto");
  await page.waitForFunction((count) => performance.getEntriesByName("picture").length > count, {}, marks);
  await assertSame(path, "numbers");
  const written = inDirectory("automatic.ppm");
  execFileSync(tool, ["convert", path, written, "-f", "Bayer12p", "-s", "640x480", "-p", "RGGB", "-d", "interpolate", "-t", "RGB8",
                      "--auto", "-q"]);
  const [shown, expected] = [await canvasPixels(), readFileSync(written).subarray(-3 * 640 * 480)];
  assert.ok(!shown.equals(before) && shown.every((value, i) => Math.abs(value - expected[i]) <= 1));
  await page.click("#reset");
});

// A chart's zone plate is as rough as a mosaic, so the first guess may be one.
test("a chart's format and size are among the first guesses", async () => {
  for (const format of ["Mono8", "Mono12p", "Bayer8", "Mono16", "RGB8"]) {
    await open(chart(format, "1280x1024"));
    const guesses = await page.$$eval("#guesses option", (options) => options.slice(0, 4).map(({ text }) => text));
    assert.ok(guesses.includes(`${format} 1280 × 1024`), `${format}: ${guesses.join("; ")}`);
  }
});

test("frames of cameras are guessed and shown", { skip: !existsSync(process.env.ZR_FRAMES ?? "") }, async (t) => {
  for (const name of readdirSync(process.env.ZR_FRAMES).filter((entry) => entry.endsWith(".raw"))) {
    await t.test(name, async () => {
      const path = join(process.env.ZR_FRAMES, name);
      await open(path);
      await assertSame(path);
      const [, width, height, format] = /_(\d+)x(\d+)_([^_.]+(?:_8)?)/.exec(name);
      const guess = await page.$eval("#guesses", ({ selectedOptions }) => selectedOptions[0].text);
      assert.match(guess, new RegExp(`^${format} +${width} × ${height}`));
    });
  }
});

test("a dropped file is shown", async () => {
  const path = inDirectory("dropped.raw");
  execFileSync(tool, ["chart", path, "--format", "Mono8", "--size", "320x240"]);
  const session = await page.createCDPSession();
  const data = { items: [], files: [path], dragOperationsMask: 1 };
  const marks = await countPictures();
  for (const type of ["dragEnter", "dragOver", "drop"]) await session.send("Input.dispatchDragEvent", { type, x: 300, y: 300, data });
  await page.waitForFunction((before) => performance.getEntriesByName("picture").length > before, {}, marks);
  assert.match(await text("command"), /dropped.raw/, await text("message"));
  await assertSame(path);
});

test("files that are no frames are told of", async () => {
  writeFileSync(inDirectory("empty.raw"), "");
  await open(inDirectory("empty.raw"));
  assert.match(await text("message"), /empty/);
  writeFileSync(inDirectory("small.txt"), "hello");
  await open(inDirectory("small.txt"));
  assert.match(await text("message"), /needs [\d,]+ bytes; the file has 5 bytes/);
  assert.ok(await page.$eval("#save", ({ disabled }) => disabled));
  await open(chart("YCbCr422_8", "64x48"));
  await set({ format: "YCbCr422_8", width: 63, height: 48 });
  assert.match(await text("message"), /multiple|width|pixels/i);
});

test("a file of 200 MB is shown frame by frame", async () => {
  const path = inDirectory("large.raw");
  writeFileSync(path, "");
  truncateSync(path, 200 << 20);
  await open(path);
  await set({ format: "Mono8", width: 4096, height: 3000, number: 10 });
  assert.match(await text("message"), /^17 frames of 12,288,000 bytes, /);
  assert.match(await text("command"), /--skip 10 --ignore-rest/);
});

test("a pixel tells its samples, bytes and colour", async () => {
  const path = inDirectory("pixels.raw");
  writeFileSync(path, Buffer.from([0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0, 0x11, 0x22, 0x33, 0x44]));
  await open(path);
  await set({ format: "Mono12p", width: 4, height: 2 });
  await page.focus("#view");
  for (const key of ["ArrowLeft", "ArrowLeft", "ArrowLeft", "ArrowUp", "ArrowUp", "ArrowRight"]) await page.keyboard.press(key);
  await page.waitForFunction(() => document.getElementById("at").textContent === "1, 0");
  assert.equal(await text("samples"), "1379, 0101 0110 0011");
  assert.equal(await text("bytes"), "12 34 56 of 2 pixels, from 0");
  assert.equal(await text("value"), "86, 86, 86");
  assert.equal(await text("spoken"), "1, 0: sample 1379; colour 86, 86, 86");
});

test("the PNG has the canvas' pixels", async () => {
  await open(chart("RGB8", "64x48"));
  await set({ format: "RGB8", width: 64, height: 48 });
  const session = await page.createCDPSession();
  await session.send("Browser.setDownloadBehavior", { behavior: "allow", downloadPath: directory });
  await page.click("#save");
  for (let tries = 0; tries < 1200 && !existsSync(inDirectory("RGB8.png")); ++tries) await new Promise((r) => setTimeout(r, 50));
  const url = `data:image/png;base64,${readFileSync(inDirectory("RGB8.png"), "base64")}`;
  const decoded = await page.evaluate(async (source) => {
    const image = Object.assign(new Image(), { src: source });
    await image.decode();
    const context = Object.assign(document.createElement("canvas"), { width: image.width, height: image.height }).getContext("2d");
    context.drawImage(image, 0, 0);
    return [...context.getImageData(0, 0, image.width, image.height).data].filter((_, i) => i % 4 !== 3);
  }, url);
  assert.ok(Buffer.from(decoded).equals(await canvasPixels()));
});

test("the view follows the window and zooms", async () => {
  const size = () => page.$eval("#view", ({ width, height, clientWidth, clientHeight }) => ({ width, height, clientWidth, clientHeight }));
  const before = await canvasPixels();
  for (const width of [700, 1400]) {
    await page.setViewport({ width, height: 700 });
    await page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))));
    const view = await size();
    assert.deepEqual([view.width, view.height], [view.clientWidth, view.clientHeight]);
  }
  await page.click("#whole");
  assert.equal(await text("scale"), "100 %");
  await page.focus("#view");
  await page.keyboard.press("+");
  assert.equal(await text("scale"), "200 %");
  assert.ok(before.equals(await canvasPixels()));
});

test("every control has a name", async () => {
  const nameless = (node) => [
    ...(["textbox", "spinbutton", "combobox", "listbox", "button", "slider"].includes(node.role) && !node.name ? [node] : []),
    ...(node.children ?? []).flatMap(nameless)];
  assert.deepEqual(nameless(await page.accessibility.snapshot()), []);
});

test("the time from a 12-megapixel file to its picture is told", async (t) => {
  const path = chart("BayerRG12p", "4096x3000");
  const begin = performance.now();
  await open(path);
  t.diagnostic(`first picture of 12 megapixels after ${Math.round(performance.now() - begin)} ms`);
  assert.match(await text("command"), /4096x3000/, await text("message"));
});

test("the browser has nothing to complain of and asks the network for nothing", () => assert.deepEqual(faults, []));
