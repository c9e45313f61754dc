// Begins: databases and tables, the views, and what the address asks for.

import {askOnce, failureBox, forget, show} from './api.js';
import {chartView} from './chartview.js';
import {compare} from './compare.js';
import {find, h} from './dom.js';
import {count, many, rangeText, withUnit} from './numbers.js';
import {facts, sheet} from './sheet.js';
import {go, leads, onChange, state} from './state.js';
import {selection, tree} from './tree.js';

const fresh = {id: 0, kept: [], x: '', y: '', xPer: '', yPer: '', linear: '', hidden: [], where: '', index: [], zoom: [], at: {}};

/** What the table holds, for somebody who sees it for the first time. */
async function start(place, server, now) {
  document.title = `${now.table || 'Materials'} – lumo browse`;
  if (!now.table) {
    place.replaceChildren(h('h1', {}, 'Materials'), h('p', {}, `There is no table on ${server.url}.`));
    return;
  }
  await show(place, async () => {
    const {attributes} = await facts(now);
    const row = (one) => h('tr', {}, h('th', {scope: 'row'}, one.isNumeric
      ? h('a', {...leads({view: 'chart', y: one.name, zoom: [], index: []}), title: 'Draw it in the chart'}, one.name) : one.name),
    h('td', {}, one.type), h('td', {}, one.least === undefined || one.least === null ? '' : withUnit(rangeText(one.least, one.most), one.unit)));
    return [h('h1', {}, now.table),
      h('p', {}, 'Open a record in the tree, search for words or by a condition such as “density < 3000 kg/m^3”, or draw a chart.'),
      h('p', {class: 'acts'}, h('a', {class: 'button main', ...leads({view: 'chart'})}, 'Draw a chart')),
      h('h2', {}, many(attributes.length, 'attribute')),
      h('table', {class: 'values plain'}, h('thead', {}, h('tr', {}, ['Attribute', 'Holds', 'Least to most'].map((text) => h('th', {scope: 'col'}, text)))),
        h('tbody', {}, attributes.map(row))),
      h('p', {class: 'note'}, `Data of ${server.url}.`)];
  });
}

function views(now) {
  const one = (view, text) => h('a', {...leads({view}), 'aria-current': now.view === view ? 'page' : undefined}, text);
  find('views').replaceChildren(...[now.id ? one('record', 'Record') : one('start', 'Start'), one('chart', 'Chart'),
    one('compare', now.kept.length ? `Compare (${count(now.kept.length)})` : 'Compare')]);
}

function options(id, list, value, none) {
  find(id).replaceChildren(h('option', {value: ''}, none), ...list.map((one) => h('option', {value: one, selected: one === value}, one)));
  find(id).disabled = !list.length;
}

function tables(server, now) {
  find('table').replaceChildren(...server.databases.map((database) => h('optgroup', {label: database.name}, database.tables.map((table) =>
    h('option', {value: JSON.stringify([database.key, table]), selected: database.key === now.db && table === now.table}, table)))));
}

/** Only what the view shows is drawn anew: a longer selection leaves the sheet and the tree alone. */
let before = '';
const drawn = ({view, db, table, id, units, currency, kept, version}) => JSON.stringify([view, db, table, id, version, units, currency, view === 'compare' ? kept : []]);

async function render(now) {
  const place = find('main');
  let server;
  try {
    server = await askOnce('server');
  } catch (error) {
    place.replaceChildren(failureBox(error, () => { forget(); render(state()); }));
    return;
  }
  if (!now.table) {
    const first = server.databases.find((one) => one.tables.length);
    if (first) { go({db: first.key, table: first.tables[0]}, {quiet: true}); now = state(); }
  }
  tables(server, now);
  views(now);
  selection(now);
  if (now.table) {
    tree(now);
    facts(now).then(({unitSystems, currencies}) => {
      options('units', unitSystems, now.units, 'as stored');
      options('currency', currencies, now.currency, 'as stored');
    }, () => { /* the view itself tells */ });
  }
  if (now.view === 'chart') {
    before = '';
    await chartView(place, now);
  } else if (before !== drawn(now)) {
    const isNew = before && JSON.parse(before).slice(0, 5).join() !== JSON.parse(drawn(now)).slice(0, 5).join();
    before = drawn(now);
    if (now.view === 'record' && now.id) await sheet(place, now);
    else if (now.view === 'compare') await compare(place, now);
    else await start(place, server, now);
    if (isNew) { place.scrollTop = 0; scrollTo(0, 0); }
  }
}

find('table').addEventListener('change', (event) => {
  const [db, table] = JSON.parse(event.target.value);
  go({...fresh, view: 'start', db, table, units: '', currency: ''});
});
for (const name of ['units', 'currency']) {
  find(name).addEventListener('change', (event) => go({[name]: event.target.value, zoom: [], index: [], at: {}}));
}
document.addEventListener('keydown', (event) => {
  if (event.key === '/' && !event.target.closest('input, select, textarea')) { event.preventDefault(); find('search').focus(); }
});

onChange(render);
// The token has done its work: the cookie stands for it.
history.replaceState(null, '', `/${location.hash}`);
render(state());
