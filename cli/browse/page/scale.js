// Axes: places of figures in pixels, ticks, and how they are drawn.

import {s} from './dom.js';
import {figure} from './numbers.js';

/** A linear or logarithmic axis that leads [least, most] to [from, to] pixels. */
export function scale(least, most, from, to, isLog) {
  const f = isLog ? Math.log10 : (x) => x;
  const back = isLog ? (x) => 10 ** x : (x) => x;
  const a = f(least), b = f(most);
  const per = (to - from) / (b - a || 1);
  return {
    least, most, from, to, isLog,
    place: (x) => from + (f(x) - a) * per,
    figure: (pixel) => back(a + (pixel - from) / per),
  };
}

/** A little more than the figures need; whole decades are not forced. */
export function room(figures, isLog) {
  const f = isLog ? Math.log10 : (x) => x, back = isLog ? (x) => 10 ** x : (x) => x;
  let least = Infinity, most = -Infinity;
  for (const one of figures) {
    if (!Number.isFinite(one) || (isLog && one <= 0)) continue;
    if (one < least) least = one;
    if (one > most) most = one;
  }
  if (least > most) return isLog ? [1, 10] : [0, 1];
  const gap = (f(most) - f(least)) * 0.05 || (isLog ? 0.1 : Math.abs(f(most)) * 0.1 || 1);
  return [back(f(least) - gap), back(f(most) + gap)];
}

function roundStep(least, most, wanted) {
  const raw = (most - least) / wanted;
  const ten = 10 ** Math.floor(Math.log10(raw));
  return ([1, 2, 5].find((one) => one * ten >= raw) || 10) * ten;
}

/** Round steps of a slider, between the ends. */
export function roundSteps(least, most) {
  const step = Number(roundStep(least, most, 200).toPrecision(3));
  const near = (round, end) => Number((round(end / step) * step).toPrecision(12));
  return {least: near(Math.ceil, least), most: near(Math.floor, most), step};
}

function steps(least, most, wanted) {
  const step = roundStep(least, most, wanted);
  const list = [];
  for (let i = Math.ceil(least / step); i * step <= most * (1 + 1e-12) && list.length < 50; ++i) list.push(i * step);
  return list.map((one) => Number(one.toPrecision(12)));
}

/** Figures with a label, and those with a line alone. */
export function ticks(axis, pixelsEach) {
  const wanted = Math.max(2, Math.floor(Math.abs(axis.to - axis.from) / pixelsEach));
  if (!axis.isLog) return {labelled: steps(axis.least, axis.most, wanted), fine: []};
  const low = Math.floor(Math.log10(axis.least)), high = Math.ceil(Math.log10(axis.most));
  const inside = (one) => one >= axis.least * (1 - 1e-9) && one <= axis.most * (1 + 1e-9);
  const decades = [];
  for (let i = low; i <= high; ++i) decades.push(10 ** i);
  const all = decades.flatMap((ten) => [1, 2, 3, 4, 5, 6, 7, 8, 9].map((one) => Number((one * ten).toPrecision(3)))).filter(inside);
  const tens = decades.filter(inside);
  if (tens.length > wanted) {
    const every = Math.ceil(tens.length / wanted);
    return {labelled: tens.filter((one, i) => i % every === 0), fine: tens};
  }
  if (tens.length >= 3) return {labelled: tens, fine: all};
  const few = all.filter((one) => [1, 2, 5].includes(Number(one.toExponential(0)[0])));
  if (few.length >= 2) return {labelled: few, fine: all};
  return {labelled: steps(axis.least, axis.most, Math.min(wanted, 5)), fine: all};
}

const LETTER = 0.56;  // of the height, a little more than the mean

/** The name of an axis in letters that fit, in two lines where one is too long for the smallest. */
function fitted(label, room) {
  const size = (text) => Math.min(14, room / (text.length * LETTER));
  if (size(label) >= 11) return {lines: [label], size: size(label)};
  const blanks = [...label.matchAll(/ /g)].map((one) => one.index);
  const middle = blanks.sort((a, b) => Math.abs(a - label.length / 2) - Math.abs(b - label.length / 2))[0];
  const lines = middle ? [label.slice(0, middle), label.slice(middle + 1)] : [label];
  return {lines, size: Math.max(6, Math.min(12, ...lines.map(size)))};
}

/** Grid, figures and names of both axes. `colours` has grid, text and ground. */
export function axes(x, y, xName, yName, colours) {
  const [left, right, bottom, top] = [x.from, x.to, y.from, y.to];
  const out = s('g', {'font-size': 12, 'font-family': 'system-ui, sans-serif', 'aria-hidden': 'true'});
  const line = (x1, y1, x2, y2, width) =>
    out.append(s('line', {x1, y1, x2, y2, stroke: colours.grid, 'stroke-width': width}));
  const text = (label, attributes) => out.append(s('text', {fill: colours.text, ...attributes}, label));
  const xs = ticks(x, 70), ys = ticks(y, 45);
  for (const one of xs.fine) line(x.place(one), top, x.place(one), bottom, 0.35);
  for (const one of ys.fine) line(left, y.place(one), right, y.place(one), 0.35);
  for (const one of xs.labelled) {
    line(x.place(one), top, x.place(one), bottom, 1);
    text(figure(one), {x: x.place(one), y: bottom + 18, 'text-anchor': 'middle'});
  }
  for (const one of ys.labelled) {
    line(left, y.place(one), right, y.place(one), 1);
    text(figure(one), {x: left - 7, y: y.place(one) + 4, 'text-anchor': 'end'});
  }
  out.append(s('rect', {x: left, y: top, width: right - left, height: bottom - top, fill: 'none', stroke: colours.text}));
  const name = (label, room, place) => {
    const {lines, size} = fitted(label, room);
    lines.forEach((one, i) => text(one, {transform: place(i - lines.length + 1), 'text-anchor': 'middle', 'font-size': size, class: 'axis'}));
  };
  name(xName, right - left, (line) => `translate(${(left + right) / 2} ${bottom + 46 + line * 13})`);
  name(yName, bottom - top, (line) => `translate(${left - 50 + line * 13} ${(top + bottom) / 2}) rotate(-90)`);
  return out;
}

/** The colours of the page, as they are now. */
export function colours() {
  const style = getComputedStyle(document.documentElement);
  const of = (name) => style.getPropertyValue(name).trim();
  return {
    grid: of('--line'), text: of('--text'), ground: of('--ground'), mark: of('--main'),
    series: Array.from({length: 10}, (unused, i) => of(`--series${i}`)),
  };
}
