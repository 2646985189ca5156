"""The documents of the tree as pages of the reference.

Each page gets a name that stays, and so does each of its headings. Links between documents lead to their pages; what
a link names in the tree but not among the documents becomes code. Documents that the README.md of their folder links
stand below it in the list.
"""
import os
import pathlib
import re
import shutil
import sys


def slug(text):
    return re.sub(r"[^a-z0-9]+", "-", text.lower()).strip("-")


def page_name(path):
    name = path.removesuffix(".md").removeprefix("docs/").removesuffix("/README")
    return "index" if name == "README" else "page_" + slug(name).replace("-", "_")


class Page:
    def __init__(self, path, documents, source):
        self.path, self.documents, self.source = path, documents, source
        self.name, self.folder = page_name(path), os.path.dirname(path)
        self.text = pathlib.Path(path).read_text()
        self.anchors = {}     # how many headings have a text
        self.below = set()    # the documents that were linked as pages below this one

    def prepare(self):
        parts = re.split(r"^(```.*?^```$)", self.text, flags=re.M | re.S)
        parts[1::2] = [re.sub(r"^```cpp.*", "```{.cpp}", fence, count=1) for fence in parts[1::2]]
        parts[::2] = [self.prose(part) for part in parts[::2]]
        target = self.source / self.path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text("".join(parts))

    def prose(self, text):
        text = re.sub(r"(?<!!)\[([^\]]+)\]\((?![a-z]+:)([^)\s]+)\)", self.link, text)
        text = re.sub(r"!\[([^\]]*)\]\(([^)]+)\)", self.picture, text)
        return re.sub(r"^(#+) (.*)$", self.heading, text, flags=re.M)

    def link(self, match):
        shown, target = match.groups()
        file, _, anchor = target.partition("#")
        file = os.path.normpath(os.path.join(self.folder, file)) if file else self.path
        if not os.path.exists(file):
            sys.exit(f"{self.path}: there is no {target}")
        if file not in self.documents:
            return shown if shown.startswith("`") else f"`{shown}`"
        is_sibling = self.path.endswith("/README.md") and os.path.dirname(file) == self.folder and not anchor
        if is_sibling and file not in self.below:
            self.below.add(file)
            return f'@subpage {page_name(file)} "{shown}"'
        return f"[{shown}](@ref {page_name(file)}{'-' + anchor if anchor else ''})"

    def picture(self, match):
        shown, target = match.groups()
        picture = pathlib.Path(self.folder) / target
        shutil.copy(picture, self.source / "pictures" / picture.name)
        return f'<img class="picture" src="{picture.name}" alt="{shown}"/>'

    def heading(self, match):
        marks, title = match.groups()
        if marks == "#" and self.name == "index":
            return match.group()
        if marks == "#":
            has_contents = len(re.findall("^## ", self.text, re.M)) > 3
            return f"# {title} {{#{self.name}}}" + ("\n\n[TOC]" if has_contents else "")
        anchor = slug(title)
        count = self.anchors[anchor] = self.anchors.get(anchor, 0) + 1
        return f"{marks} {title} {{#{self.name}-{anchor}{'-' + str(count - 1) if count > 1 else ''}}}"


def prepare(source):
    (source / "pictures").mkdir()
    documents = {str(path) for pattern in ("*.md", "docs/**/*.md") for path in pathlib.Path().glob(pattern)}
    for path in sorted(documents):
        Page(path, documents, source).prepare()
