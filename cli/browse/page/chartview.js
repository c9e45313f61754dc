// The view with the property chart and its controls.

import {ask, forget, show} from './api.js';
import {Chart} from './chart.js';
import {button, choice, h, later, say} from './dom.js';
import {copyLines, csvOf, pngOf, save, saveWorkbook, svgText} from './export.js';
import {indexList, indexTools} from './indexlist.js';
import {familiesOf, legend} from './legend.js';
import {count, figure, many, rangeText, unit, withUnit} from './numbers.js';
import {colours, roundSteps} from './scale.js';
import {facts} from './sheet.js';
import {go, leads, state} from './state.js';

const axesOf = (now) => [...new Set([now.x, now.y, now.xPer, now.yPer].filter(Boolean))];
const nameOf = (attribute, per) => (per ? `${attribute} / ${per}` : attribute);

function unitOf(column, per) {
  if (!per) return unit(column.unit);
  return [column.unit, per.unit].some(Boolean) ? `${unit(column.unit) || '1'} / (${unit(per.unit) || '1'})` : '';
}

const middleOf = (low, high) => (Number.isFinite(low) && Number.isFinite(high) ? (low + high) / 2 : Number.isFinite(low) ? low : high);

/** The ends of a range that is divided by another, which may hold 0. */
function quotient([low, high], [a, b]) {
  if (a < 0 && b > 0) return [-Infinity, Infinity];
  const ends = [a || 0, b || -0].flatMap((end) => [low / end, high / end]).map((one) => one || 0);  // 0 / 0, too
  return [Math.min(...ends), Math.max(...ends)];
}

/**
 * A record on an axis: low and high, null where open, the middle by which it is drawn (of an open range
 * the end that is known), and from and to, the ends of the mark. Null where it has no place there.
 */
export function place(column, per, i, isLog) {
  const rangeOf = ({low, high}) => [low[i] ?? -Infinity, high[i] ?? Infinity];
  const isNone = ({low, high}) => low[i] === null && high[i] === null;
  if (isNone(column) || (per && isNone(per))) return null;
  let ends = rangeOf(column), middle = middleOf(...ends);
  if (per) {
    const divisor = rangeOf(per), by = middleOf(...divisor);
    if (by === 0) return null;
    middle /= by;
    ends = quotient(ends, divisor);
  }
  if (isLog && middle <= 0) return null;
  const drawn = (end) => (Number.isFinite(end) && !(isLog && end <= 0) ? end : middle);
  const [low, high] = ends.map((end) => (Number.isFinite(end) ? end : null));
  return {low, middle, high, from: drawn(ends[0]), to: drawn(ends[1])};
}

function pointsOf(data, now, only) {
  const {placeOf, names} = familiesOf(data.folders);
  const column = (name) => data.columns.find((one) => one.name === name);
  const [x, xPer, y, yPer] = [now.x, now.xPer, now.y, now.yPer].map(column);
  const xLog = !now.linear.includes('x'), yLog = !now.linear.includes('y');
  const xUnit = unitOf(x, xPer), yUnit = unitOf(y, yPer);
  const points = [], counts = names.map(() => 0);
  let without = 0;
  data.records.forEach(([id, name, folder], i) => {
    if (only && !only.has(id)) return;
    const a = place(x, xPer, i, xLog), b = place(y, yPer, i, yLog);
    if (!a || !b) { ++without; return; }
    const family = placeOf[folder];
    ++counts[family];
    if (now.hidden.includes(names[family])) return;
    points.push({id, name, family, folder: data.folders[folder], x: a.middle, y: b.middle, xLow: a.from, xHigh: a.to, yLow: b.from, yHigh: b.to, ends: [a, b],
      get text() {
        return [`${nameOf(now.x, now.xPer)}: ${rangeText(a.low, a.high, 4)} ${xUnit}`, `${nameOf(now.y, now.yPer)}: ${rangeText(b.low, b.high, 4)} ${yUnit}`];
      }});
  });
  const label = (name, symbol) => (symbol ? `${name} (${symbol})` : name);
  return {points, names, counts, without, xLog, yLog, xUnit, yUnit,
    xName: label(nameOf(now.x, now.xPer), xUnit), yName: label(nameOf(now.y, now.yPer), yUnit)};
}

