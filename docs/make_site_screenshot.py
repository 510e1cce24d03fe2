#!/usr/bin/env python3
"""Makes docs/site.png: a page of a small doc set written here (a CommonMark description
with a list, a table, code and a link, a figure, the package's navigation), rendered by
`refpage site` and photographed in headless Chromium. Everything shown is the project's own.

usage: make_site_screenshot.py REFPAGE [OUTPUT.png]"""
import json
import os
import shutil
import struct
import sys
import tempfile
import zlib


def bar_chart_png(width=360, height=160):
    """A bar chart of sorted values, drawn pixel by pixel."""
    values = [22, 35, 41, 58, 63, 77, 84, 96]
    bar = width // len(values)
    rows = []
    for y in range(height):
        row = bytearray(b"\0")
        for x in range(width):
            i = x // bar
            top = height - 10 - values[i] * (height - 20) // 100
            inside = x % bar >= 6 and y >= top and y < height - 10
            row += bytes((11, 92, 173, 255) if inside else (244, 246, 248, 255))
        rows.append(bytes(row))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(b"".join(rows), 9)) + chunk(b"IEND", b""))


def page(name, purpose, **fields):
    record = {"Href": "reference/%s.html" % name, "PackageName": "tally",
              "RefEntities": [{"Name": name, "RefEntityType": "function", "FunctionType": "simple"}],
              "Purpose": purpose}
    record.update(fields)
    return record


DESCRIPTION = """Sorts the values of `data` and returns them in a new array; `data` itself is left
as it was. Equal values keep their order when `stable` is set.

The algorithms differ in speed and memory:

| kind | time | extra memory | stable |
|:-----|:-----|:-------------|:------:|
| `'quick'` | *n* log *n* on average | none | no |
| `'merge'` | *n* log *n* | *n* / 2 | yes |
| `'heap'` | *n* log *n* | none | no |

```python
>>> tally.sort_values([3, 1, 2], kind='merge')
array([1, 2, 3])
```

To sort by several keys, see [tally.sort_by_keys](reference/tally.sort_by_keys.html).
"""


def main():
    refpage = sys.argv[1]
    output = sys.argv[2] if len(sys.argv) > 2 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "site.png")
    work = tempfile.mkdtemp(prefix="site-shot-")
    pages = os.path.join(work, "pages")
    site = os.path.join(work, "site")
    os.makedirs(pages)
    os.makedirs(os.path.join(site, "images"))
    with open(os.path.join(site, "images", "sort_values.png"), "wb") as file:
        file.write(bar_chart_png())
    records = [
        page("tally.sort_values", "Return a sorted copy of an array.", Description=DESCRIPTION, IntroducedIn="1.4.0",
             AppThumbnail={"FileRef": "images/sort_values.png", "Alt": "Eight bars rising from left to right"},
             SyntaxGroups=[{"Title": "Syntax", "SyntaxType": "usage",
                            "Syntaxes": ["sorted = sort_values(data)", "sorted = sort_values(data, kind='merge')"]}],
             InputGroups=[{"Title": "Input Arguments", "Inputs": [
                 {"Name": "data", "Purpose": "Values to sort.", "Values": ["array_like"],
                  "Href": "#tally.sort_values-data"},
                 {"Name": "kind", "Purpose": "Sorting algorithm.", "Values": ["'quick'", "'merge'", "'heap'"],
                  "DefaultValue": "'quick'", "IsNameValuePair": True, "Href": "#tally.sort_values-kind"}]}]),
        page("tally.sort_by_keys", "Sort by several keys, the last one first."),
        page("tally.count_distinct", "Count the distinct values of an array."),
        page("tally.median_of", "The median of the values, ignoring missing ones."),
        page("tally.sum_over_axis", "Sum the values along one axis."),
    ]
    for record in records:
        with open(os.path.join(pages, record["RefEntities"][0]["Name"] + ".json"), "w", encoding="utf-8") as file:
            json.dump(record, file)
    if os.spawnv(os.P_WAIT, refpage, [refpage, "-q", "site", pages, "-o", site, "--title", "Tally"]) != 0:
        sys.exit("refpage site failed")

    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    options = webdriver.ChromeOptions()
    options.binary_location = os.environ.get("CHROMIUM", "/usr/bin/chromium")
    for flag in ("--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                 "--user-data-dir=" + os.path.join(work, "profile")):
        options.add_argument(flag)
    driver = webdriver.Chrome(service=Service(os.environ.get("CHROMEDRIVER", "/usr/bin/chromedriver")), options=options)
    try:
        driver.set_window_size(1280, 1100)
        driver.get("file://" + os.path.join(site, "reference", "tally.sort_values.html"))
        driver.save_screenshot(output)
    finally:
        driver.quit()
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    main()
