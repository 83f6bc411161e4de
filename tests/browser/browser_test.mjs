// browser_test.mjs BUILD_DIR SOURCE_DIR: the page in Chromium. With KRAID_UPDATE_EXPECTED in the
// environment it makes README's picture anew; with KRAID_PICTURES=DIR it leaves pictures there.
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {existsSync, mkdtempSync, readFileSync, rmSync, statSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';

const [build, source] = process.argv.slice(2);
const chromium = '/usr/bin/chromium';
const needed = [chromium, join(import.meta.dirname, 'node_modules')];
for (const path of needed.filter((path) => !existsSync(path))) {
  console.log(`skipped: there is no ${path}; scripts/setup.sh installs it`);
  process.exit(77);
}
const {default: playwright} = await import('playwright-core');
const {hostile, shown, writePages} = await import('./machines.mjs');
const axe = join(import.meta.dirname, 'node_modules/axe-core/axe.min.js');
const folder = mkdtempSync(join(tmpdir(), 'kraid-browser-'));
const browser = await playwright.chromium.launch({
  executablePath: chromium,
  args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
    '--disable-component-update', '--disable-sync'],
});

const texts = (page, selector) => page.$$eval(selector, (found) => found.map((e) => e.textContent));
const visible = (page, selector) => page.$$eval(selector, (found) => found.filter((e) => e.checkVisibility()).length);

