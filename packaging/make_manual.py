# SPDX-License-Identifier: MIT
"""Puts the manual together: copies its pages and writes the index that its search box looks into.

    make_manual.py FROM TO

The index is a script, search-index.js, because a page that is opened from a file may load scripts but
read no other file. It holds a row for each place that can be linked to: page, anchor, titles, text.
"""
import html.parser
import json
import shutil
import sys
from pathlib import Path

HEADINGS = ("h1", "h2", "h3")


class Sections(html.parser.HTMLParser):
    """The text of a page, cut at its headings and at table rows with an anchor."""

    def __init__(self, text):
        super().__init__()
        self.sections = []
        self.in_main = False
        self.heading = None
        self.feed(text)

    def begin(self, anchor):
        self.sections.append({"anchor": anchor, "title": "", "text": ""})

    def handle_starttag(self, tag, attributes):
        anchor = dict(attributes).get("id")
        if tag == "main":
            self.in_main = True
        elif self.in_main and tag in HEADINGS:
            self.heading = tag
            self.begin(anchor or "")
        elif self.in_main and tag in ("p", "td", "th", "li", "dd", "dt", "pre", "br") and self.sections:
            self.sections[-1]["text"] += " "

    def handle_endtag(self, tag):
        if tag == "main":
            self.in_main = False
        elif tag == self.heading:
            self.heading = None

    def handle_data(self, data):
        if self.in_main and self.sections:
            self.sections[-1]["title" if self.heading else "text"] += data


def flat(text):
    return " ".join(text.split())


def index(folder):
    rows = []
    for path in sorted(folder.glob("*.html")):
        sections = Sections(path.read_text(encoding="utf-8")).sections
        page_title = flat(sections[0]["title"]) if sections else path.stem
        for section in sections:
            target = path.name + ("#" + section["anchor"] if section["anchor"] else "")
            rows.append([target, page_title, flat(section["title"]), flat(section["text"])])
    return rows


def main():
    source, target = Path(sys.argv[1]), Path(sys.argv[2])
    rows = index(source)
    if target.exists():
        shutil.rmtree(target)
    shutil.copytree(source, target)
    lines = ",\n".join(json.dumps(row, ensure_ascii=False) for row in rows)
    (target / "search-index.js").write_text(f"const searchIndex = [\n{lines}\n];\n", encoding="utf-8")


if __name__ == "__main__":
    main()
