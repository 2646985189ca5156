"""Lets names in code lead to what they name, in the pages that Doxygen made."""
import re
import xml.etree.ElementTree

NAME = r"~?[A-Za-z]\w*(?:::~?\w+)*(?:\(\))?"


class Names:
    """The places of names, from Doxygen's tag file."""

    def __init__(self, tags):
        self.places = {}  # by full names, such as "brindle::time::TickTime::Abs"
        self.full = {}    # the full names by their last part
        self.scopes = {}  # the full names of classes and namespaces by their pages
        for compound in xml.etree.ElementTree.parse(tags).getroot():
            if compound.get("kind") in ("class", "struct", "namespace"):
                scope, page = compound.findtext("name"), compound.findtext("filename")
                self.scopes[page] = scope
                self.add(scope, page)
                constructor = re.sub(r"<.*", "", scope).split("::")[-1]
                self.add_members(compound, f"{scope}::", {constructor})
            elif compound.get("kind") == "file":
                self.add_members([member for member in compound.findall("member") if member.get("kind") == "define"])

    def add_members(self, members, prefix="", left_out=()):
        for member in members:
            name = member.findtext("name")
            if member.tag == "member" and name not in left_out:
                self.add(prefix + name, f"{member.findtext('anchorfile')}#{member.findtext('anchor')}")

    def add(self, name, place):
        if name not in self.places:  # otherwise an overload: the first one stands for all
            self.places[name] = place
            self.full.setdefault(name.split("::")[-1], []).append(name)

    def place(self, name, page):
        """Where a name leads that stands in a page, or None."""
        name = name.removesuffix("()")
        scope = self.scopes.get(page, "brindle")
        while scope:
            if f"{scope}::{name}" in self.places:
                return self.places[f"{scope}::{name}"]
            scope = scope.rpartition("::")[0]
        if not re.match("[A-Z]|k[A-Z]", name) and "::" not in name and "_" not in name:
            return None  # elsewhere it is likely to be a word
        found = [full for full in self.full.get(name.split("::")[-1], []) if f"::{full}".endswith(f"::{name}")]
        return self.places[found[0]] if len(found) == 1 else None


def link(html, tags):
    names = Names(tags)
    for path in sorted(html.glob("*.html")):
        def leading(match):
            place = names.place(match.group(1), path.name)
            return match.group() if place in (None, path.name) else f'<a class="el" href="{place}">{match.group()}</a>'

        parts = re.split(r"(<a .*?</a>)", path.read_text(), flags=re.S)
        parts[::2] = [re.sub(f"<code>({NAME})</code>", leading, part) for part in parts[::2]]
        path.write_text("".join(parts))
