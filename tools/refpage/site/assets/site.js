// Comforts of a generated reference site, none needed to read it: code highlighting (a
// small highlighter of our own: comments, strings, numbers and keywords, built with text
// nodes only), a copy button on code blocks, "/" to focus the search box, and the package
// sidebar open on wide screens. No framework, nothing from the network.
(function () {
  "use strict";

  var keywords = {
    python: "False None True and as assert async await break class continue def del elif else except finally for from global if import in is lambda nonlocal not or pass raise return try while with yield",
    js: "async await break case catch class const continue default delete do else export extends false finally for function if import in instanceof let new null return super switch this throw true try typeof undefined var void while yield",
    c: "auto bool break case char class const constexpr continue default delete do double else enum explicit extern false float for if inline int long namespace new nullptr private protected public return short signed sizeof static struct switch template this throw true try typedef typename union unsigned using virtual void volatile while",
    shell: "case do done elif else esac export fi for function if in local return then until while",
  };
  var aliases = { py: "python", python3: "python", pycon: "python", javascript: "js", json: "js", cpp: "c", "c++": "c", h: "c", hpp: "c", sh: "shell", bash: "shell", console: "shell" };

  function languageOf(code) {
    var match = /(?:^|\s)language-([\w+#.-]+)/.exec(code.className);
    var name = match ? match[1].toLowerCase() : "python";
    return aliases[name] || name;
  }

  // Splits `text` into [kind, text] tokens; kind is "" for plain text.
  function tokens(text, language) {
    var words = new Set((keywords[language] || "").split(" ").filter(Boolean));
    var hashComments = language === "python" || language === "shell";
    var slashComments = language === "js" || language === "c";
    var out = [];
    var plain = "";
    function flush() { if (plain) { out.push(["", plain]); plain = ""; } }
    for (var i = 0; i < text.length;) {
      var c = text[i];
      var rest = text.slice(i, i + 2);
      var end = -1;
      var kind = "";
      if ((hashComments && c === "#") || (slashComments && rest === "//")) {
        end = text.indexOf("\n", i);
        if (end < 0) end = text.length;
        kind = "comment";
      } else if (slashComments && rest === "/*") {
        end = text.indexOf("*/", i + 2);
        end = end < 0 ? text.length : end + 2;
        kind = "comment";
      } else if (c === "'" || c === '"') {
        end = i + 1;
        while (end < text.length && text[end] !== c && text[end] !== "\n") end += text[end] === "\\" ? 2 : 1;
        end = Math.min(text.length, end + 1);
        kind = "string";
      } else if (/[0-9]/.test(c) && !/[\w.]/.test(text[i - 1] || " ")) {
        var number = /^(?:0x[0-9a-fA-F]+|\d[\d_]*(?:\.\d*)?(?:[eE][+-]?\d+)?j?)/.exec(text.slice(i));
        end = i + number[0].length;
        kind = "number";
      } else if (/[A-Za-z_]/.test(c) && !/\w/.test(text[i - 1] || " ")) {
        var word = /^[A-Za-z_]\w*/.exec(text.slice(i))[0];
        if (words.has(word)) { end = i + word.length; kind = "keyword"; }
        else { plain += word; i += word.length; continue; }
      }
      if (end > i) {
        flush();
        out.push([kind, text.slice(i, end)]);
        i = end;
      } else {
        plain += c;
        ++i;
      }
    }
    flush();
    return out;
  }

  function highlight(code) {
    if (code.getAttribute("data-highlighted")) return;
    var text = code.textContent;
    if (text.length > 200000) return;  // long blocks stay plain
    var parts = tokens(text, languageOf(code));
    code.textContent = "";
    parts.forEach(function (part) {
      if (!part[0]) { code.appendChild(document.createTextNode(part[1])); return; }
      var span = document.createElement("span");
      span.className = "tok-" + part[0];
      span.textContent = part[1];
      code.appendChild(span);
    });
    code.setAttribute("data-highlighted", "true");
  }

  function copyText(text, button) {
    function done(ok) {
      button.textContent = ok ? "Copied" : "Copy failed";
      setTimeout(function () { button.textContent = "Copy"; }, 1500);
    }
    if (navigator.clipboard && navigator.clipboard.writeText) {
      navigator.clipboard.writeText(text).then(function () { done(true); }, function () { done(false); });
    } else {
      done(false);
    }
  }

  document.querySelectorAll("pre > code").forEach(function (code) {
    highlight(code);
    var pre = code.parentNode;
    var button = document.createElement("button");
    button.type = "button";
    button.className = "copy";
    button.textContent = "Copy";
    button.setAttribute("aria-label", "Copy this code");
    button.addEventListener("click", function () { copyText(code.textContent, button); });
    var wrapper = document.createElement("div");
    wrapper.className = "code-block";
    pre.parentNode.insertBefore(wrapper, pre);
    wrapper.appendChild(pre);
    wrapper.appendChild(button);
  });

  document.addEventListener("keydown", function (event) {
    if (event.key !== "/" || event.ctrlKey || event.metaKey || event.altKey) return;
    var target = event.target;
    if (target && (target.isContentEditable || /^(INPUT|TEXTAREA|SELECT)$/.test(target.tagName))) return;
    var box = document.getElementById("search-box");
    if (!box) return;
    event.preventDefault();
    box.focus();
  });

  var sidebar = document.getElementById("sidebar");
  if (sidebar && window.matchMedia && window.matchMedia("(min-width: 64rem)").matches) sidebar.open = true;
  var current = sidebar && sidebar.querySelector("[aria-current=page]");
  if (current && sidebar.open) current.scrollIntoView({ block: "nearest" });
})();
