#!/usr/bin/env python3
"""The schema `refpage schema` prints agrees with the page reader, as a real validator
(python3-jsonschema, draft 2020-12) sees it: the schema is a valid 2020-12 schema,
every page of the folders given validates, and every page the reader refuses for its
structure (an unknown key, a value of the wrong type, a bad enumeration value) is
refused by the schema too; the tool is run on those pages to show it refuses them.

Exits 77 (skipped) with the reason when jsonschema is not installed."""

import argparse
import json
import pathlib
import subprocess
import sys
import tempfile

# Pages the reader refuses for their structure (refpage --strict check fails each), as in
# tests/format_parse_test.cpp. Not here, as no JSON Schema can tell: a key given twice, and
# 1.0 for an enumeration (an integer to JSON Schema).
BAD_PAGES = {
    "unknown-page-key": {"Titel": ""},
    "unknown-input-key": {"InputGroups": [{"Inputs": [{}, {"Nmae": "x"}]}]},
    "unknown-thumbnail-key": {"AppThumbnail": {"Size": 1}},
    "schema-key-below-the-page": {"Outputs": [{"$schema": "page.schema.json"}]},
    "page-is-an-array": [],
    "href-number": {"Href": 1},
    "purpose-null": {"Purpose": None},
    "outputs-object": {"Outputs": {}},
    "outputs-number": {"Outputs": [3]},
    "thumbnail-array": {"AppThumbnail": []},
    "flag-string": {"InputGroups": [{"Inputs": [{"IsNameValuePair": "yes"}]}]},
    "values-null": {"Outputs": [{"Name": "o"}, {"Values": ["a", None]}]},
    "syntaxes-string": {"SyntaxGroups": [{"Syntaxes": "f(x)"}]},
    "schema-number": {"$schema": 1},
    "enumeration-bool": {"DeprecationStatus": True},
    "enumeration-negative": {"DeprecationStatus": -1},
    "enumeration-too-large": {"DeprecationStatus": 4294967296},
    "enumeration-fraction": {"DeprecationStatus": 1.5},
    "enumeration-bad-key": {"DeprecationStatus": "obsolete"},
    "enumeration-key-case": {"RefEntities": [{"RefEntityType": "Function"}]},
    "enumeration-empty-array": {"SyntaxGroups": [{"SyntaxType": []}]},
    "enumeration-two-values": {"InputGroups": [{"Inputs": [{"SyntaxType": ["usage", "n/a"]}]}]},
}

# Pages that load, in the forms a hand-written page may take beyond what `refpage json` writes.
GOOD_PAGES = {
    "named-schema": {"$schema": "page.schema.json", "Href": "a.html"},
    "enumeration-numbers": {"DeprecationStatus": 2, "SyntaxGroups": [{"SyntaxType": [1]}]},
    "unknown-member-number": {"RefEntities": [{"RefEntityType": 4294967295}]},
    "empty": {},
}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--refpage", required=True)
    parser.add_argument("--pages", action="append", default=[], help="a folder of pages that load")
    parser.add_argument("--bad", action="append", default=[], help="a page file the reader refuses for its structure")
    args = parser.parse_args()
    try:
        import jsonschema
    except ImportError:
        print("skipped: jsonschema is not installed (Debian package python3-jsonschema)")
        return 77
    if not hasattr(jsonschema, "Draft202012Validator"):
        print(f"skipped: jsonschema {jsonschema.__version__} does not know draft 2020-12 (4.0 or later does)")
        return 77

    printed = subprocess.run([args.refpage, "schema"], capture_output=True, text=True, check=True).stdout
    schema = json.loads(printed)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    failures = []

    def refused(page):
        return next(validator.iter_errors(page), None) is not None

    checked = 0
    for folder in args.pages:
        folder = pathlib.Path(folder)
        if not folder.is_dir():
            print(f"skipped folder: {folder} is not there")
            continue
        for file in sorted(folder.rglob("*.json")):
            checked += 1
            error = next(validator.iter_errors(json.loads(file.read_text(encoding="utf-8"))), None)
            if error is not None:
                failures.append(f"{file}: refused at /{'/'.join(map(str, error.absolute_path))}: {error.message}")
    for name, page in GOOD_PAGES.items():
        if refused(page):
            failures.append(f"{name}: a page that loads is refused")

    with tempfile.TemporaryDirectory(prefix="refpage-schema-") as scratch:
        scratch = pathlib.Path(scratch)
        bad = {name: page for name, page in BAD_PAGES.items()}
        for file in args.bad:
            bad[pathlib.Path(file).stem] = json.loads(pathlib.Path(file).read_text(encoding="utf-8"))
        for name, page in bad.items():
            (scratch / f"{name}.json").write_text(json.dumps(page), encoding="utf-8")
            if not refused(page):
                failures.append(f"{name}: the reader refuses {json.dumps(page)}, the schema accepts it")
        tool = subprocess.run([args.refpage, "--strict", "-q", "check", scratch], capture_output=True, text=True)
        refused_by_tool = {line.split(":")[0] for line in tool.stderr.splitlines() if ": error: " in line}
        for name in bad:
            if str(scratch / f"{name}.json") not in refused_by_tool:
                failures.append(f"{name}: listed as refused by the reader, but refpage --strict check passes it")

    if failures:
        print("FAIL:\n" + "\n".join(failures[:50]))
        return 1
    print(f"ok: {checked} pages and {len(GOOD_PAGES)} hand-written forms validate; "
          f"{len(BAD_PAGES) + len(args.bad)} bad pages refused by the schema and the tool")
    return 0


if __name__ == "__main__":
    sys.exit(main())
