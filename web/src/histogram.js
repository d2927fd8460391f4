// How often each value of each channel occurs, drawn with the colours of the theme.

const CHANNELS = ["red", "green", "blue"];

function heights(counts, height) {
  const most = Math.max(...counts.subarray(1, 255), 1);
  return Array.from(counts, (count) => Math.min(1, Math.sqrt(count / most)) * height);
}

function drawChannel(context, counts, colour, { width, height }) {
  context.beginPath();
  context.moveTo(0, height);
  heights(counts, height - 1).forEach((h, value) => context.lineTo(((value + 0.5) / 256) * width, height - h));
  context.lineTo(width, height);
  context.fillStyle = colour;
  context.fill();
}

function summary(counts) {
  let sum = 0, total = 0, least = 255, most = 0;
  counts.forEach((count, value) => {
    if (count === 0) return;
    total += count;
    sum += count * value;
    least = Math.min(least, value);
    most = Math.max(most, value);
  });
  return { least, most, mean: total > 0 ? sum / total : 0 };
}

export const channelOf = (counts, channel) => counts.subarray(256 * channel, 256 * channel + 256);

// Draws and gives the figures as a sentence.
export function drawHistogram(canvas, counts) {
  const scale = devicePixelRatio;
  canvas.width = canvas.clientWidth * scale;
  canvas.height = canvas.clientHeight * scale;
  const context = canvas.getContext("2d");
  const style = getComputedStyle(canvas);
  context.globalCompositeOperation = style.getPropertyValue("--blend").trim();
  const sentences = CHANNELS.map((name, channel) => {
    const values = channelOf(counts, channel);
    drawChannel(context, values, style.getPropertyValue(`--${name}`), canvas);
    const { least, most, mean } = summary(values);
    return `${name} ${least}–${most}, mean ${mean.toFixed(1)}`;
  });
  return sentences.join(" · ");
}
