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
    if (!meta.fileSet) meta.fileSet = new Set(['n', 'l', 'w'].flatMap((trie) => meta.files[trie].map((hex) => trie + '-' + hex)));
    const names = [nodeOf(meta, 'n', query), nodeOf(meta, 'l', query)];
    for (const word of new Set(queryWords(query))) names.push(nodeOf(meta, 'w', word));
    return Array.from(new Set(names.filter((name) => name && meta.fileSet.has(name))));
  }

  /** BM25 scores (lower is better) of the entries holding every word, keyed by id, with
   *  their order; the full-text index's own formula, parameters and order of operations. */
  function fullTextScores(meta, shards, words) {
    const { k1, b, weights } = meta.ranking.bm25;
    const rows = meta.count;
    const averageLength = meta.tokens / rows;
    const unique = Array.from(new Set(words));
    const lists = new Map();
    for (const word of unique) {
      const shard = shards[nodeOf(meta, 'w', word)];
      const list = shard && Object.prototype.hasOwnProperty.call(shard, word) ? shard[word] : [];
      lists.set(word, list);
    }
    const scores = new Map();
    if (unique.some((word) => lists.get(word).length === 0)) return scores;
    const idf = new Map();
    for (const word of unique) {
      const hits = lists.get(word).length;
      const value = Math.log((rows - hits + 0.5) / (hits + 0.5));
      idf.set(word, value <= 0 ? 1e-6 : value);
    }
    // Walk the shortest list; look the others up by id: linear in the postings read.
    const byLength = unique.slice().sort((x, y) => lists.get(x).length - lists.get(y).length);
    const maps = byLength.slice(1).map((word) => new Map(lists.get(word).map((p) => [p[0], p])));
    for (const first of lists.get(byLength[0])) {
      const postings = new Map([[byLength[0], first]]);
      let all = true;
      for (let i = 0; i < maps.length && all; ++i) {
        const found = maps[i].get(first[0]);
        if (found) postings.set(byLength[i + 1], found);
        else all = false;
      }
      if (!all) continue;
      let score = 0;
      for (const word of words) {
        const p = postings.get(word);
        const frequency = p[1] * weights[0] + p[2] * weights[1];
        score += idf.get(word) * ((frequency * (k1 + 1.0)) / (frequency + k1 * (1 - b + (b * p[3]) / averageLength)));
      }
      scores.set(first[0], { score: -1.0 * score, order: first[4] });
    }
    return scores;
  }

  /**
   * The entries `query` matches, best first, at most `limit` (0 or absent: all that the loaded
   * shards hold), from `shards` (shard name -> its data; a missing shard holds nothing).
   * Each hit is { id, tier (the tier's key), score, order }.
   */
  function rankLoaded(meta, shards, query, limit) {
    if (typeof query !== 'string' || query === '') return [];
    const keys = meta.ranking.tiers.map((tier) => tier.key);
    const best = new Map();
    const consider = (id, tier, score, order) => {
      const rank = keys.indexOf(tier);
      const seen = best.get(id);
      if (!seen || rank < seen.rank) best.set(id, { id, tier, rank, score, order });
    };
    for (const [id, name, order] of shards[nodeOf(meta, 'n', query)] || []) {
      if (name === query) consider(id, 'exactName', 0, order);
      else if (name.startsWith(query)) consider(id, 'namePrefix', 0, order);
    }
    for (const [id, name, order] of shards[nodeOf(meta, 'l', query)] || [])
      if (lastComponent(name) === query) consider(id, 'lastComponent', 0, order);
    const words = queryWords(query);
    if (words.length > 0)
      for (const [id, hit] of fullTextScores(meta, shards, words)) consider(id, 'fullText', hit.score, hit.order);
    const hits = Array.from(best.values());
    hits.sort((x, y) => x.rank - y.rank || x.score - y.score || x.order - y.order);
    const shown = limit > 0 ? hits.slice(0, limit) : hits;
    return shown.map(({ id, tier, score, order }) => ({ id, tier, score, order }));
  }

  /** The entry block files holding `ids`. */
  function blocksFor(meta, ids) {
    return Array.from(new Set(ids.map((id) => 'e-' + Math.floor(id / meta.blockSize))));
  }

  /** The entry `id` from loaded blocks: { name, type, entityType, functionType, purpose, deprecated, path }. */
  function entryOf(meta, shards, id) {
    const block = shards['e-' + Math.floor(id / meta.blockSize)];
    const row = block && block[id % meta.blockSize];
    if (!row) return null;
    const [name, type, entityType, functionType, purpose, deprecated, path] = row;
    return { name, type, entityType, functionType, purpose, deprecated, path };
  }

  const api = { queryWords, shardsFor, rankLoaded, blocksFor, entryOf };
  if (typeof module !== 'undefined' && module.exports) module.exports = api;
  else root.refpageSearchRank = api;
})(typeof globalThis !== 'undefined' ? globalThis : this);
