// Sites that show films as sites of today do: pages with a player, and media hosts with playlists, segments, sound and
// subtitles apart. Each answer is made from the tables below, so every recording asks for the same.
//
// Hosts are names below "example"; the browser is told to find them all at two ports of this machine. Segments hold
// nothing that plays, but are as large as real ones, under the headers of real ones.

import { execFileSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { createServer as createPlain } from 'node:http';
import { createServer as createSecure } from 'node:https';
import { join } from 'node:path';
import { brotliCompressSync, deflateSync } from 'node:zlib';

const kHls = 'application/vnd.apple.mpegurl';
const kSegment = 300_000; // bytes: a response from 256,000 on may be a film by itself

const lines = (...parts) => parts.flat(Infinity).join('\n') + '\n';
const upTo = (count, make) => Array.from({ length: count }, (_, i) => make(i + 1));

const html = (title, body) =>
    ({ type: 'text/html; charset=utf-8', text: `<!DOCTYPE html>\n<title>${title}</title>\n${body}\n` });
const player = (title, play) =>
    html(title, `<video></video>\n<script src="/player.js"></script>\n<script>${play}</script>`);
const playlist = (...parts) => ({ type: kHls, text: lines('#EXTM3U', parts) });
const packed = (coding, answer) => ({ coding, ...answer });
const segment = (type, size = kSegment) => ({ type, size });

const variant = (bandwidth, height, uri, more = '') =>
    [`#EXT-X-STREAM-INF:BANDWIDTH=${bandwidth},RESOLUTION=${Math.round(height * 16 / 9)}x${height}${more}`, uri];
const rendition = (type, group, name, language, uri, isDefault) =>
    `#EXT-X-MEDIA:TYPE=${type},GROUP-ID="${group}",NAME="${name}",LANGUAGE="${language}",` +
    `DEFAULT=${isDefault ? 'YES' : 'NO'},AUTOSELECT=YES,URI="${uri}"`;
const filmOf = (count, seconds, uri, map) => playlist(
    '#EXT-X-VERSION:7', `#EXT-X-TARGETDURATION:${seconds}`, '#EXT-X-PLAYLIST-TYPE:VOD',
    map ? `#EXT-X-MAP:URI="${map}"` : [],
    upTo(count, (i) => [`#EXTINF:${seconds}.000,`, uri(i)]), '#EXT-X-ENDLIST');

/** The same answer under `count` paths. */
const numbered = (count, path, answer) => Object.fromEntries(upTo(count, (i) => [path(i), answer]));

// What players do: read the playlist, take a quality, its sound and its subtitles, and fetch segments of each.
const kPlayer = `
const get = (url) => fetch(url, { credentials: 'include' });
const text = async (url) => (await get(url)).text();
const attribute = (line, name) => (line.match(new RegExp('[:,]' + name + '="?([^",]*)')) || [])[1];
async function media(url, count) {
    url = new URL(url, location);
    const list = (await text(url)).split('\\n');
    const map = list.find((line) => line.startsWith('#EXT-X-MAP'));
    const parts = list.filter((line) => line && !line.startsWith('#')).slice(0, count);
    if (map) parts.unshift(attribute(map, 'URI'));
    for (const part of parts) await (await get(new URL(part, url))).arrayBuffer();
}
async function hls(url, height, { count = 3, sound, subtitles } = {}) {
    url = new URL(url, location);
    const list = (await text(url)).split('\\n');
    const of = (uri) => new URL(uri, url);
    const rendition = (type, language) =>
        list.find((line) => line.includes('TYPE=' + type) && attribute(line, 'LANGUAGE') === language);
    const at = list.findIndex((line) => line.includes('x' + height));
    await media(of(list[at + 1]), count);
    for (const language of sound || []) await media(of(attribute(rendition('AUDIO', language), 'URI')), count);
    for (const language of subtitles || []) await media(of(attribute(rendition('SUBTITLES', language), 'URI')), count);
}`;

/** A live window: three segments, one further with each reading. */
function live() {
    let first = 7200;
    return () => playlist('#EXT-X-VERSION:3', '#EXT-X-TARGETDURATION:2', `#EXT-X-MEDIA-SEQUENCE:${++first}`,
        upTo(3, (i) => ['#EXTINF:2.000,', `live-${first + i}.ts`]));
}

const dashSet = (type, mime, representations) =>
    [`<AdaptationSet contentType="${type}" mimeType="${mime}">`,
        '<SegmentTemplate timescale="1000" duration="4000" initialization="$RepresentationID$/init.mp4" ' +
            'media="$RepresentationID$/$Number$.m4s"/>', representations, '</AdaptationSet>'];

const kSites = {
    'www.cinema.example': {
        '/film/harbour': player('The harbour', `(async () => {
            await hls('http://media.cinema.example/harbour/master.m3u8', 720);
            await media('http://media.cinema.example/harbour/1080/index.m3u8', 2);
        })()`),
    },
    'media.cinema.example': {
        '/harbour/master.m3u8': playlist(variant(900000, 360, '360/index.m3u8'),
            variant(2500000, 720, '720/index.m3u8'), variant(5000000, 1080, '1080/index.m3u8')),
        ...Object.fromEntries(['360', '720', '1080'].flatMap((height) => [
            [`/harbour/${height}/index.m3u8`, filmOf(15, 6, (i) => `part-${i}.ts`)],
            ...upTo(15, (i) => [`/harbour/${height}/part-${i}.ts`, segment('video/mp2t')])])),
    },
    'www.theatre.example': {
        '/play/42': player('A play in two languages', "hls('https://media.theatre.example/42/master.m3u8', 720, " +
            "{ sound: ['en', 'de'], subtitles: ['en', 'de'] })"),
    },
    'media.theatre.example': {
        '/42/master.m3u8': playlist('#EXT-X-INDEPENDENT-SEGMENTS',
            rendition('AUDIO', 'sound', 'English', 'en', 'sound/en/prog.m3u8', true),
            rendition('AUDIO', 'sound', 'Deutsch', 'de', 'sound/de/prog.m3u8', false),
            rendition('SUBTITLES', 'text', 'English', 'en', 'text/en/prog.m3u8', false),
            rendition('SUBTITLES', 'text', 'Deutsch', 'de', 'text/de/prog.m3u8', false),
            variant(1200000, 480, 'video/480/prog.m3u8', ',AUDIO="sound",SUBTITLES="text"'),
            variant(2800000, 720, 'video/720/prog.m3u8', ',AUDIO="sound",SUBTITLES="text"')),
        ...Object.fromEntries(['video/480', 'video/720', 'sound/en', 'sound/de'].flatMap((folder) => {
            const [type, ending] = folder.startsWith('video') ? ['video/mp4', 'mp4'] : ['audio/mp4', 'm4a'];
            return [[`/42/${folder}/prog.m3u8`, filmOf(20, 4, (i) => `${i}.${ending}`, `init.${ending}`)],
                [`/42/${folder}/init.${ending}`, segment(type, 900)],
                ...upTo(20, (i) => [`/42/${folder}/${i}.${ending}`, segment(type)])];
        })),
        ...Object.fromEntries(['en', 'de'].flatMap((language) => [
            [`/42/text/${language}/prog.m3u8`, filmOf(2, 40, (i) => `${i}.vtt`)],
            ...upTo(2, (i) => [`/42/text/${language}/${i}.vtt`,
                { type: 'text/vtt', text: 'WEBVTT\n\n00:01.000 --> 00:04.000\nHello.\n' }])])),
    },
    'www.news.example': {
        '/live': player('News, live', `(async () => {
            const channel = 'https://live.news.example/channel/';
            await hls(channel + 'master.m3u8', 540, { count: 3 });
            for (let i = 0; i < 4; ++i) await media(channel + 'mid/live.m3u8', 1);
        })()`),
        '/story/7': html('A story with a player', '<p>Text of the story.\n' +
            '<iframe src="https://player.video.example/embed/7" width="640" height="360"></iframe>'),
    },
    'live.news.example': {
        '/channel/master.m3u8': playlist(variant(800000, 360, 'low/live.m3u8'), variant(1800000, 540, 'mid/live.m3u8')),
        '/channel/mid/live.m3u8': live(),
        ...numbered(20, (i) => `/channel/mid/live-${7200 + i}.ts`, segment('video/mp2t')),
    },
    'player.video.example': {
        '/embed/7': player('Player', "media('/streams/7/480.m3u8', 1).then(() => hls('/streams/7/main.m3u8', 480))"),
        '/streams/7/main.m3u8': playlist(variant(1000000, 480, '480.m3u8'), variant(3000000, 1080, '1080.m3u8')),
        '/streams/7/480.m3u8': filmOf(12, 5, (i) => `480/${i}/chunk.ts`),
        ...numbered(12, (i) => `/streams/7/480/${i}/chunk.ts`, segment('video/mp2t')),
    },
    'www.lectures.example': {
        '/lecture/3': player('Lecture 3', `(async () => {
            const base = 'https://media.lectures.example/3/';
            await text(base + 'manifest.mpd');
            for (const folder of ['v720', 'a-en'])
                for (const name of ['/init.mp4', '/1.m4s', '/2.m4s', '/3.m4s'])
                    await (await get(base + folder + name)).arrayBuffer();
        })()`),
    },
    'media.lectures.example': {
        '/3/manifest.mpd': {
            type: 'application/dash+xml',
            text: lines('<?xml version="1.0" encoding="UTF-8"?>',
                '<MPD xmlns="urn:mpeg:dash:schema:mpd:2011" type="static" mediaPresentationDuration="PT1M20S"><Period>',
                dashSet('video', 'video/mp4', [
                    '<Representation id="v480" width="854" height="480" bandwidth="1024000"/>',
                    '<Representation id="v720" width="1280" height="720" bandwidth="2048000"/>']),
                dashSet('audio', 'audio/mp4', ['<Representation id="a-en" bandwidth="128000"/>']),
                '</Period></MPD>'),
        },
        ...Object.fromEntries(['v480', 'v720', 'a-en'].flatMap((folder) => {
            const type = folder.startsWith('v') ? 'video/mp4' : 'audio/mp4';
            return [[`/3/${folder}/init.mp4`, segment(type, 900)],
                ...upTo(20, (i) => [`/3/${folder}/${i}.m4s`, segment(type)])];
        })),
    },
    'www.vault.example': {
        '/watch/9': player('The vault', "hls('https://media.vault.example/9/master.m3u8', 720)"),
    },
    'media.vault.example': {
        '/9/master.m3u8': packed('br',
            playlist(variant(1500000, 480, '480/index.m3u8'), variant(3000000, 720, '720/index.m3u8'))),
        '/9/480/index.m3u8': packed('br', filmOf(30, 4, (i) => `${i}.ts`)),
        '/9/720/index.m3u8': packed('deflate', filmOf(30, 4, (i) => `${i}.ts`)),
        ...numbered(30, (i) => `/9/720/${i}.ts`, segment('video/mp2t')),
    },
    // One page whose address changes; the streams have addresses without an ending, one inside another's folder.
    'app.shows.example': {
        '/': player('Shows', `(async () => {
            for (const show of ['1', '2']) {
                const { stream, title } = await (await get('/api/shows/' + show)).json();
                history.pushState(null, '', '/show/' + show);
                document.title = title;
                await hls(stream, 720);
            }
        })()`),
        ...Object.fromEntries(['1', '2'].flatMap((show) => [
            [`/api/shows/${show}`,
                { type: 'application/json', text: `{"title":"Show ${show}","stream":"/api/streams/${show}"}` }],
            [`/api/streams/${show}`,
                playlist(variant(1100000, 480, `${show}/480`), variant(2200000, 720, `${show}/720`))],
            [`/api/streams/${show}/720`,
                filmOf(10, show === '1' ? 6 : 9, (i) => `720/segments/${i}.mp4`, '720/init.mp4')],
            [`/api/streams/${show}/720/init.mp4`, segment('video/mp4', 900)],
            ...upTo(10, (i) => [`/api/streams/${show}/720/segments/${i}.mp4`, segment('video/mp4')])])),
    },
    'www.radio.example': {
        '/listen': player('Radio', "text('http://streams.radio.example/listen')"),
    },
    'streams.radio.example': {
        '/listen': {
            type: 'audio/x-mpegurl',
            text: lines('#EXTM3U', '#EXTINF:-1,Radio One', 'http://one.radio.example:8000/one.mp3',
                '#EXTINF:-1,Radio Two', 'http://two.radio.example:8000/two.aac'),
        },
    },
};

const kPackers = { br: brotliCompressSync, deflate: deflateSync };

function answer(request, response) {
    const host = request.headers.host;
    const answers = { '/player.js': { type: 'text/javascript', text: kPlayer }, ...kSites[host] };
    const found = answers[request.url];
    const { type, text, size, coding } = (typeof found === 'function' ? found() : found) ??
        { type: 'text/plain', text: 'There is nothing here.\n' };
    const plain = text === undefined ? Buffer.alloc(size) : Buffer.from(text);
    const body = coding ? kPackers[coding](plain) : plain;
    response.statusCode = found ? 200 : 404;
    response.setHeader('Content-Type', type);
    response.setHeader('Content-Length', body.length);
    if (coding) response.setHeader('Content-Encoding', coding);
    if (request.headers.origin) {
        response.setHeader('Access-Control-Allow-Origin', request.headers.origin);
        response.setHeader('Access-Control-Allow-Credentials', 'true');
    }
    // Each host knows its visitor by a cookie of its own, which no other must see.
    if (!request.headers.cookie) response.setHeader('Set-Cookie', `visitor=of-${host}; Path=/`);
    response.end(body);
}

/** Serves all sites; gives the ports and a function that ends it. The certificate is made in `scratch`. */
export async function serveStreamSites(scratch) {
    const [key, cert] = ['key.pem', 'cert.pem'].map((name) => join(scratch, name));
    execFileSync('openssl', ['req', '-x509', '-newkey', 'rsa:2048', '-nodes', '-subj', '/CN=example', '-days', '1',
        '-keyout', key, '-out', cert], { stdio: 'ignore' });
    const servers = [createPlain(answer), createSecure({ key: readFileSync(key), cert: readFileSync(cert) }, answer)];
    const ports = await Promise.all(servers.map((server) => new Promise((resolve) =>
        server.listen(0, '127.0.0.1', () => resolve(server.address().port)))));
    const close = () => servers.forEach((server) => {
        server.closeAllConnections();
        server.close();
    });
    return { plain: ports[0], secure: ports[1], close };
}

/** The page of each recording. */
export const kStreamPages = {
    'hls-ts': 'http://www.cinema.example/film/harbour',
    'hls-fmp4': 'https://www.theatre.example/play/42',
    'hls-live': 'https://www.news.example/live',
    'hls-packed': 'https://www.vault.example/watch/9',
    'hls-iframe': 'https://www.news.example/story/7',
    'hls-app': 'https://app.shows.example/',
    dash: 'https://www.lectures.example/lecture/3',
    radio: 'http://www.radio.example/listen',
};
