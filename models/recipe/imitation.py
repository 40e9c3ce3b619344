"""Documents like those that a detector is asked about, made of text held back.

Of many lengths, as many short ones as long ones by the logarithm; prose, marked-up text, program
text with remarks, tables, lists of words and capitals; with English and digits among the lines; now
and then with a line in another charset or a damaged byte; and some bytes that are no text at all.
Rarer charsets come more often than in the world, so that something is learnt about them.
"""

import math
import random
import unicodedata

from . import charsets, languages

_SHORTEST, _LONGEST = 2, 65536

_LATIN = "windows-1252 ISO-8859-1 ISO-8859-15"
_LATIN_OLD = "IBM850 IBM437 macintosh"
_CYRILLIC = "windows-1251 ISO-8859-5"
_CYRILLIC_OLD = "x-mac-cyrillic IBM855 IBM866"
_EBCDIC = "IBM037 IBM500"
# Texts; charsets of the web and of Unix; those of other systems.
_WRITTEN_IN = (
    ("en fr de es it pt pt_BR nl sv da nb nn fi ca gl eu id ms tl sw af sq is ga", _LATIN,
     _LATIN_OLD),
    ("de fr es it nl sv da en pt fi", "", _EBCDIC),
    ("da nb", "", "IBM865"), ("pt", "", "IBM860"), ("is", "", "IBM861"),
    ("pl cs hu sk sl hr bs", "windows-1250 ISO-8859-2", "IBM852 x-mac-ce"),
    ("ro", "windows-1250 ISO-8859-2 ISO-8859-16", "IBM852"),
    ("et lv lt", "windows-1257 ISO-8859-13 ISO-8859-4", "IBM775"), ("lt", "ISO-8859-10", ""),
    ("ru", _CYRILLIC + " KOI8-R", _CYRILLIC_OLD), ("bg sr mk be", _CYRILLIC, _CYRILLIC_OLD),
    ("uk", _CYRILLIC + " KOI8-U", "x-mac-cyrillic IBM1125"),
    ("el", "windows-1253 ISO-8859-7", "IBM737 IBM869 x-mac-greek IBM875"),
    ("tr", "windows-1254 ISO-8859-9", "IBM857 x-mac-turkish"),
    ("he", "windows-1255 ISO-8859-8", "IBM862 IBM424"),
    ("ar", "windows-1256 ISO-8859-6", "IBM720"), ("fa ur", "windows-1256", ""),
    ("th", "TIS-620 windows-874", ""), ("vi", "windows-1258 VISCII", ""),
    ("ja", "Shift_JIS EUC-JP ISO-2022-JP", ""), ("zh_Hans", "GB18030 HZ-GB-2312 ISO-2022-CN", ""),
    ("zh_Hant", "Big5 EUC-TW", ""), ("ko", "EUC-KR ISO-2022-KR", "Johab"),
    ("mt eo", "ISO-8859-3", ""), ("cy", "ISO-8859-14", ""), ("kk", "PTCP154 KZ-1048", ""),
)
_WIDE = ("UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE")
# Shares of the kinds of charset: UTF-8, UTF-16 and UTF-32, the web's and Unix's, other systems'.
_KINDS, _SHARES = ("utf8", "wide", "usual", "other"), (0.15, 0.2, 0.45, 0.2)

# Documents that are no text, and the bytes that they are made of: no controls, which would tell.
_NO_TEXT = 0.04
_BYTES = (range(32, 256), (*range(32, 127), *range(160, 256)), range(128, 256))
NO_CHARSET = "US-ASCII"  # their label, which is wrong for all of them

_STYLES = ("prose", "markup", "program", "table", "words", "capitals")
_STYLE_SHARES = (0.5, 0.2, 0.12, 0.08, 0.07, 0.03)
_MARKED = ("<p>%s</p>", "<li class=\"item\">%s</li>", "<td width=\"%d\">%s</td>",
           "<a href=\"page%d.html\">%s</a><br>", "<h2 id=\"part%d\">%s</h2>", "<!-- %s -->",
           "  <entry key=\"k%d\">%s</entry>")
_PROGRAM = ("// %s", "  puts(\"%s\");", "/* %s */", "  int width_%d = table[0]; # %s",
            "message_%d = \"%s\"", "static const char *kText%d = \"%s\";",
            "if (count > %d) {  // %s")
_CODE_ONLY = ("  return size + offset;", "}", "for (i = 0; i < length; i++) {", "else:",
              "  buffer[i] = next(stream);", "#include <stdio.h>", "import os, sys", "")


def charsets_of(text):
    """The usual and the other charsets of a text."""
    usual, other = [], []
    for names, first, second in _WRITTEN_IN:
        if text in names.split():
            usual += first.split()
            other += second.split()
    return usual, other


