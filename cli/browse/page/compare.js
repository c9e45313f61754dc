// Records side by side.

import {show} from './api.js';
import {curveChart} from './curves.js';
import {button, h} from './dom.js';
import {copyLines, csvOf, save, saveWorkbook} from './export.js';
import {count} from './numbers.js';
import {dataCells, facts, records, valueView} from './sheet.js';
import {go, leads, state} from './state.js';

const MOST = 100;  // records side by side

const same = (list) => list.every((one) => one && JSON.stringify(one) === JSON.stringify(list[0]));

function table(found, attributes, onlyDifferent) {
  const rows = attributes.filter((one) => found.some((record) => record.values[one.name]))
    .filter((one) => !onlyDifferent || !same(found.map((record) => record.values[one.name])));
  return h('table', {class: 'compare'},
    h('thead', {}, h('tr', {}, h('th', {scope: 'col'}, 'Attribute'), found.map((record) => h('th', {scope: 'col'},
      h('a', {...leads({view: 'record', id: record.id})}, record.name), ' ',
      button('×', () => go({kept: state().kept.filter((id) => id !== record.id)}), {class: 'small', 'aria-label': `Remove ${record.name} from the selection`}))))),
    h('tbody', {}, rows.map((one) => h('tr', {}, h('th', {scope: 'row'}, one.name), cells(one, found)))));
}

function cells(attribute, found) {
  const values = found.map((record) => record.values[attribute.name]);
  if (values.some((one) => one?.kind === 'curves')) {
    const curves = found.flatMap((record, i) => (values[i]?.kind === 'curves' ? values[i].curves.map((one) => ({...one, name: record.name})) : []));
    const lacking = found.filter((record, i) => !values[i]).map((record) => record.name);
    return h('td', {colspan: found.length}, curveChart(curves, attribute.name, values.find(Boolean).yIsLog),
      lacking.length ? h('p', {class: 'note'}, `No curve: ${lacking.join(', ')}.`) : null);
  }
  return values.map((value, i) => h('td', {}, value ? valueView(attribute, value, found[i].id) : h('span', {class: 'note'}, '–')));
}

const csv = (found, attributes) => csvOf([['Attribute', ...found.flatMap(({name}) => [name, `${name} low`, `${name} high`, `${name} unit`])],
  ...attributes.filter((one) => found.some((record) => record.values[one.name]))
    .map((one) => [one.name, ...found.flatMap((record) => dataCells(record.values[one.name]))])]);

export async function compare(place, now) {
  document.title = 'Compare – lumo browse';
  if (!now.kept.length) {
    place.replaceChildren(h('h1', {}, 'Compare'), h('p', {}, 'The selection is empty. Open a record and add it, or choose records in the chart.'));
    return;
  }
  await show(place, async () => {
    const ids = now.kept.slice(0, MOST);
    const [about, read] = await Promise.all([facts(now), records(now, ids)]);
    const found = read.records, body = h('div', {class: 'wide', tabindex: 0, role: 'group', 'aria-label': 'Records side by side'});
    const draw = (onlyDifferent) => body.replaceChildren(table(found, about.attributes, onlyDifferent));
    draw(false);
    return [h('h1', {}, 'Compare'),
      h('p', {class: 'acts'},
        h('label', {}, h('input', {type: 'checkbox', onchange: (event) => draw(event.target.checked)}), ' Only what differs'),
        button('Download CSV', () => save('comparison.csv', 'text/csv', csv(found, about.attributes))),
        button('Download xlsx', () => saveWorkbook('comparison.xlsx', now, {ids}))),
      ids.length < now.kept.length ? h('p', {class: 'note'}, `The first ${MOST} of the ${count(now.kept.length)} records of the selection.`) : '',
      body, copyLines(now, {ids, attributes: []})];
  });
}
