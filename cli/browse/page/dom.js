// Builds elements. Texts become text nodes, never markup.

const SVG = 'http://www.w3.org/2000/svg';

function build(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    if (value === undefined || value === null || value === false) continue;
    if (name.startsWith('on')) element.addEventListener(name.slice(2), value);
    else if (name === 'value' || name === 'checked') element[name] = value;
    else element.setAttribute(name, value === true ? '' : value);
  }
  element.append(...children.flat(3).filter((child) => child !== null && child !== undefined && child !== false));
  return element;
}

/** h('p', {class: 'note', onclick: act}, 'text', child, [more]) */
export const h = (tag, attributes = {}, ...children) =>
  build(document.createElement(tag), attributes, children);
/** The same for SVG. */
export const s = (tag, attributes = {}, ...children) =>
  build(document.createElementNS(SVG, tag), attributes, children);

export const find = (id) => document.getElementById(id);

/** Tells screen readers what has changed. */
export function say(text) { find('status').textContent = text; }

/** A labelled choice; `options` are texts or [value, text] pairs. */
export function choice(label, options, value, change) {
  return h('label', {}, label, ' ', h('select', {onchange: (event) => change(event.target.value)},
    options.map((one) => {
      const [key, text] = Array.isArray(one) ? one : [one, one];
      return h('option', {value: key, selected: key === value}, text);
    })));
}

export const button = (text, act, attributes = {}) =>
  h('button', {type: 'button', onclick: act, ...attributes}, text);

/** Waits until nothing happened for that long. */
export function later(milliseconds, act) {
  let timer;
  return (...given) => { clearTimeout(timer); timer = setTimeout(() => act(...given), milliseconds); };
}
