// Runs the benchmarks and the peers on the same bytes, and prints one table of ratios.
//
//     node bench/report.mjs --build build/host-release [--filter REGEX]
//
// The peers are installed from bench/package.json on first use. Every time is the best of several runs, in processor
// time (for a peer the wall clock where that is less), so that the machine's other work disturbs it least. Exit status 1:
// a target is missed, or a time grows faster than its input.

import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, readFileSync } from 'node:fs';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';

const here = dirname(fileURLToPath(import.meta.url));
const { values: options } = parseArgs({
  options: {
    build: { type: 'string', default: join(here, '../build/host-release') },
    filter: { type: 'string', default: '.' },
  },
});
const build = resolve(options.build);
const zabBench = join(build, 'zab_bench');
const inputs = join(build, 'bench-inputs');
const inputOf = (name) => join(inputs, name.replace('/', ' '));

if (!existsSync(join(here, 'node_modules')))
  execFileSync('npm', ['ci', '--no-audit', '--no-fund', '--loglevel=error'], { cwd: here, stdio: 'inherit' });

// What a peer must do to the same bytes: parse them whole, and say enough to show that it did.
const { default: HLS } = await import('hls-parser');
const { Parser: M3u8Parser } = await import('m3u8-parser');
const { parse: parseMpd } = await import('mpd-parser');
const { createFile } = await import('mp4box');
const { linksOf, difference, pageUrl } = await import('./html_peers.mjs');

const peers = {
  'm3u8-parser': (bytes) => {
    const parser = new M3u8Parser();
    parser.push(bytes.toString());
    parser.end();
    return (parser.manifest.playlists ?? parser.manifest.segments).length;
  },
  'hls-parser': (bytes) => {
    const playlist = HLS.parse(bytes.toString());
    return (playlist.variants ?? playlist.segments).length;
  },
  'mpd-parser': (bytes) => parseMpd(bytes.toString(), { manifestUri: 'https://example.com/a.mpd' }).playlists.length,
  mp4box: (bytes) => {
    const file = createFile();
    let tracks = 0;
    file.onReady = (info) => { tracks = info.tracks.length; };
    const buffer = new Uint8Array(bytes).buffer;
    buffer.fileStart = 0;
    file.appendBuffer(buffer);
    return tracks;
  },
  htmlparser2: (bytes) => linksOf.htmlparser2(bytes.toString()).length,
  parse5: (bytes) => linksOf.parse5(bytes.toString()).length,
};

// How many times faster than each peer, how many milliseconds at most, or how many times the work of another input.
const harvestedPage = 'harvest/page of 2 MB';
const targets = {
  'hls/media playlist': { peers: { 'm3u8-parser': 5, 'hls-parser': 5 } },
  'hls/master playlist': { peers: { 'm3u8-parser': 10, 'hls-parser': 10 } },
  'dash/manifest': { peers: { 'mpd-parser': 10 } },
  'mp4/head': { peers: { mp4box: 10 } },
  'youtube/watch page of 2 MB': { milliseconds: 10 },
  'decision/uninteresting responses': { responses: 10_000 },
  'decision/downloads': { responses: 10_000 },
  [harvestedPage]: { peers: { htmlparser2: 3, parse5: 5 } },
  'capture/playlist in chunks': { timesOf: 'capture/playlist at once', most: 3 },
  'capture/watch page in chunks': { timesOf: 'capture/watch page at once', most: 3 },
  'capture/page of videos in chunks': { timesOf: 'capture/page of videos at once', most: 3 },
  'streams/segments on a page of five streams': { timesOf: 'streams/segments on a page without streams', most: 1.2 },
};

// Twice the input takes about twice the time; an input of a few kilobytes disappears in the noise.
const kGrowthAllowed = 3;

function bestOf(run) {
  let best = Infinity;
  const end = performance.now() + 2000;
  for (let runs = 0; runs < 5 || performance.now() < end; ++runs) {
    const start = performance.now();
    const cpu = process.cpuUsage();
    if (!(run() > 0)) throw new Error('a peer found nothing');
    const { user, system } = process.cpuUsage(cpu);
    best = Math.min(best, performance.now() - start, (user + system) / 1000);
  }
  return best;
}

