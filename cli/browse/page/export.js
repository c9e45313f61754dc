// Files to save, and the lines that give the same without the page.

import {bytes} from './api.js';
import {button, h, say} from './dom.js';

export function save(name, type, content) {
  const address = URL.createObjectURL(content instanceof Blob ? content : new Blob([content], {type: `${type};charset=utf-8`}));
  const link = h('a', {href: address, download: name.replace(/[^\p{L}\p{N} ._-]/gu, '_')});
  document.body.append(link);
  link.click();
  link.remove();
  setTimeout(() => URL.revokeObjectURL(address), 10000);
  say(`${name} was saved`);
}

/** A spreadsheet that the command makes, of records by their identities or of a condition. */
export async function saveWorkbook(name, {db, table, units, currency, version}, {ids = [], attributes = [], where = '', text = ''}) {
  say(`${name} is made`);
  try {
    const sheet = await bytes('workbook', {db, table, units, currency, id: ids, version, attribute: attributes, where, text});
    save(name, sheet.type, sheet);
  } catch (error) {
    say(error.told?.text || String(error));
    alert(error.told?.text || String(error));
  }
}

/** Rows as CSV. A text that a spreadsheet would take as a formula gets an apostrophe before it. */
export function csvOf(rows) {
  const cell = (value) => {
    if (value === null || value === undefined) return '';
    let text = String(value);
    if (typeof value === 'string' && /^[=+@\t\r-]/.test(text)) text = `'${text}`;
    return /[",\r\n']/.test(text) ? `"${text.replaceAll('"', '""')}"` : text;
  };
  return `\ufeff${rows.map((row) => row.map(cell).join(',')).join('\r\n')}\r\n`;
}

const shell = (text) => (/^[\w@%+=:,./-]+$/.test(text) ? text : `'${text.replaceAll("'", "'\\''")}'`);
const python = (text) => JSON.stringify(text);

/** What is shown: records by identity, or all of a condition or with some words; some attributes or all. */
function commandLine({db, table, units, currency}, {ids = [], attributes = [], where = '', text = ''}) {
  return ['lumo get', shell(db), shell(table), ...ids.map((id) => `id:${id}`), ...(where ? ['-w', shell(where)] : []), ...(text ? ['-t', shell(text)] : []),
    ...attributes.flatMap((one) => ['-a', shell(one)]), ...(units ? ['--unit-system', shell(units)] : []),
    ...(currency ? ['--currency', shell(currency)] : []), '-f csv'].join(' ');
}

function pythonLines({db, table, units, currency, version}, {ids = [], attributes = [], where = '', text = ''}) {
  const list = (texts) => `[${texts.map(python).join(', ')}]`;
  const records = version ? `.with_ids([lumo.RecordId(${python(db)}, ${ids[0]}, ${python(version)})])` : `.named(${list(ids.map((id) => `id:${id}`))})`;
  const chosen = (ids.length ? records : '') + (where ? `.where(${python(where)})` : '') + (text ? `.text(${python(text)})` : '');
  const given = [...(attributes.length ? [list(attributes)] : []), ...(units ? [`unit_system=${python(units)}`] : []),
    ...(currency ? [`currency=${python(currency)}`] : [])];
  return ['import lumo', `table = lumo.connect()[${python(db)}][${python(table)}]`,
    `frame = table${chosen}.to_pandas(${given.join(', ')})`].join('\n');
}

export function copyLines(now, what) {
  const block = (title, text) => h('div', {class: 'copy'}, h('h3', {}, title), h('pre', {tabindex: 0}, text),
    button('Copy', async (event) => {
      await navigator.clipboard.writeText(text);
      event.target.textContent = 'Copied';
      say(`The lines for ${title} were copied`);
    }, {'aria-label': `Copy the lines for ${title}`}));
  return h('details', {class: 'lines'}, h('summary', {}, 'The same without this page'), 
    now.version ? h('p', {class: 'note'}, 'In a terminal `lumo get` prints the current version alone.') : block('a terminal', commandLine(now, what)), block('Python', pythonLines(now, what)),
    h('p', {class: 'note'}, `${now.version ? 'It takes' : 'Both take'} the server from LUMO_URL, or from ${now.version ? 'an option' : 'options of theirs'}.`));
}

/** A drawing with its ground, as text of SVG. */
export function svgText(drawing, ground) {
  const copy = drawing.cloneNode(true);
  const {width, height} = drawing.viewBox.baseVal;
  copy.setAttribute('xmlns', 'http://www.w3.org/2000/svg');
  copy.setAttribute('width', width);
  copy.setAttribute('height', height);
  for (const one of copy.querySelectorAll('[data-tool]')) one.remove();
  const rect = document.createElementNS('http://www.w3.org/2000/svg', 'rect');
  for (const [name, value] of Object.entries({width, height, fill: ground})) rect.setAttribute(name, value);
  copy.prepend(rect);
  return new XMLSerializer().serializeToString(copy);
}

/** The same as a picture of dots, twice as fine as the screen's. */
export async function pngOf(drawing, ground) {
  const {width, height} = drawing.viewBox.baseVal;
  const address = URL.createObjectURL(new Blob([svgText(drawing, ground)], {type: 'image/svg+xml'}));
  try {
    const image = new Image();
    image.src = address;
    await image.decode();
    const canvas = h('canvas', {width: width * 2, height: height * 2});
    canvas.getContext('2d').drawImage(image, 0, 0, width * 2, height * 2);
    return await new Promise((done) => canvas.toBlob(done, 'image/png'));
  } finally {
    URL.revokeObjectURL(address);
  }
}
