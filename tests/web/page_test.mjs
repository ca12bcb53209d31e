// Tests the help page with its try-it box in a browser: node page_test.mjs PAGE BIN CHROMIUM
// PAGE: the built page. BIN: the folder with native_try and sift.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { dirname, join, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';

const [path, bin, executablePath] = process.argv.slice(2).map((part) => resolve(part));
const require = createRequire(join(dirname(path), 'browser/'));
const browser = await require('puppeteer-core').launch({ executablePath, args: ['--no-sandbox'] });
const axe = readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');
const url = pathToFileURL(path).href;
const complaints = [];

async function open(address, setUp = async () => {}) {
    const page = await browser.newPage();
    page.on('console', (message) => message.type() === 'error' && complaints.push(message.text()));
    page.on('pageerror', (error) => complaints.push(String(error)));
    await setUp(page);
    await page.goto(address);
    return page;
}

const type = (page, id, text) => page.$eval(`#try-${id}`, (field, value) => {
    field.value = value;
    field.dispatchEvent(new Event('input', { bubbles: true }));
}, text);
const textOf = (page, id) => page.$eval(`#try-${id}`, (element) => element.value ?? element.innerText);

// From the start of the navigation to the frame after the first result. The times are printed, not
// judged, because other programs may keep the machine busy.
async function testStart() {
    const times = [];
    const watch = () => new MutationObserver((_, observer) => {
        if (!document.querySelector('#try-result table')) return;
        observer.disconnect();
        requestAnimationFrame(() => setTimeout(() => { window.shownAt = performance.now(); }));
    }).observe(document, { subtree: true, childList: true });
    for (let page; ; await page.close()) {
        page = await open(url, (blank) => blank.evaluateOnNewDocument(watch));
        times.push(await (await page.waitForFunction(() => window.shownAt)).jsonValue());
        assert.match(await textOf(page, 'result'), /2 of 3 messages match[^]*23.5/);
        if (times.length < 5) continue;
        console.log(`the first result is shown ${times.map(Math.round)} ms after the page is opened`);
        return page;
    }
}

// Strings and messages that are drawn: pieces with texts that they take, then a few mistakes.
let seed = 20261123;
const draw = (most) => (seed = (seed * 1103515245 + 12345) % 2147483648) % 65536 % most;
const oneOf = (list) => list[draw(list.length)];
const listOf = (most, make) => Array.from({ length: 1 + draw(most) }, make);
const kPieces = [["'T='", 'T='], ['"ok?"', 'OK!'], ['n:integer=#', '-17', '+004', '99999999999'],
    ['f:float=.#', '23.5', '-.25', '1e5'], ['f:f=3.2#', '123.456'], ['h:integer=2x', 'fF'], ['x', '1fH'],
    ['s:string=letters', 'RUN'], ['s:s=3 chars', 'a;9'], ['s:string=[^,]', 'two words', 'caf\xC3\xA9'],
    ['[[+-]]', '+'], ['f:float=[-+.0-9Ee]', '-2.5E-03', '1e999'], ['b:binteger=2 bytes', '\x12\xFF', '\x80 '],
    ['b:float=4 bytes', '\xFE\xFF\x01\x02'], ['{{AA}}', '\xAA'], ['(a=0-3, b=4-11, c=12-15):L', 'A\x05'],
    ['e:string=eol', 'rest\r\n', 'end'], ["','", ','], ['?', '\x00', 'q']];

function drawPair() {
    const pieces = listOf(5, () => oneOf(kPieces));
    const spoil = (text, odds) => {
        const at = draw(text.length + 1);
        return draw(odds) ? text : text.slice(0, at) + oneOf(['', ' ', '!', "'", 'é', '0', '\n']) + text.slice(at + draw(2));
    };
    const messages = listOf(3, () => Buffer.from(
        spoil(pieces.map(([, ...texts]) => oneOf(texts)).join(oneOf(['', ' ', '\t'])), 2), 'latin1').toString('hex'));
    return { pattern: spoil(pieces.map(([string]) => string).join(' '), 6), messages, eom: oneOf([0, 10, 10, 44]) };
}

