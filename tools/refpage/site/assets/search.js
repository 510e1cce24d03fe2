// Search box of a generated reference site. No framework, nothing from the network: the
// search data is _site/search/*.js (see Search.hpp), loaded by <script src> only once the
// reader types, and then only the shards the query needs, so that it works from file://
// and a page costs the same with any number of entries. Ranking: search-rank.js, the same
// as `refpage find`. Results are built with textContent only.
(function () {
  "use strict";
  var box = document.getElementById("search-box");
  var list = document.getElementById("search-results");
  var ranking = window.refpageSearchRank;
  if (!box || !list || !ranking || typeof ranking.rankLoaded !== "function") return;
  var root = document.documentElement.getAttribute("data-root") || "";
  var limit = 20;
  var hits = [];
  var active = -1;
  var shards = {};   // shard name -> its data, once loaded
  var loading = {};  // shard name -> callbacks waiting for it
  var meta = null;
  var current = 0;   // the number of the latest query; older answers are dropped

  window.refpageSearchShard = function (name, data) { shards[name] = data; };

  // Loads the shards not yet loaded, then calls done(); a missing shard holds nothing.
  function load(names, done) {
    var waiting = 0;
    function one() { if (--waiting === 0) done(); }
    names.forEach(function (name) {
      if (Object.prototype.hasOwnProperty.call(shards, name)) return;
      ++waiting;
      if (loading[name]) { loading[name].push(one); return; }
      loading[name] = [one];
      var script = document.createElement("script");
      script.src = root + "_site/search/" + name + ".js";
      script.async = true;
      function finish() {
        if (!Object.prototype.hasOwnProperty.call(shards, name)) shards[name] = null;
        var callbacks = loading[name];
        delete loading[name];
        script.remove();
        callbacks.forEach(function (callback) { callback(); });
      }
      script.onload = finish;
      script.onerror = finish;
      document.head.appendChild(script);
    });
    if (waiting === 0) done();
  }

  function open(i) {
    if (i >= 0 && i < hits.length) window.location.href = root + hits[i].path;
  }

  function select(i) {
    var items = list.children;
    for (var k = 0; k < items.length; ++k) items[k].setAttribute("aria-selected", k === i ? "true" : "false");
    active = i;
    if (i >= 0) {
      box.setAttribute("aria-activedescendant", items[i].id);
      items[i].scrollIntoView({block: "nearest"});
    } else {
      box.removeAttribute("aria-activedescendant");
    }
  }

  function render(entries) {
    hits = entries;
    list.textContent = "";
    hits.forEach(function (entry, i) {
      var item = document.createElement("li");
      item.id = "search-hit-" + i;
      item.setAttribute("role", "option");
      var name = document.createElement("span");
      name.className = "hit-name";
      name.textContent = entry.name;
      item.appendChild(name);
      if (entry.type) {
        var kind = document.createElement("span");
        kind.className = "hit-kind";
        kind.textContent = " (" + entry.type + (entry.deprecated ? ", deprecated" : "") + ")";
        item.appendChild(kind);
      }
      if (entry.purpose) {
        var purpose = document.createElement("span");
        purpose.className = "hit-purpose";
        purpose.textContent = entry.purpose;
        item.appendChild(purpose);
      }
      item.addEventListener("mousedown", function (event) { event.preventDefault(); });
      item.addEventListener("click", function () { open(i); });
      list.appendChild(item);
    });
    list.hidden = hits.length === 0;
    box.setAttribute("aria-expanded", hits.length ? "true" : "false");
    select(hits.length ? 0 : -1);
  }

  function search() {
    var query = box.value.trim();
    var mine = ++current;
    if (!query) { render([]); return; }
    var start = window.performance ? performance.now() : 0;
    load(["meta"], function () {
      meta = shards.meta;
      if (!meta || mine !== current) return;
      load(ranking.shardsFor(meta, query), function () {
        if (mine !== current) return;
        load(ranking.moreShardsFor(meta, shards, query), function () {
          if (mine !== current) return;
          var ranked = ranking.rankLoaded(meta, shards, query, limit);
          var ids = ranked.map(function (hit) { return hit.id; });
          load(ranking.blocksFor(meta, shards, ids, query), function () {
            if (mine !== current) return;
            render(ids.map(function (id) { return ranking.entryOf(meta, shards, id, query); }).filter(Boolean));
            // For tests and benchmarks: which query the list shows, and how long it took.
            document.documentElement.setAttribute("data-search-query", query);
            if (window.performance) {
              document.documentElement.setAttribute("data-search-ms", String(performance.now() - start));
            }
          });
        });
      });
    });
  }

  box.addEventListener("input", search);
  box.addEventListener("keydown", function (event) {
    if (event.key === "ArrowDown" && hits.length) {
      select((active + 1) % hits.length);
      event.preventDefault();
    } else if (event.key === "ArrowUp" && hits.length) {
      select((active - 1 + hits.length) % hits.length);
      event.preventDefault();
    } else if (event.key === "Enter") {
      open(active);
      event.preventDefault();
    } else if (event.key === "Escape") {
      box.value = "";
      search();
    }
  });
  box.addEventListener("blur", function () { list.hidden = true; });
  box.addEventListener("focus", function () { if (hits.length) list.hidden = false; });
})();