/** The middle, which an open range lacks, low and high. */
const cells = ({low, middle, high}) => [low === null || high === null ? '' : middle, low, high];
const csv = (made) => csvOf([['Identity', 'Name', 'Folder', ...[made.xName, made.yName].flatMap((one) => [one, `${one} low`, `${one} high`])],
  ...made.points.map((one) => [one.id, one.name, one.folder, ...one.ends.flatMap(cells)])]);

/** Which records are drawn, as the search has read what was typed. */
const recordsOf = (now) => (view.isCondition ? {where: now.where} : {text: now.where});

/** Sliders and choices for what the figures depend on. */
function conditions(parameters) {
  const {at} = state();
  const put = (name, value) => {
    const next = {...state().at};
    if (value === '') delete next[name]; else next[name] = value;
    go({at: next}, {quiet: true});
    redrawSoon();
  };
  return parameters.filter((one) => one.words.length > 1 || one.most > one.least).map((one) => {
    if (one.words.length) return choice(one.name, [['', 'any'], ...one.words.map((word) => [word, word])], at[one.name] ?? '', (value) => put(one.name, value));
    const isSet = typeof at[one.name] === 'number';
    const text = h('output', {}, isSet ? withUnit(figure(at[one.name], 4), one.unit) : 'any');
    const {least, most, step} = roundSteps(one.least, one.most);
    const slider = h('input', {type: 'range', min: least, max: most, step, value: isSet ? at[one.name] : least,
      'aria-label': `${one.name}${one.unit ? ` in ${unit(one.unit)}` : ''}`, 'aria-valuetext': text.textContent, oninput: (event) => {
        const value = Number(Number(event.target.value).toPrecision(4));
        text.textContent = withUnit(figure(value, 4), one.unit);
        slider.setAttribute('aria-valuetext', text.textContent);
        put(one.name, value);
      }});
    return h('span', {class: 'slider'}, h('label', {}, `${one.name} `, slider), ' ', text, ' ',
      button('any', () => { slider.value = least; text.textContent = 'any'; put(one.name, ''); }, {class: 'small', 'aria-label': `Any ${one.name}`}));
  });
}

let view = null;
const redrawSoon = later(150, () => view && refresh(state()));

