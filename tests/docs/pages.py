"""The pages and the examples in them: README.md, docs/ and the same in Spanish.

An example is a run of fenced code blocks, the same in several languages, and a block `text` right
behind with what each of them prints. A comment right above a block says what is special about it:

    <!-- not run: REASON -->              the block has no output and is left alone
    <!-- environment: NAME=VALUE ... -->  what the example is to find in its environment
    <!-- continues: -->                   it goes on where the page's last block of its language ended
"""

import pathlib
import re
from typing import NamedTuple, Optional

ROOT = pathlib.Path(__file__).resolve().parents[2]
FENCE = re.compile(r"^```(\w+)\n(.*?)^```$", re.M | re.S)
REMARK = re.compile(r"<!-- (not run|environment|continues):\s?(.*?)\s*-->\s*\Z", re.S)


class Example(NamedTuple):
    page: str
    line: int
    language: str
    code: str
    output: Optional[str]
    reason: Optional[str]
    environment: dict
    continues: bool

    @property
    def place(self):
        return f"{self.page}:{self.line} ({self.language})"


def english_pages():
    """The pages that are written; those made from the library have tests of their own."""
    return [ROOT / "README.md", *sorted(page for page in (ROOT / "docs").rglob("*.md")
                                        if (ROOT / "docs" / "es") not in page.parents)]


def spanish(page):
    """Where a page stands in Spanish."""
    if page.name == "README.md":
        return page.with_name("README.es.md")
    return ROOT / "docs" / "es" / page.relative_to(ROOT / "docs")


def translated_pages():
    return [page for page in english_pages() if spanish(page).exists()]


def examples_of(page):
    text = page.read_text(encoding="utf-8")
    found, waiting, end = [], [], 0
    for fence in FENCE.finditer(text):
        between, end = text[end:fence.start()], fence.end()
        if between.strip():
            found += waiting
            waiting = []
        if fence[1] == "text":
            found += [one if one.reason else one._replace(output=fence[2]) for one in waiting]
            waiting = []
        else:
            waiting.append(example(page, text, fence, between))
    return joined(found + waiting)


def joined(parts):
    """Examples with those that go on behind them: one program, one output."""
    found = []
    for part in parts:
        if part.continues:
            at = max(i for i, one in enumerate(found) if one.language == part.language)
            before = found[at]
            found[at] = before._replace(code=before.code + part.code,
                                        output=before.output + part.output)
        else:
            found.append(part)
    return found


def example(page, text, fence, between):
    remark = REMARK.search(between)
    told = {remark[1]: " ".join(remark[2].split())} if remark else {}
    environment = dict(pair.split("=", 1) for pair in told.get("environment", "").split())
    return Example(str(page.relative_to(ROOT)), text.count("\n", 0, fence.start()) + 1, fence[1],
                   fence[2], None, told.get("not run"), environment, "continues" in told)


def examples(language):
    """All of one language, with the page's own order."""
    return [one for page in english_pages() for one in examples_of(page)
            if one.language == language]
