#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Doxygen's filter for the public header: documents the geometry of buffers parameter by parameter.

The header states once what srcWidth, srcHeight, srcX, srcY, w, h and `reserved` mean. The reference has a line for each of them,
in the order of the declaration: geometry_parameters.py HEADER prints the header with these lines.
"""

import re
import sys

MEANING = {
    "Width": "width of `{buffer}` in pixels",
    "Height": "height of `{buffer}` in pixels",
    "X": "left column of the region in `{buffer}`, at most {buffer}Width",
    "Y": "top row of the region in `{buffer}`, at most {buffer}Height",
    "width": "width of the buffer in pixels",
    "height": "height of the buffer in pixels",
    "x": "left column of the region, at most width",
    "y": "top row of the region, at most height",
    "w": "width of the region in pixels before it is cut",
    "h": "height of the region in pixels before it is cut",
    "reserved": "not read",
}
DOCUMENTED = re.compile(r"((?:^///(?: .*)?\n)+)(^OMNAR_API [^;]*;)", re.MULTILINE)
ENTRY = re.compile(r"^/// @(?:param|return).*\n(?:^///     .*\n)*", re.MULTILINE)


def line_for(name: str, names: list[str]) -> str | None:
    """Returns the documentation of a geometry parameter, or None for any other parameter."""
    ending = re.search(r"(Width|Height|X|Y)$", name)
    buffer = name[: ending.start()] if ending else ""
    if ending and buffer not in names:
        return None
    meaning = MEANING.get(ending[0] if ending else name)
    return f"/// @param {name}  {meaning.format(buffer=buffer)}\n" if meaning else None


def with_geometry(found: re.Match[str]) -> str:
    comment, declaration = found.groups()
    parameters = declaration[declaration.index("(") + 1 : declaration.rindex(")")]
    names = [words[-1] for words in (re.findall(r"\w+", part) for part in parameters.split(",")) if words]
    written, returned = {}, ""
    for entry in ENTRY.findall(comment):
        named = re.match(r"/// @param(?:\[[a-z,]+\])? (\w+)", entry)
        if named:
            written[named[1]] = entry
        else:
            returned += entry
    lines = [written.get(name) or line_for(name, names) or "" for name in names]
    return ENTRY.sub("", comment) + "".join(lines) + returned + declaration


def main() -> None:
    with open(sys.argv[1], encoding="ascii") as header:
        sys.stdout.write(DOCUMENTED.sub(with_geometry, header.read()))


if __name__ == "__main__":
    main()
