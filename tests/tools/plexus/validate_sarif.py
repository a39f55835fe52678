#!/usr/bin/python3
"""Checks a real `plexus check --format sarif` log against the SARIF 2.1.0
JSON schema, and that each result names a file that exists.

Usage: validate_sarif.py PLEXUS_BINARY SCHEMA

Runs the binary over a scratch tree with findings (a blank and non-ASCII
characters in names, a package and a class folder, a file that cannot be
read), validates its log, then makes sure that the validator rejects a
broken copy, so that a validator that lets everything through cannot pass.
"""

import copy
import json
import os
import re
import subprocess
import sys
import tempfile
import urllib.parse

import jsonschema

# RFC 3986: a URI reference holds only these, and '%' only before two hex digits.
URI_CHARACTERS = re.compile(r"^(?:[A-Za-z0-9\-._~:/?#\[\]@!$&'()*+,;=]|%[0-9A-F]{2})*$")


def fail(message):
    print("validate_sarif: " + message, file=sys.stderr)
    sys.exit(1)


def write(root, name, text):
    path = os.path.join(root, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as out:
        out.write(text)


def main():
    if len(sys.argv) != 3:
        fail("usage: validate_sarif.py PLEXUS_BINARY SCHEMA")
    binary, schema_path = os.path.abspath(sys.argv[1]), sys.argv[2]
    with open(schema_path, encoding="utf-8") as schema_file:
        schema = json.load(schema_file)
    validator = jsonschema.Draft7Validator(schema, format_checker=jsonschema.FormatChecker())

    with tempfile.TemporaryDirectory(prefix="plexus_sarif_") as root:
        write(root, "my dir/+pkg/@Shape/area.m", "function a = area(s)\n\ts = '\u00fc'; global counter\na = 1;\nend\n")
        write(root, "caf\u00e9 #1/broken.m", "x = (1 + ;\n")
        write(root, "clean.m", "y = 2;\n")
        os.symlink(os.path.join(root, "gone.m"), os.path.join(root, "dangling.m"))

        run = subprocess.run([binary, "check", "--format", "sarif", "."], cwd=root, capture_output=True, timeout=60)
        if run.returncode != 1:
            fail(f"plexus check exited with {run.returncode}, not 1: {run.stderr.decode(errors='replace')}")
        log = json.loads(run.stdout)

        errors = sorted(validator.iter_errors(log), key=lambda e: list(e.path))
        for error in errors:
            print(f"{'/'.join(str(p) for p in error.path)}: {error.message}", file=sys.stderr)
        if errors:
            fail(f"{len(errors)} schema errors")

        sarif_run = log["runs"][0]
        rules = sarif_run["tool"]["driver"]["rules"]
        base = sarif_run["originalUriBaseIds"]["%SRCROOT%"]["uri"]
        if not base.startswith("file:///") or not base.endswith("/"):
            fail(f"%SRCROOT% is not a file URI of a folder: {base}")
        results = sarif_run["results"]
        if len(results) != 3:
            fail(f"expected 3 results (syntax error, global, unreadable), found {len(results)}")
        for result in results:
            if rules[result["ruleIndex"]]["id"] != result["ruleId"]:
                fail(f"ruleIndex {result['ruleIndex']} does not name {result['ruleId']}")
            artifact = result["locations"][0]["physicalLocation"]["artifactLocation"]
            uri = artifact["uri"]
            if not URI_CHARACTERS.match(uri):
                fail(f"not a URI reference: {uri}")
            if artifact.get("uriBaseId") == "%SRCROOT%":
                uri = urllib.parse.urljoin(base, uri)
            path = urllib.parse.unquote(urllib.parse.urlparse(uri).path)
            if not os.path.lexists(path):
                fail(f"{artifact['uri']} names {path}, which does not exist")

        broken = copy.deepcopy(log)
        broken["runs"][0]["results"][0]["level"] = "fatal"
        del broken["runs"][0]["tool"]["driver"]["name"]
        if len(list(validator.iter_errors(broken))) != 2:
            fail("the validator does not reject a log with a bad level and a driver without a name")

    print(f"validate_sarif: a log of {len(results)} results and {len(rules)} rules is valid SARIF 2.1.0")


if __name__ == "__main__":
    main()