def language_of(text):
    """The two letters of a text's language."""
    for language, names in languages.MODEL_TEXTS.items():
        if text in names:
            return language
    return text


def _filled(random_source, pattern, line):
    if pattern.count("%") == 2:
        return pattern % (random_source.randrange(1000), line)
    return pattern % line


class Imitator:
    """Makes documents, the same ones for the same text and seed."""

    def __init__(self, held_back, seed):
        self._texts = held_back
        self._names = sorted(held_back)
        self._random = random.Random(seed)
        self._encoders = {}

    def _encoder(self, text, charset):
        key = (text, charset)
        if key not in self._encoders:
            self._encoders[key] = charsets.Encoder(language_of(text), charset)
        return self._encoders[key]

    def _charset(self, text):
        usual, other = charsets_of(text)
        kind = self._random.choices(_KINDS, _SHARES)[0]
        if kind == "utf8":
            return "UTF-8"
        if kind == "wide":
            return self._random.choice(_WIDE)
        return self._random.choice((other if kind == "other" else usual) or usual or ["UTF-8"])

    def _styled(self, style, line):
        rand = self._random
        if style == "markup":
            return _filled(rand, rand.choice(_MARKED), line)
        if style == "program":
            if rand.random() < 0.6:
                return rand.choice(_CODE_ONLY)
            return _filled(rand, rand.choice(_PROGRAM), line)
        if style == "table":
            words = line.split(" ")[:rand.randrange(1, 4)]
            return "%d;%s;%.2f;%s" % (rand.randrange(10000), " ".join(words),
                                      rand.random() * 1000, rand.choice(("", "x", "-", "OK")))
        if style == "words":
            words = line.split(" ")
            rand.shuffle(words)
            return "\n".join(words[:rand.randrange(1, 6)])
        return line.upper() if style == "capitals" else line

    def _lines(self, text, encoder, wanted):
        """Styled lines of about `wanted` characters, as the charset can hold them."""
        rand = self._random
        style = rand.choices(_STYLES, _STYLE_SHARES)[0]
        english = 0 if rand.random() < 0.6 else rand.random() * 0.9
        plain_signs = rand.random() < 0.5
        own, lines, size, misses = self._texts[text], [], 0, 0
        while size < wanted and misses < 200:
            pool = self._texts["en"] if rand.random() < english else own
            line = unicodedata.normalize("NFC", rand.choice(pool))
            written = encoder.rewrite(charsets.prepare(line, 1 if plain_signs else 0))
            written = None if written is None else encoder.rewrite(self._styled(style, written))
            if written is None:
                misses += 1
                continue
            lines.append(written)
            size += len(written) + 1
        return lines

    def _disturb(self, text, charset, data):
        """Once in a while a line in another charset, or a damaged byte."""
        rand = self._random
        chance = rand.random()
        if chance < 0.01 and len(data) > 64:
            other = self._charset(text)
            if charsets.is_single_byte(other) and charsets.is_single_byte(charset):
                lines = self._lines(text, self._encoder(text, other), 1)
                return data + self._encoder(text, other).encode("\n" + "\n".join(lines))
        elif chance < 0.015:
            at = rand.randrange(len(data))
            return data[:at] + bytes([rand.randrange(256)]) + data[at + 1:]
        return data

    def _no_text(self, size):
        data = bytes(self._random.choices(self._random.choice(_BYTES), k=size))
        return None if data.isascii() else (data, NO_CHARSET, "")

    def make(self):
        """A document: bytes, charset, language. None when this try gave none."""
        rand = self._random
        text = rand.choice(self._names)
        charset = self._charset(text)
        size = int(math.exp(rand.uniform(math.log(_SHORTEST), math.log(_LONGEST))))
        if rand.random() < _NO_TEXT:
            return self._no_text(size)
        encoder = self._encoder(text, charset)
        width = 4 if charset.startswith("UTF-32") else 2 if charset.startswith("UTF-16") else 1
        lines = self._lines(text, encoder, size // width + 40)
        content = rand.choice(("\n", "\n", "\n", "\r\n", " ")).join(lines)
        # A piece that begins within a line, as what is cut out of a document does.
        content = content[rand.randrange(40) if rand.random() < 0.5 else 0:][:max(size // width, 2)]
        if content.isascii() and rand.random() < 0.9:
            return None
        data = encoder.encode(content)
        if charset.startswith("UTF") and rand.random() < 0.25:
            data = encoder.encode("\ufeff") + data
        if charset.startswith("ISO-2022") or charset.startswith("HZ"):
            return data, charset, language_of(text)
        return self._disturb(text, charset, data[:size]), charset, language_of(text)
