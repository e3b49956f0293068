#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Adds the guide's headings and concepts to the search index of the built pages.

    scripts/search_index.py build/docs/html

Doxygen's search finds only the beginnings of names and titles. This script adds each word of each heading, and the
words that docs/concepts.txt assigns to a heading.
"""

import html
import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
COMMON_WORDS = {"a", "an", "and", "are", "at", "for", "from", "how", "in", "no", "of", "or", "that", "the", "to",
                "with", "your"}
HEADING = re.compile(r'<h[1-6]><a class="anchor" id="(\w+)"></a>\s*(.*?)</h[1-6]>', re.DOTALL)
TITLE = re.compile(r'<div class="title">(.*?)</div>', re.DOTALL)


def encode(word):
    """Encodes a search key as Doxygen's script does."""
    return "".join(c if c.isascii() and c.isalnum() else f"_{ord(c):02x}" for c in word)


def read_headings(directory, page):
    """Returns the title of a page and the anchors of its headings."""
    text = (directory / ("index.html" if page == "main" else page + ".html")).read_text()
    title = re.sub(r"<.*?>", "", TITLE.search(text)[1]).strip()
    return title, {html.unescape(re.sub(r"<.*?>", "", found[2])).strip(): found[1] for found in HEADING.finditer(text)}


def find_entries(directory):
    """Returns (word, heading, link, page title) for each word that leads to a heading."""
    pages = {path.stem: read_headings(directory, path.stem) for path in (ROOT / "docs").glob("*.md")}
    wanted = [(word, page, heading) for page, (_, headings) in pages.items() for heading in headings
              for word in re.findall(r"[\w-]+", heading.lower()) if word not in COMMON_WORDS]
    for line in (ROOT / "docs/concepts.txt").read_text().splitlines():
        if not line.startswith("#"):
            wanted.append(line.split(maxsplit=2))
    for word, page, heading in wanted:
        title, headings = pages[page]
        if heading not in headings:
            sys.exit(f"docs/concepts.txt: the page '{page}' has no heading '{heading}'")
        file = "index" if page == "main" else page
        yield word, heading, f"../{file}.html#{headings[heading]}", title


def main():
    directory = pathlib.Path(sys.argv[1])
    search = directory / "search"
    data = (search / "searchdata.js").read_text()
    letters = re.search(r'0: "(.*)"', data)[1]
    template = (search / "all_0.html").read_text()

    entries = []
    for number in range(len(letters)):
        lines = (search / f"all_{number:x}.js").read_text().splitlines()
        for line in lines:
            found = re.match(r"  \['(.*)_\d+',(\[.*\])\],?$", line)
            if found:
                entries.append((found[1], found[2]))
    for word, heading, link, title in find_entries(directory):
        target = [html.escape(heading, quote=False), [link, 1, title]]
        entries.append((encode(word), json.dumps(target)))

    entries = sorted(set(entries), key=lambda entry: (entry[0].lower(), entry[1]))
    groups = {}
    for key, value in entries:
        groups.setdefault(key[0].lower(), []).append((key, value))
    for number, letter in enumerate(groups):
        rows = [f"  ['{key}_{index}',{value}]" for index, (key, value) in enumerate(groups[letter])]
        (search / f"all_{number:x}.js").write_text("var searchData=\n[\n" + ",\n".join(rows) + "\n];\n")
        (search / f"all_{number:x}.html").write_text(template.replace("all_0.js", f"all_{number:x}.js"))
    (search / "searchdata.js").write_text(data.replace(f'0: "{letters}"', f'0: "{"".join(groups)}"'))


main()
