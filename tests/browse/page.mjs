// The page in a real browser, as a user has it: page.mjs LUMO LUMO-SANDBOX CHROMIUM [PICTURES]
// Exits with 0 when all is well. With a folder for PICTURES it keeps screenshots there.

import assert from 'node:assert/strict';
import {execFileSync, spawn} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {createRequire} from 'node:module';
import {tmpdir} from 'node:os';
import {join} from 'node:path';

const [lumo, sandboxProgram, chromiumPath, pictures] = process.argv.slice(2);
const require = createRequire(import.meta.url);
const {chromium} = require('playwright-core');
const axe = readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');
const folder = mkdtempSync(join(tmpdir(), 'lumo-page-'));
const programs = [];

/** Starts a program, which ends with this one; gives its first line. */
function start(program, options, environment = {}) {
  const child = spawn(program, options, {stdio: ['pipe', 'pipe', 'inherit'], env: {...process.env, ...environment}});
  programs.push(child);
  return new Promise((done, fail) => {
    child.stdout.once('data', (text) => done(String(text).split('\n')[0]));
    child.once('exit', () => fail(new Error(`${program} ended`)));
    child.once('error', fail);
  });
}

async function sandbox(options = [], environment = {}) {
  return JSON.parse(await start(sandboxProgram, ['--stop-on-eof', '--ttl', '900', ...options], environment)).url;
}
/** The address of a page over that server. */
const pageOver = (url, options = [], environment = {}) => start(lumo, ['browse', '--url', url, '--idle', '300', '--retries', '0', ...options], environment);

const url = await sandbox();
const hostile = '<img src=x onerror=window.broken=1>';
writeFileSync(join(folder, 'hostile.csv'), `Folder,Name,Density [kg/m^3],Young's modulus [GPa],Typical uses\n"Metals and alloys/A\\/B\\\\","${hostile}",..900,20..,"<script>window.broken=1</script>"\n`);
execFileSync(lumo, ['import', '--url', url, 'ENG_MATERIALS', 'Materials', '--make-folders', join(folder, 'hostile.csv')], {stdio: 'inherit'});
const address = await pageOver(url);

const browser = await chromium.launch({executablePath: chromiumPath, args: process.getuid() === 0 ? ['--no-sandbox'] : []});
const context = await browser.newContext({viewport: {width: 1280, height: 900}, acceptDownloads: true});
context.setDefaultTimeout(60000);
const page = await context.newPage();
const faults = [];
page.on('pageerror', (error) => faults.push(error.message));
page.on('console', (message) => { if (message.type() === 'error' && !/Failed to load resource/.test(message.text())) faults.push(message.text()); });

const picture = async (name, options = {}) => { if (pictures) await page.screenshot({path: join(pictures, `${name}.png`), ...options}); };
async function checkAccess(what) {
  await page.evaluate(axe);  // by the debugger, which the content policy does not bind
  const {violations} = await page.evaluate(() => window.axe.run(document, {resultTypes: ['violations']}));
  const bad = violations.filter((one) => ['serious', 'critical'].includes(one.impact));
  assert.deepEqual(bad.map((one) => `${one.id}: ${one.nodes.map((node) => node.html).join(' | ').slice(0, 400)}`), [], what);
}
const drawn = (count) => page.waitForSelector(`.plot[data-drawn="${count}"]`);
async function download(name) {
  const [file] = await Promise.all([page.waitForEvent('download'), page.getByRole('button', {name}).click()]);
  return readFileSync(await file.path());
}
async function search(text) {
  const asked = page.waitForResponse((one) => one.url().includes(`/api/search?`) && new URL(one.url()).searchParams.get('text') === text);
  await page.fill('#search', text);
  await (await asked).finished();
  await page.waitForFunction(() => !/Searching/.test(document.getElementById('found').textContent));
}

