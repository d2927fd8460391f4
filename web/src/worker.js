// Everything that takes time: reads the file, guesses what it is, converts frames. The file's bytes go nowhere
// but into the library's memory.
import bytesOfLibrary from "../../build/wasm/web/module/zrpage.wasm";
import { Library } from "./library.js";

// Bytes of a file that are looked at to guess what it is.
const GUESSED_BYTES = 32 << 20;

const ready = Library.load(bytesOfLibrary);
let file = null;
let held = null; // which bytes of which file the library has

async function hold(first, size) {
  const key = `${first}+${size}`;
  if (held === key) return;
  held = null;
  const bytes = new Uint8Array(await file.slice(first, first + size).arrayBuffer());
  (await ready).setBytes(bytes);
  held = key;
}

// Formats that differ in depth alone show the same picture, darker or brighter, and about as smooth: they count as
// the smoothest of them, within these bounds.
const ALIKE = 1.3;

function likened(guesses, formats) {
  const kindOf = ({ format, width, height }) => {
    const { family, bitsPerPixel } = formats.get(format);
    return [family, bitsPerPixel, width, height].join();
  };
  const least = new Map();
  for (const guess of guesses) {
    least.set(kindOf(guess), Math.min(guess.roughness, least.get(kindOf(guess)) ?? Infinity));
  }
  return guesses.map((guess) => {
    const best = least.get(kindOf(guess));
    return guess.roughness <= ALIKE * best ? { ...guess, roughness: best } : guess;
  });
}

// Other mosaics than Bayer's have tiles so wide that most things look smooth in them; few cameras have them.
const RARE = { families: ["SCF1", "BiColor"], factor: 2 };

// Several frames come after the single frames that explain the file, then the smoothest picture first. Of those that
// are about as smooth: larger frames, unsigned samples, and fewer bits, which is the brighter picture.
function rank(library, guesses) {
  const formats = new Map(library.formats().map((format) => [format.id, format]));
  const known = new Map();
  for (const guess of guesses) {
    const factor = RARE.families.includes(formats.get(guess.format).family) ? RARE.factor : 1;
    const roughness = factor * library.roughness({ ...guess, stride: 0 });
    if (roughness >= 0) known.set(`${guess.format} ${guess.width} ${guess.height}`, { ...guess, roughness });
  }
  const order = ({ format, frames, roughness }) => {
    const { isSigned, depth } = formats.get(format);
    return [Number(frames > 1), Math.round(Math.log(Math.max(roughness, 1e-3)) * 16), frames, Number(isSigned), depth];
  };
  const before = (a, b) => order(a).map((value, i) => value - order(b)[i]).find((difference) => difference !== 0) ?? 0;
  return likened([...known.values()], formats).sort(before);
}

// The best guess' mosaic gets the likeliest pattern.
function withPattern(library, guesses) {
  const [first, ...others] = guesses;
  if (first === undefined) return guesses;
  const isBayer = library.formats().some(({ id, family }) => id === first.format && family === "Bayer");
  return isBayer ? [{ ...first, pattern: library.pattern({ ...first, stride: 0 }) }, ...others] : guesses;
}

function required(told) {
  if (told.error) throw new Error(told.error);
  return told;
}

// Gives the library the bytes of one of the file's frames, if it has any, and tells of them all.
async function holdFrame(library, frame) {
  const layout = required(library.layout(frame));
  const available = Math.max(0, file.size - frame.header);
  const frames = Math.floor(available / layout.frameBytes) + (available % layout.frameBytes >= layout.leastBytes ? 1 : 0);
  const facts = { ...layout, frames, available, rest: Math.max(0, available - frames * layout.frameBytes) };
  if (frames === 0) return facts;
  const number = Math.min(frame.number, frames - 1);
  await hold(frame.header + number * layout.frameBytes, Math.min(layout.frameBytes, available));
  return { ...facts, number };
}

const actions = {
  async start() {
    const library = await ready;
    return { level: library.level(), formats: library.formats() };
  },

  async open({ file: opened, header }) {
    const library = await ready;
    file = opened;
    held = null;
    const bytes = Math.max(0, file.size - header);
    await hold(header, Math.min(bytes, GUESSED_BYTES));
    return { guesses: withPattern(library, rank(library, library.guesses(bytes))) };
  },

  async convert(frame) {
    const library = await ready;
    const facts = await holdFrame(library, frame);
    return facts.frames === 0 ? facts : { ...facts, picture: library.convert(frame) };
  },

  async tone(frame) {
    const library = await ready;
    const { frames } = await holdFrame(library, frame);
    if (frames === 0) throw new Error("there is no whole frame to measure");
    return required(library.automaticTone(frame));
  },

  async histogram() {
    return { counts: (await ready).histogram() };
  },

  async probe({ x, y }) {
    return { pixel: (await ready).probe(x, y) };
  },
};

// One after another, since an action may wait for the file.
let last = Promise.resolve();
onmessage = ({ data: { id, action, argument } }) => {
  last = last.then(async () => {
    try {
      const result = await actions[action](argument);
      postMessage({ id, result }, result.picture ? [result.picture] : []);
    } catch (error) {
      postMessage({ id, error: error.message });
    }
  });
};
