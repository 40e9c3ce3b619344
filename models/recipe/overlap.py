"""Tells whether a training source is among the documents that Orva is measured on.

Two ways: by name (the project a document comes from is one whose texts the recipe reads) and by
content (pieces of documents that occur in the training texts, letter for letter).
"""

import csv
import os
import re

from . import languages, packages, texts

# What the packages of the recipe were made from, as a document's origin might call it.
PROJECTS = ("mediawiki", "chromium", "firefox", "mozilla", "libreoffice", "openoffice",
            "gnome-user-docs", "wordpress", "wesnoth", "debian-handbook")
LENGTH, LENGTH_DENSE = 32, 14  # letters; shorter pieces are phrases that anyone writes
_PYTHON_NAMES = {"KZ1048": "kz1048", "macintosh": "mac_roman", "x-mac-ce": "mac_latin2",
                 "x-mac-cyrillic": "mac_cyrillic", "x-mac-greek": "mac_greek",
                 "x-mac-turkish": "mac_turkish", "HZ-GB-2312": "hz", "windows-31J": "cp932"}


def _documents(folder):
    with open(os.path.join(folder, "manifest.tsv"), encoding="utf-8", newline="") as file:
        yield from csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE)


def same_projects(folder):
    """Identifiers of documents whose origin names a project or package of the recipe."""
    names = set(PROJECTS) | {name for name, _, _ in packages.pinned()}
    return [(document["id"], document["origin"]) for document in _documents(folder)
            if any(re.search(r"\b%s\b" % re.escape(name), document["origin"].lower())
                   for name in names)]


def _codec(charset):
    charset = _PYTHON_NAMES.get(charset, charset)
    return re.sub(r"^(windows-|IBM)", "cp", charset)


def _letters(string):
    """The letters alone, so that wrapping, markup and placeholders do not hide a copy."""
    return "".join(char for char in string.lower() if char.isalpha())


def _content(folder, document):
    path = os.path.join(folder, "files", document["id"])
    try:
        with open(path, "rb") as file:
            return _letters(file.read().decode(_codec(document["charset"]), "replace"))
    except (OSError, LookupError):
        return ""


def _pieces(content, length):
    return [content[i:i + length] for i in range(0, len(content) - length + 1, length)]


def _found_in(segments, pieces, length):
    """Those of the pieces that occur in the segments, wherever they begin."""
    found = set()
    for segment in segments:
        letters = _letters(segment)
        for i in range(len(letters) - length + 1):
            if letters[i:i + length] in pieces:
                found.add(letters[i:i + length])
    return found


def shared_pieces(folder, text_folder):
    """(document, origin, pieces, pieces that are training text too), the most shared first.

    A document is cut into pieces of LENGTH letters, of fewer where a sign is a syllable or word.
    """
    contents = [(document, _content(folder, document)) for document in _documents(folder)]
    known = {}
    for length in (LENGTH, LENGTH_DENSE):
        wanted = {piece for _, content in contents for piece in _pieces(content, length)}
        known[length] = set()
        for text in languages.TEXTS:
            dense = languages.script_of(text) in ("Japanese", "Han", "Hangul")
            if (length == LENGTH_DENSE) == dense:
                known[length] |= _found_in(texts.read(text_folder, text), wanted, length)
    found = []
    for document, content in contents:
        for length, pieces in known.items():
            own = _pieces(content, length)
            shared = sum(piece in pieces for piece in own)
            if shared:
                found.append((document["id"], document["origin"], len(own), shared))
    return sorted(found, key=lambda row: (-row[3] / row[2], row[0]))
