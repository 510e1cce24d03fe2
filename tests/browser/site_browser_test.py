#!/usr/bin/env python3
"""Browser tests of `refpage site` and `refpage docset`: the generated HTML loaded
from file:// into headless Chromium (through chromedriver), read back from the DOM,
searched with the keyboard, attacked with hostile page text, read as a reader would
(no raw markup, whole names, no broken image, anchors, axe-core at two widths),
photographed, and the docset's index checked against its documents.

usage: site_browser_test.py --refpage BIN --artifacts DIR [--pagegen BIN] [--corpus DIR] [unittest args]
Exits 77 (skipped) only when Chromium cannot start."""
import argparse
import json
import os
import pathlib
import plistlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from urllib.parse import unquote

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import pages  # noqa: E402

SKIP = 77
ARGS = None
BROWSER = None
WORK = None


def start_browser():
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    options = webdriver.ChromeOptions()
    options.binary_location = os.environ.get("CHROMIUM", "/usr/bin/chromium")
    for flag in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-background-networking",
                 "--disable-component-update", "--disable-sync", "--no-first-run",
                 "--user-data-dir=" + tempfile.mkdtemp(prefix="chromium-", dir=WORK)):
        options.add_argument(flag)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    driver = webdriver.Chrome(service=Service(os.environ.get("CHROMEDRIVER", "/usr/bin/chromedriver")),
                              options=options)
    driver.set_page_load_timeout(30)
    return driver


def refpage(*args, expect=0):
    result = subprocess.run([ARGS.refpage, *map(str, args)], capture_output=True, text=True, timeout=600)
    if expect is not None and result.returncode != expect:
        raise AssertionError("refpage %s exited %d\n%s" % (" ".join(map(str, args)), result.returncode,
                                                             result.stderr[-4000:]))
    return result


def url(path):
    return pathlib.Path(path).resolve().as_uri()


def dom(script, *args):
    return BROWSER.execute_script(script, *args)


def open_page(path):
    BROWSER.get(url(path))
    BROWSER.get_log("browser")  # earlier messages


def console_errors():
    """Errors in the browser's console, but for the thumbnail images the tests do not provide."""
    return [entry for entry in BROWSER.get_log("browser")
            if entry["level"] == "SEVERE" and not entry["message"].split(" ")[0].endswith(".png")]


def file_of(href):
    return unquote(href[len("file://"):].partition("#")[0])


def check_links_lead_to_files(test):
    """Every file: link of the open page names a file that exists; no console error."""
    for href in dom("return [...document.querySelectorAll('a')].map(a => a.href)"):
        if href.startswith("file:"):
            test.assertTrue(os.path.isfile(file_of(href)), href)
    test.assertEqual(console_errors(), [])


def search(query):
    """Types `query` into the open page's search box and waits for its answer (search data
    loads only then); returns the box and the names of the hits."""
    from selenium.webdriver.support.ui import WebDriverWait
    box = BROWSER.find_element("id", "search-box")
    box.clear()
    box.send_keys(query)
    WebDriverWait(BROWSER, 10).until(
        lambda _: dom("return document.documentElement.getAttribute('data-search-query')") == query.strip())
    return box, dom("return [...document.querySelectorAll('#search-results .hit-name')].map(e => e.textContent)")


def shown_name():
    """The open page's title as its <h1> shows it, without the kind."""
    return dom("return [...document.querySelector('h1').childNodes].filter(n => !n.classList || "
               "!n.classList.contains('kind')).map(n => n.textContent).join('').trim()")


