// The worker, which holds the file and the library, as functions that give promises.
import source from "../../build/page/parts/worker.txt";

export class Engine {
  #worker = new Worker(URL.createObjectURL(new Blob([source], { type: "text/javascript" })));
  #waiting = new Map();
  #count = 0;

  constructor() {
    this.#worker.onmessage = ({ data: { id, result, error } }) => {
      const { resolve, reject } = this.#waiting.get(id);
      this.#waiting.delete(id);
      if (error === undefined) resolve(result);
      else reject(new Error(error));
    };
  }

  call(action, argument) {
    const id = ++this.#count;
    this.#worker.postMessage({ id, action, argument });
    return new Promise((resolve, reject) => this.#waiting.set(id, { resolve, reject }));
  }
}

// Calls of one kind where only the newest matters: while one runs, the next waits, and a newer takes its place.
export class Newest {
  #run;
  #running = false;
  #next = null;

  constructor(run) {
    this.#run = run;
  }

  async call(argument) {
    this.#next = { argument };
    if (this.#running) return;
    this.#running = true;
    while (this.#next !== null) {
      const { argument: newest } = this.#next;
      this.#next = null;
      await this.#run(newest);
    }
    this.#running = false;
  }
}
