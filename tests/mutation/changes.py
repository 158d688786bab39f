"""Single changes to a C++ source, as a slip of the hand would make them."""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r'(?P<comment>//[^\n]*|/\*.*?\*/)'
    r'|(?P<directive>^[ \t]*#[^\n]*)'
    r'|(?P<text>"(?:[^"\\\n]|\\.)*")'
    r"|(?P<char>'(?:[^'\\\n]|\\.)*')"
    r'|(?P<number>\b\d+(?:\.\d+)?\b)'
    r'|(?P<word>[A-Za-z_]\w*)'
    r'|(?P<operator>&&|\|\||==|!=|<=|>=|<<|>>|->|::|\+\+|--|\+=|-=|[-+*/%<>!=?:;,.(){}\[\]&|~^])',
    re.DOTALL | re.MULTILINE)

SWAPPED = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||",
           "||": "&&", "+": "-", "-": "+", "+=": "-=", "-=": "+=", "++": "--"}
# What a character of a text can be: an escape, or itself.
CHARACTER = re.compile(r'\\.|[^\\]', re.DOTALL)
CLOSING = {"(": ")", "{": "}", "[": "]"}
NOT_A_CALL = {"if", "for", "while", "switch", "return", "throw", "sizeof", "catch", "case", "else",
              "using", "namespace", "static_assert", "explicit", "operator", "new", "delete"}


@dataclass(frozen=True)
class Change:
    kind: str
    begin: int
    end: int
    text: str  # in place of what stands between the two


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    begin: int
    end: int


def tokens_of(source):
    """The tokens that a compiler sees."""
    found = []
    for match in TOKEN.finditer(source):
        if match.lastgroup not in ("comment", "directive"):
            found.append(Token(match.lastgroup, match.group(), match.start(), match.end()))
    return found


def closing_index(tokens, index):
    """The index of the bracket that closes the one at `index`."""
    depth = 0
    for i in range(index, len(tokens)):
        if tokens[i].text in CLOSING:
            depth += 1
        elif tokens[i].text in CLOSING.values():
            depth -= 1
            if depth == 0:
                return i
    return None


def operators(source, tokens):
    for i, token in enumerate(tokens):
        if token.kind != "operator":
            continue
        after = tokens[i + 1] if i + 1 < len(tokens) else token
        spaced = source[token.begin - 1:token.begin] == " " == source[token.end:token.end + 1]
        if spaced and token.text in SWAPPED:  # a template's bracket and a sign are not
            yield Change("operator", token.begin, token.end, SWAPPED[token.text])
        elif token.text == "++":
            yield Change("operator", token.begin, token.end, "--")
        elif token.text == "!" or (token.text == "-" and after.kind == "number"):
            yield Change("operator", token.begin, token.end, "")


def operand_end(tokens, start, step):
    """Where an operand of && or || ends, going from `start` in direction `step`."""
    opening = set(CLOSING) if step > 0 else set(CLOSING.values())
    closing = set(CLOSING.values()) if step > 0 else set(CLOSING)
    depth, i = 0, start
    while 0 <= i < len(tokens):
        text = tokens[i].text
        if depth == 0 and (text in closing or text in ("&&", "||", ";", "?", ",", "return", "=",
                                                       ":", "if")):
            return i
        depth += (text in opening) - (text in closing)
        i += step
    return None


def conditions(source, tokens):
    for i, token in enumerate(tokens):
        if token.text == "if" and i + 1 < len(tokens) and tokens[i + 1].text == "(":
            close = closing_index(tokens, i + 1)
            begin, end = tokens[i + 1].end, tokens[close].begin
            if ";" in source[begin:end] or "auto " in source[begin:end]:
                continue  # declares what the branch uses
            yield Change("condition negated", begin, end, f"!({source[begin:end]})")
            yield Change("condition dropped", begin, end, f"false && ({source[begin:end]})")
            yield Change("condition dropped", begin, end, f"true || ({source[begin:end]})")
        elif token.text in ("&&", "||") and source[token.begin - 1:token.begin] == " ":
            right = operand_end(tokens, i + 1, 1)
            left = operand_end(tokens, i - 1, -1)
            if right is not None:
                yield Change("condition dropped", token.begin, tokens[right - 1].end, "")
            if left is not None:
                yield Change("condition dropped", tokens[left + 1].begin, tokens[i + 1].begin, "")


