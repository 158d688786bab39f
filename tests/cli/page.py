"""A page of tavcc as its tests read it: what is in it, and whether it is one as it should be."""

import html.parser
import os
import re
import xml.etree.ElementTree

HEADINGS = ("h1", "h2", "h3", "h4", "h5", "h6")
# What may fetch something, run something or lead somewhere.
FETCHING = ("src", "srcset", "data", "poster", "background", "action", "formaction", "xlink:href")
FORBIDDEN = ("script", "link", "iframe", "object", "embed", "img", "base", "form", "audio", "video")

DARK, LIGHT = 0, 1  # the browser's words for a reader's preference


def style():
    file = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tools/tavcc/html/page.css")
    with open(file, encoding="utf-8") as css:
        return css.read()


def colours(scheme):
    """The style's colours by name."""
    light, dark = re.findall(r":root \{(.*?)\}", style(), re.S)
    text = light if scheme == LIGHT else dark
    return {name: tuple(int(digits[i:i + 2], 16) for i in (0, 2, 4))
            for name, digits in re.findall(r"--(\w+): #([0-9a-f]{6});", text)}


def contrast(a, b):
    """The ratio of two colours' luminance, from 1 to 21, as accessibility guidelines count it."""
    def luminance(colour):
        parts = [part / 255 for part in colour]
        red, green, blue = (part / 12.92 if part <= 0.03928 else ((part + 0.055) / 1.055) ** 2.4
                            for part in parts)
        return 0.2126 * red + 0.7152 * green + 0.0722 * blue
    brighter, darker = sorted((luminance(a), luminance(b)), reverse=True)
    return (brighter + 0.05) / (darker + 0.05)


class Outline(html.parser.HTMLParser):
    """The elements and texts of a page, as HTML and not as XML."""

    def __init__(self, text):
        super().__init__()
        self.elements, self.texts = [], []
        self.feed(text)
        self.close()

    def handle_starttag(self, tag, attrs):
        self.elements.append((tag, sorted(attrs)))

    def handle_data(self, data):
        if data.strip():
            self.texts.append(data)


def shown(element):
    """The text of an element and of all in it, with single blanks."""
    return " ".join(" ".join(element.itertext()).split())


class Page:
    """A page that is read as XML too: that it can be is a proof that every element is closed, every
    attribute quoted and every text escaped."""

    def __init__(self, file):
        with open(file, encoding="utf-8", newline="") as page:
            self.text = page.read()
        self.root = xml.etree.ElementTree.fromstring(self.text)
        self.body = self.root.find("body")

    def check(self, test, language="en"):
        """What every page is held to."""
        test.assertTrue(self.text.startswith(f"<!DOCTYPE html>\n<html lang=\"{language}\">"))
        self.check_it_stands_alone(test)
        self.check_headings(test)
        self.check_labels(test)
        self.check_links(test)
        outline = Outline(self.text)
        elements = [(element.tag, sorted(element.attrib.items())) for element in self.root.iter()]
        test.assertEqual([(tag, [(name, value) for name, value in attributes])
                          for tag, attributes in outline.elements],
                         [(tag.lower(), [(name.lower(), value) for name, value in attributes])
                          for tag, attributes in elements])
        test.assertEqual(outline.texts, [text for text in self.root.itertext() if text.strip()])

    def check_it_stands_alone(self, test):
        test.assertIn("default-src 'none'", self.root.find(
            ".//meta[@http-equiv='Content-Security-Policy']").get("content"))
        css = self.root.find("head/style").text
        for word in ("url(", "@import", "://"):
            test.assertNotIn(word, css)
        for element in self.root.iter():
            test.assertNotIn(element.tag, FORBIDDEN)
            for name, value in element.attrib.items():
                test.assertNotIn(name, FETCHING)
                test.assertFalse(name.startswith("on"), name)
                if name == "href":
                    test.assertTrue(value.startswith("#"), value)

    def check_headings(self, test):
        test.assertEqual(len(self.root.findall(".//h1")), 1)
        test.assertEqual(shown(self.root.find(".//h1")), shown(self.root.find("head/title")))
        level = 0
        for element in self.body.iter():
            if element.tag in HEADINGS:
                test.assertTrue(shown(element), "an empty heading")
                test.assertLessEqual(int(element.tag[1]), level + 1, shown(element))
                level = int(element.tag[1])

    def check_labels(self, test):
        test.assertEqual(len(self.root.findall(".//main")), 1)
        for picture in self.root.iter("svg"):
            test.assertEqual(picture.get("role"), "img")
            test.assertTrue(picture.get("aria-label"))
        for nav in self.root.iter("nav"):
            test.assertTrue(nav.get("aria-label"))
        for table in self.root.iter("table"):
            test.assertTrue(shown(table.find("caption")))
            for header in table.iter("th"):
                test.assertIn(header.get("scope"), ("col", "colgroup", "row"))
            widths = {self.width(row) for row in table.findall("tbody/tr")}
            widths |= {self.width(table.find("thead"))}
            test.assertEqual(len(widths), 1, shown(table)[:200])
        for fold in self.root.iter("details"):
            test.assertEqual([child.tag for child in fold].index("summary"), 0)
        for element in self.root.iter():
            if element.text and re.search(r"[\u4e00-\u9fff]", element.text):
                test.assertEqual(element.get("lang"), "zh-CN", element.text)

    @staticmethod
    def width(rows):
        """How many columns a row has; or a head of two rows, cells across both counted once."""
        if rows.tag == "thead":
            first, *second = rows.findall("tr")
            spanning = [cell for cell in first if cell.get("colspan") is None]
            return len(spanning) + sum(len(row) for row in second)
        return len(rows)

    def check_links(self, test):
        ids = [element.get("id") for element in self.root.iter() if element.get("id")]
        test.assertEqual(len(ids), len(set(ids)), "an id twice")
        for link in self.root.iter("a"):
            test.assertIn(link.get("href")[1:], ids)

    def part(self, anchor):
        return self.root.find(f".//*[@id='{anchor}']")

    @staticmethod
    def figures(part):
        """The figures that a part begins with, by their labels."""
        pairs = part.find(".//dl[@class='figures']").findall("div")
        return {pair.find("dt").text: pair.find("dd").text for pair in pairs}

    @staticmethod
    def outcomes(part, kind):
        """The entries of the list of that kind: bills, scenes or scenarios."""
        return [Entry(item) for item in part.findall(f".//ol[@class='outcomes {kind}']/li")]

    @staticmethod
    def changes(part):
        """The tables of amounts before and after, by the beginning of their caption."""
        tables = part.findall(".//table[@class='changes']")
        return {table.find("caption").text.split(";")[0]: changes_of(table) for table in tables}

    @staticmethod
    def statements(part):
        """The statements of the part, in order: number, begin, length, rows, gate, text, place."""
        rows = part.findall(".//table[@class='statements']/tbody/tr")
        return [Statement(row) for row in rows]


