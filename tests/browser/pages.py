"""Small doc sets written by the browser tests: a linked set with every section, a
deprecated page, several names that contain "sort", and a page whose every text
field is hostile."""
import json
import os

HOSTILE = [
    '<script>window.__pwned = 1</script>',
    '<img src=x onerror="window.__pwned = 1">',
    '"><svg onload="window.__pwned = 1">',
    "' onmouseover='window.__pwned = 1",
    '<style>body { display: none }</style>',
    'javascript:window.__pwned = 1',
]


def hostile_text(i):
    return "x" + HOSTILE[i % len(HOSTILE)] + "y"


def entity(name, kind="function"):
    return {"Name": name, "RefEntityType": kind, "FunctionType": "simple"}


def page(name, href, purpose, package="demo", **fields):
    record = {"Href": href, "RefEntities": [entity(name)], "PackageName": package, "Purpose": purpose}
    record.update(fields)
    return record


def linked_set():
    """Pages under reference/generated/ linking each other, with one full page."""
    base = "reference/generated/"
    full = page(
        "demo.sort", base + "demo.sort.html", "Return a sorted copy.",
        IntroducedIn="1.2.0",
        Description="First paragraph of the description.\n\n    indented = code(block)\n    kept  as  is\n\nLast paragraph.",
        AppThumbnail={"FileRef": "images/sort.png", "Alt": "A sorted bar chart"},
        SyntaxGroups=[{"Title": "Syntax", "SyntaxType": "usage", "Syntaxes": ["sort(a)", "sort(a, axis=-1)"]}],
        InputGroups=[{"Title": "Input Arguments", "Inputs": [
            {"Name": "a", "Purpose": "Array to sort.", "Values": ["array_like"], "Href": "#demo.sort-a"},
            {"Name": "kind", "Purpose": "Algorithm.", "Values": ["quick", "merge"], "DefaultValue": "quick",
             "IsNameValuePair": True, "Href": "#demo.sort-kind"}]}],
        Outputs=[{"Name": "sorted", "Purpose": "The sorted copy.", "Values": ["ndarray"],
                  "Href": base + "demo.ndarray.html"}],
        Parameters=[{"Name": "Tolerance", "Purpose": "How close is equal.", "DefaultValue": "0"}],
        ClassPropertyGroups=[{"Title": "Sort properties", "Properties": [
            {"Name": "Stable", "Purpose": "Keeps order of equal items.", "Values": ["true", "false"]}]}],
        SeeAlso=[{"Name": "argsort", "Url": base + "demo.argsort.html"},
                 {"Name": "lexsort section", "Url": base + "demo.lexsort.html#notes"},
                 {"Name": "missing page", "Url": base + "demo.nowhere.html"},
                 {"Name": "web page", "Url": "https://example.org/sorting"},
                 {"Name": "script link", "Url": "javascript:window.__pwned = 1"}],
        Examples=[{"Title": "Sort a list", "Url": base + "demo.sort.html#example-1", "OpenCommand": "sort([3, 1, 2])"}],
    )
    pages = [
        full,
        page("demo.argsort", base + "demo.argsort.html", "Indices that sort.",
             SeeAlso=[{"Name": "sort", "Url": base + "demo.sort.html"}]),
        page("demo.lexsort", base + "demo.lexsort.html", "Sort by several keys."),
        page("demo.ma.sort", base + "demo.ma.sort.html", "Sort a masked array.", package="demo.ma"),
        page("demo.sorted_view", base + "demo.sorted_view.html", "A sorted view."),
        page("demo.ndarray", base + "demo.ndarray.html", "The array type.", DeprecationStatus="current"),
        page("demo.oldsort", base + "demo.oldsort.html", "Sort the old way.", DeprecationStatus="warn"),
        page("other.zeta", "other/zeta.html", "A page of another package.", package="other"),
        page("Ωmega.ünïcode", "other/omega.html", "Non-ASCII names 日本語.", package="other"),
    ]
    return pages


def hostile_page():
    fields = iter(range(1000))

    def text():
        return hostile_text(next(fields))

    href = "reference/hostile.html"
    record = {
        "Href": href,
        "RefEntities": [entity("hostile" + text())],
        "PackageName": text(), "Purpose": text(), "IntroducedIn": text(), "Description": text(),
        "AppThumbnail": {"FileRef": 'x" onerror="window.__pwned = 1', "Alt": text()},
        "DeprecationStatus": "warn",
        "SyntaxGroups": [{"Title": text(), "SyntaxType": "usage", "Syntaxes": [text(), text()]}],
        "InputGroups": [{"Title": text(), "Inputs": [
            {"Name": text(), "Purpose": text(), "Values": [text()], "Href": "javascript:window.__pwned = 1",
             "DefaultValue": text(), "IsNameValuePair": flag} for flag in (False, True)]}],
        "Outputs": [{"Name": text(), "Purpose": text(), "Values": [text()], "Href": "#" + text()}],
        "ClassPropertyGroups": [{"Title": text(), "Properties": [
            {"Name": text(), "Purpose": text(), "Values": [text()], "Href": "JaVaScRiPt:window.__pwned=1",
             "DefaultValue": text()}]}],
        "SeeAlso": [{"Name": text(), "Url": url} for url in
                    ("javascript:window.__pwned = 1", " javascript:window.__pwned = 1",
                     "data:text/html,<script>window.__pwned=1</script>", "vbscript:x", "reference/" + text())],
        "Examples": [{"Title": text(), "Url": "javascript:window.__pwned = 1", "OpenCommand": text()}],
        "Parameters": [{"Name": text(), "Purpose": text(), "Values": [text()], "DefaultValue": text()}],
    }
    return [record]


def write_set(folder, pages):
    os.makedirs(folder, exist_ok=True)
    for i, record in enumerate(pages):
        with open(os.path.join(folder, "page%03d.json" % i), "w", encoding="utf-8") as out:
            json.dump(record, out, ensure_ascii=False, indent=1)
    return folder