def rows(source, tokens):
    """Elements of lists in braces, and labels of a switch."""
    for i, token in enumerate(tokens):
        if token.text == "{" and i > 0 and (tokens[i - 1].text in ("=", "]")
                                            or tokens[i - 1].text in ("{", ",", "return")):
            close = closing_index(tokens, i)
            if close is None or any(t.text == ";" for t in tokens[i:close]):
                continue
            starts, depth = [i + 1], 0
            for j in range(i + 1, close):
                if tokens[j].text in CLOSING:
                    depth += 1
                elif tokens[j].text in CLOSING.values():
                    depth -= 1
                elif tokens[j].text == "," and depth == 0 and j + 1 < close:
                    starts.append(j + 1)
            if len(starts) < 2 or tokens[i + 1].text == ".":
                continue
            for k, start in enumerate(starts):
                if k + 1 < len(starts):
                    yield Change("row dropped", tokens[start].begin, tokens[starts[k + 1]].begin, "")
                else:
                    yield Change("row dropped", tokens[start - 1].begin, tokens[close - 1].end, "")
        elif token.text == "case":
            for j in range(i, min(i + 8, len(tokens))):
                if tokens[j].text == ":":
                    yield Change("row dropped", token.begin, tokens[j].end, "")
                    break


def calls(source, tokens):
    """Statements that are nothing but a call."""
    for i, token in enumerate(tokens):
        if token.kind != "word" or token.text in NOT_A_CALL or i == 0:
            continue
        if tokens[i - 1].text not in (";", "{", "}", ")"):
            continue
        j = i
        while j + 1 < len(tokens):  # a chain of names and calls
            following = tokens[j + 1].text
            if following in (".", "->", "::") and tokens[j + 2].kind == "word":
                j += 2
            elif following == "(":
                close = closing_index(tokens, j + 1)
                if close is None or close + 1 >= len(tokens):
                    break
                if tokens[close + 1].text == ";":
                    yield Change("call dropped", token.begin, tokens[close].end, "")
                    break
                j = close
            else:
                break


def texts(source, tokens):
    for token in tokens:
        if token.kind != "text":
            continue
        position = token.begin + 1
        for character in CHARACTER.findall(token.text[1:-1]):
            end = position + len(character)
            yield Change("text", position, end, "")
            yield Change("text", position, end, "x" if character != "x" else "y")
            position = end


def numbers(source, tokens):
    for token in tokens:
        if token.kind != "number" or "." in token.text:
            continue
        yield Change("number", token.begin, token.end, str(int(token.text) + 1))
        if int(token.text) > 0:
            yield Change("number", token.begin, token.end, str(int(token.text) - 1))


KINDS = {"operator": operators, "condition": conditions, "row": rows, "call": calls,
         "text": texts, "number": numbers}


def changes_of(source):
    """All single changes to a source, by kind."""
    tokens = tokens_of(source)
    return {kind: list(find(source, tokens)) for kind, find in KINDS.items()}


def apply(source, change):
    return source[:change.begin] + change.text + source[change.end:]


def lines_of(source, begin, end):
    """The whole lines around a place, on one line."""
    first = source.rfind("\n", 0, begin) + 1
    last = source.find("\n", end)
    return " ".join(source[first:last if last >= 0 else len(source)].split())


def before_and_after(source, change):
    """The changed lines as they were and as they are, each on one line."""
    changed = apply(source, change)
    return (lines_of(source, change.begin, change.end),
            lines_of(changed, change.begin, change.begin + len(change.text)))
