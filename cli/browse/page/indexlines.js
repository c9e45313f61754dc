// Index lines: all places of a chart with the same merit y^p / x. Records on the better side of the
// line have more.

import {s, say} from './dom.js';
import {figure} from './numbers.js';

export const meritOf = (point, power) => (point.x > 0 && point.y > 0 ? point.y ** power / point.x : NaN);

/** The merit by which a tenth of the records lies above the line. */
export function merit(points, power) {
  const list = points.map((one) => meritOf(one, power)).filter(Number.isFinite).sort((a, b) => b - a);
  return list.length ? Number(list[Math.floor(list.length / 10)].toPrecision(4)) : 1;
}

export const powerText = (power) => ({1: '', [1 / 2]: '^(1/2)', [1 / 3]: '^(1/3)'}[power] ?? `^${figure(power, 3)}`);

/** Draws the line of `chart.model.index`, {power, merit}, and lets it be dragged, or moved by keys. */
export function indexLine(chart) {
  const {power, merit: present, name} = chart.model.index;
  const {x, y} = chart;
  const pathOf = (value) => {
    const dots = [];
    for (let i = 0; i <= 80; ++i) {
      const px = x.from + (x.to - x.from) * i / 80, at = (value * x.figure(px)) ** (1 / power);
      if (Number.isFinite(at) && (at > 0 || !y.isLog)) {
        dots.push(`${px.toFixed(1)} ${Math.max(-1e4, Math.min(1e4, y.place(at))).toFixed(1)}`);
      }
    }
    return dots.length ? `M${dots.join('L')}` : '';
  };
  const line = s('path', {d: pathOf(present), fill: 'none', stroke: chart.paint.mark, 'stroke-width': 2.5, 'stroke-dasharray': '9 4'});
  const handle = s('path', {d: pathOf(present), class: 'index', fill: 'none', stroke: 'transparent', 'stroke-width': 22, 'data-tool': 1,
    tabindex: 0, role: 'slider', 'aria-label': `Index line ${name}`, 'aria-orientation': 'vertical',
    'aria-valuenow': present, 'aria-valuetext': figure(present, 4)});
  const move = (value) => {
    for (const one of [line, handle]) one.setAttribute('d', pathOf(value));
    handle.setAttribute('aria-valuenow', value);
    handle.setAttribute('aria-valuetext', figure(value, 4));
    chart.told.index(value);
  };
  handle.addEventListener('pointerdown', (event) => {
    event.stopPropagation();
    handle.setPointerCapture(event.pointerId);
    handle.focus();
    const drag = (next) => {
      const [px, py] = chart.placeOf(next);
      const value = meritOf({x: x.figure(px), y: y.figure(py)}, power);
      if (value > 0) move(Number(value.toPrecision(4)));
    };
    handle.addEventListener('pointermove', drag);
    handle.addEventListener('pointerup', () => handle.removeEventListener('pointermove', drag), {once: true});
  });
  let value = present;
  handle.addEventListener('keydown', (event) => {
    const factor = {ArrowUp: 1.05, ArrowRight: 1.05, ArrowDown: 1 / 1.05, ArrowLeft: 1 / 1.05, PageUp: 1.5, PageDown: 1 / 1.5}[event.key];
    if (!factor) return;
    event.preventDefault();
    value = Number(((Number(handle.getAttribute('aria-valuenow')) || value) * factor).toPrecision(4));
    move(value);
    say(`${name} ${figure(value, 4)}`);
  });
  chart.inside.append(line, handle);
}
