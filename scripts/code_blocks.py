#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Turns the highlighted code blocks of the built pages into preformatted text.

    scripts/code_blocks.py build/docs/html

Doxygen writes a `div` for each line, whose blanks only a style sheet keeps. In a `pre` block, browsers without style
sheets keep them, too.
"""

import pathlib
import re
import sys

BLOCK = re.compile(r'<div class="fragment">(.*?)</div><!-- fragment -->', re.DOTALL)
LINE = re.compile(r'<div class="line">(.*?)</div>')


def convert(match):
    """Returns a code block as preformatted text. Each line of the file is a line of code."""
    return '<pre class="fragment">' + LINE.sub(r"\1", match[1]).rstrip("\n") + "</pre>"


def main():
    for path in pathlib.Path(sys.argv[1]).glob("*.html"):
        text = path.read_text()
        converted = BLOCK.sub(convert, text)
        if converted != text:
            path.write_text(converted)


main()