/** Attributes that a first chart shows: the first two numeric ones of which the table knows the ends. */
function firstAxes(attributes, now) {
  const numeric = attributes.filter((one) => one.isNumeric);
  const dense = numeric.find((one) => /^density$/i.test(one.name)) || numeric[0];
  const stiff = numeric.find((one) => /^young's modulus$/i.test(one.name)) || numeric.find((one) => one !== dense);
  return {x: now.x || dense?.name, y: now.y || (stiff || dense)?.name};
}

function controls(now, numeric) {
  const names = numeric.map((one) => one.name);
  const axis = (letter, title) => h('fieldset', {}, h('legend', {}, title),
    choice('shows', names, now[letter], (value) => go({[letter]: value, zoom: [], index: [], at: {}})),
    choice('divided by', [['', '(nothing)'], ...names.map((one) => [one, one])], now[`${letter}Per`], (value) => go({[`${letter}Per`]: value, zoom: [], index: [], at: {}})),
    h('label', {class: 'tick'}, h('input', {type: 'checkbox', checked: !now.linear.includes(letter), onchange: (event) =>
      go({zoom: [], linear: event.target.checked ? state().linear.replace(letter, '') : state().linear + letter})}), ' log'));
  const where = h('input', {id: 'where', value: now.where, spellcheck: 'false', placeholder: 'price < 5 EUR/kg', onchange: (event) => go({where: event.target.value.trim()})});
  return h('div', {class: 'controls'}, axis('y', 'Upright axis (y)'), axis('x', 'Level axis (x)'),
    h('fieldset', {}, h('legend', {}, 'Records'), h('label', {}, 'only where ', where),
      choice('ranges as', [['ellipse', 'ellipses'], ['box', 'boxes']], now.shape, (value) => go({shape: value}))));
}

function toolbar() {
  const modes = [['pan', 'Move'], ['box', 'Select by a box']];
  const set = (mode) => {
    view.chart.mode = mode;
    for (const one of view.tools.querySelectorAll('[data-mode]')) one.setAttribute('aria-pressed', String(one.dataset.mode === mode));
  };
  const name = () => `${state().table} chart`;
  const ground = () => colours().ground;
  return h('div', {class: 'tools', role: 'group', 'aria-label': 'Tools of the chart'},
    modes.map(([mode, text]) => button(text, () => set(mode), {'data-mode': mode, 'aria-pressed': String(mode === 'pan')})),
    button('+', () => view.chart.zoomBy(0.8), {'aria-label': 'Zoom in'}), button('−', () => view.chart.zoomBy(1.25), {'aria-label': 'Zoom out'}),
    button('Show all', () => zoomTo([])),
    view.index, h('span', {class: 'gap'}),
    button('CSV', () => save(`${name()}.csv`, 'text/csv', csv(view.made)), {'aria-label': 'Download CSV'}),
    button('xlsx', () => {
      const now = state();
      saveWorkbook(`${name()}.xlsx`, now, {attributes: axesOf(now), ...recordsOf(now)});
    }, {'aria-label': 'Download xlsx'}),
    button('SVG', () => save(`${name()}.svg`, 'image/svg+xml', svgText(view.chart.drawing(), ground())), {'aria-label': 'Download SVG'}),
    button('PNG', async () => save(`${name()}.png`, 'image/png', await pngOf(view.chart.drawing(), ground())), {'aria-label': 'Download PNG'}),
    button('↻', () => { forget(); view.anew = true; refresh(state()); }, {title: 'Read the values from the server again', 'aria-label': 'Read the values again'}));
}

const keepZoom = later(300, (zoom) => go({zoom}, {quiet: true}));
function zoomTo(zoom) {
  view.model.zoom = zoom;
  if (!view.isWaiting) { view.isWaiting = true; requestAnimationFrame(() => { view.isWaiting = false; view.chart.redraw(); }); }
  keepZoom(zoom);
}

const told = {
  open: (id) => go({view: 'record', id}),
  keep: (id) => {
    const {kept} = state();
    go({kept: kept.includes(id) ? kept.filter((one) => one !== id) : [...kept, id]});
  },
  box: (ids) => {
    const kept = [...new Set([...state().kept, ...ids])];
    say(`${many(ids.length, 'record')} in the box`);
    if (ids.length > 50 && !confirm(`Add ${count(ids.length)} records to the selection?`)) return;
    go({kept});
  },
  zoom: zoomTo,
  index: (merit) => {
    go({index: [view.model.index.power, merit]}, {quiet: true});
    view.model.index.merit = merit;
    indexList(view);
  },
};

/** Reads, with a word on how far it has come. */
async function read(now) {
  const {db, table, units, currency} = now;
  const attribute = axesOf(now);
  const at = Object.keys(now.at).length ? JSON.stringify(now.at) : '';
  const watch = setInterval(async () => {
    try {
      const {done, total} = await ask('progress', {db, table});
      if (done) view.note.textContent = `Reading… ${count(done)}${total ? ` of ${count(total)}` : ''} records`;
    } catch { /* the read itself tells */ }
  }, 700);
  try {
    return await Promise.all([
      ask('columns', {db, table, units, currency, attribute, at, anew: view.anew ? 1 : ''}),
      now.where ? ask('search', {db, table, text: now.where, all: 1}) : null]);
  } finally {
    clearInterval(watch);
    view.anew = false;
  }
}

function model(now) {
  const made = view.made = pointsOf(view.data, now, view.only);
  view.model = {...made, zoom: now.zoom, kept: new Set(now.kept), shape: now.shape,
    index: now.index.length ? {power: now.index[0], merit: now.index[1], name: ''} : null};
}

async function refresh(now) {
  const own = view;
  view.note.textContent = 'Reading…';
  const turn = view.turn = Symbol('turn');
  await show(view.failure, async () => {
    const [data, found] = await read(now);
    if (view !== own || view.turn !== turn) return [];
    view.data = data;
    view.isCondition = !found || found.isCondition;
    view.only = found ? new Set(found.records.map((one) => one.id)) : null;
    draw(state());
    return [];
  }, '');
  if (view === own && view.failure.firstChild) view.note.textContent = '';
}

function draw(now) {
  model(now);
  const {made} = view;
  const parts = conditions(view.data.parameters);
  if (!view.conditions.contains(document.activeElement)) view.conditions.replaceChildren(...(parts.length ? [h('legend', {}, 'Conditions'), ...parts] : []));
  view.conditions.hidden = !parts.length;
  view.legend.replaceChildren(legend(made.names, made.counts, colours()));
  view.index.replaceChildren(...indexTools(view));
  view.chart.draw(view.model);
  indexList(view);
  view.lines.replaceChildren(copyLines(now, {attributes: axesOf(now), ...recordsOf(now)}));
  view.note.textContent = `${many(made.points.length, 'record')} drawn` +
    (made.without ? `, ${count(made.without)} without both figures${made.xLog || made.yLog ? ' (or not above 0)' : ''}` : '');
}

/** What changed since the chart was drawn decides whether data are read again. */
const asked = (now) => JSON.stringify([now.db, now.table, now.x, now.xPer, now.y, now.yPer, now.units, now.currency, now.where, now.at]);
const shape = (now) => JSON.stringify([now.db, now.table, now.units, now.currency, now.x, now.xPer, now.y, now.yPer, now.linear, now.where, now.shape]);

export async function chartView(place, now) {
  document.title = 'Chart – lumo browse';
  if (view && place.contains(view.host) && view.shape === shape(now) && view.asked === asked(now) && view.data) {
    draw(now);
    return;
  }
  await show(place, async () => {
    const about = await facts(now);
    const numeric = about.attributes.filter((one) => one.isNumeric);
    if (!numeric.length) return [h('h1', {}, 'Chart'), h('p', {}, 'This table has no attributes with figures.')];
    const chosen = {...now, ...firstAxes(about.attributes, now)};
    const odd = axesOf(chosen).filter((name) => !numeric.some((one) => one.name === name));
    if (odd.length) {
      view = null;
      return [h('h1', {}, 'Chart'), h('p', {role: 'alert'}, `${odd.map((name) => `“${name}”`).join(' and ')}: not an attribute with figures.`),
        h('p', {class: 'acts'}, h('a', {class: 'button main', ...leads({view: 'chart', x: '', y: '', xPer: '', yPer: ''})}, 'Draw others'))];
    }
    if (!now.x || !now.y) go({x: chosen.x, y: chosen.y}, {quiet: true});
    const host = h('div', {class: 'plotarea'});
    view = {host, shape: shape(chosen), asked: asked(chosen), note: h('span', {role: 'status'}), above: h('span', {}), failure: h('div', {}),
      legend: h('div', {}), index: h('span', {class: 'index'}), list: h('div', {class: 'better'}), lines: h('div', {}),
      conditions: h('fieldset', {class: 'conditions', hidden: true})};
    view.chart = new Chart(host, told);
    view.tools = toolbar();
    queueMicrotask(() => refresh(chosen));
    return [h('h1', {class: 'unseen'}, 'Property chart'), controls(chosen, numeric), view.conditions, view.tools, view.legend, view.failure, host,
      h('p', {id: 'chart-help', class: 'unseen'}, 'Arrow keys step through the records, Enter opens one, space adds it to the selection, plus and minus zoom, 0 shows the whole.'),
      h('p', {class: 'note'}, view.note, view.above), view.list, view.lines];
  });
}
