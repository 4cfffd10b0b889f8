#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes the README's table and docs/speed.svg from the results of one run.

chart.py --rows     prints the argument of omnar_bench --rows for exactly the rows of the table
chart.py FILE.json  writes both from these results
chart.py --check    has status 1 if they differ from those of the results file that the README names
"""
import json
import re
import sys
from pathlib import Path
from xml.sax.saxutils import escape

ROOT = Path(__file__).resolve().parent.parent
README, CHART, EXPORTS = ROOT / "README.md", ROOT / "docs/speed.svg", ROOT / "cmake/exports.def"
BLOCK = re.compile(r"<!-- speed: (\S+) -->\n.*?<!-- end of speed -->\n", re.DOTALL)

LEVELS = {"scalar": "scalar", "sse4": "SSE4", "avx2": "AVX2", "avx512": "AVX-512", "neon": "NEON"}
PEERS = ("pixman", "OpenCV", "SDL")
PASS = "pass"

# The headings of the chart's panels, by the "where" of a row.
PANELS = {
    "cache": "Pixels, buffers of 256 KiB",
    "4096 x 4096": "Frames and objects, images of 4096 x 4096",
}
# The rows of the table: work, where, row in the results, and whether the chart shows it.
WORKS = (
    ("picture over picture, opacity 180", "cache", "AlphaBlendTRCToTRC|random, 180", True),
    ("", "64 MiB", "AlphaBlendTRCToTRC|64 MiB, 180", False),
    ("", "40 x 40", "AlphaBlendTRCToTRC|40 x 40, 180", False),
    ("", "8 x 8", "AlphaBlendTRCToTRC|8 x 8, 180", False),
    ("the same, alpha in shapes, 255", "cache", "AlphaBlendTRCToTRC|shapes, 255", True),
    ("two pictures mixed", "cache", "AlphaBlendTRCNoAlphaToTRC|random, 180", True),
    ("colour through coverage, opacity 180", "cache", "AlphaBlendColorToTRC|random, 180", True),
    ("", "64 MiB", "AlphaBlendColorToTRC|64 MiB, 180", False),
    ("", "8 x 8", "AlphaBlendColorToTRC|8 x 8, 180", False),
    ("the same, coverage in shapes, 255", "cache", "AlphaBlendColorToTRC|shapes, 255", False),
    ("grey mixed into grey", "cache", "AlphaBlendL08ToL08_noAlpha|random, 180", True),
    ("", "40 x 40", "AlphaBlendL08ToL08_noAlpha|40 x 40, 180", False),
    ("grey times alpha, 255", "cache", "ApplyAlphaToL08|random, 255", False),
    ("look-up of 8 bits", "cache", "ApplyLUTToL08|random, 180", True),
    ("threshold of 8 bits, in place", "cache", "ConvertL08To2LevelL08AtValue|random, 180", False),
    ("12 bits to 8", "cache", "ConvertL012ToL08|random, 180", False),
    ("copy of all but a key colour", "cache", "CopyTRCToTRCIfNotKeyColor|random, 180", True),
    ("copy of a region", "64 MiB", "Copy2DTRCBufferToTRC|64 MiB, 180", False),
    ("fill with a colour", "cache", "FillTRCBuffer|random, 180", False),
    ("solid frame of width 1", "4096 x 4096", "HardFrameL08toL08|solid r 1", False),
    ("solid frame of width 16", "4096 x 4096", "HardFrameL08toL08|solid r 16", True),
    ("frame of many values, width 16", "4096 x 4096", "HardFrameL08toL08|levels r 16", True),
    ("soft frame of width 16", "4096 x 4096", "SoftFrameL08toL08|levels r 16", False),
    ("labelling, 3,025 blobs", "4096 x 4096", "ColorBinaryObjects<int>|blobs", True),
    ("labelling, noise", "4096 x 4096", "ColorBinaryObjects<int>|noise 50 %", True),
    ("filling the ground of the blobs", "4096 x 4096", "Fill<unsigned char>|round blobs", True),
    ("centres of gravity of 3,025 objects", "4096 x 4096", "MultiObjectFeatureExtract|place of 3025", True),
    ("contours of 3,025 objects, ns a point", "4096 x 4096", "FollowContour|3025 blobs", False),
)


def number(time):
    """Two significant digits: more are not repeatable."""
    return f"{time:#.2g}".rstrip(".") if time < 99.5 else f"{time:.0f}"


class Results:
    def __init__(self, path):
        with open(ROOT / path, encoding="utf-8") as file:
            run = json.load(file)
        shown, measured = {work[2] for work in WORKS}, run["rows"].keys()
        if shown != measured:
            sys.exit(f"{path}: not measured: {sorted(shown - measured)}, not shown: {sorted(measured - shown)}")
        self.path, self.level, self.rows = path, run["level"], run["rows"]
        self.processor = re.sub(r"\((R|TM)\)", "", run["processor"])
        present = {contender for times in self.rows.values() for contender in times}
        self.levels = [level for level in LEVELS if level in present]
        self.peers = [peer for peer in PEERS if peer in present]

    def ours(self, row):
        """The time at the widest vector level, or of code without vector levels."""
        return self.rows[row].get(self.level) or self.rows[row]["scalar"]

    def peer(self, row):
        """Time and name of the fastest peer, or None."""
        return min(((time, name) for name, time in self.rows[row].items() if name in PEERS), default=None)


def table(results):
    columns = results.levels + results.peers + [PASS]
    lines = [
        f"![Time per pixel beside the fastest peer]({CHART.relative_to(ROOT)})",
        "",
        f"Nanoseconds a pixel on one thread of this machine: {results.processor}, level {LEVELS[results.level]}.",
        "",
        "| Work | Where | " + " | ".join(LEVELS.get(column, column) for column in columns) + " |",
        "|---|---|" + "--:|" * len(columns),
    ]
    for label, where, row, _ in WORKS:
        cells = []
        for column in columns:
            time = results.rows[row].get(column)
            text = "" if time is None else number(time)
            cells.append(f"**{text}**" if time == results.ours(row) and column in LEVELS else text)
        lines.append(f"| {label} | {where} | " + " | ".join(cells) + " |")
    return "\n".join(lines) + "\n"


# The chart's measures in pixels, at the width of a README on GitHub.
WIDTH, LEFT, RIGHT, BAR, PITCH = 830, 268, 690, 11, 33

STYLE = """
text { font: 13px system-ui, -apple-system, "Segoe UI", Helvetica, Arial, sans-serif; fill: #1f2328 }
.card { fill: #ffffff; stroke: #d0d7de }
.title { font-size: 16px; font-weight: 600 }
.panel { font-weight: 600 }
.small { font-size: 11.5px }
.muted { fill: #59636e }
.end { text-anchor: end }
.tick { text-anchor: middle }
.value { stroke: #ffffff; stroke-width: 3px; paint-order: stroke }
.grid { stroke: #d0d7de }
.ours { fill: #0a7e8c }
.peer { fill: #b4bcc4 }
.factor { font-weight: 600; fill: #0a6c78; text-anchor: end }
@media (prefers-color-scheme: dark) {
text { fill: #e6edf3 }
.card { fill: #0d1117; stroke: #30363d }
.muted { fill: #9aa4ae }
.value { stroke: #0d1117 }
.grid { stroke: #30363d }
.ours { fill: #2bb3c0 }
.peer { fill: #59636e }
.factor { fill: #4fc9d4 }
}
"""


class Drawing:
    def __init__(self):
        self.parts = []

    def text(self, x, y, words, style=""):
        self.parts.append(f'<text x="{x:g}" y="{y:g}" class="{style}">{escape(words)}</text>')

    def bar(self, x, y, width, style):
        self.parts.append(f'<rect x="{x:g}" y="{y:g}" width="{width:.1f}" height="{BAR}" rx="1.5" class="{style}"/>')

    def grid(self, x, top, bottom):
        self.parts.append(f'<path d="M{x:.1f} {top:g}V{bottom:g}" class="grid"/>')


def panel(drawing, results, where, top):
    """Draws one panel below `top` and returns its bottom."""
    works = [(label, row) for label, place, row, drawn in WORKS if drawn and place == where]
    longest = max(max(results.ours(row), results.peer(row)[0]) for _, row in works)
    scale = (RIGHT - LEFT) / longest
    step = next(s for s in (0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20) if longest / s <= 8)
    bottom = top + 22 + PITCH * len(works)
    drawing.text(20, top + 4, PANELS[where], "panel")
    for tick in range(int(longest / step) + 1):
        drawing.grid(LEFT + tick * step * scale, top + 16, bottom)
        drawing.text(LEFT + tick * step * scale, bottom + 14, f"{tick * step:g}", "small muted tick")
    drawing.text(20, bottom + 14, "nanoseconds a pixel", "small muted")
    for index, (label, row) in enumerate(works):
        y = top + 25 + PITCH * index
        ours, (peer, name) = results.ours(row), results.peer(row)
        drawing.text(20, y + 15, label)
        for offset, time, style, words in ((0, ours, "ours", ""), (BAR + 1, peer, "peer", f" {name}")):
            drawing.bar(LEFT, y + offset, time * scale, style)
            drawing.text(LEFT + time * scale + 5, y + offset + 10, number(time) + words, "small muted value")
        drawing.text(WIDTH - 20, y + 16, f"{number(peer / ours)} x", "factor")
    return bottom + 14


def chart(results):
    drawing = Drawing()
    drawing.text(20, 32, "Time per pixel: shorter is faster", "title")
    drawing.text(20, 53, f"One thread, {results.processor}", "small muted")
    drawing.bar(LEFT + 120, 43, 22, "ours")
    drawing.text(LEFT + 148, 53, f"OmnarRaster, {LEVELS[results.level]}", "small")
    drawing.bar(LEFT + 290, 43, 22, "peer")
    drawing.text(LEFT + 318, 53, "the fastest peer", "small")
    drawing.text(WIDTH - 20, 53, "times as fast", "small muted end")
    end = 55
    for where in PANELS:
        end = panel(drawing, results, where, end + 31)
    height = end + 16
    return "\n".join([
        "<!-- SPDX-License-Identifier: MIT -->",
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}" viewBox="0 0 {WIDTH} {height}"'
        ' role="img">',
        "<title>Time per pixel beside the fastest peer</title>",
        f"<style>{STYLE}</style>",
        f'<rect x="0.5" y="0.5" width="{WIDTH - 1}" height="{height - 1}" rx="8" class="card"/>',
        *drawing.parts,
        "</svg>",
    ]) + "\n"


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    if sys.argv[1] == "--rows":
        print("^(" + "|".join(re.sub(r"([|+.()])", r"\\\1", work[2]) for work in WORKS) + ")$")
        return
    readme = README.read_text(encoding="utf-8")
    block = BLOCK.search(readme)
    if block is None:
        sys.exit("README.md has no block for the table")
    checks = sys.argv[1] == "--check"
    results = Results(block[1] if checks else Path(sys.argv[1]).resolve().relative_to(ROOT))
    text = f"<!-- speed: {results.path} -->\n{table(results)}<!-- end of speed -->\n"
    made = {README: readme[:block.start()] + text + readme[block.end():], CHART: chart(results)}
    if not checks:
        for path, content in made.items():
            path.write_text(content, encoding="utf-8")
        return
    exports = EXPORTS.read_text(encoding="utf-8")
    for _, _, row, _ in WORKS:
        function = re.match("[A-Za-z0-9]+", row)[0]
        if f"_Z{len(function)}{function}" not in exports:
            sys.exit(f"{function} is shown, but there is no such function")
    for path, content in made.items():
        if not path.exists() or path.read_text(encoding="utf-8") != content:
            sys.exit(f"{path.name} is not what chart.py makes of {results.path}")


main()
