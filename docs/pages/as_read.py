#!/usr/bin/env python3
"""Writes headers to a folder as people read them: one comment holds for what belongs together.

In these headers a comment stands above the accessors of a property (`GetName`, `SetName`) and above
the overloads of a function, which follow each other without a blank line. One that ends with a
colon holds for all that follows without a comment of its own up to the blank line. This
program writes the comment before each of them, on the same line, so that lines keep their numbers.
Doxygen, which knows no such rules, then reads what it has written:

    docs/pages/as_read.py FOLDER HEADER...
"""
import pathlib
import re
import sys

# What every class has is said here once; what the compiler could write is not shown.
EVERY_CLASS = (
    (r"\w+\(\) = default;", "Every field is at its default."),
    (r"(explicit )?\w+\(XmlNode<char> const\* node\)", "Reads itself from its element in a reply."),
    (r"(virtual )?void CreateXMLNode\(", "Writes its content into its element."),
    (r"std::vector<\S+>( const)?& Access", "In the order of the message."),
    (r"void Add\w+\(SmartPtr<", "Adds it at the end of the list."),
    (r"SmartPtr<\w+Impl> \w+\(\) const", "The operation."),
    (r"static constexpr char Name\[\]", "Name of the operation."),
    (r"static constexpr bool Writes = true", "Changes data: its request is never sent twice."),
    (r"static void (StaticInit|RegisterTypes)\(\)", "Called by library start-up."),
    (r"static void StaticShutdown\(\)", "Called by library shut-down."),
    (r"using HoldsNothingRead = ", "See `lumo::FromXml`."),
    (r"(virtual )?~\w+\(\)", None),
    (r"(\w+)\(\1( const&|&&).*(= default|= delete|\{ \*this = other; \}|noexcept;)", None),
    (r"(\w+)& operator=\(\1( const&|&&)", None),
    (r".*\bm_\w+( = .*)?;$", None),  # protected ones are for classes of this library
)


def name_of(code):
    """What a line declares: a function, a pointer to one, or something with a value."""
    code = re.sub(r"<[^()]*>", "", code)
    for shape in (
        r"(operator ?(?:\(\)|[^\s\w(]+|\w+)|~?\w+)\(",
        r"\(\*(\w+)\)",
        r"(?:^enum|^using|\S) (\w+)(?:\[\])?(?: [=:] |;|\{)",
    ):
        if found := re.search(shape, code):
            return found.group(1)
    return None


def property_of(name):
    """`GetNames`, `AddName` and `Name` are of one property, as are `new` and `delete`."""
    name = re.sub(r"^(Get|Set|Access|Add|Has|Is)(?=[A-Z])", "", name)
    return re.sub(r"^operator (new|delete)$", "memory", re.sub(r"ies$", "y", name).rstrip("s"))


def shown(lines):
    comment = []  # right above
    said = {}  # since the last blank line, of each property
    of_all = of_class = ""  # what holds for all that follows, and what is said of the class
    declaration = ""  # what there is of it so far
    is_hidden = False
    for line in lines:
        line = re.sub(r"(?<=\d)'(?=\d)", "", line)  # Doxygen takes it for a quotation mark
        text = line.strip()
        code = re.sub(r"\s*//.*", "", text)
        if not declaration and not code.startswith("template"):
            name = name_of(code)
            words = " ".join(comment).split("  ")[0]  # the first paragraph
            if not text:
                said, of_all = {}, ""
            elif comment and re.match("class|struct", code):
                of_class = words
            if comment and name:
                said[property_of(name)] = words
                of_all = re.sub(":$", ".", words) if words.endswith(":") else ""
            elif name and "///<" not in text:
                words = said.get(property_of(name), of_all)
                if code.startswith("enum"):
                    words = words or of_class
                words = next((said for shape, said in EVERY_CLASS if re.match(shape, text)), words)
                is_hidden = is_hidden or words is None
                if words:
                    line = line.replace(text, f"/** {words} */ {text}")
            comment = [*comment, text[3:].strip()] if re.match("///(?!<)", text) else []
        is_hidden = is_hidden or code == "template <>"  # a case of what is shown
        yield "\n" if is_hidden else line
        declaration += "" if re.match("template ?<.*>$", code) else code
        if (
            re.match(r"#|}|(public|protected|private):$", declaration)
            or re.match(r"(template ?<.*>)?(class|struct|namespace|extern)\b.*{$", declaration)
            or declaration.count("{") == declaration.count("}") and declaration.endswith((";", "}"))
        ):
            declaration, is_hidden = "", False


if __name__ == "__main__":
    folder = pathlib.Path(sys.argv[1])
    for name in sys.argv[2:]:
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        with open(name, encoding="utf-8") as header:
            text = "".join(shown(header))
        text = re.sub(r"( *///.*):\n(?!\s*///)", r"\1.\n", text)
        (folder / name).write_text(text, encoding="utf-8")
