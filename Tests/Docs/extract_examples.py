#!/usr/bin/env python3
"""Makes one source file of the examples of documents: extract_examples.py OUTPUT DOCUMENT...

A document is a page, whose examples are its blocks of ```cpp, or a header, whose examples stand between @code and
@endcode; CONTRIBUTING.md says which become files and bodies of functions. One with main() is a file, too, and each
file stands in a namespace of its own. What the hidden part of an example leaves open, as in "void Desk::Open() {", is
closed behind it. Where an example is wrong, the compiler names the line of the document.
"""
import re
import sys
import textwrap
from pathlib import Path

DECLARATION = re.compile(r"(#|class |struct |namespace |template\b|enum |extern |inline |concept |VEK_)")
FUNCTION = re.compile(r"(?!if|for|while|switch|do|try|else)[^;={}]*\)( const| noexcept| override)*\n\{")
ON_PAGE = re.compile(r"^<!-- example(?P<all>s?):(?P<hidden>.*?)-->|^ *```cpp\n(?P<code>.*?)^ *```$", re.M | re.S)
IN_HEADER = re.compile(r"^ */// @code\n(?P<code>(?: *///.*\n)*?) */// @endcode$", re.M)
# Whatever looks like the beginning of an example.
FENCE = re.compile(r"^.*(```|~~~)\W*(c|cc|cpp|cxx|c\+\+|h|hh|hpp)(?!\w).*$", re.M | re.I)
CODE = re.compile(r"^.*[@\\]code\b.*$", re.M)

PROLOGUE = """#include <QtWidgets>
#include <VekAppCore/VekAppCore.h>
#include <VekAppCore/Widgets.h>
using namespace vek;
"""


def extract(path):
    """Yields the parts of a source file, and whether each can do without the library's own includes."""
    text = path.read_text(encoding="utf-8")
    is_page = path.suffix == ".md"
    examples = list((ON_PAGE if is_page else IN_HEADER).finditer(text))
    ends = {match.start("code") - 1 for match in examples}  # of the lines before
    for start in (FENCE if is_page else CODE).finditer(text):
        if start.end() not in ends and path.name != "Tutorial.md":  # which is compiled as programs
            line = text.count("\n", 0, start.start()) + 1
            sys.exit(f"{path}:{line}: error: no example is recognised here; is it spelled as the others?")
    hidden = ""
    for match in examples:
        part = match.groupdict()
        line = text.count("\n", 0, match.start("hidden" if part["code"] is None else "code")) + 1
        place = f'#line {line} "{path.as_posix()}"\n'
        if part["code"] is None:
            if part["all"]:
                yield f"{place}{part['hidden']}\n", False
            else:
                hidden += f"{place}{part['hidden']}\n"
            continue
        name = re.sub(r"\W", "_", f"{path.stem}_{line}")
        code = part["code"] if is_page else re.sub("^ *///", "", part["code"], flags=re.M)
        code = textwrap.dedent(code)
        # Out of namespace and function; another file of the page is there already.
        for include in re.findall(r"^#include <.*\n", code, re.M):
            yield include, True
        code, includes = re.subn(r"^#(include|pragma).*", "", code, flags=re.M)
        start = re.sub(r"\A(//.*\n|\s*\n)*", "", code)
        is_declaration = DECLARATION.match(start) or FUNCTION.match(start)
        open_braces = hidden.count("{") - hidden.count("}")
        if re.search(r"\bmain\(", code) or (includes and is_declaration):
            yield f"inline namespace {name}\n{{\n{place}{code}}}\n", True
        elif open_braces:
            yield hidden + place + code + "}" + "};" * (open_braces - 1) + "\n", False
        elif is_declaration:
            yield hidden + place + code, False
        else:
            yield f"void {name}()\n{{\n{hidden}{place}{code}}}\n", False
        hidden = ""
    if hidden:
        sys.exit(f"{path}: error: no example follows <!-- example:{hidden}-->")


def main():
    output, *documents = map(Path, sys.argv[1:])
    source = ""
    has_library = False
    for document in documents:
        for part, is_complete in extract(document):
            if not is_complete and not has_library:
                source += PROLOGUE
                has_library = True
            source += part
    output.write_text(source, encoding="utf-8")


main()
