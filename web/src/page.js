import { commandOf } from "./command.js";
import { Engine, Newest } from "./engine.js";
import { drawHistogram } from "./histogram.js";
import { Viewer } from "./viewer.js";

// In the order of the library's Demosaic and ColourMatrix; the words of zrconvert.
const DEMOSAICS = ["fast", "interpolate", "directional"];
const MATRICES = ["601", "709", "jpeg"];
const SHOWN_GUESSES = 12;

const element = (id) => document.getElementById(id);
const engine = new Engine();
const viewer = new Viewer(element("view"), element("picture"));
const form = element("settings");
let formats = new Map();
let file = null;
let shown = null; // settings of the picture on show, with what the worker told

// ---- settings ----

function fill(select, options) {
  select.replaceChildren(...options.map(([value, text]) => new Option(text, value)));
}

function fillFormats(list) {
  formats = new Map(list.map((format) => [format.id, {
    ...format, isMosaic: format.patterns.length > 0, isYCbCr: format.family === "YCbCr",
  }]));
  const families = new Map();
  for (const { family, name, id } of list) {
    if (!families.has(family)) families.set(family, Object.assign(document.createElement("optgroup"), { label: family }));
    families.get(family).append(new Option(name, id));
  }
  element("format").replaceChildren(...families.values());
}

const format = () => formats.get(Number(element("format").value));

// A whole number from an input; what is no number counts as the least.
function whole(id) {
  const { value, min } = element(id);
  const least = Number(min || 0);
  return Math.max(least, Math.trunc(Number(value)) || least);
}

const real = (id, otherwise) => (Number.isFinite(element(id).valueAsNumber) ? element(id).valueAsNumber : otherwise);

// Number and name of what is chosen; an empty list counts as its first.
function choice(id) {
  const chosen = element(id).selectedOptions[0];
  return { [id]: Number(chosen?.value ?? 0), [`${id}Name`]: chosen?.text ?? "" };
}

function settings() {
  return {
    format: format().id,
    width: whole("width"), height: whole("height"), stride: whole("stride"), header: whole("header"),
    number: whole("number"),
    ...choice("pattern"), ...choice("demosaic"), ...choice("matrix"), ...choice("packing"),
    tone: { black: Math.max(0, real("black", 0)), white: Math.max(0, real("white", 0)), gamma: Math.max(0.01, real("gamma", 1)),
            balance: ["red", "green", "blue"].map((id) => Math.max(0, real(id, 1))) },
  };
}

function take(guess) {
  element("format").value = guess.format;
  element("width").value = guess.width;
  element("height").value = guess.height;
  element("stride").value = 0;
  element("number").value = 0;
  offerChoices();
  element("packing").selectedIndex = 0;
  if (guess.pattern !== undefined) element("pattern").value = guess.pattern;
  update();
}

// Fills a list anew and keeps what was chosen, if it is still there.
function refill(id, options) {
  const before = element(id).value;
  if (options.map(([value]) => value).join() === [...element(id).options].map(({ value }) => value).join()) return;
  fill(element(id), options);
  if (options.some(([value]) => String(value) === before)) element(id).value = before;
}

function offerChoices() {
  const { patterns, demosaics, packings, isMosaic } = format();
  refill("packing", packings.map(({ value, name }) => [value, name]));
  if (!isMosaic) return;
  refill("pattern", patterns.map(({ value, name }) => [value, name]));
  refill("demosaic", DEMOSAICS.slice(0, demosaics).map((name, value) => [value, name]));
}

// What has a meaning for the format can be set, and no more.
function enable() {
  offerChoices();
  const { isMosaic, isYCbCr, widthMultiple, packings, codes } = format();
  const uses = { mosaic: isMosaic, ycbcr: isYCbCr, packed: packings.length > 0 };
  for (const row of document.querySelectorAll("[data-for]")) row.hidden = !uses[row.dataset.for];
  const { layout } = packings.find(({ value }) => value === choice("packing").packing) ?? format();
  element("colour").hidden = !isMosaic && !isYCbCr;
  element("width").step = element("width").min = widthMultiple;
  element("layout").textContent = layout + (codes.length > 0 ? ` · ${codes.join(", ")}` : "");
}

// ---- the picture ----

function say(text, isError = false) {
  element("message").textContent = text;
  element("message").classList.toggle("error", isError);
}

