// Families of records, their colours, and which of them are shown.

import {button, h, s} from './dom.js';
import {count} from './numbers.js';
import {go, state} from './state.js';

/** The names in the path of a folder, in which "/" and "\" of a name have a "\" before them. */
export const pathParts = (folder) => (folder.match(/(?:\\.|[^/])+/gs) || []).map((one) => one.replace(/\\(.)/gs, '$1'));

/** Gives each folder a family: the folders on the first level on which the records differ. */
export function familiesOf(folders) {
  const paths = folders.map(pathParts);
  let depth = 0;
  while (paths.length && paths.every((path) => path.length > depth + 1 && path[depth] === paths[0][depth])) ++depth;
  const names = [...new Set(paths.map((path) => path[depth] || path[path.length - 1] || ''))];
  return {names, placeOf: paths.map((path) => names.indexOf(path[depth] || path[path.length - 1] || ''))};
}

export function legend(names, counts, paint) {
  const {hidden} = state();
  const toggle = (name) => {
    const now = state().hidden;
    go({hidden: now.includes(name) ? now.filter((one) => one !== name) : [...now, name]});
  };
  return h('ul', {class: 'legend', 'aria-label': 'Families'}, names.map((name, i) => h('li', {},
    button([s('svg', {width: 14, height: 14, 'aria-hidden': 'true'}, s('circle', {cx: 7, cy: 7, r: 6, fill: paint.series[i % paint.series.length]})),
      ` ${name || 'without a folder'} `, h('small', {}, count(counts[i]))], () => toggle(name),
    {'aria-pressed': String(!hidden.includes(name)), title: 'Show or hide this family'}))),
  hidden.length ? h('li', {}, button('Show all', () => go({hidden: []}))) : null);
}
