// Draws curves over a common axis.

import {h, s} from './dom.js';
import {figure, forPeople, unit, withUnit} from './numbers.js';
import {axes, colours, room, scale} from './scale.js';

const dashes = ['', '6 3', '2 3', '8 3 2 3'];

const parameterText = (list, {number, measure} = forPeople) =>
  list.map((one) => `${one.name} ${measure(typeof one.value === 'number' ? number(one.value) : one.value, one.unit)}`).join(', ');

function pathOf(curve, x, y) {
  return curve.x.map((place, i) => `${i && curve.y[i] !== null && curve.y[i - 1] !== null ? 'L' : 'M'}` +
    `${x.place(place).toFixed(1)} ${y.place(curve.y[i] ?? 0).toFixed(1)}`).join('');
}

/** Between two points on the straight line that is drawn, on axes that may be logarithmic; nothing outside. */
export function valueAt(curve, place, x, y) {
  for (let i = 1; i < curve.x.length; ++i) {
    const [a, b] = [curve.x[i - 1], curve.x[i]];
    if ((place < a) === (place < b) && place !== b && place !== a) continue;
    const part = b === a ? 0 : (x.place(place) - x.place(a)) / (x.place(b) - x.place(a));
    if (part < 0 || part > 1 || curve.y[i] === null || curve.y[i - 1] === null) continue;
    const [from, to] = [y.place(curve.y[i - 1]), y.place(curve.y[i])];
    return y.figure(from + part * (to - from));
  }
  return null;
}

/** The legend, with the values at a place of the axis once a slider was moved. */
function reading(list, first, names, x, y) {
  const places = list.flatMap((one) => one.x), least = Math.min(...places), most = Math.max(...places);
  // The slider goes along the axis as it is drawn, and ends just where the curves do.
  const figureAt = (pixel) => Math.min(most, Math.max(least, x.figure(pixel)));
  const outputs = list.map(() => h('output', {}));
  const text = h('output', {});
  const read = (place) => {
    text.textContent = withUnit(figure(place, 4), first.xUnit);
    list.forEach((curve, i) => {
      const value = valueAt(curve, place, x, y);
      outputs[i].textContent = value === null ? ' none here' : ` ${withUnit(figure(value, 4), curve.yUnit)}`;
    });
  };
  const slider = h('input', {type: 'range', min: x.place(least), max: x.place(most), step: 'any', value: x.place(least),
    'aria-label': `Read off at ${first.xName}`, oninput: (event) => {
      read(figureAt(Number(event.target.value)));
      slider.setAttribute('aria-valuetext', text.textContent);
    }});
  return {
    legend: h('ul', {class: 'keys'}, names.map((name, i) => h('li', {}, name.key, name.text, outputs[i]))),
    slider: h('label', {class: 'slider'}, `Read off at ${first.xName} `, slider, ' ', text),
  };
}

/** `curves` as the server has them; each may carry the `name` of its record. */
export function curveChart(curves, yName, yIsLog = false) {
  const drawn = curves.filter((one) => one.x.length && !one.xWords && one.x.every((place) => place !== null));
  if (!drawn.length) return wordTable(curves, yName);
  const paint = colours(), first = drawn[0];
  const width = 560, height = 300;
  const isXLog = first.xIsLog && drawn.every((one) => one.x.every((place) => place > 0));
  const isYLog = yIsLog && drawn.every((one) => one.y.every((place) => place > 0));
  const x = scale(...room(drawn.flatMap((one) => one.x), isXLog), 70, width - 12, isXLog);
  const y = scale(...room(drawn.flatMap((one) => one.y), isYLog), height - 50, 12, isYLog);
  const label = unit(first.yUnit);
  const out = s('svg', {viewBox: `0 0 ${width} ${height}`, role: 'img', class: 'curve',
    'aria-label': `${yName} over ${first.xName}, ${drawn.length === 1 ? 'one curve' : `${drawn.length} curves`}`});
  out.append(axes(x, y, `${first.xName}${first.xUnit ? ` (${unit(first.xUnit)})` : ''}`, label, paint));
  const look = (i) => ({stroke: paint.series[i % 10], 'stroke-dasharray': dashes[Math.floor(i / 10) % 4], 'stroke-width': 2, fill: 'none'});
  drawn.forEach((curve, i) => {
    if (curve.isJoined) out.append(s('path', {d: pathOf(curve, x, y), ...look(i)}));
    if (!curve.isJoined || curve.x.length < 40) {
      curve.x.forEach((place, j) => {
        if (curve.y[j] !== null) out.append(s('circle', {cx: x.place(place), cy: y.place(curve.y[j]), r: 2.5, fill: paint.series[i % 10]}));
      });
    }
  });
  const names = drawn.map((curve, i) => ({
    text: [curve.name, parameterText(curve.parameters)].filter(Boolean).join(', ') || 'value',
    key: s('svg', {width: 26, height: 10, 'aria-hidden': 'true'}, s('path', {d: 'M0 5H26', ...look(i)})),
  }));
  const {legend, slider} = reading(drawn, first, names, x, y);
  return h('figure', {}, out, h('figcaption', {}, slider, legend));
}

/** Values over words. */
function wordTable(curves, yName) {
  return h('table', {}, h('tbody', {}, curves.flatMap((curve) => curve.y.map((value, i) => h('tr', {},
    h('th', {scope: 'row'}, [curve.name, curve.xWords ? curve.xWords[i] : figure(curve.x[i]), parameterText(curve.parameters)].filter(Boolean).join(', ')),
    h('td', {}, withUnit(figure(value), curve.yUnit)))))));
}
export {parameterText};
