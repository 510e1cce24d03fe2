// Search box of a generated reference site. No framework, nothing from the network:
// the data comes from _site/search-index.js (window.refpageSearchIndex) and the ranking
// from _site/search-rank.js (window.refpageSearchRank), both loaded by <script src>, so
// it works from file:// without a server. Results are built with textContent only.
(function () {
  "use strict";
  var data = window.refpageSearchIndex;
  var box = document.getElementById("search-box");
  var list = document.getElementById("search-results");
  if (!data || !box || !list) return;
  var root = document.documentElement.getAttribute("data-root") || "";
  var limit = 20;
  var hits = [];
  var active = -1;

  // The ranking shipped in search-rank.js; a plain one when that file is absent.
  function fallbackRank(index, query, max) {
    var q = query.toLowerCase();
    var scored = [];
    index.entries.forEach(function (entry, i) {
      var name = entry.name.toLowerCase();
      var last = name.slice(name.lastIndexOf(".") + 1);
      var score = name === q ? 0 : last === q ? 1 : last.indexOf(q) === 0 ? 2 : name.indexOf(q) === 0 ? 3
                : name.indexOf(q) >= 0 ? 4 : -1;
      if (score >= 0) scored.push([score, entry.name.length, entry.name, i]);
    });
    scored.sort(function (a, b) {
      return a[0] - b[0] || a[1] - b[1] || (a[2] < b[2] ? -1 : a[2] > b[2] ? 1 : 0);
    });
    return scored.slice(0, max).map(function (s) { return s[3]; });
  }
  var rank = typeof window.refpageSearchRank === "function" ? window.refpageSearchRank : fallbackRank;

  function open(i) {
    if (i >= 0 && i < hits.length) window.location.href = root + data.entries[hits[i]].path;
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

  function show() {
    var query = box.value.trim();
    hits = query ? rank(data, query, limit) : [];
    list.textContent = "";
    hits.forEach(function (entryIndex, i) {
      var entry = data.entries[entryIndex];
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

  box.addEventListener("input", show);
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
      show();
    }
  });
  box.addEventListener("blur", function () { list.hidden = true; });
  box.addEventListener("focus", function () { if (hits.length) list.hidden = false; });
})();
