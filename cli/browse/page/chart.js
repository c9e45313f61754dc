// The property chart: a mark for each record, drawn as SVG, or on a canvas where there are many.

import {h, s, say} from './dom.js';
import {axes, colours, room, scale} from './scale.js';
import {indexLine} from './indexlines.js';

const MANY = 2000;
const LEFT = 72, RIGHT = 14, TOP = 12, BOTTOM = 52;
const SMALLEST = 4;

/**
 * `host` gets the drawing. `told` has what it tells: open(id), keep(id), box(ids), zoom([x0, x1, y0,
 * y1]), index(merit). `draw` takes {points, xName, yName, xLog, yLog, zoom, families, kept, index,
 * shape}; a point is {id, name, family, x, y, xLow, xHigh, yLow, yHigh, text},
 * with the ends of the mark, which are above 0 on a logarithmic axis.
 */
export class Chart {
  constructor(host, told) {
    this.host = host;
    this.told = told;
    this.mode = 'pan';
    this.at = -1;
    this.canvas = h('canvas', {'aria-hidden': 'true'});
    this.svg = s('svg', {class: 'plot', role: 'application', tabindex: 0, 'aria-describedby': 'chart-help'});
    this.tip = h('div', {class: 'tip', hidden: true});
    host.replaceChildren(this.canvas, this.svg, this.tip);
    new ResizeObserver(() => this.model && this.redraw()).observe(host);
    matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => this.model && this.redraw());
    this.svg.addEventListener('wheel', (event) => this.onWheel(event), {passive: false});
    this.svg.addEventListener('pointerdown', (event) => this.onDown(event));
    this.svg.addEventListener('pointermove', (event) => this.onHover(event));
    this.svg.addEventListener('pointerleave', () => { this.tip.hidden = true; });
    this.svg.addEventListener('keydown', (event) => this.onKey(event));
  }

  draw(model) {
    this.model = model;
    this.at = -1;
    this.redraw();
  }

  /** What the axes show: the zoom, or all figures. */
  domain() {
    const {points, zoom, xLog, yLog} = this.model;
    if (zoom.length === 4 && zoom[0] < zoom[1] && zoom[2] < zoom[3] && (!xLog || zoom[0] > 0) && (!yLog || zoom[2] > 0)) return zoom;
    return [...room(points.flatMap((one) => [one.xLow, one.xHigh]), xLog), ...room(points.flatMap((one) => [one.yLow, one.yHigh]), yLog)];
  }

  redraw() {
    const width = Math.max(280, this.host.clientWidth), height = Math.max(260, this.host.clientHeight);
    const {xLog, yLog, xName, yName, points} = this.model;
    const [x0, x1, y0, y1] = this.domain();
    this.x = scale(x0, x1, LEFT, width - RIGHT, xLog);
    this.y = scale(y0, y1, height - BOTTOM, TOP, yLog);
    this.paint = colours();
    this.shapes = points.map((one) => this.shapeOf(one));
    this.svg.setAttribute('viewBox', `0 0 ${width} ${height}`);
    this.svg.setAttribute('aria-label', `${yName} over ${xName}, ${points.length} records`);
    const clip = s('clipPath', {id: 'inside'}, s('rect', {x: LEFT, y: TOP, width: width - LEFT - RIGHT, height: height - TOP - BOTTOM}));
    this.inside = s('g', {'clip-path': 'url(#inside)'});
    this.svg.replaceChildren(s('defs', {}, clip), axes(this.x, this.y, xName, yName, this.paint), this.inside);
    const isMany = points.length > MANY;
    this.canvas.hidden = !isMany;
    if (isMany) this.paintMarks(width, height);
    else this.inside.append(this.marks(this.svg));
    this.drawKept();
    if (this.model.index) indexLine(this);
    this.focusRing = s('circle', {r: 12, fill: 'none', stroke: this.paint.text, 'stroke-width': 3, visibility: 'hidden', 'data-tool': 1});
    this.inside.append(this.focusRing);
    this.svg.dataset.drawn = points.length;
  }

  shapeOf(point) {
    const xa = this.x.place(point.xLow), xb = this.x.place(point.xHigh);
    const ya = this.y.place(point.yLow), yb = this.y.place(point.yHigh);
    return {cx: (xa + xb) / 2, cy: (ya + yb) / 2, rx: Math.max(SMALLEST, Math.abs(xb - xa) / 2), ry: Math.max(SMALLEST, Math.abs(yb - ya) / 2)};
  }

  isVisible(i) {
    const {cx, cy} = this.shapes[i];
    return cx >= this.x.from && cx <= this.x.to && cy <= this.y.from && cy >= this.y.to;
  }

  /** The marks as SVG, large ones first so that small ones are not hidden. */
  marks() {
    const order = this.shapes.map((one, i) => i).sort((a, b) => this.shapes[b].rx * this.shapes[b].ry - this.shapes[a].rx * this.shapes[a].ry);
    const isBox = this.model.shape === 'box';
    return s('g', {'fill-opacity': 0.3, class: 'marks'}, order.map((i) => {
      const {cx, cy, rx, ry} = this.shapes[i], colour = this.colourOf(this.model.points[i]);
      const [a, b, c, d] = [cx, cy, rx, ry].map((one) => one.toFixed(1));
      return isBox
        ? s('rect', {x: (cx - rx).toFixed(1), y: (cy - ry).toFixed(1), width: 2 * c, height: 2 * d, fill: colour, stroke: colour})
        : s('ellipse', {cx: a, cy: b, rx: c, ry: d, fill: colour, stroke: colour});
    }));
  }

  colourOf(point) { return this.paint.series[point.family % this.paint.series.length]; }

  paintMarks(width, height) {
    const fine = window.devicePixelRatio || 1;
    this.canvas.width = width * fine;
    this.canvas.height = height * fine;
    const pen = this.canvas.getContext('2d');
    pen.scale(fine, fine);
    pen.beginPath();
    pen.rect(LEFT, TOP, width - LEFT - RIGHT, height - TOP - BOTTOM);
    pen.clip();
    const isBox = this.model.shape === 'box';
    const sizes = [];
    for (const {family} of this.model.points) sizes[family] = (sizes[family] || 0) + 1;
    // Large families first, so that they do not hide small ones.
    const order = this.shapes.map((one, i) => i).sort((a, b) => sizes[this.model.points[b].family] - sizes[this.model.points[a].family]);
    for (const i of order) {
      const {cx, cy, rx, ry} = this.shapes[i];
      if (cx + rx < LEFT || cx - rx > width || cy + ry < 0 || cy - ry > height) continue;
      pen.beginPath();
      if (isBox) pen.rect(cx - rx, cy - ry, 2 * rx, 2 * ry); else pen.ellipse(cx, cy, rx, ry, 0, 0, 2 * Math.PI);
      pen.fillStyle = pen.strokeStyle = this.colourOf(this.model.points[i]);
      pen.globalAlpha = 0.25;
      pen.fill();
      pen.globalAlpha = 0.8;
      pen.stroke();
    }
  }

  drawKept() {
    const {points, kept} = this.model, group = s('g', {class: 'chosen'});
    points.forEach((point, i) => {
      if (!kept.has(point.id)) return;
      const {cx, cy, rx, ry} = this.shapes[i];
      group.append(s('ellipse', {cx, cy, rx: rx + 2, ry: ry + 2, fill: 'none', stroke: this.paint.text, 'stroke-width': 2}));
      if (kept.size <= 12) {
        const isRight = cx > (this.x.from + this.x.to) * 0.6;
        group.append(s('text', {x: isRight ? cx - rx - 5 : cx + rx + 5, y: cy + 4, 'text-anchor': isRight ? 'end' : 'start', 'font-size': 12, 'font-family': 'system-ui, sans-serif', fill: this.paint.text,
          stroke: this.paint.ground, 'stroke-width': 3, 'paint-order': 'stroke'}, point.name));
      }
    });
    this.inside.append(group);
  }

  /** The whole drawing for export, with the marks in it. */
  drawing() {
    const copy = this.svg.cloneNode(true);
    if (this.model.points.length > MANY) {
      copy.querySelector('g[clip-path]').prepend(this.marks());
    }
    return copy;
  }

  placeOf(event) {
    const box = this.svg.getBoundingClientRect(), view = this.svg.viewBox.baseVal;
    return [(event.clientX - box.left) * view.width / box.width, (event.clientY - box.top) * view.height / box.height];
  }

  /** The smallest mark under a place; the nearest centre within a few pixels otherwise. */
  hit(px, py) {
    let best = -1, least = Infinity;
    this.shapes.forEach(({cx, cy, rx, ry}, i) => {
      const far = ((px - cx) / rx) ** 2 + ((py - cy) / ry) ** 2;
      const size = far <= 1 ? rx * ry : (Math.hypot(px - cx, py - cy) < 9 ? 1e6 + far : Infinity);
      if (size < least) { least = size; best = i; }
    });
    return best;
  }

  showTip(i) {
    if (i < 0) { this.tip.hidden = true; return; }
    const {cx, cy} = this.shapes[i], point = this.model.points[i];
    this.tip.replaceChildren(h('strong', {}, point.name), ...point.text.map((line) => h('span', {}, line)));
    this.tip.hidden = false;
    const width = this.tip.offsetWidth, height = this.tip.offsetHeight;
    this.tip.style.left = `${Math.max(0, Math.min(this.host.clientWidth - width, cx + 14))}px`;
    this.tip.style.top = `${cy - height - 12 < 0 ? cy + 16 : cy - height - 12}px`;
  }

  onHover(event) {
    if (this.drag || event.pointerType === 'touch') return;
    const [px, py] = this.placeOf(event), i = this.hit(px, py);
    this.showTip(i);
    this.svg.style.cursor = i >= 0 ? 'pointer' : this.mode === 'box' ? 'crosshair' : 'grab';
  }

  onWheel(event) {
    event.preventDefault();
    this.zoomBy(event.deltaY > 0 ? 1.25 : 0.8, ...this.placeOf(event));
  }

  zoomBy(factor, px = (this.x.from + this.x.to) / 2, py = (this.y.from + this.y.to) / 2) {
    const end = (axis, pixel, at) => axis.figure(at + (pixel - at) * factor);
    this.told.zoom([end(this.x, this.x.from, px), end(this.x, this.x.to, px), end(this.y, this.y.from, py), end(this.y, this.y.to, py)]);
  }

  onDown(event) {
    if (event.button !== 0 || event.target.closest('[role=slider]')) return;
    const start = this.placeOf(event), isBox = this.mode === 'box' || event.shiftKey;
    const before = [this.x, this.y];
    let moved = false;
    const rect = s('rect', {fill: this.paint.mark, 'fill-opacity': 0.15, stroke: this.paint.mark, 'stroke-dasharray': '4 3', 'data-tool': 1});
    this.drag = true;
    this.svg.setPointerCapture(event.pointerId);
    const move = (next) => {
      const [px, py] = this.placeOf(next), dx = px - start[0], dy = py - start[1];
      moved = moved || Math.hypot(dx, dy) > 4;
      if (!moved) return;
      this.tip.hidden = true;
      if (isBox) {
        for (const [name, value] of Object.entries({x: Math.min(px, start[0]), y: Math.min(py, start[1]), width: Math.abs(dx), height: Math.abs(dy)})) rect.setAttribute(name, value);
        this.svg.append(rect);
      } else {
        const [x, y] = before;
        this.told.zoom([x.figure(x.from - dx), x.figure(x.to - dx), y.figure(y.from - dy), y.figure(y.to - dy)]);
      }
    };
    const up = (next) => {
      this.drag = false;
      this.svg.removeEventListener('pointermove', move);
      this.svg.removeEventListener('pointerup', up);
      this.svg.removeEventListener('pointercancel', up);
      rect.remove();
      const [px, py] = this.placeOf(next);
      if (!moved) {
        const i = this.hit(px, py);
        if (i >= 0) this.told.open(this.model.points[i].id);
      } else if (isBox) {
        const inside = ({cx, cy}) => (cx - start[0]) * (cx - px) <= 0 && (cy - start[1]) * (cy - py) <= 0;
        this.told.box(this.model.points.filter((one, i) => inside(this.shapes[i])).map((one) => one.id));
      }
    };
    this.svg.addEventListener('pointermove', move);
    this.svg.addEventListener('pointerup', up);
    this.svg.addEventListener('pointercancel', up);
  }

  /** Steps to the next record along an axis, and says what it is. */
  step(axis, way) {
    const list = this.shapes.map((one, i) => i).filter((i) => this.isVisible(i)).sort((a, b) => this.shapes[a][axis] - this.shapes[b][axis]);
    if (!list.length) return;
    const at = list.indexOf(this.at);
    this.at = at < 0 ? list[0] : list[Math.min(list.length - 1, Math.max(0, at + way))];
    const {cx, cy} = this.shapes[this.at], point = this.model.points[this.at];
    for (const [name, value] of Object.entries({cx, cy, visibility: 'visible'})) this.focusRing.setAttribute(name, value);
    this.showTip(this.at);
    say(`${point.name}, ${point.text.join(', ')}`);
  }

  onKey(event) {
    if (event.target !== this.svg) return;
    const steps = {ArrowRight: ['cx', 1], ArrowLeft: ['cx', -1], ArrowUp: ['cy', -1], ArrowDown: ['cy', 1]}[event.key];
    const present = this.model.points[this.at];
    if (steps) this.step(...steps);
    else if (event.key === 'Enter' && present) this.told.open(present.id);
    else if (event.key === ' ' && present) this.told.keep(present.id);
    else if (event.key === '+') this.zoomBy(0.8);
    else if (event.key === '-') this.zoomBy(1.25);
    else if (event.key === '0') this.told.zoom([]);
    else return;
    event.preventDefault();
  }
}
