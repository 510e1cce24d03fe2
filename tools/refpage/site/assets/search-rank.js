// Ranks the site's search data for a query exactly as `refpage find` does, reading only
// the shards the query needs (see Search.hpp for the files). Pure: no DOM, no loading, no
// state kept between calls; search.js loads the shards that shardsFor names and passes them in.
//
// Order: tier (the first one an entry matches), then BM25 in the full-text tier (lower
// first, over the whole set's statistics), then the entry's `order`: current before
// deprecated, shorter names (in characters), names by code point, index order.
(function (root) {
  'use strict';

  /** Words of a query as the full-text tokenizer splits them: runs of letters, numbers
   *  and private-use characters, case folded; each word once, in first-seen order too. */
  function queryWords(text) {
    return (text.match(/[\p{L}\p{N}\p{Co}]+/gu) || []).map((word) => word.toLowerCase());
  }

  /** Trie key of a text: its code points with ASCII A-Z lowered. */
  function keyOf(text) {
    return Array.from(text, (c) => (c >= 'A' && c <= 'Z' ? c.toLowerCase() : c));
  }

  function hexOf(key) {
    return Array.from(new TextEncoder().encode(key), (b) => b.toString(16).padStart(2, '0')).join('');
  }

  /** The node of trie `trie` ('n' names, 'l' last components, 'w' words) that holds `text`. */
  function nodeOf(meta, trie, text) {
    const points = keyOf(text);
    if (points.length === 0) return null;
    if (!meta.splitSets) meta.splitSets = {};
    if (!meta.splitSets[trie]) meta.splitSets[trie] = new Set(meta.split[trie]);
    const split = meta.splitSets[trie];
    let length = 1;
    while (length < points.length && split.has(points.slice(0, length).join(''))) ++length;
    return trie + '-' + hexOf(points.slice(0, length).join(''));
  }

  function lastComponent(name) {
    return name.slice(name.lastIndexOf('.') + 1);
  }

  /** The shard files `query` needs that exist, without repeats. */
  function shardsFor(meta, query) {
    if (typeof query !== 'string' || query === '') return [];
    if (!meta.fileSet)
      meta.fileSet = new Set(['n', 'l', 'w'].flatMap((trie) => meta.files[trie].split(' ').map((hex) => trie + '-' + hex)));
    const names = [nodeOf(meta, 'n', query), nodeOf(meta, 'l', query)];
    for (const word of new Set(queryWords(query))) names.push(nodeOf(meta, 'w', word));
    return Array.from(new Set(names.filter((name) => name && meta.fileSet.has(name))));
  }

  const STRIDE = 5;  // a posting: id, name hits, purpose hits, entry words, order

  /** What the loaded shards hold of `word`: null when nothing; else { count, postings (flat,
   *  or for a long word its top ones), has(id), hits(id) -> [name hits, purpose hits], full
   *  (the f- file with all its postings, for a long word) }. */
  function wordOf(meta, shards, word) {
    const shard = shards[nodeOf(meta, 'w', word)];
    if (!shard || !Object.prototype.hasOwnProperty.call(shard, word)) return null;
    const data = shard[word];
    if (Array.isArray(data)) {
      let at = null;
      const index = () => {
        if (!at) {
          at = new Map();
          for (let k = 0; k < data.length; k += STRIDE) at.set(data[k], k);
        }
        return at;
      };
      return {
        count: data.length / STRIDE,
        postings: data,
        long: false,
        has: (id) => index().has(id),
        hits: (id) => { const k = index().get(id); return [data[k + 1], data[k + 2]]; },
      };
    }
    if (!data.decoded) {
      const text = atob(data.bits);
      const bits = new Uint8Array(text.length);
      for (let i = 0; i < text.length; ++i) bits[i] = text.charCodeAt(i);
      const except = new Map();
      for (let k = 0; k < data.except.length; k += 3) except.set(data.except[k], [data.except[k + 1], data.except[k + 2]]);
      Object.defineProperty(data, 'decoded', { value: { bits, except }, enumerable: false });
    }
    const { bits, except } = data.decoded;
    const full = shards['f-' + data.full];
    return {
      count: data.n,
      postings: full || data.top,
      long: true,
      complete: !!full,
      file: 'f-' + data.full,
      has: (id) => (bits[id >> 3] & (1 << (id & 7))) !== 0,
      hits: (id) => except.get(id) || data.mode,
    };
  }

  /** Further files `query` needs once its shards are loaded: the whole postings of a long
   *  word, when every word of the query is long and there are several. */
  function moreShardsFor(meta, shards, query) {
    const unique = Array.from(new Set(queryWords(query)));
    const words = unique.map((word) => wordOf(meta, shards, word));
    if (unique.length < 2 || words.some((word) => !word || !word.long)) return [];
    const shortest = words.reduce((x, y) => (y.count < x.count ? y : x));
    return shortest.complete ? [] : [shortest.file];
  }

  /** Calls found(id, score, order) for each entry holding every word, with its BM25 score
   *  (lower is better): the full-text index's own formula, parameters and order of operations.
   *  Reads each posting of the shortest list once and asks the other words about its entry. */
  function fullTextScores(meta, shards, words, found) {
    const { k1, b, weights } = meta.ranking.bm25;
    const rows = meta.count;
    const averageLength = meta.tokens / rows;
    const unique = Array.from(new Set(words));
    const known = unique.map((word) => wordOf(meta, shards, word));
    if (known.some((word) => !word || word.count === 0)) return;
    const idf = known.map((word) => {
      const value = Math.log((rows - word.count + 0.5) / (word.count + 0.5));
      return value <= 0 ? 1e-6 : value;
    });
    // Each query word (repeats included, as the full-text query has them) by its unique word.
    const slots = words.map((word) => unique.indexOf(word));
    // The driver: the shortest word whose postings are all here (a plain word, a long one loaded
    // whole), else a long word alone, whose top postings are the one-word ranking's first.
    let driver = -1;
    known.forEach((word, i) => {
      if ((!word.long || word.complete) && (driver < 0 || word.count < known[driver].count)) driver = i;
    });
    if (driver < 0) {
      if (unique.length > 1) return;  // moreShardsFor names the file needed first
      driver = 0;
    }
    const postings = known[driver].postings;
    const hits = new Array(known.length);
    for (let k = 0; k < postings.length; k += STRIDE) {
      const id = postings[k];
      let all = true;
      for (let i = 0; i < known.length && all; ++i) {
        if (i === driver) hits[i] = [postings[k + 1], postings[k + 2]];
        else if (known[i].has(id)) hits[i] = known[i].hits(id);
        else all = false;
      }
      if (!all) continue;
      const length = postings[k + 3];
      let score = 0;
      for (const slot of slots) {
        const frequency = hits[slot][0] * weights[0] + hits[slot][1] * weights[1];
        score += idf[slot] * ((frequency * (k1 + 1.0)) / (frequency + k1 * (1 - b + (b * length) / averageLength)));
      }
      found(id, -1.0 * score, postings[k + 4]);
    }
  }

  function before(x, y) {
    return x.rank - y.rank || x.score - y.score || x.order - y.order;
  }

  /** Keeps the best `limit` hits in order with one pass and a small sorted list; all of
   *  them, sorted once at the end, when `limit` is 0. */
  function Best(limit) {
    const kept = [];
    return {
      /** True when a hit of this rank, score and order would be kept: no object is made otherwise. */
      wants(rank, score, order) {
        if (limit === 0 || kept.length < limit) return true;
        return before({ rank, score, order }, kept[limit - 1]) < 0;
      },
      offer(hit) {
        if (limit === 0) {
          kept.push(hit);
          return;
        }
        if (kept.length === limit && before(hit, kept[limit - 1]) >= 0) return;
        let at = kept.length;
        while (at > 0 && before(hit, kept[at - 1]) < 0) --at;
        kept.splice(at, 0, hit);
        if (kept.length > limit) kept.pop();
      },
      list: () => (limit === 0 ? kept.sort(before) : kept),
    };
  }

  /**
   * The entries `query` matches, best first, at most `limit` (0 or absent: all that the loaded
   * shards hold), from `shards` (shard name -> its data; a missing shard holds nothing).
   * Each hit is { id, tier (the tier's key), score, order }.
   */
  function rankLoaded(meta, shards, query, limit) {
    if (typeof query !== 'string' || query === '') return [];
    const keys = meta.ranking.tiers.map((tier) => tier.key);
    // The name tiers first: few entries, each in its best tier.
    const named = new Map();
    const consider = (id, tier, order) => {
      const rank = keys.indexOf(tier);
      const seen = named.get(id);
      if (!seen || rank < seen.rank) named.set(id, { id, tier, rank, score: 0, order });
    };
    for (const [id, name, order] of shards[nodeOf(meta, 'n', query)] || []) {
      if (name === query) consider(id, 'exactName', order);
      else if (name.startsWith(query)) consider(id, 'namePrefix', order);
    }
    for (const [id, name, order] of shards[nodeOf(meta, 'l', query)] || [])
      if (lastComponent(name) === query) consider(id, 'lastComponent', order);
    const best = Best(limit > 0 ? limit : 0);
    for (const hit of named.values()) best.offer(hit);
    const words = queryWords(query);
    if (words.length > 0) {
      const fullText = keys.indexOf('fullText');
      fullTextScores(meta, shards, words, (id, score, order) => {
        if (best.wants(fullText, score, order) && !named.has(id)) best.offer({ id, tier: 'fullText', rank: fullText, score, order });
      });
    }
    return best.list().map(({ id, tier, score, order }) => ({ id, tier, score, order }));
  }

  /** The entry `id` as the loaded shards have it: from the name shards of `query` (which carry
   *  their entries whole), else from its entry block. null when neither is loaded. */
  function entryOf(meta, shards, id, query) {
    let row = null;
    for (const trie of ['n', 'l']) {
      const shard = typeof query === 'string' && query ? shards[nodeOf(meta, trie, query)] : null;
      const found = shard && shard.find((record) => record[0] === id);
      if (found) row = found.slice(3);
    }
    if (!row) {
      const block = shards['e-' + Math.floor(id / meta.blockSize)];
      row = block ? block[id % meta.blockSize] : null;
    }
    if (!row) return null;
    const [name, type, entityType, functionType, purpose, deprecated, path] = row;
    return { name, type, entityType, functionType, purpose, deprecated, path };
  }

  /** The entry block files holding those of `ids` that the name shards of `query` do not hold. */
  function blocksFor(meta, shards, ids, query) {
    const missing = ids.filter((id) => !entryOf(meta, shards, id, query));
    return Array.from(new Set(missing.map((id) => 'e-' + Math.floor(id / meta.blockSize))));
  }

  const api = { queryWords, shardsFor, moreShardsFor, rankLoaded, blocksFor, entryOf };
  if (typeof module !== 'undefined' && module.exports) module.exports = api;
  else root.refpageSearchRank = api;
})(typeof globalThis !== 'undefined' ? globalThis : this);
