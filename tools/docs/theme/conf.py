"""How the generator reads the handbook's pages, and how they look."""

project = "Mornal"
author = copyright = "the authors of Mornal and kaVel"
extensions = ["myst_parser"]
myst_heading_anchors = 4
suppress_warnings = ["myst.header"]
html_theme = "furo"
html_title = "Mornal"
html_static_path = ["."]
html_css_files = ["handbook.css"]
html_copy_source = False
html_favicon = "../../../assets/icons/mornal-32.png"
html_logo = "../../../assets/icons/mornal-128.png"
exclude_patterns = []
highlight_language = "none"