function linesOf(program, options, input) {
    const { stdout, error } = spawnSync(join(bin, program), options, { input, encoding: 'utf8', maxBuffer: 1 << 28 });
    if (error?.code !== 'EPIPE') assert.ifError(error); // sift doesn't read on after a wrong parsing string
    return stdout.trimEnd().split('\n');
}

async function testEngine(page) {
    const pairs = Array.from({ length: 5000 }, drawPair);
    const packed = (messages) => messages.map((hex) => (hex.length / 2).toString(16).padStart(2, '0') + '000000' + hex).join('');
    const native = linesOf('native_try', [], pairs.map(({ pattern, messages, eom }) =>
        `m${Buffer.from(pattern).toString('hex')} m${packed(messages)} ${eom.toString(16)}\n`).join(''));
    const boxed = await page.evaluate(async (calls) => {
        const engine = await loadEngine(document.getElementById('try-module').textContent);
        return calls.map(({ pattern, messages, eom }) =>
            engine.tryJson(pattern, messages.map(Bytes.fromHex), eom, 0, 1000, false));
    }, pairs);
    assert.deepEqual(boxed, native);
    const reports = boxed.map(JSON.parse);
    const rows = reports.flatMap((report) => report.rows ?? []);
    const counts = [rows.filter((row) => row.type === 'match'), rows.filter((row) => row.type === 'miss'),
        reports.filter((report) => report.fault)].map((list) => list.length);
    assert.ok(Math.min(...counts) > 1000, `too few cases: ${counts}`);

    // The interface itself against the product: the values of the plug-in, as sift prints them.
    const products = pairs.map((pair, p) => ({ ...pair, report: reports[p] })).filter(({ eom, pattern, messages }) =>
        eom === 0 && /^[^-]/.test(pattern) && !messages.includes('')).slice(0, 400);
    for (const { pattern, messages, report } of products) {
        const lines = linesOf('sift', ['--json', '--misses', '--trace', '--hex', pattern], messages.join('\n')).map(JSON.parse);
        const printed = lines.filter((line) => ['match', 'miss', 'error'].includes(line.type))
            .map((line) => (line.values ? { ...line, values: Object.values(line.values) } : line));
        assert.deepEqual(printed, report.rows ?? [{ type: 'error', ...report.fault }], pattern);
    }
    console.log(`5000 pairs: ${counts} matches, misses, errors as natively; ${products.length} pairs as in sift`);
}

async function testBox(page) {
    await type(page, 'pattern', "'T=' t:float=.# 'H=' h:integer");
    await page.waitForFunction(() => document.querySelector('#try-live').textContent.includes("Syntax error at 'h'"));
    assert.equal(await page.$eval('#try-paint .fault', (fault) => fault.textContent), 'h');
    await page.click('#try-suggest');
    assert.match(await textOf(page, 'result'), /[23] of 3 messages match/);
    await type(page, 'pattern', "'T=' t:float=.#");
    await type(page, 'messages', 'T=1.5\nT:2\n<b>\\x00');
    const text = await textOf(page, 'result');
    for (const part of ['1 of 3', '1.5', "':' instead of '='", 'it contains a byte 00', '<b>\\x00']) assert.ok(text.includes(part), part);
    await page.click('#try-hex');
    assert.equal(await textOf(page, 'messages'), '54 3D 31 2E 35\n54 3A 32\n3C 62 3E 00');
    await type(page, 'messages', '54 3D 3');
    assert.match(await textOf(page, 'notation'), /Line 1: an odd number/);
    await type(page, 'messages', '54 3D 37');
    const address = page.url(); // it changes when the typing pauses
    await page.waitForFunction((old) => location.href !== old, {}, address);
    const copy = await open(page.url());
    assert.match(await textOf(copy, 'result'), /1 of 1 message[^]*\b7\b/);
    await copy.type('.search input', 'gps pos');
    assert.equal(await copy.$eval('.found a', (link) => link.innerText), 'GPS receiver: position (NMEA GGA)\nRecipes for real devices');
    await copy.close();
}

