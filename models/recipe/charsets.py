"""Converting text to the charsets of the models.

`prepare` treats a line the same way for all charsets of a language: most typographic signs become
ASCII, as in most documents in the older charsets. An Encoder then writes what its charset cannot
hold as people write it there; a line that still does not fit it gives None.
"""

import codecs
import functools
import subprocess
import unicodedata

# Charset to the codec that writes it; "iconv:" where only that program can.
_CODECS = {
    "US-ASCII": "ascii", "Shift_JIS": "cp932", "EUC-JP": "euc_jp", "ISO-2022-JP": "iso2022_jp",
    "GB18030": "gb18030", "HZ-GB-2312": "hz", "ISO-2022-CN": "iconv:ISO-2022-CN", "Big5": "big5",
    "EUC-TW": "iconv:EUC-TW", "EUC-KR": "cp949", "ISO-2022-KR": "iso2022_kr", "Johab": "johab",
    "macintosh": "mac_roman", "x-mac-cyrillic": "mac_cyrillic", "x-mac-ce": "mac_latin2",
    "x-mac-greek": "mac_greek", "x-mac-turkish": "mac_turkish", "VISCII": "iconv:VISCII",
    "windows-874": "cp874", "KZ-1048": "kz1048",
}

EBCDIC = ("IBM037", "IBM424", "IBM500", "IBM875")

_SIGNS = {
    "\u2018": "'", "\u2019": "'", "\u201a": "'", "\u201b": "'", "\u2032": "'", "\u02bc": "'",
    "\u201c": '"', "\u201d": '"', "\u201e": '"', "\u201f": '"', "\u2033": '"',
    "\u2010": "-", "\u2011": "-", "\u2012": "-", "\u2013": "-", "\u2014": "-", "\u2015": "-",
    "\u2212": "-", "\u2026": "...", "\u2022": "*", "\u2192": "->", "\u202f": " ", "\u2009": " ",
    "\u200e": "", "\u200f": "", "\u200c": "", "\u200d": "", "\u2122": "(TM)", "\u20ac": "EUR",
}
# Signs that ISO-8859-1 and its kin hold, and other charsets do not.
_SIGNS_8BIT = {"\u00a0": " ", "\u00ab": '"', "\u00bb": '"', "\u2039": "'", "\u203a": "'",
               "\u00d7": "x", "\u00a9": "(C)", "\u00ae": "(R)", "\u00b7": "*", "\u00b4": "'",
               "\u00ba": "o", "\u00aa": "a", "\u00b0": " ", "\u00b1": "+/-", "\u00a7": "par. "}
_TO_ASCII = str.maketrans(_SIGNS)

# Letters that a charset writes as others; tried where the letter itself does not fit.
_LETTERS = {
    "fr": {"\u0152": "OE", "\u0153": "oe", "\u0178": "Y"},
    "ro": {"\u0218": "\u015e", "\u0219": "\u015f", "\u021a": "\u0162", "\u021b": "\u0163"},
    "fa": {"\u06cc": "\u064a", "\u06c0": "\u0647", "\u06d5": "\u0647", "\u0654": "", "\u0670": "",
           **{chr(0x6f0 + i): chr(0x30 + i) for i in range(10)}},
    "ur": {"\u06cc": "\u064a", "\u06c2": "\u0647", "\u06d3": "\u06d2", "\u06d4": ".",
           **{chr(0x6f0 + i): chr(0x30 + i) for i in range(10)}},
    "ar": {chr(0x660 + i): chr(0x30 + i) for i in range(10)},
    "he": {"\u05be": "-", "\u05f3": "'", "\u05f4": '"',
           **{chr(c): "" for c in range(0x5b0, 0x5bd)}},
    "be": {"\u0456": "i", "\u0406": "I"},  # no such letter in IBM866
}
_TONES = "\u0300\u0301\u0303\u0309\u0323"


def codec_of(charset):
    """The codec's name."""
    if charset in _CODECS:
        return _CODECS[charset]
    if charset.startswith("windows-"):
        return "cp" + charset[len("windows-"):]
    if charset.startswith("IBM"):
        return "cp" + charset[len("IBM"):]
    return charset.lower()