const counted = (count, thing) => `${count.toLocaleString("en")} ${thing}${count === 1 ? "" : "s"}`;

function sayFrames({ frames, rest, frameBytes, leastBytes, available }) {
  if (frames === 0) {
    const header = element("header").valueAsNumber > 0 ? " after the header" : "";
    return say(`A frame of this format and size needs ${counted(leastBytes, "byte")}; the file has ` +
               `${counted(available, "byte")}${header}.`, true);
  }
  const left = rest > 0 ? `, ${counted(rest, "byte")} left over` : "";
  say(`${counted(frames, "frame")} of ${counted(frameBytes, "byte")}${left}`, false);
}

function tellFrames({ frames, number }) {
  const several = frames > 1;
  element("frames").hidden = !several;
  for (const id of ["number", "slider"]) element(id).max = Math.max(0, frames - 1);
  element("number").value = element("slider").value = number ?? 0;
  element("of").textContent = several ? `of ${frames}` : "";
}

function tellCommand() {
  element("command").textContent = commandOf(shown, formats.get(shown.format), file.name);
}

function showNothing() {
  shown = null;
  viewer.clear();
  element("save").disabled = element("copy").disabled = true;
  element("command").textContent = "";
  document.body.classList.remove("has-picture");
}

const histograms = new Newest(async () => {
  const { counts } = await engine.call("histogram");
  element("histogram-text").textContent = drawHistogram(element("histogram"), counts);
});

const pictures = new Newest(async (frame) => {
  try {
    const told = await engine.call("convert", frame);
    sayFrames(told);
    tellFrames(told);
    if (!told.picture) return showNothing();
    shown = { ...frame, number: told.number, rest: told.rest };
    document.body.classList.add("has-picture");
    viewer.show(told.picture, frame.width, frame.height);
    element("save").disabled = element("copy").disabled = false;
    element("view").setAttribute("aria-label", `${file.name} as ${formats.get(frame.format).name}, ` +
                                 `${frame.width} by ${frame.height} pixels`);
    tellCommand();
    probes.call({ ...viewer.cursor, byKey: false });
    histograms.call();
  } catch (error) {
    say(`${error.message[0].toUpperCase()}${error.message.slice(1)}.`, true);
    showNothing();
  } finally {
    performance.mark("picture"); // for the browser's profiler
  }
});

function update() {
  enable();
  if (file !== null) pictures.call(settings());
}

// ---- the file ----

const guessText = ({ format: id, width, height, frames }) =>
  `${formats.get(id).name} ${width} × ${height}` + (frames > 1 ? ` (${frames} frames)` : "");

function offer(guesses) {
  const list = element("guesses");
  fill(list, guesses.slice(0, SHOWN_GUESSES).map((guess, index) => [index, guessText(guess)]));
  list.disabled = guesses.length === 0;
  list.onchange = () => take(guesses[Number(list.value)]);
  if (guesses.length === 0) return;
  list.selectedIndex = 0;
  take(guesses[0]);
}

async function open(opened) {
  if (!opened) return;
  file = null;
  element("name").textContent = `${opened.name} · ${counted(opened.size, "byte")}`;
  document.title = `${opened.name} – frame viewer`;
  showNothing();
  if (opened.size === 0) return say("This file is empty.", true);
  say("Reading …");
  try {
    const { guesses } = await engine.call("open", { file: opened, header: whole("header") });
    file = opened;
    offer(guesses);
    if (guesses.length === 0) update();
  } catch (error) {
    say(`This file cannot be read: ${error.message}`, true);
  }
}

async function guessAgain() {
  if (file !== null) await open(file);
}

function savePng() {
  element("picture").toBlob((blob) => {
    const link = document.createElement("a");
    link.href = URL.createObjectURL(blob);
    link.download = file.name.replace(/\.[^.]*$/, "") + ".png";
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 10000);
  }, "image/png");
}

async function copyCommand() {
  const text = element("command").textContent;
  try {
    await navigator.clipboard.writeText(text);
    element("copied").textContent = "Copied";
  } catch {
    getSelection().selectAllChildren(element("command"));
    element("copied").textContent = "Selected: press Ctrl+C";
  }
  setTimeout(() => (element("copied").textContent = ""), 3000);
}

// ---- the pixel ----

