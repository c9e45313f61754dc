// Asks the command for data, and shows what went wrong.

import {button, h} from './dom.js';

export class Failure extends Error {
  constructor(told) { super(told.text); this.told = told; }
}

const kept = new Map();

export function address(path, parameters) {
  const query = new URLSearchParams();
  for (const [name, value] of Object.entries(parameters)) {
    for (const one of Array.isArray(value) ? value : [value]) {
      if (one !== undefined && one !== null && one !== '') query.append(name, one);
    }
  }
  return `/api/${path}?${query}`;
}

async function answer(path, parameters, signal) {
  try {
    return await fetch(address(path, parameters), {signal});
  } catch (error) {
    if (error.name === 'AbortError') throw error;
    throw new Failure({text: 'The command `lumo browse` does not answer.',
      advice: 'It may have ended. Start it again and open the address that it prints.'});
  }
}

async function dataOf(response) {
  const type = response.headers.get('Content-Type') || '';
  if (!type.startsWith('application/json')) {
    throw new Failure({text: (await response.text()).trim() || `Status ${response.status}`});
  }
  const data = await response.json();
  if (!response.ok) throw new Failure(data.error);
  return data;
}

export const ask = async (path, parameters = {}, signal = undefined) => dataOf(await answer(path, parameters, signal));

/** What is not data but a file. */
export async function bytes(path, parameters) {
  const response = await answer(path, parameters);
  return response.ok ? response.blob() : dataOf(response);
}

/** As `ask`, but what was answered once is kept until `forget`. */
export async function askOnce(path, parameters = {}) {
  const key = address(path, parameters);
  if (!kept.has(key)) kept.set(key, ask(path, parameters));
  try {
    return await kept.get(key);
  } catch (error) {
    kept.delete(key);
    throw error;
  }
}
export function forget() { kept.clear(); }

const titles = {
  Unauthenticated: 'The server refuses the log-on', PermissionDenied: 'The server does not allow this',
  NameResolution: 'The server was not found', Connection: 'The connection to the server failed',
  Tls: 'The connection to the server is not safe', Timeout: 'The server took too long',
  Proxy: 'The way through the proxy failed', RateLimited: 'The server wants fewer calls',
  Unavailable: 'The server cannot serve now', ServerFault: 'The server reports a fault',
  NotUnderstood: 'The reply was not understood', NotFound: 'Not found',
  InvalidArgument: 'This cannot be asked', Ambiguous: 'Several things have that name',
};

/** Says what went wrong, what to do next, and lets the user try again. */
export function failureBox(error, again) {
  const told = error.told || {text: String(error)};
  return h('section', {class: 'failure', role: 'alert'},
    h('h2', {}, titles[told.code] || 'Something went wrong'),
    h('p', {}, told.text),
    told.advice ? h('p', {class: 'advice'}, told.advice) : null,
    told.tries > 1 ? h('p', {class: 'note'}, `${told.tries} tries were made.`) : null,
    told.detail && !told.text.includes(told.detail) ? h('details', {}, h('summary', {}, 'Details'), h('p', {}, told.detail)) : null,
    button('Try again', again, {class: 'main'}));
}

/** Shows what `make` gives in `place`, or the failure. A later `show` there wins. */
export async function show(place, make, waitText = 'Reading…') {
  const turn = Symbol('turn');
  place.turn = turn;
  const wait = setTimeout(() => {
    if (place.turn === turn && waitText) place.replaceChildren(h('p', {class: 'wait', role: 'status'}, waitText));
  }, 250);
  let content;
  try {
    content = await make();
  } catch (error) {
    if (error.name === 'AbortError') return;
    if (!(error instanceof Failure)) console.error(error);
    content = failureBox(error, () => show(place, make, waitText));
  }
  clearTimeout(wait);
  if (place.turn === turn) place.replaceChildren(...[content].flat());
}