class Entry:
    """What is folded: its mark, its name, all of its first line, and what is inside."""

    def __init__(self, item):
        self.item = item
        self.fold = item.find("details")
        summary = self.fold.find("summary")
        self.open = self.fold.get("open") is not None
        self.mark = shown(summary[0])
        self.name = shown(summary[1])
        self.line = [shown(each) for each in summary[2:]]
        self.text = " ".join(shown(each) for each in self.fold if each is not summary)
        why = self.fold.find("div[@class='why']")
        self.message = None if why is None else shown(why.find("p[@class='message']"))
        self.reasons = [] if why is None else [shown(p) for p in why.findall("p")[1:]]
        refusal = None if why is None else why.find("dl/dd/code")
        self.refusal = None if refusal is None else refusal.text


class Statement:
    def __init__(self, row):
        cells = list(row)
        self.number = int(cells[0].text)
        self.at, self.took = float(cells[1].text), float(cells[2].text)
        self.bar = bar_of(cells[3].find("svg").find("rect"))
        self.label = cells[3].find("svg").get("aria-label")
        self.rows = int(cells[4].text) if cells[4].text else None
        self.gate = cells[5].text or ""
        self.sql = cells[6].find("code").text
        self.place = cells[7].find("code").text or ""


def bar_of(rect):
    """Where it begins, and how long it is."""
    return float(rect.get("x")), float(rect.get("width"))


def changes_of(table):
    """The rows by what there is of their keys: for each value its name, before, after, change, and the two bars."""
    head = table.find("thead").findall("tr")
    values = [cell.text for cell in head[0] if cell.get("scope") == "colgroup"]
    keys = len(head[0]) - len(values)
    each = len(head[1]) // len(values)
    rows = {}
    for row in table.findall("tbody/tr"):
        cells = list(row)
        key = tuple(shown(cell) for cell in cells[:keys] if shown(cell))
        assert key not in rows, key
        rows[key] = {}
        for i, name in enumerate(values):
            group = cells[keys + i * each:keys + (i + 1) * each]
            bars = [bar_of(rect) for rect in group[3].iter("rect")] if each == 4 else None
            label = group[3].find("svg").get("aria-label") if each == 4 else None
            rows[key][name] = [cell.text or "" for cell in group[:3]] + [bars, label]
    return rows