class LinkedSite(unittest.TestCase):
    """The linked set, built into a folder and then moved: links must not depend on where it is."""

    @classmethod
    def setUpClass(cls):
        cls.source = pages.write_set(os.path.join(WORK, "linked-pages"), pages.linked_set())
        built = os.path.join(WORK, "linked-built")
        cls.report = refpage("site", cls.source, "-o", built, "-j", "2").stderr
        cls.site = os.path.join(WORK, "moved", "elsewhere", "site")
        shutil.copytree(built, cls.site)
        cls.generated = os.path.join(cls.site, "reference", "generated")

    def test_page_shows_every_section_with_accessible_structure(self):
        open_page(os.path.join(self.generated, "demo.sort.html"))
        self.assertEqual(dom("return document.documentElement.lang"), "en")
        self.assertEqual(BROWSER.title, "demo.sort — Reference")
        self.assertEqual(dom("return document.querySelector('h1').textContent"), "demo.sort (Function)")
        levels = dom("return [...document.querySelectorAll('main h1, main h2, main h3')].map(h => +h.tagName[1])")
        self.assertEqual(levels[0], 1)
        self.assertTrue(all(b - a <= 1 for a, b in zip(levels, levels[1:])), levels)
        self.assertEqual(dom("return [...document.querySelectorAll('section > h2')].map(h => h.textContent)"),
                         ["Description", "Syntax (Usage)", "Input Arguments", "Outputs", "Sort properties",
                          "Parameters", "Examples", "See also"])
        text = dom("return document.querySelector('main').innerText")
        for shown in ("Return a sorted copy.", "Introduced in", "1.2.0", "demo", "sort(a, axis=-1)",
                      "Name-value arguments", "quick | merge", "Keeps order of equal items.", "How close is equal.",
                      "sort([3, 1, 2])"):
            self.assertIn(shown, text)
        self.assertEqual(dom("return document.querySelectorAll('.deprecated').length"), 0)
        self.assertEqual(dom("return document.querySelector('.description pre').textContent"),
                         "indented = code(block)\nkept  as  is\n")
        self.assertEqual(dom("return document.querySelectorAll('.description p').length"), 2)
        self.assertTrue(dom("return [...document.querySelectorAll('thead th')].every(th => th.scope === 'col') && "
                            "[...document.querySelectorAll('tbody th')].every(th => th.scope === 'row')"))
        self.assertEqual(dom("return document.querySelector('.thumbnail .missing-image').textContent"),
                         "A sorted bar chart", "a thumbnail whose file is not in the site shows its alt text")
        self.assertEqual(dom("return typeof window.refpageSearchRank"), "object",
                         "the scripts must load under the page's Content-Security-Policy")
        self.assertEqual(dom("return document.querySelectorAll('script[src*=\"_site/search/\"]').length"), 0,
                         "no search data loads before the reader searches")
        self.assertEqual(dom("return getComputedStyle(document.querySelector('section > h2')).borderBottomStyle"), "solid",
                         "the stylesheet must load under the page's Content-Security-Policy")

    def test_links_lead_to_their_pages_and_unresolved_ones_are_text(self):
        open_page(os.path.join(self.generated, "demo.sort.html"))
        links = dom("return [...document.querySelectorAll('main a')].map(a => [a.textContent, a.href])")
        targets = dict(links)
        generated = url(self.generated)
        self.assertEqual(targets["argsort"], generated + "/demo.argsort.html")
        self.assertEqual(targets["lexsort section"], generated + "/demo.lexsort.html#notes")
        self.assertEqual(targets["sorted"], generated + "/demo.ndarray.html")
        self.assertEqual(targets["web page"], "https://example.org/sorting")
        self.assertEqual(targets["a"], generated + "/demo.sort.html#demo.sort-a")
        self.assertNotIn("missing page", targets)
        self.assertNotIn("script link", targets)
        self.assertEqual(dom("return document.querySelector('span.unresolved').textContent"), "missing page")
        for _, href in links:
            fragment = href.partition("#")[2]
            if fragment and file_of(href).endswith("demo.sort.html"):
                self.assertTrue(dom("return !!document.getElementById(arguments[0])", fragment), href)
        check_links_lead_to_files(self)
        self.assertIn("1 unresolved links", self.report)
        BROWSER.find_element("link text", "argsort").click()
        self.assertEqual(BROWSER.current_url, generated + "/demo.argsort.html")
        BROWSER.find_element("link text", "sort").click()
        self.assertEqual(BROWSER.current_url, generated + "/demo.sort.html")
        self.assertEqual(console_errors(), [])

    def test_deprecated_page_says_so(self):
        open_page(os.path.join(self.generated, "demo.oldsort.html"))
        self.assertEqual(dom("return document.querySelector('.deprecated').innerText"), "Deprecated. Status: Warn.")

    def test_index_lists_every_page_by_package_then_name(self):
        open_page(os.path.join(self.site, "index.html"))
        packages = dom("return [...document.querySelectorAll('section.package')].map(s => "
                       "[s.querySelector('h2').textContent, [...s.querySelectorAll('li')].map(li => "
                       "[li.querySelector('a').textContent, li.classList.contains('deprecated-entry')])])")
        self.assertEqual([name for name, _ in packages], ["demo", "demo.ma", "other"])
        demo = packages[0][1]
        self.assertEqual([name for name, _ in demo], ["demo.argsort", "demo.lexsort", "demo.ndarray", "demo.oldsort",
                                                      "demo.sort", "demo.sorted_view"])
        self.assertEqual([name for name, deprecated in demo if deprecated], ["demo.oldsort"])
        self.assertEqual(packages[2][1][1][0], "Ωmega.ünïcode")
        check_links_lead_to_files(self)
        self.assertIn("Indices that sort.", dom("return document.body.innerText"))

    def test_search_ranks_as_find_and_opens_hits_by_keyboard_and_click(self):
        from selenium.webdriver.common.keys import Keys
        open_page(os.path.join(self.site, "other", "zeta.html"))
        for query in ("sort", "demo.sort", "so", "indices"):
            found = refpage("find", query, self.source, "--json", "--limit", "20", expect=None).stdout
            self.assertEqual(search(query)[1], [json.loads(line)["name"] for line in found.splitlines()], query)
        box, hits = search("sort")
        self.assertEqual(sorted(hits[:2]), ["demo.ma.sort", "demo.sort"], hits)
        box.send_keys(Keys.ARROW_DOWN, Keys.ARROW_DOWN, Keys.ARROW_UP)
        self.assertEqual(dom("return document.querySelector('[aria-selected=true] .hit-name').textContent"), hits[1])
        box.send_keys(Keys.ENTER)
        self.assertEqual(BROWSER.current_url, url(os.path.join(self.generated, hits[1] + ".html")))
        search("lexsort")
        BROWSER.find_element("css selector", "#search-results li").click()
        self.assertEqual(BROWSER.current_url, url(os.path.join(self.generated, "demo.lexsort.html")))
        self.assertEqual(search("ünïcode")[1], ["Ωmega.ünïcode"])

    def test_screenshots_at_desktop_and_phone_widths(self):
        os.makedirs(ARGS.artifacts, exist_ok=True)
        for name, width, height in (("desktop", 1280, 900), ("phone", 390, 844)):
            BROWSER.set_window_size(width, height)
            open_page(os.path.join(self.generated, "demo.sort.html"))
            self.assertLessEqual(dom("return document.documentElement.scrollWidth - window.innerWidth"), 0,
                                 "the page scrolls sideways at %s width" % name)
            self.assertTrue(BROWSER.save_screenshot(os.path.join(ARGS.artifacts, "site-%s.png" % name)))
        BROWSER.set_window_size(1280, 900)


