// The picture: zoom, movement, and the pixel under the pointer or the keyboard's cursor.

const GRID_FROM = 12; // device pixels of a pixel from which on a grid is drawn
const LARGEST_SCALE = 64;
const KEY_STEP = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };

export class Viewer {
  #view;
  #picture;
  #scale = 1; // device pixels of the screen for each pixel of the picture
  #left = 0; // of the picture's corner, in device pixels
  #top = 0;
  #fitted = true;
  #drag = null;
  #pending = false;

  // The pixel that is told of; `byKey` in the event says that the keyboard chose it.
  cursor = { x: 0, y: 0 };
  onCursor = () => {};
  onScale = () => {};

  constructor(view, picture) {
    this.#view = view;
    this.#picture = picture;
    new ResizeObserver(() => this.#resize()).observe(view);
    view.addEventListener("wheel", (event) => this.#wheel(event), { passive: false });
    view.addEventListener("pointerdown", (event) => this.#press(event));
    view.addEventListener("pointermove", (event) => this.#move(event));
    view.addEventListener("pointerup", () => (this.#drag = null));
    view.addEventListener("pointercancel", () => (this.#drag = null));
    view.addEventListener("dblclick", () => (this.#fitted ? this.zoomTo(1) : this.fit()));
    view.addEventListener("keydown", (event) => this.#key(event));
    view.addEventListener("focus", () => this.#refresh());
    view.addEventListener("blur", () => this.#refresh());
  }

  // Four bytes a pixel. A picture of another size is fitted into the view.
  show(bytes, width, height) {
    const picture = this.#picture;
    const same = picture.width === width && picture.height === height;
    if (!same) [picture.width, picture.height] = [width, height];
    picture.getContext("2d").putImageData(new ImageData(new Uint8ClampedArray(bytes), width, height), 0, 0);
    if (!same) {
      this.cursor = { x: width >> 1, y: height >> 1 };
      this.fit();
    }
    this.#refresh();
  }

  clear() {
    this.#picture.width = this.#picture.height = 0;
    this.#refresh();
  }

  fit() {
    const { width, height } = this.#view;
    const fitting = Math.min(width / this.#picture.width, height / this.#picture.height);
    this.#fitted = true;
    this.#setScale(fitting >= 1 ? Math.min(LARGEST_SCALE, Math.floor(fitting)) : fitting);
    this.#left = (width - this.#picture.width * this.#scale) / 2;
    this.#top = (height - this.#picture.height * this.#scale) / 2;
    this.#refresh();
  }

  // Keeps what lies at (x, y) of the view where it is.
  zoomTo(scale, x = this.#view.width / 2, y = this.#view.height / 2) {
    const before = this.#scale;
    this.#fitted = false;
    this.#setScale(Math.min(LARGEST_SCALE, Math.max(1 / 64, scale)));
    this.#left = x - ((x - this.#left) * this.#scale) / before;
    this.#top = y - ((y - this.#top) * this.#scale) / before;
    this.#keepInView();
    this.#refresh();
  }

  zoomBy(factor) {
    this.zoomTo(this.#scale * factor);
  }

  #setScale(scale) {
    this.#scale = scale;
    this.onScale(scale);
  }

  #keepInView() {
    const between = (value, a, b) => Math.min(Math.max(value, Math.min(a, b)), Math.max(a, b));
    this.#left = between(this.#left, 0, this.#view.width - this.#picture.width * this.#scale);
    this.#top = between(this.#top, 0, this.#view.height - this.#picture.height * this.#scale);
  }

  #resize() {
    const view = this.#view;
    view.width = Math.max(1, Math.round(view.clientWidth * devicePixelRatio));
    view.height = Math.max(1, Math.round(view.clientHeight * devicePixelRatio));
    if (this.#fitted) this.fit();
    else this.#keepInView();
    this.#draw();
  }

  #refresh() {
    if (this.#pending) return;
    this.#pending = true;
    requestAnimationFrame(() => this.#draw());
  }

  #draw() {
    this.#pending = false;
    const { width, height } = this.#picture;
    const context = this.#view.getContext("2d");
    context.clearRect(0, 0, this.#view.width, this.#view.height);
    if (width === 0) return;
    context.imageSmoothingEnabled = this.#scale < 1;
    const left = Math.round(this.#left), top = Math.round(this.#top);
    context.drawImage(this.#picture, left, top, width * this.#scale, height * this.#scale);
    if (this.#scale >= GRID_FROM) this.#drawGrid(context, left, top);
    if (document.activeElement === this.#view) this.#drawCursor(context, left, top);
  }

  #drawGrid(context, left, top) {
    const { width, height } = this.#view;
    context.strokeStyle = "rgb(128 128 128 / 0.35)";
    context.lineWidth = 1;
    context.beginPath();
    for (let x = left % this.#scale; x < width; x += this.#scale) this.#line(context, x, 0, x, height);
    for (let y = top % this.#scale; y < height; y += this.#scale) this.#line(context, 0, y, width, y);
    context.stroke();
  }

  #line(context, x0, y0, x1, y1) {
    context.moveTo(Math.round(x0) + 0.5, Math.round(y0) + 0.5);
    context.lineTo(Math.round(x1) + 0.5, Math.round(y1) + 0.5);
  }

  #drawCursor(context, left, top) {
    const size = Math.max(this.#scale, 9);
    const x = left + (this.cursor.x + 0.5) * this.#scale - size / 2;
    const y = top + (this.cursor.y + 0.5) * this.#scale - size / 2;
    for (const [colour, width] of [["black", 4], ["white", 2]]) {
      context.strokeStyle = colour;
      context.lineWidth = width;
      context.strokeRect(x, y, size, size);
    }
  }

  #devicePoint(event) {
    const box = this.#view.getBoundingClientRect();
    return { x: (event.clientX - box.left) * devicePixelRatio, y: (event.clientY - box.top) * devicePixelRatio };
  }

  #wheel(event) {
    event.preventDefault();
    const { x, y } = this.#devicePoint(event);
    this.zoomTo(this.#scale * Math.exp(-event.deltaY / 300), x, y);
  }

  #press(event) {
    const { x, y } = this.#devicePoint(event);
    this.#drag = { x: x - this.#left, y: y - this.#top };
    this.#view.setPointerCapture(event.pointerId);
  }

  #move(event) {
    const { x, y } = this.#devicePoint(event);
    if (this.#drag !== null) {
      this.#fitted = false;
      [this.#left, this.#top] = [x - this.#drag.x, y - this.#drag.y];
      this.#keepInView();
      this.#refresh();
    }
    this.#point(Math.floor((x - this.#left) / this.#scale), Math.floor((y - this.#top) / this.#scale), false);
  }

  #point(x, y, byKey) {
    const { width, height } = this.#picture;
    if (x < 0 || y < 0 || x >= width || y >= height) return;
    this.cursor = { x, y };
    this.onCursor({ x, y, byKey });
    if (byKey) this.#refresh();
  }

  #key(event) {
    const zooms = { "+": () => this.zoomBy(2), "=": () => this.zoomBy(2), "-": () => this.zoomBy(0.5),
                    0: () => this.fit(), 1: () => this.zoomTo(1) };
    const step = KEY_STEP[event.key];
    if (step === undefined && zooms[event.key] === undefined) return;
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    event.preventDefault();
    if (step === undefined) return zooms[event.key]();
    const distance = event.shiftKey ? 10 : 1;
    const inside = (value, size) => Math.min(Math.max(value, 0), size - 1);
    this.#point(inside(this.cursor.x + step[0] * distance, this.#picture.width),
                inside(this.cursor.y + step[1] * distance, this.#picture.height), true);
    this.#follow();
  }

  // Brings the cursor into the view.
  #follow() {
    const margin = Math.max(this.#scale, 8);
    const x = this.#left + (this.cursor.x + 0.5) * this.#scale, y = this.#top + (this.cursor.y + 0.5) * this.#scale;
    this.#left += Math.max(0, margin - x) - Math.max(0, x - (this.#view.width - margin));
    this.#top += Math.max(0, margin - y) - Math.max(0, y - (this.#view.height - margin));
  }
}
