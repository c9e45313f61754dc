// What the page shows, kept in the address: a view can be bookmarked and shared, and the back
// button leads to the one before.

const listeners = [];
const numbers = (text) => (text ? text.split(',').map(Number).filter(Number.isFinite) : []);

export function state() {
  const [path, query] = location.hash.replace(/^#\/?/, '').split(/\?(.*)/s);
  const given = new URLSearchParams(query || '');
  const text = (name) => given.get(name) || '';
  let at = {};
  try { at = JSON.parse(text('at') || '{}'); } catch { /* as if none were given */ }
  return {
    view: path || 'start', db: text('db'), table: text('table'), id: Number(text('id')) || 0,
    version: text('version'), units: text('units'), currency: text('currency'), kept: [...new Set(numbers(text('kept')))],
    x: text('x'), xPer: text('xPer'), y: text('y'), yPer: text('yPer'),
    linear: text('linear'), hidden: given.getAll('hide'), where: text('where'),
    index: numbers(text('index')), zoom: numbers(text('zoom')),
    shape: text('shape') === 'box' ? 'box' : 'ellipse',
    at: at && typeof at === 'object' ? at : {},
  };
}

export function addressOf(changes) {
  const isOther = 'id' in changes || 'view' in changes;  // a version is one of this record alone
  const next = {...state(), ...(isOther ? {version: ''} : {}), ...changes};
  const query = new URLSearchParams();
  const put = (name, value) => { if (value !== '' && value !== 0) query.set(name, value); };
  for (const name of ['db', 'table', 'id', 'version', 'units', 'currency', 'x', 'xPer', 'y', 'yPer', 'linear', 'where']) {
    put(name, next[name]);
  }
  put('kept', next.kept.join(','));
  put('index', next.index.join(','));
  put('zoom', next.zoom.map((one) => Number(one.toPrecision(6))).join(','));
  if (next.shape === 'box') put('shape', 'box');
  for (const family of next.hidden) query.append('hide', family);
  if (Object.keys(next.at).length) put('at', JSON.stringify(next.at));
  return `#/${next.view}?${query}`;
}

/** Shows another view; `quiet` changes the address alone, without a step for the back button. */
export function go(changes, {quiet = false} = {}) {
  const next = addressOf(changes);
  if (next === location.hash) return;
  if (quiet) {
    history.replaceState(null, '', next);
  } else {
    history.pushState(null, '', next);
    tell();
  }
}

/** Attributes of a link to another view of what is shown when it is followed, not when it was drawn. */
export function leads(changes) {
  const renew = (event) => { event.currentTarget.setAttribute('href', addressOf(changes)); };
  return {href: addressOf(changes), onpointerdown: renew, onfocus: renew, onclick: (event) => {
    if (event.ctrlKey || event.metaKey || event.shiftKey || event.button) return;
    event.preventDefault();
    go(changes);
    document.getElementById('main').focus({preventScroll: true});
  }};
}

export function onChange(act) { listeners.push(act); }
export function tell() { for (const act of listeners) act(state()); }
addEventListener('popstate', tell);
