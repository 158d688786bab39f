#!/usr/bin/env python3
"""The pages of --html FILE in a real browser: what it makes of them, light and dark, and on paper.

Skipped where there is no chromium: apt-get install chromium fonts-noto-cjk (./test --all does so).

usage: browser_test.py TAVCC [unittest options]
"""

import os
import re
import shutil
import struct
import subprocess
import sys
import zlib

import case
from case import PASSED, REFUSED, Case, tavcc
from page import DARK, LIGHT, Outline, Page, colours, style

BROWSER = shutil.which("chromium")
SKIPPED = 77  # as CMakeLists.txt has it

class Picture:
    """A PNG of 8 bits a channel, as a browser writes it: the colour of each place."""

    def __init__(self, file):
        with open(file, "rb") as picture:
            data = picture.read()
        assert data[:8] == b"\x89PNG\r\n\x1a\n"
        self.width, self.height, depth, kind = struct.unpack(">IIBB", data[16:26])
        assert depth == 8 and kind in (2, 6), (depth, kind)
        self.channels = 3 if kind == 2 else 4
        packed, at = b"", 8
        while at < len(data):
            length, name = struct.unpack(">I4s", data[at:at + 8])
            if name == b"IDAT":
                packed += data[at + 8:at + 8 + length]
            at += 12 + length
        self.rows = self.unfiltered(zlib.decompress(packed))

    def unfiltered(self, data):
        rows, width = [], self.width * self.channels
        above = bytes(width)
        for y in range(self.height):
            start = y * (width + 1)
            row = bytearray(data[start + 1:start + 1 + width])
            self.undo(data[start], row, above)
            rows.append(row)
            above = row
        return rows

    def undo(self, kind, row, above):
        if kind == 0:
            return
        step = self.channels
        for i, value in enumerate(row):
            left = row[i - step] if i >= step else 0
            corner = above[i - step] if i >= step else 0
            if kind == 1:
                guess = left
            elif kind == 2:
                guess = above[i]
            elif kind == 3:
                guess = (left + above[i]) // 2
            else:
                near = left + above[i] - corner
                guess = min((left, above[i], corner), key=lambda each: abs(near - each))
            row[i] = (value + guess) & 255

    def colours(self):
        """How often each colour stands in it."""
        counts = {}
        for row in self.rows:
            for x in range(0, len(row), self.channels):
                colour = tuple(row[x:x + 3])
                counts[colour] = counts.get(colour, 0) + 1
        return counts


