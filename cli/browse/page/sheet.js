// The sheet of one record, and how values look.

import {address, ask, askOnce, show} from './api.js';
import {curveChart, parameterText} from './curves.js';
import {button, h} from './dom.js';
import {copyLines, csvOf, save, saveWorkbook} from './export.js';
import {pathParts} from './legend.js';
import {figure, forPeople, forPrograms, many, rangeText, unit, withUnit} from './numbers.js';
import {go, leads, state} from './state.js';

const estimated = (value) => (value.isEstimated ? h('abbr', {class: 'note', title: 'an estimate'}, ' est.') : null);

/** Where a figure or range lies between the table's least and most; by decades where these are far apart. */
export function bar(attribute, low, high) {
  const {least, most} = attribute;
  if (typeof least !== 'number' || typeof most !== 'number' || !(most > least)) return null;
  const isLog = least > 0 && most / least > 100;
  const part = (x) => Math.min(1, Math.max(0, isLog ? Math.log(x / least) / Math.log(most / least) : (x - least) / (most - least)));
  const from = part(low ?? least), to = part(high ?? most);
  const inner = h('span', {class: 'fill'});
  inner.style.left = `${from * 100}%`;
  inner.style.width = `max(4px, ${(to - from) * 100}%)`;
  return h('span', {class: 'bar', title: `Table: ${rangeText(least, most)} ${unit(attribute.unit)}${isLog ? ', by decades' : ''}`}, inner);
}

function grid(value) {
  return h('div', {class: 'wide', tabindex: 0, role: 'group', 'aria-label': 'Table of values'}, h('table', {class: 'grid'},
    h('thead', {}, h('tr', {}, value.columns.map((one) => h('th', {scope: 'col'}, one.name, one.unit ? h('small', {}, ` ${unit(one.unit)}`) : null)))),
    h('tbody', {}, value.rows.map((row) => h('tr', {}, row.map((cell, i) =>
      h('td', {}, cell ? plain(cell.unit === value.columns[i].unit ? {...cell, unit: ''} : cell) : '–')))))));
}

const pointsTable = (value) => h('table', {class: 'grid'}, h('tbody', {}, value.points.map((one) => h('tr', {},
  h('th', {scope: 'row'}, parameterText(one.parameters)), h('td', {}, withUnit(figure(one.value), value.unit))))));

/** The value as one line of text. */
export function plain(value, words = forPeople) {
  const {number, measure} = words;
  switch (value.kind) {
    case 'text': return value.text;
    case 'date': return value.text.replace('T', ' ').replace(/ 00:00(:00)?$/, '');
    case 'logical': return value.value ? 'yes' : 'no';
    case 'number': return measure(number(value.value), value.unit);
    case 'range': return withUnit(rangeText(value.low, value.high), value.unit);
    case 'points': return value.points.map((one) => `${measure(number(one.value), value.unit)} (${parameterText(one.parameters, words)})`).join('; ');
    case 'words': return value.words.join(', ');
    case 'curves': return many(value.curves.length, 'curve');
    case 'link': return value.text;
    case 'file': return value.name || value.description || 'file';
    case 'list': return value.items.map((one) => plain(one, words)).join(', ');
    case 'grid': return many(value.rows.length, 'row');
    default: return 'not applicable';
  }
}

/** A value of a record, or of that version of it, as elements. */
export function valueView(attribute, value, id, version = '') {
  const {db, table} = state();
  const file = () => address('file', {db, table, id, version, attribute: attribute.name});
  switch (value.kind) {
    case 'number': return [h('span', {class: 'figure'}, plain(value), estimated(value)), bar(attribute, value.value, value.value)];
    case 'range': return [h('span', {class: 'figure'}, plain(value), estimated(value)), bar(attribute, value.low, value.high)];
    case 'points': return [pointsTable(value), estimated(value)];
    case 'curves': return [curveChart(value.curves, attribute.name, value.yIsLog)];
    case 'grid': return [grid(value)];
    case 'link': return value.address
      ? [h('a', {href: value.address, target: '_blank', rel: 'noopener noreferrer'}, value.text)] : [value.text];
    case 'file': return attribute.isPicture
      ? [h('img', {src: file(), alt: value.description || attribute.name, onerror: (event) => event.target.replaceWith('This picture cannot be shown.')})]
      : [h('a', {href: file(), download: value.name || 'file'}, `Save ${value.name || 'the file'}`), value.description ? h('p', {class: 'note'}, value.description) : null];
    case 'notApplicable': return [h('span', {class: 'note'}, 'not applicable')];
    default: return [plain(value)];
  }
}

