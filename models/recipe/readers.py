"""Readers of the file formats that translations come in. Each yields strings as they stand."""

import gzip
import html
import re
import struct


def read_mo(path):
    """Pairs (original, translation) of a compiled gettext catalogue, plural forms one by one."""
    with open(path, "rb") as file:
        data = file.read()
    if len(data) < 28:
        return
    order = "<" if data[:4] == b"\xde\x12\x04\x95" else ">"
    count, originals, translations = struct.unpack_from(order + "3I", data, 8)
    charset = "utf-8"
    for i in range(count):
        length, at = struct.unpack_from(order + "2I", data, originals + 8 * i)
        original = data[at:at + length]
        length, at = struct.unpack_from(order + "2I", data, translations + 8 * i)
        translation = data[at:at + length]
        if not original:
            declared = re.search(rb"charset=([\w.-]+)", translation)
            if declared:
                charset = declared.group(1).decode("ascii")
            continue
        original = original.decode(charset, "replace").split("\x04")[-1].split("\0")
        for j, form in enumerate(translation.decode(charset, "replace").split("\0")):
            yield original[min(j, len(original) - 1)], form


def read_pak(path):
    """Pairs (number, string) of a resource pack, version 5, in UTF-8."""
    with open(path, "rb") as file:
        data = file.read()
    version, encoding, count = struct.unpack_from("<IB3xH", data, 0)
    if version != 5 or encoding != 1:
        raise ValueError("%s: a pack of another version or encoding" % path)
    for i in range(count):
        number, begin = struct.unpack_from("<HI", data, 12 + 6 * i)
        _, end = struct.unpack_from("<HI", data, 18 + 6 * i)
        piece = data[begin:end]
        if piece[:2] == b"\x1f\x8b":
            piece = gzip.decompress(piece)
        try:
            yield number, piece.decode("utf-8")
        except UnicodeDecodeError:
            continue


_FTL_STARTS = (re.compile(r"-?[A-Za-z][\w-]*\s*=\s*(.*)$"),
               re.compile(r"\s+\.[A-Za-z][\w-]*\s*=\s*(.*)$"),
               re.compile(r"\s+\*?\[[^\]]*\]\s*(.*)$"))


def read_ftl(text):
    """Values, attributes and variants of a Fluent file."""
    current = None
    for line in text.split("\n"):
        if line.startswith("#"):
            continue
        start = next(filter(None, (form.match(line) for form in _FTL_STARTS)), None)
        if start or not line.strip():
            if current:
                yield current
            current = start.group(1) if start else None
        elif line[0] == " " and line.strip() != "}":
            current = (current + " " if current else "") + line.strip()
    if current:
        yield current


def read_properties(text):
    """Values of a Java properties file."""
    for line in re.sub(r"\\\n\s*", "", text).split("\n"):
        if line.startswith(("#", "!")):
            continue
        entry = re.match(r"[^=:\s]+\s*[=:]\s*(.*)$", line)
        if entry:
            value = re.sub(r"\\u([0-9a-fA-F]{4})", lambda code: chr(int(code.group(1), 16)),
                           entry.group(1))
            yield value.replace("\\n", "\n").replace("\\t", " ").replace("\\", "")


def read_dtd(text):
    """Replacement texts of a DTD's entities."""
    for entity in re.finditer(r"<!ENTITY\s+[\w.-]+\s+(?:\"([^\"]*)\"|'([^']*)')\s*>", text):
        yield entity.group(1) or entity.group(2) or ""


_BLOCKS = re.compile(
    r"</?(?:\w+:)?(?:p|para|title|subtitle|term|item|listitem|li|dt|dd|td|th|h[1-6]|div|section|"
    r"body|html|page|info|desc|list|steps|terms|note|table|tr|ul|ol|dl|blockquote|br|hr|caption|"
    r"figure|header|footer|main|article|aside|media|links|cite|credit)\b[^>]*>", re.I)
_UNTOLD = re.compile(
    r"<(script|style|pre|code|screen|synopsis|address|legal|license|math|svg|nav|head)\b"
    r"[^>]*?(?<!/)>.*?</\1\s*>", re.S | re.I)
_NO_TEXT = re.compile(r"<!--.*?-->|<\?.*?\?>|<!DOCTYPE[^>\[]*(?:\[.*?\])?\s*>", re.S)


def read_paragraphs(markup):
    """Paragraphs of an HTML or XML page, without the tags."""
    markup = _UNTOLD.sub("\x01", _NO_TEXT.sub(" ", markup))
    markup = _BLOCKS.sub("\x01", re.sub(r"\s+", " ", markup))
    for piece in html.unescape(re.sub(r"<[^<>]*>", "", markup)).split("\x01"):
        if piece.strip():
            yield piece.strip()