class Browser(Case):
    def browse(self, file, *options):
        """Opens the page in a browser without a window, of a profile of its own and without a
        network, and returns what it prints."""
        answer = subprocess.run(
            [BROWSER, "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
             "--disable-dev-shm-usage", "--no-first-run", "--disable-background-networking",
             "--disable-component-update", "--host-resolver-rules=MAP * ~NOTFOUND",
             f"--user-data-dir={self.path('profile')}", *options, f"file://{file}"],
            capture_output=True, timeout=300, check=False)
        self.assertEqual(answer.returncode, 0, answer.stderr.decode(errors="replace"))
        return answer.stdout.decode()

    def picture(self, file, scheme, width=1100, height=900):
        name = self.path(f"picture-{scheme}.png")
        self.browse(file, f"--blink-settings=preferredColorScheme={scheme}",
                    f"--window-size={width},{height}", f"--screenshot={name}")
        return Picture(name)

    def explanation(self, *numbers):
        file = self.path("explain.html")
        answer = tavcc("explain", *numbers, "--db", self.db, "--html", file)
        self.assertEqual((answer.returncode, answer.stderr), (REFUSED, ""))
        return file

    def assert_dom(self, file):
        """The browser has the page's elements and texts, none mended and none made up."""
        with open(file, encoding="utf-8") as page:
            written = Outline(page.read())
        seen = Outline(self.browse(file, "--dump-dom"))
        self.assertEqual([tag for tag, _ in seen.elements], [tag for tag, _ in written.elements])
        self.assertEqual("".join("".join(seen.texts).split()),
                         "".join("".join(written.texts).split()))

    def test_the_browser_reads_what_was_written(self):
        demo = self.path("demo.html")
        self.assertEqual(tavcc("demo", "--html", demo).returncode, PASSED)
        scenarios = self.path("run.html")
        folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../scenarios/transfer")
        self.assertEqual(tavcc("run", folder, "--html", scenarios).returncode, PASSED)
        for file in (demo, scenarios, self.explanation("XS260305", "CG260302")):
            self.assert_dom(file)

    def test_a_bill_that_is_named_like_a_script(self):
        self.change("UPDATE T_CC_StockBill SET FBillNo=N'<script>document.title=''broken''</script>'"
                    " WHERE FID=134"
                    " UPDATE t_ICItem SET FName=N'<img src=x onerror=\"document.title=1\">'"
                    " WHERE FItemID=1009")
        file = self.explanation("<script>document.title='broken'</script>")
        self.assert_dom(file)
        seen = self.browse(file, "--dump-dom")
        self.assertNotIn("<script", seen)
        self.assertNotIn("<img", seen)
        self.assertIn("<title>May it be audited? &lt;script&gt;", seen)

    def test_light_and_dark(self):
        file = self.explanation("XS260305", "CG260302")
        for scheme in (LIGHT, DARK):
            wanted = colours(scheme)
            counts = self.picture(file, scheme).colours()
            self.assertEqual(max(counts, key=counts.get), wanted["paper"])
            # What makes a page of it: texts, the box that says why, the word "refused".
            for name in ("ink", "stop", "refused", "line"):
                self.assertGreater(counts.get(wanted[name], 0), 20, name)

    def test_bars_are_drawn(self):
        file = self.path("demo.html")
        self.assertEqual(tavcc("demo", "--html", file).returncode, PASSED)
        page = Page(file)
        # A page of the table alone, so that it stands in the picture.
        text = page.text
        table = text[text.index("<table class=\"changes\">"):]
        table = table[:table.index("</table>") + len("</table>")]
        alone = self.write("bars.html", text[:text.index("<body>")] + f"<body>{table}</body></html>")
        lengths = {"before": 0.0, "after": 0.0}
        for name, width in re.findall(r'<rect class="(\w+)" x="[\d.]+" y="\d" width="([\d.]+)"', table):
            lengths[name] += float(width)
        for scheme in (LIGHT, DARK):
            wanted, counts = colours(scheme), self.picture(alone, scheme).colours()
            before, after = counts[wanted["before"]], counts[wanted["after"]]
            # The legend's two squares, and edges between two pixels, are a few of each.
            self.assertAlmostEqual(before / after, lengths["before"] / lengths["after"], delta=0.06)

    def test_chinese_has_shapes(self):
        """A font that lacks a character draws the same box for each: these are not all alike."""
        fonts = subprocess.run(["fc-list", ":lang=zh"], capture_output=True, check=False).stdout
        if not fonts:
            self.skipTest("no Chinese font: apt-get install fonts-noto-cjk")
        shapes = set()
        for character in "库存审核":
            file = self.write("character.html",
                              f"<!DOCTYPE html><meta charset=\"utf-8\"><style>{style()}</style>"
                              f"<p lang=\"zh-CN\">{character}</p>")
            picture = self.picture(file, LIGHT, 300, 200)
            shapes.add(b"".join(bytes(row) for row in picture.rows))
        self.assertEqual(len(shapes), 4)

    def test_on_paper(self):
        file = self.explanation("XS260305")
        paper = self.path("paper.pdf")
        self.browse(file, "--no-pdf-header-footer", f"--print-to-pdf={paper}")
        with open(paper, "rb") as pdf:
            data = pdf.read()
        self.assertTrue(data.startswith(b"%PDF"))
        pages = int(re.search(rb"/Count (\d+)", data)[1])
        self.assertGreaterEqual(pages, 1)
        self.assertLess(pages, 12)


if __name__ == "__main__":
    if BROWSER is None:
        print("no chromium: apt-get install chromium fonts-noto-cjk")
        sys.exit(SKIPPED)
    case.main()
