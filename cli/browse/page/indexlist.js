// The controls of an index line, and the records on its better side.

import {button, choice, h} from './dom.js';
import {merit, meritOf, powerText} from './indexlines.js';
import {count, figure, many} from './numbers.js';
import {go, leads, state} from './state.js';

const few = 25;
const powers = [1, 1 / 2, 1 / 3];

const near = (a, b) => Math.abs(a - b) < 1e-4;
const exact = (power) => powers.find((one) => near(one, power)) ?? power;

export function indexTools(view) {
  const now = state(), {points} = view.made;
  const present = now.index.length ? exact(now.index[0]) : 0;
  const set = (power) => go({index: power && Number.isFinite(power) ? [power, merit(points, power)] : []});
  const own = present && !powers.includes(present);
  const [y, x] = [now.yPer ? `(${now.y} / ${now.yPer})` : now.y, now.xPer ? `(${now.x} / ${now.xPer})` : now.x];
  if (view.model.index) {
    view.model.index.power = present;
    view.model.index.name = `${y}${powerText(present)} / ${x}`;
  }
  return [choice('Index line', [['0', '(none)'], ...powers.map((one) => [String(one), `${y}${powerText(one)} / ${x}`]), ['own', `${y} to another power / ${x}`]],
      own ? 'own' : String(present), (value) => set(value === 'own' ? 0.25 : Number(value))),
    own ? h('label', {}, 'power ', h('input', {type: 'number', step: 0.05, value: present, onchange: (event) => set(Number(event.target.value))})) : null,
  ].filter(Boolean);
}

/** Lists the records above the line, the best first. */
export function indexList(view) {
  const {index} = view.model;
  view.above.textContent = '';
  if (!index) { view.list.replaceChildren(); return; }
  const better = view.made.points.map((one) => ({one, is: meritOf(one, index.power)})).filter(({is}) => is > index.merit).sort((a, b) => b.is - a.is);
  view.above.textContent = `, ${count(better.length)} above the line, which are listed below`;
  view.list.replaceChildren(
    h('h2', {}, `${many(better.length, 'record')} above the line`),
    h('p', {class: 'note'}, `${index.name} of more than ${figure(index.merit, 4)}, in the units of the axes. Drag the line, or move it by the arrow keys.`),
    better.length ? h('p', {class: 'acts'}, button(`Add ${better.length > few ? `the best ${few}` : 'them'} to the selection`, () =>
      go({kept: [...new Set([...state().kept, ...better.slice(0, few).map(({one}) => one.id)])]}))) : '',
    h('ol', {}, better.slice(0, few).map(({one, is}) => h('li', {}, h('a', {...leads({view: 'record', id: one.id})}, one.name),
      h('span', {class: 'note'}, ` ${figure(is, 4)}`)))),
    better.length > few ? h('p', {class: 'note'}, `and ${count(better.length - few)} more`) : '');
}
