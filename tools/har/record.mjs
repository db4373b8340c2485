// Records what real browsers exchange with the loopback site and with sites that show streams, as HAR captures with
// bodies.
//
//   npm ci && node record.mjs ZAB_SITE FOLDER [WHAT...]
//
// ZAB_SITE is the built site; the captures go to FOLDER (tests/data/har). WHAT is "chromium" or "firefox" (the loopback
// site in Debian's packages chromium and firefox-esr) or "streams" (the sites of stream_sites.mjs in chromium); all when
// none is named. They are rewritten to one port and without the server's address, so that they say nothing of the
// machine that made them, and keep bodies of text and small ones.

import { spawn } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';
import { chromium, firefox } from 'playwright-core';
import { kStreamPages, serveStreamSites } from './stream_sites.mjs';

const kPort = 8080;       // in the captures
const kClickLimit = 5000; // milliseconds
const kLargestBinary = 1000; // bytes
const kStreamText = /mpegurl|dash\+xml/; // text whose type does not say so
const kOfOneRun = ['serverIPAddress', '_serverPort', '_securityDetails', '_frameref', '_monotonicTime', 'connection'];

const browsers = {
    chromium: (more = []) => chromium.launch({
        executablePath: '/usr/bin/chromium',
        args: ['--no-sandbox', '--headless', '--disable-gpu', '--disable-quic', '--no-first-run',
            '--disable-background-networking', '--disable-component-update', '--disable-sync', ...more],
    }),
    // The channel makes it WebDriver BiDi, which an unchanged Firefox speaks.
    firefox: () => firefox.launch({ channel: 'moz-firefox', executablePath: '/usr/bin/firefox-esr' }),
};

const [siteProgram, folder, ...wanted] = process.argv.slice(2);
const recordings = { chromium: recordSite, firefox: recordSite, streams: recordStreams };
if (!folder || wanted.some((name) => !recordings[name])) {
    console.error(`usage: record.mjs ZAB_SITE FOLDER [${Object.keys(recordings).join('|')}]...`);
    process.exit(2);
}

/** Starts the site and gives it with its port. */
async function startSite() {
    const site = spawn(siteProgram, { stdio: ['ignore', 'pipe', 'inherit'] });
    for await (const line of createInterface({ input: site.stdout })) return { site, port: Number(line) };
    throw new Error('the site did not start');
}

/** Clicks a link or button that leads to a download, and waits until the file is there. */
async function download(page, selector) {
    const [file] = await Promise.all([
        page.waitForEvent('download', { timeout: kClickLimit }),
        page.locator(selector).first().click({ noWaitAfter: true }),
    ]);
    await file.path();
}

/** Opens a page; what becomes of an address that cannot be opened is in the capture. */
async function open(page, url) {
    await page.goto(url, { timeout: kClickLimit }).catch(() => null);
    await page.waitForLoadState('networkidle', { timeout: kClickLimit }).catch(() => null);
}

/** Stories of the loopback site. Each gets a context, so a cookie of one is unknown to the next. */
const stories = {
    // The start page with all that it embeds, and pages that a click leads to.
    async pages(page, start) {
        await open(page, start);
        await open(page, start + 'files/missing.zip');
        await open(page, start + 'gzip/page.html');
        await open(page, start + 'get/file.php?x=1');
    },
    // One click on each download that the start page offers, redirects included.
    async downloads(page, start) {
        await open(page, start);
        const targets = await page.locator('li a').evaluateAll((links) => links.map((a) => a.getAttribute('href')));
        const leadsToPage = ['/files/missing.zip', '/gzip/page.html', '/get/file.php?x=1'];
        for (const target of new Set(targets)) {
            if (!/^\/(files|moved|attach|parts|range|gzip|get)\//.test(target)) continue;
            if (leadsToPage.includes(target) || target.startsWith('/moved/ftp')) continue;
            await download(page, `a[href="${target}"]`);
        }
    },
    // The page that sets a cookie and what only its visitors get; credentials; a form.
    async visitor(page, start) {
        await open(page, start + 'session/');
        await download(page, 'a[href="/session/archive.zip"]');
        await download(page, 'a[href="/session/moved"]');
        await open(page, start);
        await download(page, 'a[href="/private/archive.zip"]');
        await download(page, 'form button');
    },
    // What scripts fetch.
    async scripts(page, start) {
        await open(page, start + 'page/frame.html');
        for (const query of ['attachment', 'octets', 'class', 'other-class'])
            await page.evaluate(async (url) => (await fetch(url)).arrayBuffer(), `/get/archive.zip?${query}`);
    },
    // A redirect that the browser cannot follow.
    async ftp(page, start) {
        for (const target of ['moved/ftp', 'moved/ftp-text']) await open(page, start + target);
    },
};

/** The capture without what belongs to one machine or one run, and without large binary bodies; a line per entry. */
function portable(text, port) {
    const { log } = JSON.parse(text.replaceAll(`127.0.0.1:${port}`, `127.0.0.1:${kPort}`));
    for (const entry of log.entries) {
        for (const key of kOfOneRun) delete entry[key];
        const { content } = entry.response;
        if (content.encoding !== 'base64') continue;
        const isText = kStreamText.test(content.mimeType);
        if (isText) content.text = Buffer.from(content.text, 'base64').toString();
        else if (content.size > kLargestBinary) delete content.text;
        if (isText || !content.text) delete content.encoding;
    }
    const { entries, ...rest } = log;
    const lines = entries.map((entry) => JSON.stringify(entry)).join(',\n');
    return `{"log":${JSON.stringify(rest).slice(0, -1)},"entries":[\n${lines}\n]}}\n`;
}

/** Tells one story to a browser that knows nothing yet, and writes its capture. */
async function record(browser, file, story, { port = kPort, ...options }) {
    const path = join(scratch, file);
    const context = await browser.newContext({ recordHar: { path, content: 'embed', mode: 'full' }, ...options });
    await story(await context.newPage());
    await context.close();
    const capture = portable(readFileSync(path, 'utf8'), port);
    writeFileSync(join(folder, file), capture);
    console.log(`${file}: ${JSON.parse(capture).log.entries.length} entries, ${capture.length} bytes`);
}

/** Tells every story of the loopback site to one browser. */
async function recordSite(name) {
    const { site, port } = await startSite();
    const browser = await browsers[name]();
    try {
        for (const [title, story] of Object.entries(stories))
            await record(browser, `${name}-${title}.har`, (page) => story(page, `http://127.0.0.1:${port}/`),
                { port, httpCredentials: { username: 'visitor', password: 'open:sesame' } });
    } finally {
        await browser.close();
        site.kill();
    }
}

/** Opens the page of every stream. */
async function recordStreams() {
    const sites = await serveStreamSites(scratch);
    const rules = `MAP *.example:80 127.0.0.1:${sites.plain},MAP *.example:443 127.0.0.1:${sites.secure}`;
    const browser = await browsers.chromium([`--host-resolver-rules=${rules}`]);
    try {
        for (const [title, url] of Object.entries(kStreamPages))
            await record(browser, `streams-${title}.har`, (page) => open(page, url), { ignoreHTTPSErrors: true });
    } finally {
        await browser.close();
        sites.close();
    }
}

const scratch = mkdtempSync(join(tmpdir(), 'zab-har-'));
try {
    for (const name of wanted.length ? wanted : Object.keys(recordings)) await recordings[name](name);
} finally {
    rmSync(scratch, { recursive: true });
}