class HostileSite(unittest.TestCase):
    """Every text field holds payloads; none may run, style the page or become a link."""

    @classmethod
    def setUpClass(cls):
        source = pages.write_set(os.path.join(WORK, "hostile-pages"), pages.hostile_page())
        cls.site = os.path.join(WORK, "hostile-site")
        refpage("site", source, "-o", cls.site, "-q", "--title", pages.hostile_text(0))

    def check_inert(self, path):
        open_page(path)
        self.assertIsNone(dom("return window.__pwned"))
        self.assertEqual(dom("return document.querySelectorAll('script').length"), 3)
        self.assertEqual(dom("return document.querySelectorAll('style, svg, iframe, object, embed').length"), 0)
        self.assertEqual(dom("return [...document.querySelectorAll('*')].filter(e => "
                             "[...e.attributes].some(a => a.name.startsWith('on'))).length"), 0)
        self.assertEqual(dom("return [...document.querySelectorAll('[href], [src]')].filter(e => "
                             "!/^(file:|https?:)/.test(e.href || e.src)).length"), 0)
        self.assertEqual(dom("return getComputedStyle(document.body).display"), "block")
        return dom("return document.body.innerText")

    def test_payloads_show_as_text_on_the_page(self):
        text = self.check_inert(os.path.join(self.site, "reference", "hostile.html"))
        for payload in pages.HOSTILE:
            self.assertIn(payload, text)
        self.assertIn("Deprecated.", text)

    def test_payloads_show_as_text_on_the_index_and_in_search(self):
        self.assertIn(pages.HOSTILE[1], self.check_inert(os.path.join(self.site, "index.html")))
        hits = search("hostile")[1]
        self.assertIsNone(dom("return window.__pwned"))
        self.assertEqual(hits[0], "hostile" + pages.hostile_text(0))


