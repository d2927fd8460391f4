// The library, a WebAssembly module, as functions.

const decoder = new TextDecoder();

// What the runtime may ask for: nothing happens but that a fault stops it.
function imports(module) {
  const stop = (code) => {
    throw new Error(`the library ended with code ${code}`);
  };
  const functions = {};
  for (const { module: from, name } of WebAssembly.Module.imports(module)) {
    (functions[from] ??= {})[name] = name === "proc_exit" ? stop : () => 0;
  }
  return functions;
}

export class Library {
  static async load(bytes) {
    const module = await WebAssembly.compile(bytes);
    const instance = await WebAssembly.instantiate(module, imports(module));
    instance.exports._initialize();
    return new Library(instance.exports);
  }

  constructor(exports) {
    this.exports = exports;
  }

  #text(address) {
    const memory = new Uint8Array(this.exports.memory.buffer);
    return decoder.decode(memory.subarray(address, memory.indexOf(0, address)));
  }

  #json(address) {
    return JSON.parse(this.#text(address));
  }

  level() {
    return this.#text(this.exports.level());
  }

  formats() {
    return this.#json(this.exports.formats());
  }

  // Formats and sizes whose frames fill so many bytes.
  guesses(bytes) {
    return this.#json(this.exports.guesses(bytes));
  }

  layout({ format, width, height, stride }) {
    return this.#json(this.exports.layout(format, width, height, stride));
  }

  // The bytes of the frame. Throws without memory.
  setBytes(bytes) {
    const address = this.exports.reserve(bytes.length);
    if (address === 0) throw new Error("the browser has not enough memory for this frame");
    new Uint8Array(this.exports.memory.buffer).set(bytes, address);
  }

  roughness({ format, width, height, stride }) {
    return this.exports.roughness(format, width, height, stride);
  }

  // The number of the likeliest pattern of a mosaic.
  pattern({ format, width, height, stride }) {
    return this.exports.pattern(format, width, height, stride);
  }

  // The picture of the frame, four bytes a pixel, in memory of its own. Throws an error that says why not.
  convert({ format, width, height, stride, pattern, demosaic, matrix, packing, tone }) {
    this.exports.setTone(tone.black, tone.white, tone.gamma, ...tone.balance);
    this.#check(this.exports.convert(format, width, height, stride, pattern, demosaic, matrix, packing));
    const address = this.exports.picture() >>> 0;
    return this.exports.memory.buffer.slice(address, address + 4 * width * height);
  }

  // Levels and white balance that the frame asks for.
  automaticTone({ format, width, height, stride, pattern, matrix, packing }) {
    return this.#json(this.exports.automaticTone(format, width, height, stride, pattern, matrix, packing));
  }

  #check(code) {
    if (code !== 0) throw new Error(this.#text(this.exports.resultText(code)));
  }

  // Counts of red, green and blue, 256 each.
  histogram() {
    return new Uint32Array(this.exports.memory.buffer, this.exports.histogram(), 768).slice();
  }

  // One pixel's bytes, samples and colour; null outside the picture.
  probe(x, y) {
    return this.#json(this.exports.probe(x, y));
  }
}
