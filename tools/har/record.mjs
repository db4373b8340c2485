// Records what a real browser exchanges with the loopback site, as HAR captures with bodies.
//
//   npm ci && node record.mjs ZAB_SITE FOLDER [CHROMIUM]
//
// ZAB_SITE is the built site; the captures go to FOLDER (tests/data/har). They are rewritten to one port and without
// the server's address, so that they say nothing of the machine that made them. Bodies of downloads are not kept by
// the browser, so the captures have none.

import { spawn } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { createInterface } from 'node:readline';
import { chromium } from 'playwright-core';

const kPort = 8080;       // in the captures
const kClickLimit = 5000; // milliseconds

const [siteProgram, folder, browserProgram = '/usr/bin/chromium'] = process.argv.slice(2);
if (!folder) {
    console.error('usage: record.mjs ZAB_SITE FOLDER [CHROMIUM]');
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

/** Each story gets a context, so a cookie of one is unknown to the next. */
const stories = {
    // The start page with all that it embeds, and pages that a click leads to.
    async pages(page, start) {
        await page.goto(start, { waitUntil: 'networkidle' });
        await page.goto(start + 'files/missing.zip');
        await page.goto(start + 'gzip/page.html');
        await page.goto(start + 'get/file.php?x=1');
    },
    // One click on each download that the start page offers, redirects included.
    async downloads(page, start) {
        await page.goto(start);
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
        await page.goto(start + 'session/');
        await download(page, 'a[href="/session/archive.zip"]');
        await download(page, 'a[href="/session/moved"]');
        await page.goto(start);
        await download(page, 'a[href="/private/archive.zip"]');
        await download(page, 'form button');
    },
    // What scripts fetch.
    async scripts(page, start) {
        await page.goto(start + 'page/frame.html');
        for (const query of ['attachment', 'octets', 'class', 'other-class'])
            await page.evaluate(async (url) => (await fetch(url)).arrayBuffer(), `/get/archive.zip?${query}`);
    },
    // A redirect that the browser cannot follow.
    async ftp(page, start) {
        for (const target of ['moved/ftp', 'moved/ftp-text']) await page.goto(start + target).catch(() => null);
    },
};

/** The capture without what belongs to one machine or one run. */
function portable(text, port) {
    const har = JSON.parse(text.replaceAll(`127.0.0.1:${port}`, `127.0.0.1:${kPort}`));
    for (const entry of har.log.entries) {
        for (const key of ['serverIPAddress', '_serverPort', '_securityDetails', 'connection']) delete entry[key];
    }
    return JSON.stringify(har, null, 1) + '\n';
}

const { site, port } = await startSite();
const scratch = mkdtempSync(join(tmpdir(), 'zab-har-'));
const browser = await chromium.launch({
    executablePath: browserProgram,
    args: ['--no-sandbox', '--headless', '--disable-gpu', '--disable-quic', '--no-first-run',
        '--disable-background-networking', '--disable-component-update', '--disable-sync'],
});
try {
    for (const [name, story] of Object.entries(stories)) {
        const path = join(scratch, `${name}.har`);
        const context = await browser.newContext({
            recordHar: { path, content: 'embed', mode: 'full' },
            httpCredentials: { username: 'visitor', password: 'open:sesame' },
        });
        await story(await context.newPage(), `http://127.0.0.1:${port}/`);
        await context.close();
        const capture = portable(readFileSync(path, 'utf8'), port);
        writeFileSync(join(folder, `chromium-${name}.har`), capture);
        console.log(`chromium-${name}.har: ${JSON.parse(capture).log.entries.length} entries, ${capture.length} bytes`);
    }
} finally {
    await browser.close();
    site.kill();
    rmSync(scratch, { recursive: true });
}