class Docset(unittest.TestCase):
    """The docset's Info.plist, and its index rows against its documents."""

    def test_plist_index_and_documents_agree(self):
        source = pages.write_set(os.path.join(WORK, "docset-pages"), pages.linked_set())
        docset = os.path.join(WORK, "Demo.docset")
        refpage("docset", source, "-o", docset, "--name", "Demo <Docs>", "-q", "--base-url", "https://example.org/demo/")
        documents = os.path.join(docset, "Contents", "Resources", "Documents")
        plist = os.path.join(docset, "Contents", "Info.plist")
        ElementTree.parse(plist)
        with open(plist, "rb") as file:
            info = plistlib.load(file)
        self.assertEqual((info["CFBundleName"], info["CFBundleIdentifier"], info["DocSetPlatformFamily"],
                          info["isDashDocset"]), ("Demo <Docs>", "demodocs", "demodocs", True))
        self.assertEqual((info["isJavaScriptEnabled"], info["DashDocSetFallbackURL"]), (True, "https://example.org/demo/"))
        for icon, size in (("icon.png", 16), ("icon@2x.png", 32)):
            with open(os.path.join(docset, icon), "rb") as file:
                header = file.read(24)
            self.assertEqual((header[:8], int.from_bytes(header[16:20], "big")), (b"\x89PNG\r\n\x1a\n", size), icon)
        self.assertTrue(os.path.isfile(os.path.join(documents, info["dashIndexFilePath"])))
        with sqlite3.connect(os.path.join(docset, "Contents", "Resources", "docSet.dsidx")) as db:
            self.assertEqual([row[1] for row in db.execute("PRAGMA table_info(searchIndex)")],
                             ["id", "name", "type", "path"])
            rows = db.execute("SELECT name, type, path FROM searchIndex ORDER BY name").fetchall()
        self.assertGreaterEqual(len(rows), len(pages.linked_set()), "every page's entity, and its members")
        self.assertEqual(len(rows), len(set(rows)), "no row twice")
        self.assertIn(("demo.sort", "Function", "reference/generated/demo.sort.html"), rows)
        for name, _, path in rows:
            file, _, anchor = path.partition("#")
            self.assertTrue(os.path.isfile(os.path.join(documents, unquote(file))), name)
            if anchor:  # a member leads to its own anchor on the page
                with open(os.path.join(documents, unquote(file)), encoding="utf-8") as page:
                    self.assertIn('id="%s"' % unquote(anchor), page.read(), name)
        open_page(os.path.join(documents, "index.html"))
        self.assertEqual(BROWSER.title, "Demo <Docs>")
        # A page as a docset browser shows it: no site header or search, Dash's table of contents.
        open_page(os.path.join(documents, "reference", "generated", "demo.sort.html"))
        self.assertEqual(dom("return document.querySelectorAll('.site-header, #search-box').length"), 0)
        anchors = dom("return [...document.querySelectorAll('a.dashAnchor')].map(a => a.name)")
        self.assertIn("//apple_ref/cpp/Section/Input%20Arguments", anchors)
        self.assertIn("//apple_ref/cpp/Property/Stable", anchors)
        self.assertEqual(len(anchors), len(set(anchors)))
        self.assertEqual(console_errors(), [])


