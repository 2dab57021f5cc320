"""What the site does beyond its settings: two languages, tabs of examples, generated pages.

In the sources the same example in several languages is one code block below the other, with the
output that they share behind the last: they read well in any browser of files. On the site they are
tabs. A link out of docs/ becomes plain words there, since the repository's files are no part of it.
"""

import pathlib
import re
import sys

from mkdocs.structure.files import File
from mkdocs.structure.nav import Link, Navigation, Section

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import reference  # noqa: E402

TABS = {"cpp": "C++", "c": "C", "python": "Python", "vbs": "Script", "sh": "Shell", "cmake": "CMake",
        "bat": "Command prompt"}
OUTPUT = {"en": "It prints", "es": "Escribe"}
ENGLISH_ALONE = {"Referencia (en inglés)": "reference/", "Por dentro (en inglés)": "layout|trust|members"}
FENCE = r"```(\w+)\n(.*?)^```\n"
# The class's list of members in the sources is its page of the reference on the site.
MEMBERS = re.compile(r"members\.md#(cgeo_\w+)")
CLASSES = {name.lower(): name for name in reference.class_names(reference.ROOT)}
RUN = re.compile(rf"^(?:{FENCE}\s*)+", re.M | re.S)

known = set()


def on_files(files, config):
    made = pathlib.Path(config["site_dir"]).parent / "reference"
    reference.write(reference.ROOT, made / "reference")
    for file in list(files):
        if file.src_uri.endswith(".py") or "__pycache__" in file.src_uri:
            files.remove(file)
    for page in sorted((made / "reference").iterdir()):
        files.append(File(f"reference/{page.name}", str(made), config["site_dir"],
                          config["use_directory_urls"]))
    known.clear()
    known.update(file.src_uri for file in files)
    return files


# ---- Pages ------------------------------------------------------------------


def on_page_markdown(markdown, page, config, files):
    text = RUN.sub(lambda run: examples(run[0], language_of(page)), markdown)
    if page.file.src_uri != "members.md":
        text = MEMBERS.sub(lambda found: f"reference/{CLASSES[found[1]]}.md", text)
    return re.sub(r"(!?)\[([^\]]+)\]\(([^)\s]+)\)", lambda found: link(found, page), text)


def examples(run, language):
    """A run of code blocks: tabs, and below them what all of them print."""
    blocks = re.findall(FENCE, run, re.M | re.S)
    codes = [block for block in blocks if block[0] != "text"]
    if len(blocks) < 2 or len({name for name, _ in codes}) < len(codes):
        return with_titles(run, language)
    made = []
    for name, code in blocks:
        fence = fenced(name, code, language)
        if name != "text" and len(codes) > 1:
            indented = "".join("    " + line if line.strip() else line
                               for line in fence.splitlines(keepends=True))
            fence = f'=== "{TABS[name]}"\n\n{indented}'
        made.append(fence)
    return "\n".join(made) + "\n"


def with_titles(run, language):
    return re.sub(FENCE, lambda found: fenced(found[1], found[2], language), run, flags=re.M | re.S)


def fenced(name, code, language):
    title = f' title="{OUTPUT[language]}"' if name == "text" else ""
    return f"``` {name}{title}\n{code}```\n" if title else f"```{name}\n{code}```\n"


def link(found, page):
    """Its words where it leads to a file of the repository that is no part of the site. Any other
    stays: one that leads nowhere is for the builder to complain about."""
    picture, words, target = found.groups()
    path = target.partition("#")[0]
    if picture or not path or re.match(r"[a-z]+:", path) or destination(path, page) in known:
        return found[0]
    beside = pathlib.Path(page.file.abs_src_path).parent
    return words if (beside / path).exists() else found[0]


def destination(path, page):
    folder = pathlib.PurePosixPath(page.file.src_uri).parent
    parts = []
    for part in (folder / path).parts:
        if part == ".." and parts and parts[-1] != "..":
            parts.pop()
        else:
            parts.append(part)
    return "/".join(parts)


# ---- Languages --------------------------------------------------------------


def language_of(page):
    return "es" if page.file.src_uri.startswith("es/") else "en"


def on_nav(nav, config, files):
    """In Spanish the parts that stand in English alone are links to the other language's pages."""
    english, spanish = nav.items
    for title, parts in ENGLISH_ALONE.items():
        found = [page for section in english.children if isinstance(section, Section)
                 for page in section.children if re.match(parts, page.file.src_uri)]
        spanish.children.append(Section(title, [Link(page.title or page.file.name, page.url)
                                                for page in found]))
    return nav


def on_page_context(context, page, config, nav):
    """The page's own language, its part of the navigation, and the way to the other language."""
    language = language_of(page)
    english, spanish = nav.items
    part = spanish if language == "es" else english
    own = Navigation(part.children, nav.pages)
    own.homepage = part.children[0]
    context["nav"] = own
    config["theme"]._vars["language"] = language  # the theme has one for the whole site
    config["extra"]["homepage"] = own.homepage.url
    config["extra"]["alternate"] = [
        {"name": "English", "lang": "en", "link": counterpart(page, "en")},
        {"name": "Español", "lang": "es", "link": counterpart(page, "es")}]
    for beside in ("previous_page", "next_page"):
        other = getattr(page, beside)
        if other is not None and language_of(other) != language:
            setattr(page, beside, None)
    return context


def counterpart(page, language):
    """The page in a language, or that language's home where it has none."""
    plain = re.sub(r"^es/", "", page.file.src_uri)
    wanted = plain if language == "en" else "es/" + plain
    if wanted not in known:
        wanted = "es/index.md"
    return re.sub(r"\.md$", ".html", wanted)