const checks = {
  async 'asks for nothing beyond itself, and is as small as promised'(page, {name, file}) {
    const devices = await page.locator('.shelf li').count();
    assert.equal(devices, {sample: 50, empty: 0, many: 2050, hostile: devices}[name]);
    const room = 60_000 + 1_000 * devices;
    assert.ok(statSync(file).size <= (name === 'hostile' ? 4 * room : room), `${statSync(file).size}`);
    const policy = await page.getAttribute('meta[http-equiv]', 'content');
    assert.match(policy, /^default-src 'none'; style-src 'sha256-\S+'; script-src 'sha256-\S+'; base-uri 'none'; form-action 'none'$/);
    assert.equal(execFileSync('tidy', ['-errors', '-quiet', file], {stdio: ['ignore', 'pipe', 'inherit']}).toString(), '');
  },
  async 'takes no text for markup'(page, {name}) {
    const foreign = 'script:not(head > script), style:not(head > style), [style], [onclick], a:not([href^="#"]), base, img, iframe';
    assert.equal(await page.locator(foreign).count(), 0);
    if (name !== 'hostile') return;
    const body = await page.textContent('body');
    assert.ok(!/[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u202a-\u202e]/.test(body));
    for (const part of ['h1', '.facts', '.arrays', '.shelf p', '#tree td', '#log td', 'pre', '#log td']) {
      const found = await texts(page, part);
      assert.ok(found.some((text) => text.includes(shown)), `${part} lacks it: ${found[0]}`);
    }
  },
  async 'paints soon and sorts soon'(page, {name}) {
    if (name !== 'many') return;
    const paint = await page.evaluate(() => performance.getEntriesByName('first-contentful-paint')[0].startTime);
    const sort = await page.evaluate(async () => {
      const start = performance.now();
      document.querySelectorAll('#tree thead button')[7].click();
      await new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
      return Math.round(performance.now() - start);
    });
    console.log(`  first paint ${Math.round(paint)} ms, sorting 2,000 rows ${sort} ms`);
    assert.ok(paint < 1000 && sort < 1000);
  },
  async 'leads from each finding to its place, and from there to its row'(page) {
    const links = await page.$$eval('#findings a', (found) => found.map((a) => a.hash));
    for (const hash of [...new Set(links)].slice(0, 20)) {
      await page.click(`#findings a[href="${hash}"]`);
      assert.equal(await page.locator(`${hash}:target`).isVisible(), true, hash);
    }
    const dead = await page.$$eval('a[href^="#"]', (found) =>
      found.map((a) => a.hash.slice(1)).filter((id) => !document.getElementById(id)));
    assert.deepEqual(dead, []);
    const ids = await page.$$eval('[id]', (found) => found.map((e) => e.id));
    assert.equal(new Set(ids).size, ids.length);
  },
  async 'sorts numbers as numbers, and gives the tree back'(page, {name}) {
    if (name !== 'sample') return;
    const before = await texts(page, '#tree tbody tr');
    const size = page.locator('#tree thead button').nth(4);
    const column = () => page.$$eval('#tree td:nth-child(5)[data-v]', (cells) => cells.map((c) => Number(c.dataset.v)));
    await size.click();
    const sorted = await column();
    assert.ok(sorted.length > 50);
    assert.deepEqual(sorted, sorted.toSorted((a, b) => a - b));
    await size.click();
    assert.deepEqual(await column(), sorted.toSorted((a, b) => b - a));
    assert.equal(await page.getAttribute('#tree th:nth-child(5)', 'aria-sort'), 'descending');
    await size.click();
    assert.deepEqual(await texts(page, '#tree tbody tr'), before);
    await page.locator('#tree thead button').first().click();
    const places = (await texts(page, '#tree tbody tr:not(.l) th')).filter((text) => text.startsWith('2,'));
    assert.ok(places.indexOf('2,9') < places.indexOf('2,10'));
  },
  async 'filters and folds'(page, {name}) {
    if (name !== 'sample') return;
    const rows = [
      ['tree', 'wn cr', '', 7], ['tree', 'cr', '', 3], ['tree', 'cr', 'm33', 1], ['tree', '', 'brellow bx73', 4],
      ['log', '=ERR', '', 3], ['log', '', 'REBUILD', 2], ['log', '=WRN', 'bad stripes', 1], ['log', '', 'nothing such', 0],
    ];
    for (const [table, kind, text, count] of rows) {
      await page.selectOption(`[data-of=${table}] select`, kind);
      await page.fill(`[data-of=${table}] input`, text);
      assert.equal(await visible(page, `#${table} tbody tr`), count, `${table} ${kind} ${text}`);
      assert.equal(await page.textContent(`[data-of=${table}] output`), `${count} shown`);
    }
    await page.selectOption('[data-of=tree] select', 'cr');
    await page.click('#c0-d0');
    assert.ok(await page.isVisible('#rc0-d0:target'));
    assert.equal(await visible(page, '#runs pre'), 0);
    await page.locator('summary').first().click();
    assert.equal(await visible(page, '#runs pre'), 8);
    await page.click('#fold');
    assert.equal(await visible(page, '#runs pre'), await page.locator('#runs pre').count());
  },
  async 'shows what a box is on hover and on focus'(page, {name}) {
    if (name !== 'sample') return;
    for (const show of ['hover', 'focus']) {
      await page.locator('#c1-d2')[show]();
      if (show === 'focus') await page.keyboard.press('Shift+Tab').then(() => page.keyboard.press('Tab'));
      assert.ok(await page.isVisible('#c1-d2 + p'), show);
      const tip = await page.innerText('#c1-d2 + p');
      for (const part of ['70006 MB', 'BRELLOW BX73W10', 'M3308840', 'S1FM', '9 hard, 114 soft']) assert.ok(tip.includes(part), tip);
      await page.mouse.move(0, 0);
    }
  },
  async 'lets the keyboard reach everything'(page, {name}) {
    if (name !== 'sample') return;
    const all = await page.$$eval('a, button, input, select, summary', (found) => {
      found.forEach((e, i) => { e.dataset.tab = i; });
      return found.filter((e) => e.checkVisibility()).map((e) => e.dataset.tab);
    });
    const reached = new Set();
    for (let i = 0; i < all.length + 5; ++i) {
      await page.keyboard.press('Tab');
      reached.add(await page.evaluate(() => document.activeElement.dataset.tab));
    }
    assert.deepEqual(all.filter((tab) => !reached.has(tab)), []);
  },
  async 'has no fault that axe finds, in light and dark'(page, {name}) {
    if (name === 'many') return;  // more of the same
    for (const colorScheme of ['light', 'dark']) {
      await page.emulateMedia({colorScheme});
      // The policy lets no script of others in, which the tool of the test goes round.
      await page.evaluate(readFileSync(axe, 'utf8') + ';0');
      const {violations} = await page.evaluate(() => globalThis.axe.run());
      assert.deepEqual(violations.map((v) => [v.id, v.nodes.length, v.nodes[0].html, v.nodes[0].failureSummary]), []);
    }
  },
  async 'hides nothing without script'(page, {name}, open) {
    if (name === 'many') return;
    const plain = await open({javaScriptEnabled: false});
    const [with_script, without] = await Promise.all([page, plain].map((p) => p.innerText('main')));
    const words = new Set(without.split(/\s+/));
    const controls = /^(Show|with|all|shown|what|needs|attention|has|failed|Open|↕)$/;
    assert.deepEqual(with_script.split(/\s+/).filter((word) => !words.has(word) && !controls.test(word)), []);
    assert.equal(await visible(plain, 'form, button'), 0);
    await plain.close();
  },
  async 'fits narrow windows'(page) {
    for (const width of [360, 800, 1400]) {
      await page.setViewportSize({width, height: 900});
      assert.ok(await page.evaluate(() => document.documentElement.scrollWidth) <= width, `${width}`);
    }
  },
  async 'prints every drive'(page, {name, file}) {
    if (name === 'hostile') return;
    const places = await texts(page, '.shelf a b');
    await page.pdf({path: `${file}.pdf`, format: 'A4', preferCSSPageSize: true, printBackground: true});
    const printed = execFileSync('pdftotext', ['-layout', `${file}.pdf`, '-'], {maxBuffer: 1 << 28}).toString().split(/\s+/);
    const counts = new Map();
    for (const word of printed) counts.set(word, (counts.get(word) ?? 0) + 1);
    // Once as a box, and once as a row.
    const lost = places.filter((place) => (counts.get(place) ?? 0) < 2 * places.filter((p) => p === place).length);
    assert.deepEqual(lost, []);
  },
};