/// { "parser/input": { "1": {ms, bytes, allocations, peak}, "2": ..., "floor": ... } }
function ours() {
  const json = execFileSync(zabBench, [
    '--benchmark_format=json', '--benchmark_repetitions=5', '--benchmark_min_time=0.02',
    `--benchmark_filter=${options.filter}`,
  ], { maxBuffer: 1 << 28, stdio: ['ignore', 'pipe', 'ignore'] });
  const rows = {};
  for (const run of JSON.parse(json).benchmarks) {
    if (run.run_type !== 'iteration') continue;
    const [parser, input, variant] = run.name.replace(/\/repeats:.*/, '').split('/');
    const row = (rows[`${parser}/${input}`] ??= {});
    const ms = run.cpu_time / 1e6;
    if (!(row[variant]?.ms <= ms)) row[variant] = { ms, ...run };
  }
  return rows;
}

function verdict(name, row, rows) {
  const target = targets[name];
  if (target?.timesOf) {
    const times = row[1].ms / rows[target.timesOf][1].ms;
    return { text: `${times.toFixed(2)} x ${target.timesOf}, wanted at most ${target.most}`, met: times <= target.most };
  }
  if (target?.milliseconds)
    return { text: `wanted below ${target.milliseconds} ms`, met: row[1].ms < target.milliseconds };
  if (target?.responses)
    return {
      text: `${(row[1].ms * 1e6 / target.responses).toFixed(0)} ns a response, ${(target.responses / row[1].ms / 1000).toFixed(1)} million a second`,
      met: true,
    };
  const texts = [];
  let met = true;
  for (const [peer, wanted] of Object.entries(target?.peers ?? {})) {
    const bytes = readFileSync(inputOf(name));
    const ms = bestOf(() => peers[peer](bytes));
    const times = ms / row[1].ms;
    met &&= times >= wanted;
    texts.push(`${times.toFixed(1)} x ${peer} (${ms.toFixed(1)} ms), wanted ${wanted}`);
  }
  return { text: texts.join('; '), met };
}

/// Whether the peers find the links on the page that the module finds; says what differs.
function sameLinks() {
  const file = inputOf(harvestedPage);
  const answer = execFileSync(join(build, 'zabprobe'), ['links', file, '--base', pageUrl], { maxBuffer: 1 << 28 });
  // The peers do not look into scripts.
  const ours = JSON.parse(answer).filter(({ source }) => source !== 'script').map(({ url }) => url);
  let same = true;
  for (const [peer, links] of Object.entries(linksOf)) {
    const { onlyOurs, onlyTheirs } = difference(ours, links(readFileSync(file, 'utf8')));
    console.log(`${harvestedPage}: ${ours.length} links; ${onlyOurs.length} that ${peer} has not, ${onlyTheirs.length} that only ${peer} has`);
    for (const url of [...onlyOurs, ...onlyTheirs].slice(0, 10)) console.log(`    ${url}`);
    same &&= onlyOurs.length + onlyTheirs.length === 0;
  }
  return same;
}

const names = execFileSync(zabBench, ['--benchmark_list_tests'], { encoding: 'utf8' });
for (const name of Object.keys(targets))
  if (!names.includes(`${name}/1`)) throw new Error(`a target without a benchmark: ${name}`);
mkdirSync(inputs, { recursive: true });
execFileSync(zabBench, [`--write-inputs=${inputs}`]);

const table = [['input', 'bytes', 'ms', 'MB/s', 'x floor', '2n : n', 'allocations', 'peak : bytes', 'peers']];
let failed = false;
const rows = ours();
for (const [name, row] of Object.entries(rows)) {
  const { text, met } = verdict(name, row, rows);
  const growth = row[2].ms / row[1].ms;
  failed ||= !met || growth > kGrowthAllowed;
  table.push([
    name, String(row[1].bytes), row[1].ms.toFixed(3), (row[1].bytes / row[1].ms / 1000).toFixed(0),
    (row[1].ms / row.floor.ms).toFixed(1), growth.toFixed(2) + (growth > kGrowthAllowed ? ' !' : ''),
    String(row[1].allocations), (row[1].peak / row[1].bytes).toFixed(1), text + (met ? '' : ' MISSED'),
  ]);
}
const compiler = readFileSync(join(build, 'CMakeCache.txt'), 'utf8');
const cached = (key) => compiler.match(new RegExp(`^${key}:[A-Z]+=(.*)$`, 'm'))?.[1] ?? '';
console.log(`${cached('CMAKE_CXX_COMPILER')} ${cached('CMAKE_BUILD_TYPE')}, node ${process.version}\n`);
const widths = table[0].map((_, column) => Math.max(...table.map((line) => line[column].length)));
for (const line of table)
  console.log(line.map((cell, i) => (i === 0 || i === 8 ? cell.padEnd(widths[i]) : cell.padStart(widths[i]))).join('  ').trimEnd());
console.log();
const linksAgree = sameLinks();
process.exit(failed || !linksAgree ? 1 : 0);
