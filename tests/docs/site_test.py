#!/usr/bin/env python3
"""Builds the site and follows its links.

    site_test.py FOLDER

Every link leads to a file of the site and to an anchor that is there, nothing of a page comes over the
network, each page is in the language that it says, and from each the reference is one click away.
"""

import html.parser
import pathlib
import shutil
import subprocess
import sys
from urllib.parse import unquote, urlsplit

from pages import ROOT

BROUGHT = {("script", "src"), ("img", "src"), ("link", "href"), ("iframe", "src"), ("source", "src")}


class Page(html.parser.HTMLParser):
    """What a page holds: its anchors, its links and what a browser fetches for it."""

    def __init__(self, text):
        super().__init__()
        self.anchors, self.links, self.brought, self.language = set(), [], [], None
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name == "id":
                self.anchors.add(value)
            elif (tag, name) in BROUGHT:
                self.brought.append(value)
            elif (tag, name) == ("a", "href"):
                self.links.append(value)
            elif (tag, name) == ("html", "lang"):
                self.language = value


def wrong_links(path, page, pages):
    for link in [*page.links, *page.brought]:
        parts = urlsplit(link)
        if parts.scheme in ("data", "mailto"):
            continue
        if parts.scheme or parts.netloc:
            # The theme names its maker below each page.
            if link in page.brought or "mkdocs-material" not in link:
                yield f"{link} leads out of the site"
            continue
        target = (path.parent / unquote(parts.path)).resolve() if parts.path else path
        if target.is_dir():
            target /= "index.html"
        if not target.exists():
            yield f"{link} leads nowhere"
        elif parts.fragment and target in pages and unquote(parts.fragment) not in pages[target].anchors:
            yield f"{link} has no such place"


def main():
    site = pathlib.Path(sys.argv[1]).resolve()
    shutil.rmtree(site, ignore_errors=True)
    subprocess.run(["/usr/bin/mkdocs", "build", "--strict", "--site-dir", site], cwd=ROOT,
                   check=True)
    paths = [path for path in site.rglob("*.html") if path.name != "404.html"]
    pages = {path: Page(path.read_text(encoding="utf-8")) for path in paths}
    failed = 0
    for path, page in sorted(pages.items()):
        name = path.relative_to(site)
        wanted = "es" if name.parts[0] == "es" else "en"
        wrong = list(wrong_links(path, page, pages))
        if page.language != wanted:
            wrong.append(f"its language is {page.language}")
        if not any("reference/" in link or name.parts[0] == "reference" for link in page.links):
            wrong.append("it has no link to the reference")
        failed += len(wrong)
        for one in wrong:
            print(f"FAILED {name}: {one}")
    print(f"{len(pages)} pages, {sum(len(page.links) for page in pages.values())} links")
    return 1 if failed or len(pages) < 20 else 0


if __name__ == "__main__":
    sys.exit(main())