class GeneratedSite(unittest.TestCase):
    """A set written by pagegen: deprecated pages, broken links, clashing Hrefs, non-ASCII text."""

    @classmethod
    def setUpClass(cls):
        if not ARGS.pagegen:
            raise unittest.SkipTest("no pagegen given")
        source = os.path.join(WORK, "generated-pages")
        subprocess.run([ARGS.pagegen, "--seed", "7", "--pages", "150", "--deprecated", "0.1", "--broken-links",
                        "0.05", "--duplicate-hrefs", "0.03", "-o", source], check=True, capture_output=True)
        cls.names = [name[:-len(".json")].rsplit("_", 1)[0] if name.rsplit("_", 1)[-1][:-5].isdigit()
                     else name[:-len(".json")] for name in sorted(os.listdir(source))]
        cls.site = os.path.join(WORK, "generated-site")
        refpage("site", source, "-o", cls.site, "-q", "-j", "2")

    def test_every_page_renders_and_its_links_lead_to_files(self):
        files = sorted(str(path) for path in pathlib.Path(self.site).rglob("*.html"))
        self.assertEqual(len(files), 150 + 2)  # and index.html, 404.html
        for file in files[:: max(1, len(files) // 12)]:
            open_page(file)
            self.assertTrue(dom("return document.querySelector('h1').textContent.length > 0"), file)
            check_links_lead_to_files(self)

    def test_search_lists_exact_last_component_matches_first(self):
        from selenium.webdriver.common.keys import Keys
        leaves = {}
        for name in self.names:
            leaves.setdefault(name.rsplit(".", 1)[-1], set()).add(name)
        leaf, exact = max(sorted(leaves.items()), key=lambda item: len(item[1]))
        open_page(os.path.join(self.site, "index.html"))
        box, hits = search(leaf)
        top = hits[:len(exact)]
        self.assertTrue(all(hit.rsplit(".", 1)[-1] == leaf for hit in top), (leaf, hits))
        self.assertEqual(set(top), exact)
        box.send_keys(Keys.ENTER)
        self.assertEqual(shown_name(), hits[0])


AXE_SOURCE = None
# Markup that CommonMark would have rendered had it been read: fences, links, strong
# emphasis, code spans, headings, table rows.
NO_RAW_MARKUP = r"```|\]\(|\*\*[^\s*][^*\n]*[^\s*]\*\*|(^|\s)`[^`\s][^`]*`|(^|\n)#{1,6} |(^|\n)\|[^\n]*\|"


def axe_source():
    """axe-core from the npm registry, installed once into the build folder beside the artifacts."""
    global AXE_SOURCE
    if AXE_SOURCE is None:
        folder = os.path.join(os.path.dirname(os.path.abspath(ARGS.artifacts)), "axe")
        script = os.path.join(folder, "node_modules", "axe-core", "axe.min.js")
        if not os.path.isfile(script):
            if not shutil.which("npm"):
                raise unittest.SkipTest("npm is not installed, so axe-core cannot be")
            result = subprocess.run(["npm", "install", "--no-audit", "--no-fund", "--prefix", folder, "axe-core@4"],
                                    capture_output=True, text=True, timeout=300)
            if result.returncode != 0 or not os.path.isfile(script):
                raise unittest.SkipTest("npm could not install axe-core: " + result.stderr.strip()[-300:])
        with open(script, encoding="utf-8") as file:
            AXE_SOURCE = file.read()
    return AXE_SOURCE


def axe_violations():
    """axe-core's violations on the open page: rule id, impact and the first offending element."""
    dom(axe_source())
    BROWSER.set_script_timeout(60)
    result = BROWSER.execute_async_script(
        "const done = arguments[arguments.length - 1];"
        "axe.run(document).then(r => done(r.violations.map(v => [v.id, v.impact, v.nodes[0].html])),"
        " e => done([['axe failed', String(e), '']]));")
    return result


def reader_problems(test, path):
    """What a reader would see wrong on the page at `path`, at the window's current width."""
    open_page(path)
    problems = []
    text = dom("const main = document.querySelector('main').cloneNode(true);"
               "main.querySelectorAll('pre, code, tbody th, td.value').forEach(e => e.remove()); return main.innerText")
    import re
    raw = re.search(NO_RAW_MARKUP, text)
    if raw:
        problems.append("raw markup %r" % text[max(0, raw.start() - 30):raw.end() + 30])
    split = dom("""
        let split = [];
        for (const cell of document.querySelectorAll('section.arguments tbody th, td.value, h1, .sidebar a')) {
          const walker = document.createTreeWalker(cell, NodeFilter.SHOW_TEXT);
          for (let node; (node = walker.nextNode());) {
            const re = /\\S+/g;
            for (let m; (m = re.exec(node.data));) {
              const range = document.createRange();
              range.setStart(node, m.index);
              range.setEnd(node, m.index + m[0].length);
              const lines = new Set([...range.getClientRects()].filter(r => r.width > 0).map(r => Math.round(r.top)));
              if (lines.size > 1) split.push(m[0]);
            }
          }
        }
        return split.slice(0, 5);""")
    if split:
        problems.append("names split inside a word: %s" % split)
    broken = dom("return [...document.images].filter(i => !i.complete || i.naturalWidth === 0).map(i => i.src)")
    if broken:
        problems.append("broken images: %s" % broken)
    missing = dom("return [...document.querySelectorAll('article > section > h2, section.arguments tbody tr, .example')]"
                  ".filter(e => !e.id).map(e => e.outerHTML.slice(0, 80))")
    if missing:
        problems.append("no anchor: %s" % missing[:3])
    ids = dom("return [...document.querySelectorAll('[id]')].map(e => e.id)")
    if len(ids) != len(set(ids)):
        problems.append("repeated ids")
    anchors = dom("return [...document.querySelectorAll('a.anchor')].map(a => a.getAttribute('href').slice(1))")
    unknown = [a for a in anchors if unquote(a) not in set(ids)]
    if unknown:
        problems.append("anchor links to no id: %s" % unknown[:3])
    check_links_lead_to_files(test)
    return problems


class ReaderView(unittest.TestCase):
    """What a reader sees, at a desktop width and a phone's, over a pagegen set and the sample
    pages: no markup left raw, no name split inside a word, no broken image, every heading, row
    and example with its anchor, no axe-core violation."""

    @classmethod
    def setUpClass(cls):
        cls.sites = []
        if ARGS.pagegen:
            source = os.path.join(WORK, "reader-pages")
            subprocess.run([ARGS.pagegen, "--seed", "11", "--pages", "120", "--deprecated", "0.05", "-o", source],
                           check=True, capture_output=True)
            site = os.path.join(WORK, "reader-site")
            refpage("site", source, "-o", site, "-q", "-j", "2")
            cls.sites.append(site)
        if os.path.isdir(os.environ.get("REFPAGE_CORPUS", "")):
            site = os.path.join(WORK, "reader-corpus")
            refpage("site", os.environ["REFPAGE_CORPUS"], "-o", site, "-q", "-j", "2")
            cls.sites.append(site)
        if not cls.sites:
            raise unittest.SkipTest("neither pagegen nor the sample corpus was given")

    @classmethod
    def tearDownClass(cls):
        BROWSER.set_window_size(1280, 900)

    def sample(self, site, count):
        files = sorted(str(p) for p in pathlib.Path(site, "reference").rglob("*.html"))
        return files[:: max(1, len(files) // count)]

    def test_pages_read_whole_at_desktop_and_phone_widths(self):
        for width in (1366, 390):
            BROWSER.set_window_size(width, 900)
            for site in self.sites:
                for file in self.sample(site, 25):
                    with self.subTest(width=width, page=os.path.relpath(file, site)):
                        self.assertEqual(reader_problems(self, file), [])

    def test_corpus_pages_with_tables_and_descriptions(self):
        corpus = [site for site in self.sites if site.endswith("reader-corpus")]
        if not corpus:
            self.skipTest("the sample corpus is absent")
        for width in (1366, 390):
            BROWSER.set_window_size(width, 900)
            for name in ("numpy.ndarray", "numpy.einsum", "numpy.piecewise", "numpy.absolute", "numpy.sort"):
                with self.subTest(width=width, page=name):
                    self.assertEqual(reader_problems(self, os.path.join(corpus[0], "reference", "generated",
                                                                        name + ".html")), [])
        BROWSER.set_window_size(1366, 900)
        open_page(os.path.join(corpus[0], "reference", "generated", "numpy.sort.html"))
        self.assertEqual(shown_name(), "numpy.sort")
        self.assertEqual(search("argmax")[1][0], "numpy.argmax")

    def test_no_axe_violation_at_either_width(self):
        site = self.sites[-1]
        pages_ = self.sample(site, 3) + [os.path.join(site, "index.html")]
        for width in (1366, 390):
            BROWSER.set_window_size(width, 900)
            for file in pages_:
                with self.subTest(width=width, page=os.path.relpath(file, site)):
                    open_page(file)
                    self.assertEqual(axe_violations(), [])

    def test_search_finds_class_members(self):
        # The project's own page of a class with properties, and the sample corpus's ndarray when it is there.
        good = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "data", "good")
        site = os.path.join(WORK, "members-site")
        refpage("site", good, "-o", site, "-q")
        open_page(os.path.join(site, "index.html"))
        self.assertIn("demo.grid.Lattice.origin", search("Lattice.origin")[1])
        corpus = [site for site in self.sites if site.endswith("reader-corpus")]
        if corpus:
            open_page(os.path.join(corpus[0], "index.html"))
            self.assertIn("numpy.ndarray.T", search("ndarray.T")[1])


def main():
    global ARGS, BROWSER, WORK
    parser = argparse.ArgumentParser()
    parser.add_argument("--refpage", required=True)
    parser.add_argument("--artifacts", required=True)
    parser.add_argument("--corpus", default="")
    parser.add_argument("--pagegen", default="")
    ARGS, rest = parser.parse_known_args()
    if ARGS.corpus:
        os.environ["REFPAGE_CORPUS"] = ARGS.corpus
    WORK = tempfile.mkdtemp(prefix="site-browser-")
    try:
        try:
            BROWSER = start_browser()
        except Exception as error:  # noqa: BLE001 - any failure to start is a reason to skip
            print("SKIP: Chromium cannot start: %s" % str(error).splitlines()[0], file=sys.stderr)
            return SKIP
        try:
            result = unittest.main(argv=[sys.argv[0], *rest], exit=False, verbosity=2).result
        finally:
            BROWSER.quit()
        return 0 if result.wasSuccessful() else 1
    finally:
        shutil.rmtree(WORK, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
