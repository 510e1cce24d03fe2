// Ranks the lookup index's entries for a query exactly as `refpage find` does.
// Pure: no DOM, no framework, no state kept between calls. `data` is the object the
// lookup index exports (refpageSearchData): its ranking description (tiers in order,
// BM25 parameters) and its entries in index order, each with its words as the
// full-text index holds them.
//
// Order: tier (the first one an entry matches), then BM25 in the full-text tier
// (lower first), then current before deprecated, then shorter names (in characters),
// then names by code point, then index order.
(function (root) {
  'use strict';

  /** Words of a query as the full-text tokenizer splits them: runs of letters, numbers
   *  and private-use characters, case folded. */
  function queryWords(text) {
    return (text.match(/[\p{L}\p{N}\p{Co}]+/gu) || []).map((word) => word.toLowerCase());
  }

  function lastComponent(name) {
    return name.slice(name.lastIndexOf('.') + 1);
  }

  /** Compares by code point, as SQLite compares UTF-8 bytes. */
  function compareCodePoints(a, b) {
    const x = Array.from(a, (c) => c.codePointAt(0));
    const y = Array.from(b, (c) => c.codePointAt(0));
    for (let i = 0; i < Math.min(x.length, y.length); ++i) if (x[i] !== y[i]) return x[i] - y[i];
    return x.length - y.length;
  }

  /** BM25 scores (lower is better) of the entries holding every word, keyed by index; the
   *  full-text index's own formula, parameters and order of operations. */
  function fullTextScores(data, words) {
    const { k1, b, weights } = data.ranking.bm25;
    const entries = data.entries;
    const rows = entries.length;
    let tokens = 0;
    for (const entry of entries) tokens += entry.words[0].length + entry.words[1].length;
    const averageLength = tokens / rows;
    const idf = words.map((word) => {
      let hits = 0;
      for (const entry of entries) if (entry.words[0].includes(word) || entry.words[1].includes(word)) ++hits;
      const value = Math.log((rows - hits + 0.5) / (hits + 0.5));
      return value <= 0 ? 1e-6 : value;
    });
    const scores = new Map();
    entries.forEach((entry, index) => {
      const frequencies = words.map(() => 0);
      entry.words.forEach((column, c) => {
        for (const token of column)
          words.forEach((word, i) => {
            if (token === word) frequencies[i] += weights[c];
          });
      });
      if (frequencies.some((f) => f === 0)) return;
      const length = entry.words[0].length + entry.words[1].length;
      let score = 0;
      words.forEach((_, i) => {
        score += idf[i] * ((frequencies[i] * (k1 + 1.0)) / (frequencies[i] + k1 * (1 - b + (b * length) / averageLength)));
      });
      scores.set(index, -1.0 * score);
    });
    return scores;
  }

  /**
   * The entries `query` matches, best first, at most `limit` (0 or absent: all).
   * Each hit is { entry, index, tier (the tier's key), score }.
   */
  function rankEntries(data, query, limit) {
    if (typeof query !== 'string' || query === '') return [];
    const words = queryWords(query);
    const scores = words.length > 0 ? fullTextScores(data, words) : new Map();
    const tiers = {
      exactName: (entry) => entry.name === query,
      lastComponent: (entry) => lastComponent(entry.name) === query,
      namePrefix: (entry) => entry.name.startsWith(query),
      fullText: (entry, index) => scores.has(index),
    };
    const keys = data.ranking.tiers.map((tier) => tier.key);
    const hits = [];
    data.entries.forEach((entry, index) => {
      const tier = keys.findIndex((key) => tiers[key](entry, index));
      if (tier < 0) return;
      hits.push({ entry, index, tier: keys[tier], rank: tier, score: scores.has(index) && keys[tier] === 'fullText' ? scores.get(index) : 0 });
    });
    hits.sort(
      (x, y) =>
        x.rank - y.rank ||
        x.score - y.score ||
        Number(x.entry.deprecated) - Number(y.entry.deprecated) ||
        Array.from(x.entry.name).length - Array.from(y.entry.name).length ||
        compareCodePoints(x.entry.name, y.entry.name) ||
        x.index - y.index,
    );
    const shown = limit > 0 ? hits.slice(0, limit) : hits;
    return shown.map(({ entry, index, tier, score }) => ({ entry, index, tier, score }));
  }

  const api = { rankEntries, queryWords };
  if (typeof module !== 'undefined' && module.exports) module.exports = api;
  else root.refpageSearchRank = api;
})(typeof globalThis !== 'undefined' ? globalThis : this);
