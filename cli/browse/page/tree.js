// The tree of a table, search as you type, and the selection beside.

import {ask, askOnce, failureBox, show} from './api.js';
import {button, find, h, later} from './dom.js';
import {pathParts} from './legend.js';
import {count, many} from './numbers.js';
import {labelKeep} from './sheet.js';
import {go, leads, state} from './state.js';

const linkTo = (one) => h('a', {...leads({view: 'record', id: one.id}), 'data-record': one.id,
  title: one.fullName && one.fullName !== one.name ? one.fullName : undefined}, one.name);

async function fill(list, folder) {
  const {db, table} = state();
  await show(list, async () => {
    const found = await askOnce('tree', {db, table, folder});
    return found.children.map((one) => h('li', {role: 'none'}, one.isFolder ? branch(one) : leaf(one)));
  }, 'Reading…');
  mark();
}

const leaf = (one) => {
  const link = linkTo(one);
  link.setAttribute('role', 'treeitem');
  link.tabIndex = -1;
  return link;
};

function branch(one) {
  const list = h('ul', {role: 'group', hidden: true});
  const name = h('button', {type: 'button', role: 'treeitem', tabindex: -1, 'aria-expanded': 'false', onclick: () => {
    const opens = list.hidden;
    list.hidden = !opens;
    name.setAttribute('aria-expanded', String(opens));
    if (opens && (!list.firstChild || list.querySelector('.failure'))) fill(list, one.id);
  }}, one.name);
  return [name, list];
}

/** Arrow keys lead through the tree as in a file manager. */
function onKey(event) {
  const items = [...event.currentTarget.querySelectorAll('[role=treeitem]')].filter((one) => one.offsetParent);
  const at = items.indexOf(document.activeElement);
  if (at < 0) return;
  const isOpen = items[at].getAttribute('aria-expanded');
  const to = {ArrowDown: items[at + 1], ArrowUp: items[at - 1], Home: items[0], End: items[items.length - 1]}[event.key];
  if (to) {
    to.focus();
  } else if ((event.key === 'ArrowRight' && isOpen === 'false') || (event.key === 'ArrowLeft' && isOpen === 'true')) {
    items[at].click();
  } else if (event.key === 'ArrowRight' && isOpen === 'true') {
    items[at + 1]?.focus();
  } else if (event.key === 'ArrowLeft') {
    items[at].closest('ul[role=group]')?.previousElementSibling?.focus();
  } else {
    return;
  }
  event.preventDefault();
}

let shown = '';

export function tree(now) {
  const place = find('tree'), key = `${now.db}/${now.table}`;
  if (key !== shown) {
    shown = key;
    const list = h('ul', {role: 'tree', 'aria-label': `Records of ${now.table}`, onkeydown: onKey,
      onfocusin: (event) => {
        for (const one of list.querySelectorAll('[tabindex="0"]')) one.tabIndex = -1;
        event.target.tabIndex = 0;
      }});
    place.replaceChildren(list);
    fill(list, '');
    find('search').value = '';
    search();
  }
  mark();
}

function mark() {
  const {id, view} = state();
  for (const one of document.querySelectorAll('[data-record]')) {
    const isThis = view === 'record' && Number(one.dataset.record) === id;
    if (isThis) one.setAttribute('aria-current', 'page'); else one.removeAttribute('aria-current');
  }
  const items = document.querySelectorAll('#tree [role=treeitem]');
  if (items.length && !document.querySelector('#tree [tabindex="0"]')) items[0].tabIndex = 0;
}

let present;

async function search() {
  const text = find('search').value.trim(), results = find('results'), note = find('found');
  present?.abort();
  results.hidden = !text;
  find('tree').hidden = Boolean(text);
  if (!text) { note.textContent = ''; results.replaceChildren(); return; }
  present = new AbortController();
  const {db, table} = state();
  note.textContent = 'Searching…';
  try {
    const found = await ask('search', {db, table, text}, present.signal);
    const more = found.total > found.records.length ? `, the first ${found.records.length} are shown` : '';
    note.textContent = `${found.total ? many(found.total, 'record') : 'Nothing'} ${found.isCondition ? 'fulfils the condition' : 'found'}${more}`
      .replace(/(records|[^1]\d* records) fulfils/, '$1 fulfil');
    results.replaceChildren(h('ul', {}, found.records.map((one) => h('li', {}, linkTo(one), h('span', {class: 'note'}, pathParts(one.folder).slice(-1)[0])))));
  } catch (error) {
    if (error.name === 'AbortError') return;
    note.textContent = '';
    // Half a condition is not a failure of anything.
    const isTyping = ['InvalidArgument', 'NotFound', 'Ambiguous'].includes(error.told?.code);
    results.replaceChildren(isTyping ? h('p', {class: 'note'}, error.told.text, error.told.advice ? ` ${error.told.advice}` : '') : failureBox(error, search));
  }
  mark();
}

find('search').addEventListener('input', later(250, search));
find('search').addEventListener('keydown', (event) => {
  if (event.key === 'Escape') { event.target.value = ''; search(); }
  if (event.key === 'ArrowDown') { event.preventDefault(); document.querySelector('#results a, #tree [tabindex="0"]')?.focus(); }
});
find('results').addEventListener('keydown', (event) => {
  const links = [...event.currentTarget.querySelectorAll('a')], at = links.indexOf(document.activeElement);
  const to = {ArrowDown: links[at + 1], ArrowUp: links[at - 1] || find('search')}[event.key];
  if (to) { event.preventDefault(); to.focus(); }
});

const names = new Map();
const MOST_NAMED = 200;  // an address holds no more identities

async function nameAll({db, table}, ids) {
  const unknown = ids.filter((id) => !names.has(`${db}/${id}`));
  if (!unknown.length) return;
  const found = await ask('heads', {db, table, id: unknown});
  for (const one of found.records) names.set(`${db}/${one.id}`, one.name);
}

/** The selection, which stays while views change. */
export async function selection(now) {
  for (const one of document.querySelectorAll('button.keep')) labelKeep(one, now.kept.includes(Number(one.dataset.id)));
  const place = find('kept');
  place.hidden = !now.table;
  if (!now.kept.length) {
    place.replaceChildren(h('h2', {}, 'Selection'), h('p', {class: 'note'}, 'Add records from their sheets or from the chart to compare them.'));
    return;
  }
  const shown = now.kept.slice(0, MOST_NAMED), more = now.kept.length - shown.length;
  const list = place.querySelector('.list') || h('div', {class: 'list'});
  place.replaceChildren(h('h2', {}, `Selection (${count(now.kept.length)})`), list,
    h('p', {class: 'acts'}, h('a', {class: 'button', ...leads({view: 'compare'})}, 'Compare'), button('Clear', () => go({kept: []}))));
  await show(list, async () => {
    await nameAll(now, shown);
    return [h('ul', {}, shown.map((id) => {
      const name = names.get(`${now.db}/${id}`) || `record ${id}`;
      return h('li', {}, linkTo({id, name}), button('×', () => go({kept: state().kept.filter((one) => one !== id)}),
        {class: 'small', 'aria-label': `Remove ${name} from the selection`}));
    })), more ? h('p', {class: 'note'}, `and ${count(more)} more`) : ''];
  }, '');
  mark();
}