// Each Try button shows what the page says beside it.
async function testExamples(page) {
    const examples = await page.evaluate(() => [...document.querySelectorAll('.try-button')].map((button, index) => {
        button.click();
        const codes = [...document.querySelectorAll('main :is(code.pattern, code.result, code.error)')];
        const own = codes.slice(codes.indexOf(document.querySelectorAll('code.pattern')[index]) + 1);
        const next = own.findIndex((code) => code.matches('.pattern'));
        const rows = [...document.querySelectorAll('#try-result tbody tr')].map((row) =>
            [...row.querySelectorAll('.value')].map((cell) => `${cell.dataset.label}=${cell.textContent}`).join(' ')
            || (row.querySelector('.verdict') ? 'no match' : 'match'));
        const fault = document.querySelector('#try-result .error')?.textContent;
        const plain = (text) => text.replace(/␣/g, ' ');
        return [own.slice(0, next < 0 ? own.length : next).map((code) => plain(code.textContent)),
            (fault === undefined ? rows : [fault]).map(plain)];
    }));
    for (const [said, shown] of examples) assert.deepEqual(shown, said);
    assert.ok(examples.length > 150);
    console.log(`${examples.length} Try buttons show what the page says`);
}

// In time of the processor, because other programs may keep the machine busy.
async function testSpeed(page) {
    await type(page, 'messages', Array.from({ length: 1000 }, (_, line) => `T=${line / 8} H${line % 10 ? '=' : ':'}5`).join('\n'));
    const session = await page.createCDPSession();
    await session.send('Performance.enable', { timeDomain: 'threadTicks' });
    const spent = async () => (await session.send('Performance.getMetrics')).metrics
        .filter(({ name }) => /^(Script|Layout|RecalcStyle)Duration$/.test(name)).reduce((sum, { value }) => sum + value * 1000, 0);
    const times = [];
    while (times.length < 20) {
        const before = await spent();
        await type(page, 'pattern', `'T=' t${times.length}:float=.# 'H=' h:integer=#`);
        assert.match(await textOf(page, 'result'), /900 of 1,000 messages match/); // with the layout
        times.push(await spent() - before);
    }
    times.sort((one, other) => one - other);
    console.log(`an update with 1,000 messages takes ${times[10].toFixed(1)} ms (${times[0].toFixed(1)} to ${times[19].toFixed(1)})`);
}

async function testFallback() {
    const broken = path.replace(/\.html$/, '-broken.html');
    writeFileSync(broken, readFileSync(path, 'utf8').replace(/(id="try-module">\s*)..../, '$1AAAA'));
    for (const page of [await open(pathToFileURL(broken).href), await open(url, (blank) => blank.setJavaScriptEnabled(false))]) {
        assert.equal(await page.$eval('#try', (box) => getComputedStyle(box).display), 'none');
        assert.equal((await page.$$('.try-button')).length, 0);
    }
}

async function testLooks() {
    const folder = join(dirname(path), 'screenshots');
    mkdirSync(folder, { recursive: true });
    for (const [name, width, set] of [
        ['light', 1280, () => {}], ['phone', 420, () => {}], ['print', 800, (page) => page.emulateMediaType('print')],
        ['dark', 1280, (page) => page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: 'dark' }])]]) {
        const page = await open(url);
        await page.setViewport({ width, height: 1000 });
        await set(page);
        await page.addStyleTag({ content: 'main > section { content-visibility: visible !important; }' });
        await page.screenshot({ path: join(folder, `${name}.png`), fullPage: true });
        assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), `${name} scrolls sideways`);
        await page.evaluate(axe);
        for (const pattern of ["'T=' t:float=.# 'H'=", "'T=' t:float=.#"]) {
            await type(page, 'pattern', pattern);
            const { violations } = await page.evaluate(() => axe.run());
            assert.deepEqual(violations.map(({ id, nodes }) => [name, id, nodes[0].html, nodes[0].failureSummary]), []);
        }
        await page.close();
    }
}

try {
    const page = await testStart();
    await testEngine(page);
    await testBox(page);
    await testExamples(page);
    await testSpeed(await open(url));
    await testFallback();
    await testLooks();
    assert.deepEqual(complaints, []);
    console.log('The help page passed all tests.');
} finally {
    await browser.close();
}