const hexadecimal = (bytes) => bytes.map((byte) => byte.toString(16).padStart(2, "0").toUpperCase()).join(" ");

// "R 2748, 1010 1011 1100"
function sampleText(name, value, depth) {
  const bits = value.toString(2).padStart(depth, "0").replace(/\B(?=(\d{4})+(?!\d))/g, " ");
  return `${name === "sample" ? "" : `${name} `}${value}, ${bits}`;
}

function tellPixel({ x, y, byKey }, pixel) {
  const samples = pixel.samples.map(({ name, value }) => sampleText(name, value, pixel.depth)).join(" · ");
  const shared = pixel.pixels > 1 ? ` of ${pixel.pixels} pixels` : "";
  element("at").textContent = `${x}, ${y}`;
  element("samples").textContent = samples || "–";
  element("bytes").textContent = `${hexadecimal(pixel.bytes)}${shared}, from ${pixel.offset}`;
  element("value").textContent = pixel.colour.join(", ");
  element("swatch").style.background = `rgb(${pixel.colour.join(" ")})`;
  if (!byKey) return;
  const spoken = pixel.samples.map(({ name, value }) => `${name} ${value}`).join(", ");
  element("spoken").textContent = `${x}, ${y}: ${spoken ? `${spoken}; ` : ""}colour ${pixel.colour.join(", ")}`;
}

const probes = new Newest(async (at) => {
  if (shown === null) return;
  const { pixel } = await engine.call("probe", at);
  if (pixel !== null && shown !== null) tellPixel(at, pixel);
});

// ---- wiring ----

function mirror(source, target) {
  element(source).addEventListener("input", () => (element(target).value = element(source).value));
}

// The tool's --auto, as numbers that can be changed.
async function chooseTone() {
  if (file === null) return;
  try {
    const { black, white, balance: [red, green, blue] } = await engine.call("tone", settings());
    for (const [id, value] of Object.entries({ black, white, red, green, blue })) element(id).value = Number(value.toFixed(4));
    update();
  } catch (error) {
    say(`${error.message[0].toUpperCase()}${error.message.slice(1)}.`, true);
  }
}

function resetTone() {
  for (const id of ["black", "white", "gamma", "red", "green", "blue"]) element(id).value = element(id).defaultValue;
  update();
}

function acceptDrops() {
  const hold = (event) => {
    event.preventDefault();
    document.body.classList.toggle("dropping", event.type === "dragover");
  };
  addEventListener("dragover", hold);
  addEventListener("dragleave", hold);
  addEventListener("drop", (event) => {
    hold(event);
    open(event.dataTransfer.files[0]);
  });
}

function wire() {
  mirror("slider", "number");
  mirror("number", "slider");
  form.addEventListener("input", (event) => event.target.id !== "guesses" && update());
  form.addEventListener("submit", (event) => event.preventDefault());
  element("file").addEventListener("change", (event) => open(event.target.files[0]));
  for (const button of document.querySelectorAll(".open")) button.addEventListener("click", () => element("file").click());
  element("again").addEventListener("click", guessAgain);
  element("auto").addEventListener("click", chooseTone);
  element("reset").addEventListener("click", resetTone);
  element("save").addEventListener("click", savePng);
  element("copy").addEventListener("click", copyCommand);
  element("fit").addEventListener("click", () => viewer.fit());
  element("whole").addEventListener("click", () => viewer.zoomTo(1));
  element("nearer").addEventListener("click", () => viewer.zoomBy(2));
  element("farther").addEventListener("click", () => viewer.zoomBy(0.5));
  viewer.onCursor = (at) => probes.call(at);
  viewer.onScale = (scale) => (element("scale").textContent = `${scale >= 0.1 ? Math.round(scale * 100) : (scale * 100).toFixed(1)} %`);
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => shown && histograms.call());
  acceptDrops();
}

async function start() {
  fill(element("matrix"), MATRICES.map((name, value) => [value, name]));
  fill(element("demosaic"), DEMOSAICS.map((name, value) => [value, name]));
  element("demosaic").value = 1;
  wire();
  try {
    const { level, formats: list } = await engine.call("start");
    fillFormats(list);
    element("level").textContent = `${list.length} formats, ${level}`;
    enable();
    document.body.classList.add("ready");
  } catch (error) {
    say(`The library cannot be started in this browser: ${error.message}`, true);
  }
}

start();
