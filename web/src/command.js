// The command that makes the same picture.

const quoted = (word) => (/^[\w.,/:=+-]+$/.test(word) ? word : `'${word.replaceAll("'", "'\\''")}'`);

const number = (value) => String(Number(value.toFixed(4)));

export function commandOf(frame, format, fileName) {
  const words = ["zrconvert", "convert", fileName, fileName.replace(/\.[^.]*$/, "") + ".png"];
  const add = (option, value) => words.push(option, String(value));
  add("--format", format.name);
  add("--size", `${frame.width}x${frame.height}`);
  add("--to", "RGB8");
  if (frame.stride > 0) add("--stride", frame.stride);
  if (frame.header > 0) add("--header-bytes", frame.header);
  if (frame.number > 0) add("--skip", frame.number);
  if (frame.rest > 0) words.push("--ignore-rest");
  if (format.packings.length > 0) add("--packing", frame.packingName);
  if (format.isMosaic) {
    add("--pattern", frame.patternName);
    add("--demosaic", frame.demosaicName);
  }
  if (format.isYCbCr) add("--matrix", frame.matrixName);
  const { black, white, gamma, balance } = frame.tone;
  if (black !== 0) add("--black", number(black));
  if (white !== 0) add("--white", number(white));
  if (balance.some((gain) => gain !== 1)) add("--white-balance", balance.map(number).join(","));
  if (gamma !== 1) add("--gamma", number(gamma));
  return words.map(quoted).join(" ");
}
