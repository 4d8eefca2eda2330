"""Small changes to C++ text, each of which a test should notice.

The text is expected in the layout of this project: binary operators between blanks, one statement a
line. What this reads as code is neither a comment nor a directive.
"""

import dataclasses
import re

SWAPPED_OPERATORS = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
    "&&": "||", "||": "&&", "+": "-", "-": "+", "*": "+", "/": "*", "+=": "-=", "-=": "+=",
}
SWAPPED_WORDS = {"true": "false", "false": "true", "min": "max", "max": "min",
                 "begin": "end", "break": "continue", "front": "back", "back": "front"}

TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
      | (?P<raw>R"(?P<fence>[^(]*)\(.*?\)(?P=fence)")
      | (?P<string>"(?:\\.|[^"\\\n])*")
      | (?P<character>'(?:\\.|[^'\\\n])')
      | (?P<number>(?<![\w.])\d[\d']*\b(?![.\w]))
      | (?P<word>\b[A-Za-z_]\w*\b)
      | (?P<step>\+\+|--)
      | (?P<binary>(?<=[ ])(?:<=|>=|==|!=|&&|\|\||\+=|-=|<|>|\+|-|\*|/)(?=[ ]))
      | (?P<negation>(?<=[\s(])!(?=[\w(*]))""",
    re.MULTILINE | re.DOTALL | re.VERBOSE)

STATEMENT = re.compile(r"^(?P<indent> {4,})(?!return\b|const\b|case\b|default\b|throw\b|using\b|"
                       r"static\b|else\b|if\b|for\b|while\b|break\b|continue\b)[\w:*(][^\n{}]*;$")


@dataclasses.dataclass(frozen=True)
class Mutant:
    """One change: the text from `begin` to `end` becomes `replacement`."""
    kind: str
    begin: int
    end: int
    replacement: str

    def applied(self, text):
        return text[:self.begin] + self.replacement + text[self.end:]


def line_of(text, place):
    """The number of the line where a place is, from 1."""
    return text.count("\n", 0, place) + 1


def find_mutants(text):
    """All mutants of a text, by place."""
    return sorted(_of_tokens(text) + _of_statements(text), key=lambda mutant: mutant.begin)


def _of_tokens(text):
    mutants = []
    for token in TOKEN.finditer(text):
        kind = token.lastgroup
        replacement = _REPLACEMENTS[kind](token.group(kind)) if kind in _REPLACEMENTS else None
        if replacement is not None and not _is_declaration(text, token):
            mutants.append(Mutant(kind, token.start(kind), token.end(kind), replacement))
    return mutants


def _is_declaration(text, token):
    """Whether it stands where a change is no change of what is done, or is refused at once."""
    line = text[text.rfind("\n", 0, token.start()) + 1:text.find("\n", token.end())]
    return bool(re.match(r"\s*(static_assert|template|using|namespace|extern|#)", line))


def _other_string(literal):
    """With another first letter, escapes and conversions left as they are."""
    place = re.search(r"(?<![\\%])(?<!%l)(?<!%\*)[A-Za-z]{3}", literal)
    if not place:
        return None
    letter = literal[place.start()]
    return literal[:place.start()] + ("Q" if letter != "Q" else "X") + literal[place.start() + 1:]


_REPLACEMENTS = {
    "string": _other_string,
    "number": lambda number: str(int(number.replace("'", "")) + 1),
    "word": SWAPPED_WORDS.get,
    "step": {"++": "--", "--": "++"}.get,
    "binary": SWAPPED_OPERATORS.get,
    "negation": lambda _: "",
}


def _of_statements(text):
    """Statements left out, and neighbours in the other order."""
    mutants = []
    begin = 0
    previous = None
    for line in text.split("\n"):
        statement = STATEMENT.match(line)
        end = begin + len(line)
        if statement:
            mutants.append(Mutant("statement", begin, end, statement["indent"] + ";"))
            if previous and previous[2] == statement["indent"]:
                swapped = line + "\n" + text[previous[0]:previous[1]]
                mutants.append(Mutant("order", previous[0], end, swapped))
        previous = (begin, end, statement["indent"]) if statement else None
        begin = end + 1
    return mutants
