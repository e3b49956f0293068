#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Copies programs and their output into the code blocks of the guide.

A block follows a line `<!-- embed PATH -->`. With --check, the script changes nothing and lists the pages whose
blocks differ from the files.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BLOCK = re.compile(r"(<!-- embed (\S+) -->\n```\w*\n).*?(^```$)", re.MULTILINE | re.DOTALL)


def read_program(path):
    """Returns a file without its licence line."""
    return re.sub(r"\A// SPDX-License-Identifier: .*\n", "", (ROOT / path).read_text())


def embed(text):
    """Returns a page with the current content of its embedded files."""
    return BLOCK.sub(lambda match: match[1] + read_program(match[2]) + match[3], text)


def main():
    check = sys.argv[1:] == ["--check"]
    outdated = []
    for page in [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]:
        text = page.read_text()
        if embed(text) != text:
            outdated.append(str(page.relative_to(ROOT)))
            if not check:
                page.write_text(embed(text))
    if check and outdated:
        sys.exit("Run scripts/embed.py, which updates " + ", ".join(outdated))


main()