const steps = {
  async 'opens with the token and then goes without'() {
    await page.goto(address);
    await page.waitForSelector('#tree [role=treeitem]');
    assert.ok(!page.url().includes('token'));
    await page.reload();
    await page.waitForSelector('#tree [role=treeitem]');
    await page.getByRole('heading', {name: /attributes/}).waitFor();
    await checkAccess('start');
    await picture('start');
    const stranger = await (await browser.newContext()).newPage();
    assert.equal((await stranger.goto(address.split('?')[0])).status(), 403);
    await stranger.close();
  },
  async 'leads through the tree by the keyboard'() {
    await page.focus('#tree [role=treeitem]');
    await page.keyboard.press('ArrowRight');
    await page.getByRole('treeitem', {name: 'Aluminium alloys'}).waitFor();
    await page.keyboard.press('ArrowDown');
    assert.equal(await page.evaluate(() => document.activeElement.getAttribute('role')), 'treeitem');
  },
  async 'searches and opens a record'() {
    await search('6061');
    await page.getByRole('link', {name: 'AW-6061-T6'}).click();
    await page.getByRole('heading', {name: 'AW-6061-T6'}).waitFor();
    await page.getByText('Northern Alloys').waitFor();
    await page.waitForFunction(() => document.querySelector('.card img').naturalWidth > 0);
    assert.match(await page.textContent('.values'), /2690 – 2730 kg\/m³/);
    assert.ok(await page.locator('svg.curve').count() >= 4);
    await checkAccess('record');
    await picture('record');
    const csv = String(await download('Download CSV'));
    assert.match(csv, /Density,,2690,2730,kg\/m\^3\r\n/);
    assert.equal((await download('Download xlsx')).subarray(0, 2).toString(), 'PK');
    await page.getByRole('button', {name: 'Add to the selection: AW-6061-T6'}).click();
    await page.getByRole('link', {name: 'Compare (1)'}).waitFor();
  },
  async 'opens the versions of a record'() {
    const versions = page.locator('.versions a');
    assert.equal(await versions.count(), 3);
    await versions.getByText('superseded').click();
    await page.getByText('This is one of several versions').waitFor();
    const version = page.url().match(/version=([0-9a-f-]{36})/)[1];
    assert.ok((await page.textContent('.lines')).includes(`.with_ids([lumo.RecordId("ENG_MATERIALS", 69, "${version}")])`));
    assert.doesNotMatch(await page.textContent('.lines pre'), /lumo get/);
    await page.waitForFunction(() => document.querySelector('.versions [aria-current]')?.textContent === 'superseded');
    await page.getByRole('link', {name: 'Show the current one'}).click();
    await page.waitForFunction(() => /2690 – 2730/.test(document.querySelector('.values')?.textContent || ''));
    assert.ok(!page.url().includes('version'));
  },
  async 'reads curves off on the axis that is drawn'() {
    const read = await page.evaluate(async () => {
      const {valueAt} = await import('/page/curves.js');
      const {scale} = await import('/page/scale.js');
      const curve = {x: [1, 100], y: [10, 1000]};
      const at = (place, xLog, yLog) => valueAt(curve, place, scale(1, 100, 0, 500, xLog), scale(10, 1000, 300, 0, yLog));
      return [at(10, true, true), at(10, true, false), at(10, false, false), at(200, true, true)];
    });
    assert.deepEqual(read.map((one) => one && Math.round(one * 1e6) / 1e6), [100, 505, 100, null]);
    const slider = page.getByRole('slider', {name: /Read off at/}).first();
    await slider.focus();
    await page.keyboard.press('End');
    const [last, most] = await slider.evaluate((one) => [one.value, one.max]);
    assert.ok(Math.abs(last - most) < 1e-6, `${last} of ${most}`);
    assert.doesNotMatch(await slider.evaluate((one) => one.closest('figcaption').textContent), /none here.*none here/);
  },
  async 'keeps the true ends of ranges that an axis cannot show'() {
    const places = await page.evaluate(async () => {
      const {place} = await import('/page/chartview.js');
      const column = (low, high) => ({low: [low], high: [high]});
      return [[column(0, 4), null, 0, true], [column(20, null), null, 0, true], [column(20, null), column(4, 5), 0, false],
        [column(1, 3), column(0, 4), 0, false], [column(1, 3), column(-4, 8), 0, true], [column(-4, 0), null, 0, true],
        [column(null, null), null, 0, false]].map((given) => { const one = place(...given); return one && [one.low, one.middle, one.high, one.from, one.to]; });
    });
    assert.deepEqual(places, [[0, 2, 4, 2, 4], [20, 20, null, 20, 20], [4, 20 / 4.5, null, 4, 20 / 4.5],
      [0.25, 1, null, 0.25, 1], [null, 1, null, 1, 1], null, null]);
  },
  async 'switches units, and leads back'() {
    await page.selectOption('#units', 'US customary');
    await page.waitForFunction(() => /lb/.test(document.querySelector('.values')?.textContent || ''));
    await page.goBack();
    await page.waitForFunction(() => /2690 – 2730/.test(document.querySelector('.values')?.textContent || ''));
    await page.selectOption('#currency', {index: 2});
    await page.waitForFunction(() => !/EUR/.test(document.querySelector('.values')?.textContent || 'EUR'));
    await page.goBack();
    await page.waitForFunction(() => /EUR/.test(document.querySelector('.values')?.textContent || ''));
  },
  async 'takes a condition, and says what is wrong with half a one'() {
    await search('density < 2000');
    assert.match(await page.textContent('#results'), /unit/);
    await search('density < 2000 kg/m^3');
    assert.match(await page.textContent('#found'), /records fulfil the condition/);
    await page.getByRole('link', {name: 'AZ31B-H24'}).click();
    await page.getByRole('button', {name: 'Add to the selection: AZ31B-H24'}).click();
  },
  async 'finds words that look like a condition'() {
    await search(hostile);
    assert.match(await page.textContent('#found'), /^1 record found/);
    await search('AZ31B');
  },
  async 'compares side by side'() {
    await page.getByRole('link', {name: 'Compare (2)'}).click();
    await page.getByRole('columnheader', {name: /AZ31B-H24/}).waitFor();
    assert.equal(await page.locator('table.compare > thead th').count(), 3);
    await checkAccess('compare');
    await picture('compare');
    const csv = String(await download('Download CSV'));
    assert.match(csv, /Attribute,AW-6061-T6,AW-6061-T6 low,AW-6061-T6 high,AW-6061-T6 unit,AZ31B-H24,/);
    assert.match(csv, /\nDensity,,2690,2730,kg\/m\^3,,1765,1785,kg\/m\^3\r\n/);
    assert.doesNotMatch(csv, /[⁰-⁹²³×]/, 'a figure for people');
    await page.goBack();
    await page.getByRole('heading', {name: 'AZ31B-H24'}).waitFor();
  },
  async 'draws the chart within a second'() {
    const begin = Date.now();
    await page.locator('#views').getByText('Chart').click();
    await drawn(286);
    const took = Date.now() - begin;
    console.log(`  a chart of 286 records after ${took} ms`);
    await checkAccess('chart');
    await picture('chart');
  },
  async 'hides a family, and chooses records by a condition'() {
    await page.locator('.legend').getByRole('button', {name: /Polymers/}).click();
    await drawn(226);
    await page.goBack();
    await drawn(286);
    await page.fill('#where', 'Extrusions');
    await page.press('#where', 'Enter');
    await drawn(1);
    await page.getByText('The same without this page').click();
    assert.match(await page.textContent('.copy pre'), /-t Extrusions -a Density/);
    assert.match(await page.textContent('.copy:nth-of-type(2) pre'), /\.text\("Extrusions"\)/);
    assert.equal((await download('Download xlsx')).subarray(0, 2).toString(), 'PK');
    await page.fill('#where', 'price < 1 EUR/kg');
    await page.press('#where', 'Enter');
    await page.waitForFunction(() => { const n = Number(document.querySelector('.plot').dataset.drawn); return n > 0 && n < 100; });
    await page.goBack();
    await page.goBack();
    await drawn(286);
  },
  async 'ranks records by an index line that is dragged or moved by keys'() {
    await page.getByLabel('Index line').first().selectOption({index: 2});
    const slider = page.getByRole('slider', {name: /Index line/});
    await slider.waitFor({state: 'attached'});
    const before = await page.textContent('.better h2');
    assert.match(before, /records above the line/);
    // Across the line, where no mark takes the pointer away from it.
    const line = await slider.evaluate((one) => {
      const at = one.getPointAtLength(one.getTotalLength() / 2).matrixTransform(one.getScreenCTM());
      return [at.x, at.y];
    });
    await page.mouse.move(...line);
    await page.mouse.down();
    await page.mouse.move(line[0] - 20, line[1] - 30, {steps: 4});
    await page.mouse.up();
    const dragged = await page.textContent('.better h2');
    assert.ok(parseInt(dragged) < parseInt(before), `${dragged} after ${before} and a drag up`);
    const merit = await slider.getAttribute('aria-valuenow');
    assert.ok(page.url().includes(`index=0.5%2C${merit}`), `${page.url()} has ${merit}`);
    await page.mouse.move(line[0], line[1] - 90);
    assert.equal(await slider.getAttribute('aria-valuenow'), merit, 'let go');
    await page.mouse.move(line[0] - 20, line[1] - 30);
    await page.mouse.down();
    await page.mouse.move(...line, {steps: 4});
    await page.mouse.up();
    await slider.focus();
    await page.keyboard.press('PageUp');
    await page.waitForFunction((text) => document.querySelector('.better h2').textContent !== text, before);
    const lowered = await page.textContent('.better h2');
    assert.ok(parseInt(lowered) < parseInt(before), `${lowered} after ${before}`);
    assert.match(page.url(), /index=0.5/);
    await picture('index');
    await checkAccess('index line');
  },
  async 'selects by a box'() {
    await page.getByRole('button', {name: 'Select by a box'}).click();
    const box = await page.locator('.plot').boundingBox();
    await page.mouse.move(box.x + box.width * 0.1, box.y + box.height * 0.75);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width * 0.3, box.y + box.height * 0.88, {steps: 5});
    await page.mouse.up();
    await page.getByRole('link', {name: /Compare \(([3-9]|\d\d)\)/}).waitFor();
    await page.getByRole('button', {name: 'Move', exact: true}).click();
  },
  async 'zooms, and steps from record to record by keys'() {
    const text = () => page.evaluate(() => document.querySelector('.plot').textContent);
    const whole = await text();
    await page.focus('.plot');
    await page.keyboard.press('+');
    await page.waitForFunction((old) => document.querySelector('.plot').textContent !== old, whole);
    await page.keyboard.press('ArrowRight');
    await page.keyboard.press('ArrowRight');
    assert.match(await page.textContent('#status'), /Density: .*kg/);
    await page.keyboard.press('0');
  },
  async 'downloads the chart'() {
    const csv = String(await download('Download CSV'));
    assert.equal(csv.trim().split('\r\n').length, 287);
    assert.match(csv, /onerror=window.broken=1>,Metals and alloys\/A\\\/B\\\\,,,900,,20,\r\n/, 'open ends');
    const sheet = await download('Download xlsx');
    assert.equal(sheet.subarray(0, 2).toString(), 'PK');
    assert.ok(sheet.length > 15000, `${sheet.length} bytes`);
    const svg = String(await download('Download SVG'));
    assert.match(svg, /<ellipse/);
    assert.ok(!svg.includes('<img'));
    const png = await download('Download PNG');
    assert.equal(png.subarray(1, 4).toString(), 'PNG');
    assert.ok(png.length > 20000);
    await page.getByText('The same without this page').click();
    assert.match(await page.textContent('.copy pre'), /^lumo get ENG_MATERIALS Materials -a Density -a 'Young'\\''s modulus'/);
    assert.match(await page.textContent('.copy:nth-of-type(2) pre'), /to_pandas\(\["Density", "Young's modulus"\]\)/);
  },
  async 'moves conditions by sliders'() {
    await page.goto(`${address.split('?')[0]}#/chart?db=ENG_MATERIALS&table=Materials`);
    await page.getByLabel('shows').first().selectOption('Yield strength against temperature');
    const slider = page.getByRole('slider', {name: /Temperature in °C/});
    await slider.waitFor();
    await page.waitForFunction(() => Number(document.querySelector('.plot').dataset.drawn) < 100);
    const cold = await page.textContent('.note [role=status]');
    await slider.fill('500');
    await page.waitForFunction((old) => document.querySelector('.note [role=status]').textContent !== old, cold);
    assert.match(decodeURIComponent(page.url()), /"Temperature":500/);
    await picture('conditions');
    await checkAccess('conditions');
  },
  async 'opens a view by its address'() {
    await page.goto(`${address.split('?')[0]}#/chart?db=ENG_MATERIALS&table=Materials&x=Price&y=Young%27s+modulus&yPer=Density&linear=x&shape=box`);
    await page.waitForFunction(() => document.querySelector('.plot .marks rect'));
    assert.match(await page.textContent('.plot'), /Young's modulus \/ Density/);
    await picture('ratio');
    await page.goto(`${address.split('?')[0]}#/chart?db=ENG_MATERIALS&table=Materials&x=Thermal+expansion+coefficient&xPer=Maximum+service+temperature&y=Yield+strength+%28elastic+limit%29&yPer=Thermal+expansion+coefficient`);
    await page.waitForFunction(() => Number(document.querySelector('.plot')?.dataset.drawn) > 0);
    const cut = await page.evaluate(() => {
      const frame = document.querySelector('.plot').getBoundingClientRect();
      return [...document.querySelectorAll('.plot text.axis')].map((one) => [one.textContent, one.getBoundingClientRect()])
        .filter(([, box]) => box.left < frame.left || box.right > frame.right || box.top < frame.top || box.bottom > frame.bottom).map(([text]) => text);
    });
    assert.deepEqual(cut, [], 'names of axes are cut');
    await picture('long');
    await page.goto(`${address.split('?')[0]}#/chart?db=ENG_MATERIALS&table=Materials&x=Photo&y=Density`);
    await page.getByText('“Photo”: not an attribute with figures').waitFor();
    await page.getByRole('link', {name: 'Draw others'}).click();
    await drawn(286);
  },
  async 'shows hostile texts as texts'() {
    await page.goto(`${address.split('?')[0]}#/start?db=ENG_MATERIALS&table=Materials`);
    await search('onerror');
    await page.getByRole('link', {name: hostile}).click();
    await page.getByRole('heading', {name: hostile}).waitFor();
    assert.equal(await page.textContent('.path'), 'Metals and alloys › A/B\\');
    assert.equal(await page.textContent('#results .note'), 'A/B\\');
    const families = await page.evaluate(async () => (await import('/page/legend.js')).familiesOf(['', 'A\\/B\\\\/C', 'A\\/B\\\\/D', 'E']).names);
    assert.deepEqual(families, ['', 'A/B\\', 'E']);
    assert.match(await page.textContent('.values'), /<script>window.broken=1<\/script>/);
    await page.getByRole('button', {name: /Add/}).first().click();
    await page.locator('#views').getByText('Chart').click();
    await drawn(286);
    await page.goto(`${address.split('?')[0]}#/${encodeURIComponent('<img src=x onerror=window.broken=1>')}?db=%3Cb%3E&table=%3Cimg src=x onerror=window.broken=1%3E`);
    await page.locator('#main').getByRole('alert').waitFor();
    assert.equal(await page.evaluate(() => window.broken), undefined);
  },
  async 'says what fails, and tries again'() {
    const plan = (text) => fetch(`${url}/control/faults`, {method: 'PUT', body: text});
    const record = `${address.split('?')[0]}#/record?db=ENG_MATERIALS&table=Materials&id=69`;
    for (const [fault, title] of [['fault x20', 'The server reports a fault'], ['cut 50 x20', 'The connection to the server failed'],
      ['status 503 x20', 'The server cannot serve now'], ['html x20', 'The reply was not understood']]) {
      await page.goto('about:blank');
      await plan(`GetRecordAttributesByRef ${fault}`);
      await page.goto(record);
      await page.getByRole('heading', {name: title}).waitFor();
      if (fault.startsWith('status')) { await checkAccess('failure'); await picture('failure'); }
      await plan('');
      await page.getByRole('button', {name: 'Try again'}).click();
      await page.getByRole('heading', {name: 'AW-6061-T6'}).waitFor();
    }
  },
  async 'says that the log-on is refused'() {
    const locked = await sandbox(['--log-on', 'basic'], {LUMO_SANDBOX_PASSWORD: 'right'});
    const shut = await pageOver(locked, ['--user', 'lumo'], {LUMO_PASSWORD: 'wrong'});
    const other = await context.newPage();
    await other.goto(shut);
    await other.getByRole('heading', {name: 'The server refuses the log-on'}).waitFor();
    assert.ok(await other.getByRole('button', {name: 'Try again'}).isVisible());
    await other.close();
  },
  async 'fits a narrow screen, and the dark'() {
    await page.emulateMedia({colorScheme: 'dark'});
    await page.goto(`${address.split('?')[0]}#/chart?db=ENG_MATERIALS&table=Materials&x=Density&y=Price&kept=69`);
    await page.waitForFunction(() => Number(document.querySelector('.plot')?.dataset.drawn) > 200);
    await checkAccess('dark chart');
    await picture('dark');
    await page.setViewportSize({width: 400, height: 800});
    await page.goto(`${address.split('?')[0]}#/record?db=ENG_MATERIALS&table=Materials&id=69`);
    await page.getByText('Northern Alloys').waitFor();
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= 400);
    await checkAccess('dark narrow record');
    await picture('narrow');
    await page.emulateMedia({colorScheme: 'light'});
    await page.setViewportSize({width: 1280, height: 900});
  },
  async 'draws twenty thousand records'() {
    const many = await pageOver(await sandbox(['--records', '20000']));
    const other = await context.newPage();
    await other.goto(many);
    await other.waitForSelector('#tree [role=treeitem]');
    const begin = Date.now();
    await other.locator('#views').getByText('Chart').click();
    await other.waitForFunction(() => Number(document.querySelector('.plot')?.dataset.drawn) > 20000, null, {timeout: 300000});
    console.log(`  a chart of 20,285 records after ${Date.now() - begin} ms`);
    if (pictures) await other.screenshot({path: join(pictures, 'many.png')});
    const selected = Array.from({length: 3000}, (unused, i) => 1000 + i).join();
    await other.goto(`${many.split('?')[0]}#/compare?db=ENG_MATERIALS&table=Materials&kept=${selected}`);
    await other.getByText('The first 100 of the 3,000 records').waitFor();
    await other.getByText('and 2,800 more').waitFor();
    assert.equal(await other.locator('table.compare > thead th').count(), 101);
    await other.goto(`${many.split('?')[0]}#/chart?db=ENG_MATERIALS&table=Materials&kept=2147483000`);
    await other.locator('#kept').getByRole('alert').waitFor();
    await other.getByRole('button', {name: 'Clear', exact: true}).click();
    await other.getByText('Add records from their sheets').waitFor();
    await other.close();
  },
};

const wanted = process.env.LUMO_PAGE_STEPS;
let code = 0;
try {
  for (const [name, step] of Object.entries(steps)) {
    if (wanted && !new RegExp(wanted).test(name) && name !== Object.keys(steps)[0]) continue;
    console.log(name);
    await step();
    assert.deepEqual(faults, [], name);
  }
} catch (error) {
  console.error(error);
  if (pictures) await page.screenshot({path: join(pictures, 'failed.png')}).catch(() => {});
  code = 1;
}
await browser.close();
for (const child of programs) child.kill();
rmSync(folder, {recursive: true});
process.exit(code);
