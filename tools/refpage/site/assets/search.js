// Search box of a generated reference site. No framework, nothing from the network:
// the data comes from _site/search-index.js (window.refpageSearchIndex: the lookup index's
// search data, each entry with its page's site path) and the ranking from _site/search-rank.js
// (window.refpageSearchRank, the same ranking as `refpage find`), both loaded by <script src>, so
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

  // The one ranking of `refpage find`, from search-rank.js: entry indexes, best first.
  var ranking = window.refpageSearchRank;
  if (!ranking || typeof ranking.rankEntries !== "function") return;
  function rank(index, query, max) {
    return ranking.rankEntries(index, query, max).map(function (hit) { return hit.index; });
  }

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