def is_ascii_based(charset):
    """Whether ASCII text reads the same in it, so that models share what they know of it."""
    return not charset.startswith(("UTF-16", "UTF-32", "ISO-2022", "HZ") + EBCDIC)


def other_byte_order(charset):
    """The charset's other byte order, or None."""
    if charset.startswith(("UTF-16", "UTF-32")):
        return charset[:-2] + {"LE": "BE", "BE": "LE"}[charset[-2:]]
    return None


def is_single_byte(charset):
    """Whether every character is one byte."""
    return is_ascii_based(charset) and charset not in (
        "UTF-8", "Shift_JIS", "EUC-JP", "GB18030", "Big5", "EUC-TW", "EUC-KR", "Johab")


@functools.lru_cache(maxsize=None)
def is_sign(charset, byte):
    """Whether a byte above 0x7F is a sign of a single-byte charset."""
    if not is_single_byte(charset):
        return False
    try:
        char = _decode(charset, bytes([byte]))
    except UnicodeDecodeError:
        return False
    return len(char) == 1 and not char.isalpha() and unicodedata.category(char) != "Cc"


def _decode(charset, data):
    codec = codec_of(charset)
    if codec.startswith("iconv:"):
        return _iconv(codec[len("iconv:"):], "UTF-8", data).decode("utf-8")
    return data.decode(codec)


def prepare(line, number):
    """The line as the models of all charsets see it: every fourth keeps its typographic signs."""
    line = unicodedata.normalize("NFC", line)
    return line if number % 4 == 0 else line.translate(_TO_ASCII)


def _iconv(source, target, data):
    """Through the program; what does not fit is left out."""
    return subprocess.run(["iconv", "-c", "-f", source, "-t", target], input=data, check=False,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


@functools.lru_cache(maxsize=None)
def _held_by_iconv(name):
    """The characters that come back from a charset only the program knows."""
    every = "\n".join(chr(c) for c in range(0x20, 0x10000) if not 0xd800 <= c < 0xe000)
    there = _iconv("UTF-8", name, every.encode("utf-8"))
    return frozenset(_iconv(name, "UTF-8", there).decode("utf-8"))


class Encoder:
    """Encodes lines of one language in one charset."""

    def __init__(self, language, charset):
        self._charset = charset
        self._codec = codec_of(charset)
        self._letters = _LETTERS.get(language, {})
        self._known = {}

    def _fits(self, string):
        if self._codec.startswith("iconv:"):
            return _held_by_iconv(self._codec[6:]).issuperset(string)
        try:
            string.encode(self._codec)
            return True
        except UnicodeEncodeError:
            return False

    def _decomposed(self, char):
        """A letter and its tone apart, as windows-1258 writes Vietnamese."""
        marks = unicodedata.normalize("NFD", char)
        tone = "".join(mark for mark in marks if mark in _TONES)
        return unicodedata.normalize("NFC", "".join(m for m in marks if m not in _TONES)) + tone

    def _written(self, char):
        """What stands for a character in this charset; None if nothing does."""
        candidates = [char]
        if char in self._letters:
            candidates.append(self._letters[char])
        if self._charset == "windows-1258":
            candidates.append(self._decomposed(char))
        for table in (_SIGNS, _SIGNS_8BIT):
            if char in table:
                candidates.append(table[char])
        for candidate in candidates:
            if self._fits(candidate):
                return candidate
        return None

    def rewrite(self, line):
        """The line in characters that the charset holds, or None."""
        written = []
        for char in line:
            if char not in self._known:
                self._known[char] = self._written(char)
            if self._known[char] is None:
                return None
            written.append(self._known[char])
        return "".join(written)

    def encode(self, text):
        """The bytes of a text whose lines `rewrite` gave; no byte order mark."""
        if self._codec.startswith("iconv:"):
            return _iconv("UTF-8", self._codec[6:], text.encode("utf-8"))
        return codecs.encode(text, self._codec)
