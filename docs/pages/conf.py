"""How Sphinx makes pages of the documents; `scripts/docs` lays them out for it."""

import re
import sys
from pathlib import Path

from sphinx.util import logging

made = Path(__file__).parents[2] / "build" / "docs"
sys.path.insert(0, str(made / "python"))

project = "Lumo Service Layer client"
version = release = re.search(
    r'VERSION "(.*?)"', (made / "headers" / "lumo" / "Version.h").read_text()
).group(1)

extensions = ["myst_parser", "sphinx.ext.autodoc"]
myst_heading_anchors = 3  # links to headings, as forges have them
highlight_language = "none"  # of blocks that do not say it
html_theme = "alabaster"
html_theme_options = {
    "description": "Version " + version,
    "fixed_sidebar": True,
    "page_width": "1100px",
    "sidebar_width": "250px",
}
html_sidebars = {"**": ["about.html", "navigation.html", "searchbox.html"]}
html_copy_source = False
html_extra_path = [str(made / "extra")]

toc_object_entries = False
default_role = "code"  # docstrings have names between backticks
autodoc_typehints = "signature"
autodoc_member_order = "bysource"
autodoc_default_options = {"members": True, "undoc-members": True}


def refuse_silence(app, what, name, obj, options, lines):
    if what != "module" and (not any(lines) or lines[0].startswith("Alias for field")):
        logging.getLogger(__name__).warning("%s has no docstring", name)


def setup(app):
    app.connect("autodoc-process-docstring", refuse_silence)