const {KRAID_PICTURES: pictures, KRAID_UPDATE_EXPECTED: update} = process.env;
let failures = 0;
try {
  for (const machine of writePages(build, source, folder)) {
    const faults = [];
    const open = async (options = {}) => {
      const page = await browser.newPage({viewport: {width: 1280, height: 800}, ...options});
      page.on('console', (message) => faults.push(message.text()));
      page.on('pageerror', (error) => faults.push(error.message));
      page.on('dialog', (dialog) => faults.push(dialog.message()));
      page.on('request', (request) => request.url() === `file://${machine.file}` || request.url().includes('#') ||
        faults.push(request.url()));
      await page.goto(`file://${machine.file}`);
      return page;
    };
    for (const [what, check] of Object.entries(checks)) {
      const page = await open();
      await check(page, machine, open).catch((error) => faults.push(error.message));
      await page.close();
      if (faults.length === 0) continue;
      ++failures;
      console.log(`FAILED: the page of "${machine.name}" ${what}:`, faults.splice(0));
    }
    for (const colorScheme of pictures ? ['light', 'dark'] : []) {
      for (const width of [360, 800, 1400]) {
        const page = await open({viewport: {width, height: 900}, colorScheme});
        const fullPage = machine.name !== 'many';
        await page.screenshot({path: join(pictures, `${machine.name}-${colorScheme}-${width}.png`), fullPage});
        await page.close();
      }
    }
    if (update && machine.name === 'sample') {
      const page = await open({viewport: {width: 1280, height: 1256}});
      await page.screenshot({path: join(source, 'docs/page.png')});
      await page.close();
    }
  }
} finally {
  await browser.close();
  rmSync(folder, {recursive: true, force: true});
}
process.exit(failures === 0 ? 0 : 1);
