"""Where the code can be broken in one small way, and in which order that is tried."""

import bisect
import collections
import hashlib
import re

MOST_OF_A_FILE = 40  # mutants, so that tables of numbers do not take all places

# A mutant of a file: a span of its text, and what takes its place.
Mutant = collections.namedtuple("Mutant", "name file line start end text")


# ---- Where to break what ----

LEFT_ALONE = re.compile(
    r"""//[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:\\\n|[^\n])* | R"\(.*?\)" | "(?:\\.|[^"\\\n])*"
    | (?<![\dA-Fa-f])'(?:\\.|[^'\\\n])' | \bstatic_assert\(.*?\);""",
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)
# An operator of two sides stands between blanks, unlike the marks of a type.
OTHER = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "==": ["!="], "!=": ["=="], "&&": ["||"], "||": ["&&"],
    "+": ["-"], "-": ["+"], "*": ["+"], "/": ["*"], "%": ["/"],
    "&": ["|"], "|": ["&"], "^": ["|"], "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="],
    "^=": ["|="],
}  # fmt: skip
OPERATOR = re.compile(r"(?<= )(%s)(?= )" % "|".join(sorted(map(re.escape, OTHER), key=len)[::-1]))
WORDS = {
    "true": "false", "false": "true", "WHITE": "BLACK", "BLACK": "WHITE", "break": "continue",
    "continue": "break", "min": "max", "max": "min",
}  # fmt: skip
WORD = re.compile(r"\b(%s)\b(?!\(\) ?[{;])" % "|".join(WORDS))
STEP = re.compile(r"\+\+|--")
NUMBER = re.compile(r"(?<![\w.'])(\d[\d']*)(?=[UL]*(?![\w.']))")
CONDITION = re.compile(r"\b(?:if|while) (?=\()")
NEGATION = re.compile(r"(?<=[( ])!(?=[\w(*])")
ARGUMENTS = re.compile(r"(?<=\()([\w.]+), ([\w.]+)(?=[,)])")
STATEMENT = re.compile(
    r"(?<=[;{})]\n)(?P<indent>(?:    )+)"
    r"(?!(?:return|using|case|default|break|continue|goto|delete|throw)\b)"
    r"(?:\+\+|--|\*|\()?[A-Za-z_][\w:]*(?:(?:\.|->)\w+|\[[^\]\n]*\]|\([^()\n]*\))*"
    r"(?:\(|;| [-+*/%|&^]?= |\+\+;|--;| << )"
)


def mask(text):
    """The text with blanks for all that is to stay as it is, its line ends kept."""
    return LEFT_ALONE.sub(lambda m: re.sub(r"[^\n]", " ", m[0]), text)


def closing(text, opening):
    """The place behind the bracket that closes the one at `opening`."""
    depth = 0
    for place in range(opening, len(text)):
        depth += (text[place] in "([{") - (text[place] in ")]}")
        if depth == 0:
            return place + 1
    return len(text)


def end_of_statement(text, start):
    while start < len(text) and text[start] != ";":
        start = closing(text, start) if text[start] in "([{" else start + 1
    return start + 1


def changes(text):
    """All changes of a text, each a start, an end and what takes the place between them."""
    code = mask(text)
    for m in OPERATOR.finditer(code):
        if m[0] == "+" and '"' in (text[m.start() - 2], text[m.end() + 1]):
            continue  # texts have no other operator
        yield from ((m.start(), m.end(), other) for other in OTHER[m[0]])
    for m in WORD.finditer(code):
        yield m.start(), m.end(), WORDS[m[0]]
    for m in STEP.finditer(code):
        yield m.start(), m.end(), "--" if m[0] == "++" else "++"
    for m in NUMBER.finditer(code):
        number = int(m[0].replace("'", ""), 8 if re.match(r"0\d", m[0]) else 10)
        yield m.start(), m.end(), str(number + 1)
        if number > 0:
            yield m.start(), m.end(), str(number - 1)
    for m in CONDITION.finditer(code):
        end = closing(code, m.end())
        if " = " not in code[m.end() : end]:
            yield m.end(), end, "(!" + text[m.end() : end] + ")"
    for m in NEGATION.finditer(code):
        yield m.start(), m.end(), ""
    for m in ARGUMENTS.finditer(code):
        if m[1] != m[2]:
            yield m.start(), m.end(), m[2] + ", " + m[1]
    for m in STATEMENT.finditer(code):
        start = m.end("indent")
        yield start, end_of_statement(code, start), ";"


def draw(folder, files, seed):
    """The mutants of all files below a folder, in the order of the seed."""
    drawn = []
    for file in files:
        text = (folder / file).read_text()
        line_ends = [m.start() for m in re.finditer("\n", text)]
        copies = collections.Counter()
        mutants = []
        for start, end, other in changes(text):
            line = bisect.bisect_left(line_ends, start)
            line_start = line_ends[line - 1] + 1 if line else 0
            place = (text[line_start : line_ends[line]], start - line_start, text[start:end], other)
            copies[place] += 1
            key = hashlib.sha256(repr((seed, file, place, copies[place])).encode()).hexdigest()
            mutants.append((key, Mutant(key[:10], file, line + 1, start, end, other)))
        drawn += sorted(mutants)[:MOST_OF_A_FILE]
    return [mutant for _, mutant in sorted(drawn)]


def shorten(text):
    text = " ".join(text.split())
    return text if len(text) <= 60 else text[:57] + "..."