export const facts = ({db, table, units, currency}) => askOnce('table', {db, table, units, currency});
export const records = ({db, table, units, currency, version}, ids) => ask('records', {db, table, id: ids, version, units, currency});

export function keepButton(id, name) {
  const isKept = () => state().kept.includes(id);
  const one = button('', () => {
    const {kept} = state();
    go({kept: isKept() ? kept.filter((other) => other !== id) : [...kept, id]});
  }, {class: 'keep', 'data-id': id, 'data-name': name});
  labelKeep(one, isKept());
  return one;
}
export function labelKeep(one, isKept) {
  one.textContent = isKept ? 'Remove from the selection' : 'Add to the selection';
  one.setAttribute('aria-label', `${one.textContent}: ${one.dataset.name}`);
}

function around(found) {
  const list = found.links.map((group) => h('section', {}, h('h3', {}, group.name), h('ul', {}, group.records.map((one) => h('li', {},
    one.table ? h('a', {...leads({view: 'record', db: one.db, table: one.table, id: one.id, ...(one.table === state().table ? {} : {kept: [], x: '', y: '', xPer: '', yPer: '', where: '', at: {}, hidden: [], zoom: [], index: []})})}, one.name) : one.name,
    one.table && one.table !== state().table ? h('span', {class: 'note'}, `, in ${one.table}`) : null)))));
  const {id, version} = state();
  const versions = found.versions.length ? [h('h3', {}, 'Versions'), h('ul', {class: 'versions'}, found.versions.map((one) =>
    h('li', {}, h('a', {...leads({view: 'record', id, version: one.guid}), 'aria-current': one.guid === version ? 'true' : undefined}, one.state),
      h('span', {class: 'note'}, ` ${one.guid}`))))] : [];
  return [list.length ? h('h2', {}, 'Linked records') : null, ...list, ...versions].filter(Boolean);
}

/** A value in columns for programs: figure or text, low, high, unit. */
export function dataCells(value) {
  if (!value) return ['', '', '', ''];
  const single = value.kind === 'number' ? value.value : value.kind === 'range' ? '' : plain(value, forPrograms);
  return [single, value.low ?? '', value.high ?? '', value.unit || ''];
}

function sheetCsv(record, attributes) {
  const rows = [['Attribute', 'Value', 'Low', 'High', 'Unit']];
  for (const attribute of attributes) {
    rows.push([attribute.name, ...dataCells(record.values[attribute.name])]);
  }
  return csvOf(rows);
}

const isLarge = (value) => ['curves', 'grid', 'points', 'file'].includes(value.kind);

export async function sheet(place, now) {
  await show(place, async () => {
    const [table, found] = await Promise.all([facts(now), records(now, [now.id])]);
    const record = found.records[0];
    if (!record) throw new Error('There is no such record.');
    document.title = `${record.name} – lumo browse`;
    const given = table.attributes.filter((one) => record.values[one.name]);
    const small = given.filter((one) => !isLarge(record.values[one.name]));
    const large = given.filter((one) => isLarge(record.values[one.name]));
    const beside = h('section', {class: 'around', 'aria-label': 'Links and versions'});
    show(beside, async () => around(await ask('around', {db: now.db, table: now.table, id: now.id})), '');
    return [h('article', {class: 'sheet'},
      h('p', {class: 'path'}, pathParts(record.folder).join(' › ')),
      h('h1', {}, record.name),
      record.fullName && record.fullName !== record.name ? h('p', {class: 'full'}, record.fullName) : null,
      h('p', {class: 'acts'}, keepButton(record.id, record.name),
        button('Download CSV', () => save(`${record.name}.csv`, 'text/csv', sheetCsv(record, given))),
        button('Download xlsx', () => saveWorkbook(`${record.name}.xlsx`, now, {ids: [record.id]}))),
      now.version ? h('p', {class: 'note'}, 'This is one of several versions. ', h('a', {...leads({view: 'record', id: now.id})}, 'Show the current one')) : null,
      h('p', {class: 'note'}, 'The bars show where a value lies between the least and the most of the table.'),
      h('table', {class: 'values'}, h('caption', {class: 'unseen'}, `Values of ${record.name}`), h('tbody', {}, small.map((one) => h('tr', {},
        h('th', {scope: 'row'}, one.name), h('td', {}, valueView(one, record.values[one.name], record.id, now.version)))))),
      h('div', {class: 'cards'}, large.map((one) => h('section', {class: 'card'}, h('h2', {}, one.name), valueView(one, record.values[one.name], record.id, now.version)))),
      given.length < table.attributes.length ? h('p', {class: 'note'}, `${many(table.attributes.length - given.length, 'attribute')} without a value.`) : null,
      beside,
      copyLines(now, {ids: [record.id], attributes: []}))];
  });
}
