"""Every mutant of a source: by its tokens, for text that clang-format has laid out.

The layout tells what tokens alone do not: binary operators stand between spaces, which `*` and `&` of
declarations and `<` and `>` of templates do not.
"""
import bisect
import re
from collections import namedtuple

# What is put in place of text[first:end], and of which kind that is.
Mutant = namedtuple("Mutant", "first end text kind")

Token = namedtuple("Token", "kind text first end")

TOKENS = re.compile(
    r"""
    (?P<space>\s+)
  | (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*)
  | (?P<string>R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])+')
  | (?P<number>\.?\d(?:'?[\w.])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<sign><<=|>>=|<=>|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||::|[-+*/%&|^]=|\.\.\.|.)
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

BINARY = {
    "+": "-", "-": "+", "*": "+", "/": "*", "%": "*", "<<": ">>", ">>": "<<",
    "&": "|", "|": "&", "^": "&",
    "+=": "-=", "-=": "+=", "*=": "+=", "/=": "*=", "<<=": ">>=", ">>=": "<<=", "&=": "|=", "|=": "&=",
}
COMPARISONS = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
}
LOGICAL = {"&&": "||", "||": "&&"}
NOT_CALLED = set(
    "if for while switch return sizeof alignof alignas decltype static_assert asm __asm__ catch noexcept "
    "operator template requires constexpr __attribute__ defined explicit".split()
)
# Not the beginning of a statement that does something.
DECLARES = set(
    "const constexpr constinit static inline extern auto using typedef struct class enum union template "
    "namespace public private protected friend if for while do switch case default else return goto "
    "unsigned signed int long short char bool void float double static_assert explicit operator volatile "
    "virtual asm __asm__ try throw typename".split()
)
OPEN = {"(": ")", "[": "]", "{": "}"}


def tokens_of(text):
    """The tokens, without space, comments and directives."""
    found = []
    for match in TOKENS.finditer(text):
        kind = match.lastgroup if match.lastgroup != "mark" else "string"
        if kind not in ("space", "comment", "directive"):
            found.append(Token(kind, match.group(), match.start(), match.end()))
    return found


class Source:
    def __init__(self, text):
        self.text = text
        self.tokens = tokens_of(text)
        self.line_starts = [0] + [m.end() for m in re.finditer("\n", text)]
        self.partner = self._partners()
        self.skipped = self._skipped()

    def line_of(self, position):
        return bisect.bisect_right(self.line_starts, position)

    def _spaced(self, i):
        t = self.tokens[i]
        return self.text[t.first - 1].isspace() and self.text[t.end].isspace()

    def _angle(self, i):
        """+1 for a `<` that opens the arguments of a template, and minus how many a `>` closes."""
        t = self.tokens[i]
        if t.text == "<" and not self._spaced(i) and self.tokens[i - 1].kind == "word":
            return 1
        if t.text in (">", ">>") and not self.text[t.first - 1].isspace():
            return -len(t.text)
        return 0

    def _partners(self):
        partner, stack = {}, []
        for i, t in enumerate(self.tokens):
            if t.kind != "sign":
                continue
            if t.text in OPEN:
                stack.append(i)
            elif stack and t.text == OPEN[self.tokens[stack[-1]].text]:
                partner[stack[-1]] = i
                partner[i] = stack.pop()
        return partner

    def _skipped(self):
        """Tokens of what is told to the compiler alone: assertions, assembler, attributes."""
        skipped = set()
        for i, t in enumerate(self.tokens):
            if t.text in ("static_assert", "asm", "__asm__", "__attribute__", "alignas"):
                at = i + 1
                while at not in self.partner and at < len(self.tokens) - 1:
                    at += 1
                skipped.update(range(i, self.partner.get(at, at) + 1))
            elif t.text == "[" and self.tokens[i + 1].text == "[":
                skipped.update(range(i, self.partner.get(i, i) + 1))
        return skipped

    # ---- Parts of the text ------------------------------------------------------------------------

    def _parts(self, opening):
        """The first and the last token of each part between the commas of a bracket."""
        parts, first, depth, i = [], opening + 1, 0, opening + 1
        closing = self.partner[opening]
        while i < closing:
            if self.tokens[i].text in OPEN and i in self.partner:
                i = self.partner[i]
            else:
                depth = max(0, depth + self._angle(i))
                if self.tokens[i].text == "," and depth == 0:
                    parts.append((first, i - 1))
                    first = i + 1
            i += 1
        parts.append((first, closing - 1))
        return [(a, b) for a, b in parts if a <= b]

    def _slice(self, first, last):
        return self.text[self.tokens[first].first : self.tokens[last].end]

    def _type(self, first, last):
        """Of a parameter, or nothing for an argument."""
        if self.tokens[last].kind != "word" or first == last:
            return None
        before = self.tokens[last - 1]
        if before.kind == "word" or (before.text in ("*", "&", "&&", ">") and not self._spaced(last - 1)):
            return self._slice(first, last - 1)
        return None

    def _is_list(self, opening):
        """Arguments of a call, or initial values."""
        before = self.tokens[opening - 1] if opening else None
        if before is None or opening not in self.partner:
            return False
        if self.tokens[opening].text == "(":
            return (before.kind == "word" and before.text not in NOT_CALLED) or (
                self._angle(opening - 1) < 0
            )
        if self.tokens[opening].text != "{" or ";" in (
            t.text for t in self.tokens[opening : self.partner[opening]]
        ):
            return False
        named = [t.text for t in self.tokens[max(0, opening - 5) : opening]]
        if "enum" in named:
            return False
        return before.kind == "word" or before.text in ("=", ",", "(", "{") or before.text == ">"

    def _end_of_statement(self, i):
        """The semicolon that ends what begins at token i, or nothing."""
        while i < len(self.tokens):
            text = self.tokens[i].text
            if text == ";":
                return i
            if text == "{" and self.tokens[i - 1].text in (")", "const", "noexcept", "override"):
                return None
            if text in OPEN:
                if i not in self.partner:
                    return None
                i = self.partner[i]
            elif text in OPEN.values():
                return None
            i += 1
        return None

    def _guarded(self, i):
        """The statement at token i stands under an if, a loop or an else, without braces."""
        before = self.tokens[i - 1]
        if before.text == "else":
            return True
        if before.text != ")" or i - 1 not in self.partner:
            return False
        opening = self.partner[i - 1]
        words = [t.text for t in self.tokens[max(0, opening - 2) : opening]]
        return words[-1:] in (["if"], ["for"], ["while"]) or words == ["if", "constexpr"]

    # ---- Mutants ----------------------------------------------------------------------------------

    def mutants(self):
        found = []
        for i, t in enumerate(self.tokens):
            if i == 0 or i in self.skipped:
                continue
            found += self._of_token(i, t)
            if t.text in OPEN and self._is_list(i):
                found += self._swaps(i)
            if t.text == "(" and self.tokens[i - 1].text in ("if", "constexpr"):
                found += self._negations(i)
            found += self._deletions(i, t)
        return found

    def _of_token(self, i, t):
        def instead(text, kind):
            return [Mutant(t.first, t.end, text, kind)]

        if t.kind == "number":
            return self._numbers(t)
        if t.kind == "word" and t.text in ("true", "false"):
            return instead("false" if t.text == "true" else "true", "constant")
        if t.kind != "sign":
            return []
        if self._spaced(i):
            if t.text in BINARY:
                return instead(BINARY[t.text], "operator")
            if t.text in LOGICAL:
                return instead(LOGICAL[t.text], "operator")
            if t.text in COMPARISONS:
                a = instead(COMPARISONS[t.text][0], "comparison")
                return a + [m for text in COMPARISONS[t.text][1:] for m in instead(text, "comparison")]
            return []
        before = self.tokens[i - 1]
        operand = before.kind in ("word", "number") or before.text in (")", "]", "}", "operator")
        operand = operand and before.text not in ("return", "case")
        if t.text in ("!", "~", "-") and not operand and not self.text[t.end].isspace():
            return instead("", "operator")
        if t.text in ("++", "--"):
            return instead("--" if t.text == "++" else "++", "operator")
        return []

    @staticmethod
    def _numbers(t):
        match = re.fullmatch(r"(0[xX][\da-fA-F']+|[\d']+)([uUlLzZ]*)", t.text)
        if not match:
            return []
        digits = match.group(1).replace("'", "")
        hexadecimal = digits[:2] in ("0x", "0X")
        value = int(digits, 16 if hexadecimal else 10)
        shown = hex if hexadecimal else str
        others = [value + 1] if value == 0 else [value + 1, value - 1]
        return [Mutant(t.first, t.end, shown(v) + match.group(2), "constant") for v in others]

    def _swaps(self, opening):
        parts = self._parts(opening)
        swaps = []
        for (a, b), (c, d) in zip(parts, parts[1:]):
            left, right = self._slice(a, b), self._slice(c, d)
            # Parameters of two types, or whole functions, do not compile the other way round.
            declared = self._type(a, b), self._type(c, d)
            if left == right or (all(declared) and declared[0] != declared[1]):
                continue
            if ";" not in left + right:
                between = self.text[self.tokens[b].end : self.tokens[c].first]
                swaps.append(
                    Mutant(
                        self.tokens[a].first, self.tokens[d].end, right + between + left, "swapped arguments"
                    )
                )
        return swaps

    def _negations(self, opening):
        """Of conditions without an operator that is a mutant of its own."""
        inner = self.tokens[opening + 1 : self.partner[opening]]
        own = set(COMPARISONS) | set(LOGICAL) | {"!"}
        if not inner or any(t.text in own and t.kind == "sign" for t in inner):
            return []
        text = self._slice(opening + 1, self.partner[opening] - 1)
        return [Mutant(inner[0].first, inner[-1].end, f"!({text})", "operator")]

    def _deletions(self, i, t):
        before = self.tokens[i - 1].text
        guarded = self._guarded(i)
        if before not in (";", "{", "}") and not guarded:
            return []
        if t.text in ("break", "continue") or (
            t.text == "return" and (guarded or self.tokens[i + 1].text == ";")
        ):
            pass
        elif t.text in DECLARES or not (t.kind == "word" or t.text in ("*", "++", "--", "(")):
            return []
        elif t.kind == "word":
            after = self.tokens[i + 1]
            if after.text not in ("(", ".", "->", "[", "::", "++", "--", "=", "<") and not (
                after.text in BINARY and len(after.text) > 1
            ):
                return []
        end = self._end_of_statement(i)
        if end is None:
            return []
        return [Mutant(t.first, self.tokens[end].end, ";", "deleted statement")]

    # ---- How a mutant is told ---------------------------------------------------------------------

    def told(self, mutant):
        """The lines of the text that it changes, and what they become, each in one line."""
        first = self.text.rfind("\n", 0, mutant.first) + 1
        end = self.text.find("\n", mutant.end)
        before = self.text[first:end]
        after = self.text[first : mutant.first] + mutant.text + self.text[mutant.end : end]
        return " ".join(before.split()), " ".join(after.split())

    def applied(self, mutant):
        """The whole text with it, of as many lines."""
        lost = self.text.count("\n", mutant.first, mutant.end) - mutant.text.count("\n")
        return self.text[: mutant.first] + mutant.text + "\n" * lost + self.text[mutant.end :]
