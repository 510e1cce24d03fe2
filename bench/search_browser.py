#!/usr/bin/env python3
"""Whole-browser benchmark of a generated site: page load and first search in headless
Chromium at several doc-set sizes, from file://, as a reader meets them. For each size it
generates a pagegen set, builds its site, then over REPEAT fresh loads of one page measures
the load (navigationStart to loadEventEnd), the live JS heap after load, the search files
loaded before any search (must be 0), the first search ("sort" in one input event to its
results shown, every file it loads included) and one keystroke more ("sorte"), both timed by
the page itself. Sizes and pages are measured in turn; medians over three pages per size. Prints one JSON line per size and a ratio of the largest size
to the smallest; the goal is at most 1.2 for load and first search.

usage: search_browser.py --refpage BIN --pagegen BIN [--sizes 1000,50000] [--repeat 5] [--work DIR] [--query Q]
A site already in --work is reused (its build time is then not measured)."""
import argparse
import json
import os
import statistics
import subprocess
import tempfile
import time


def browser(work):
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    options = webdriver.ChromeOptions()
    options.binary_location = os.environ.get("CHROMIUM", "/usr/bin/chromium")
    for flag in ("--headless=new", "--no-sandbox", "--disable-gpu", "--enable-precise-memory-info",
                 "--js-flags=--expose-gc", "--user-data-dir=" + tempfile.mkdtemp(prefix="chromium-", dir=work)):
        options.add_argument(flag)
    return webdriver.Chrome(service=Service(os.environ.get("CHROMEDRIVER", "/usr/bin/chromedriver")), options=options)


def type_in_page(driver, text):
    """Sets the search box to `text` with one input event, as a keystroke does, and waits for
    the answer; returns the page's own time for it (input event to results shown, ms)."""
    from selenium.webdriver.support.ui import WebDriverWait
    driver.execute_script("const box = document.getElementById('search-box'); box.value = arguments[0];"
                          "box.dispatchEvent(new Event('input'));", text)
    WebDriverWait(driver, 60).until(
        lambda d: d.execute_script("return document.documentElement.getAttribute('data-search-query')") == text)
    return float(driver.execute_script("return document.documentElement.getAttribute('data-search-ms')"))


def measure_once(driver, page, query):
    """One fresh load of `page`: its load time, live JS heap after a collection, search files
    loaded before any search, the first search of `query` and one more keystroke after it."""
    driver.get("about:blank")
    driver.get("file://" + page)
    load = driver.execute_script("const t = performance.timing; return t.loadEventEnd - t.navigationStart")
    heap = driver.execute_script("if (window.gc) gc(); return performance.memory ? performance.memory.usedJSHeapSize : 0")
    before = driver.execute_script(
        "return performance.getEntriesByType('resource').filter(r => r.name.includes('/_site/search/')).length")
    first = type_in_page(driver, query)
    keystroke = type_in_page(driver, query + "e")
    return load, heap, before, first, keystroke


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--refpage", required=True)
    parser.add_argument("--pagegen", required=True)
    parser.add_argument("--sizes", default="1000,50000")
    parser.add_argument("--repeat", type=int, default=5)
    parser.add_argument("--work", default="")
    parser.add_argument("--query", default="sort", help="the first search; one keystroke more appends 'e'")
    args = parser.parse_args()
    work = args.work or tempfile.mkdtemp(prefix="search-bench-")
    os.makedirs(work, exist_ok=True)
    sizes = [int(size) for size in args.sizes.split(",")]
    sites = {}
    for size in sizes:
        pages = os.path.join(work, "pages-%d" % size)
        site = os.path.join(work, "site-%d" % size)
        build = None
        if not os.path.isdir(site):
            if not os.path.isdir(pages):
                subprocess.run([args.pagegen, "--seed", "5", "--pages", str(size), "-o", pages], check=True,
                               capture_output=True)
            start = time.perf_counter()
            subprocess.run([args.refpage, "-q", "site", pages, "-o", site], check=True)
            build = round(time.perf_counter() - start, 1)
        files = sorted(os.path.join(root, f) for root, _, names in os.walk(os.path.join(site, "reference"))
                       for f in names if f.endswith(".html"))
        sites[size] = {"build": build, "pages": [files[len(files) * k // 4] for k in (1, 2, 3)]}
    # Sizes and pages in turn, so that the machine's drift falls on every size alike.
    samples = {size: [] for size in sizes}
    driver = browser(work)
    try:
        for _ in range(args.repeat):
            for size in sizes:
                for page in sites[size]["pages"]:
                    samples[size].append(measure_once(driver, page, args.query))
    finally:
        driver.quit()
    results = []
    for size in sizes:
        columns = list(zip(*samples[size]))
        result = {"pages": size, "siteBuildSeconds": sites[size]["build"],
                  "loadMs": statistics.median(columns[0]), "heapBytes": statistics.median(columns[1]),
                  "searchFilesBeforeSearch": max(columns[2]), "firstSearchMs": round(statistics.median(columns[3]), 1),
                  "keystrokeMs": round(statistics.median(columns[4]), 1), "worstKeystrokeMs": round(max(columns[4]), 1)}
        print(json.dumps(result), flush=True)
        results.append(result)
    if len(results) > 1:
        first, last = results[0], results[-1]
        print(json.dumps({"loadRatio": round(last["loadMs"] / max(first["loadMs"], 1), 2),
                          "firstSearchRatio": round(last["firstSearchMs"] / max(first["firstSearchMs"], 1), 2),
                          "goal": 1.2}))


if __name__ == "__main__":
    main()
