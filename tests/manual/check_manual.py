# SPDX-License-Identifier: MIT
"""Checks the manual: its links and pictures exist, and it knows every message of the program.

    check_manual.py SOURCE_FOLDER

Messages are taken from the string literals of the sources: those of three words and more.
"""
import html.parser
import re
import sys
from pathlib import Path

CORE = ("foundation", "messages", "oracle", "datasources", "jobs", "engine", "schemaops", "watch",
        "preview", "doctor", "workspace")
# In the windows, what is handed to a message box or to the message list.
SAID = re.compile(r"\b(?:ShowNotice|ShowFailure|Confirm|Refused|Done|Log\(\)\.Add)\s*\(")
LITERAL = re.compile(r"""'(?:[^'\\]|\\.)'|"((?:[^"\\\n]|\\.)*)["]""")  # of characters, too: they are no texts
# Statements, their parts and other texts that are no messages.
NO_MESSAGE = re.compile(
    r"^ ?(--|select|alter|create|drop table|drop index|begin (dbms|sys)|where|and |from |order |inner|owner )"
    r"|^ ?(# (HELP|TYPE)|time,captured|update |delete |insert |operation=|seg_owner|\(select|dbms_|D:P|C\.|Quillmere harbor|%|YYYY-)"
    r"|, sysdate|NOT EXISTS|NOT IN|NVL\(|=\(|constraint_type|table_name=|_name='|index_name|index_owner|and owner"
    r"|num_rows|dba_|(PRIMARY|FOREIGN) KEY|little-endian|^read the list",
    re.IGNORECASE)


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.words, self.targets, self.anchors = [], [], set()
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.targets += [values[name] for name in ("href", "src", "srcset") if values.get(name)]
        self.anchors |= {values[name] for name in ("id", "name") if values.get(name)}

    def handle_data(self, data):
        self.words.append(data)

    def text(self):
        return flat("".join(self.words))


def flat(text):
    return " ".join(text.split())


def without_comments(source):
    return re.sub(r"^\s*(//|#include).*$|\s//\s.*$", "", source, flags=re.MULTILINE)


def literals(source):
    """Adjacent literals are one text, as the compiler sees them."""
    joined = re.sub(r'"\s*\n\s*"', "", source)
    for found in LITERAL.finditer(joined):
        yield (found.group(1) or "").replace('\\"', '"').replace("\\n", "\n")


def call_arguments(source, begin):
    depth = 0
    for end in range(begin, len(source)):
        depth += {"(": 1, ")": -1}.get(source[end], 0)
        if depth == 0:
            return source[begin:end]
    return source[begin:]


def messages(folder):
    for name in CORE:
        for file in sorted((folder / "src" / name).glob("*.cpp")):
            yield from ((file, text) for text in literals(without_comments(file.read_text())))
    windows = [file for name in ("ui", "app") for file in sorted((folder / "src" / name).rglob("*.cpp"))]
    for file in windows:
        source = without_comments(file.read_text())
        for call in SAID.finditer(source):
            for text in literals(call_arguments(source, call.end() - 1)):
                yield from ((file, part) for part in re.split(r"%[1-9]|%L?n", text))


def wanted(folder):
    for file, text in messages(folder):
        if len(flat(text).split()) >= 3 and not NO_MESSAGE.search(text):
            yield file, flat(text)


def main():
    folder = Path(sys.argv[1])
    pages = {file: Page(file.read_text(encoding="utf-8")) for file in sorted((folder / "HTML").glob("*.html"))}
    faults = []
    for file, page in pages.items():
        for target in page.targets:
            if re.match(r"[a-z]+:", target):
                faults.append(f"{file.name}: {target}: the manual stands alone, without links elsewhere")
                continue
            if target == "search-index.js":
                continue  # written when the manual is put together
            path, _, anchor = target.partition("#")
            linked = (file.parent / path).resolve() if path else file.resolve()
            if not linked.is_file():
                faults.append(f"{file.name}: {target} is missing")
            elif anchor and anchor not in next(p.anchors for f, p in pages.items() if f.resolve() == linked):
                faults.append(f"{file.name}: {target}: no such place in the page")
    known = " ".join(page.text() for page in pages.values())
    for file, text in wanted(folder):
        if text not in known:
            faults.append(f"the manual does not explain the message of {file.relative_to(folder)}: {text}")
    stored = re.findall(r'\.Add(?:Child|Number)\("(\w+)"',
                        (folder / "src/foundation/settings.cpp").read_text().partition('"settings")')[2])
    described = (folder / "HTML/settings.html").read_text()
    faults += [f"settings.html: the setting {name} is missing" for name in stored
               if f"<code>{name}</code>" not in described]
    navigation = {re.sub(' aria-current="page"', "", re.search(r"<nav>.*?</nav>", file.read_text(), re.S).group())
                  for file in pages}
    if len(navigation) != 1 or any(f'"{file.name}"' not in min(navigation) for file in pages):
        faults.append("the pages differ in their navigation, or it lacks one of them")
    version = re.search(r"project\(Quillmere VERSION (\S+)", (folder / "CMakeLists.txt").read_text()).group(1)
    for name, text in (("debian/changelog", f"quillmere ({version})"), ("CHANGELOG.md", f"\n## {version} "),
                       ("packaging/quillmere.metainfo.xml", f'<release version="{version}"')):
        if text not in (folder / name).read_text():
            faults.append(f"{name} does not know version {version}")
    for file in pages:
        text = file.read_text()
        anchors = re.findall(' id="([^"]+)"', text)
        faults += [f"{file.name}: {anchor} stands there twice" for anchor in set(anchors) if anchors.count(anchor) > 1]
        faults += [f"{file.name}: a {tag} that the keyboard does not reach"
                   for tag in re.findall("<pre[^>]*>", text) if "tabindex" not in tag]
        if file.name == "messages.html":
            faults += [f"{file.name}: a row without an anchor: {row}" for row in re.findall("<tr><td><code>.*", text)]
    shown = {target for page in pages.values() for target in page.targets}
    for picture in sorted((folder / "HTML/images").glob("*")):
        if f"images/{picture.name}" not in shown:
            faults.append(f"images/{picture.name} is in no page")
    print("\n".join(faults) or f"{len(pages)} pages, all links, pictures and messages are there")
    return 1 if faults or not pages else 0


if __name__ == "__main__":
    sys.exit(main())
