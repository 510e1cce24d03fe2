#!/usr/bin/env python3
"""Whole-browser benchmark of a generated site: page load and first search in headless
Chromium at several doc-set sizes, from file://, as a reader meets them. For each size it
generates a pagegen set, builds its site, then over REPEAT fresh loads of one page measures
the load (navigationStart to loadEventEnd), the JS heap after load, the search files loaded
before any search (must be 0), the first search (typing "sort" to its results shown, through
WebDriver, shard loading included) and the last keystroke's own time in the page (input
event to results shown). Prints one JSON line per size and a ratio of the largest size
to the smallest; the goal is at most 1.2 for load and first search.

usage: search_browser.py --refpage BIN --pagegen BIN [--sizes 1000,50000] [--repeat 5] [--work DIR]"""
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
                 "--user-data-dir=" + tempfile.mkdtemp(prefix="chromium-", dir=work)):
        options.add_argument(flag)
    return webdriver.Chrome(service=Service(os.environ.get("CHROMEDRIVER", "/usr/bin/chromedriver")), options=options)


def measure(driver, page, query, repeat):
    from selenium.webdriver.support.ui import WebDriverWait
    loads, heaps, searches, before, inPage = [], [], [], [], []
    for _ in range(repeat):
        driver.get("about:blank")
        driver.get("file://" + page)
        timing = driver.execute_script("const t = performance.timing; return t.loadEventEnd - t.navigationStart")
        loads.append(timing)
        heaps.append(driver.execute_script("return performance.memory ? performance.memory.usedJSHeapSize : 0"))
        before.append(driver.execute_script(
            "return performance.getEntriesByType('resource').filter(r => r.name.includes('/_site/search/')).length"))
        box = driver.find_element("id", "search-box")
        start = time.perf_counter()
        box.send_keys(query)
        WebDriverWait(driver, 60).until(
            lambda d: d.execute_script("return document.documentElement.getAttribute('data-search-query')") == query)
        searches.append((time.perf_counter() - start) * 1000)
        inPage.append(float(driver.execute_script("return document.documentElement.getAttribute('data-search-ms')")))
    return {"loadMs": statistics.median(loads), "heapBytes": statistics.median(heaps),
            "searchFilesBeforeSearch": max(before), "firstSearchMs": round(statistics.median(searches), 1),
            "lastKeystrokeMs": round(statistics.median(inPage), 1)}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--refpage", required=True)
    parser.add_argument("--pagegen", required=True)
    parser.add_argument("--sizes", default="1000,50000")
    parser.add_argument("--repeat", type=int, default=5)
    parser.add_argument("--work", default="")
    args = parser.parse_args()
    work = args.work or tempfile.mkdtemp(prefix="search-bench-")
    os.makedirs(work, exist_ok=True)
    results = []
    driver = browser(work)
    try:
        for size in [int(s) for s in args.sizes.split(",")]:
            pages = os.path.join(work, "pages-%d" % size)
            site = os.path.join(work, "site-%d" % size)
            if not os.path.isdir(site):
                subprocess.run([args.pagegen, "--seed", "5", "--pages", str(size), "-o", pages], check=True,
                               capture_output=True)
                start = time.perf_counter()
                subprocess.run([args.refpage, "-q", "site", pages, "-o", site], check=True)
                build = time.perf_counter() - start
            else:
                build = None
            page = sorted(os.path.join(root, f) for root, _, files in os.walk(os.path.join(site, "reference"))
                          for f in files if f.endswith(".html"))[size // 2]
            result = {"pages": size, "siteBuildSeconds": build and round(build, 1)}
            result.update(measure(driver, page, "sort", args.repeat))
            print(json.dumps(result), flush=True)
            results.append(result)
    finally:
        driver.quit()
    if len(results) > 1:
        first, last = results[0], results[-1]
        print(json.dumps({"loadRatio": round(last["loadMs"] / max(first["loadMs"], 1), 2),
                          "firstSearchRatio": round(last["firstSearchMs"] / max(first["firstSearchMs"], 1), 2),
                          "goal": 1.2}))


if __name__ == "__main__":
    main()
