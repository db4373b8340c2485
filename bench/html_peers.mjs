// What the npm parsers of HTML need to find the links that the module finds: the same elements and attributes,
// absolute addresses, each once, in page order.

import { Parser } from 'htmlparser2';
import { parse } from 'parse5';

export const pageUrl = 'https://archive.example.org/software/index.html';

const linkAttributes = {
  a: ['href'], area: ['href'], link: ['href'], form: ['action'], iframe: ['src'], frame: ['src'], img: ['src', 'srcset'],
  source: ['src', 'srcset'], video: ['src', 'poster'], audio: ['src'], embed: ['src'], object: ['data'],
};
// Of a page's parts, hints and documents only the last are links.
const partRelations = /(^|\s)(stylesheet|icon|preload|prefetch|modulepreload|preconnect|dns-prefetch)(\s|$)/i;
const schemes = new Set(['http:', 'https:', 'ftp:', 'mms:']);

class Links {
  #found = new Map();
  #base = pageUrl;

  element(name, attributes) {
    if (name === 'base' && attributes.href) this.#base = new URL(attributes.href, pageUrl).href;
    if (name === 'link' && partRelations.test(attributes.rel ?? '')) return;
    for (const attribute of linkAttributes[name] ?? []) {
      const value = attributes[attribute];
      if (value === undefined) continue;
      for (const reference of attribute === 'srcset' ? value.split(',').map((part) => part.trim().split(' ')[0]) : [value])
        this.#add(reference);
    }
  }

  #add(reference) {
    if (reference === '' || reference.startsWith('#')) return;
    const url = new URL(reference, this.#base);
    if (!schemes.has(url.protocol)) return;
    const { href } = url;
    const key = href.split('#', 1)[0];
    if (!this.#found.has(key)) this.#found.set(key, href);
  }

  get all() { return [...this.#found.values()]; }
}

/// By peer: the links of a page. The texts of links are not gathered, which is less than the module does.
export const linksOf = {
  htmlparser2: (markup) => {
    const links = new Links();
    const parser = new Parser({ onopentag: (name, attributes) => links.element(name, attributes) });
    parser.write(markup);
    parser.end();
    return links.all;
  },
  parse5: (markup) => {
    const links = new Links();
    const open = [parse(markup)];
    while (open.length > 0) {
      const node = open.pop();
      if (node.tagName) links.element(node.tagName, Object.fromEntries(node.attrs.map(({ name, value }) => [name, value])));
      for (let i = (node.childNodes?.length ?? 0) - 1; i >= 0; --i) open.push(node.childNodes[i]);
    }
    return links.all;
  },
};

/// What one list has and the other has not.
export function difference(ours, theirs) {
  const mine = new Set(ours), other = new Set(theirs);
  return { onlyOurs: ours.filter((url) => !other.has(url)), onlyTheirs: theirs.filter((url) => !mine.has(url)) };
}
