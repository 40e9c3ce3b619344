"""Clean segments of running text, per source and language: cache/segments/SOURCE/TEXT.txt."""

import collections
import math
import multiprocessing
import os
import shutil
import sys

from . import cleaning, languages
from .sources import SOURCES


def _extract(job):
    """Reads one source, writes its segments; English left in a translation is dropped."""
    name, root, folder = job
    source = SOURCES[name]
    found = {text: {} for text in languages.TEXTS}
    tags = {}
    for tag, string, original in source.read(root):
        if tag not in tags:
            tags[tag] = languages.text_name(tag)
        text = tags[tag]
        if text is None or (original is not None and original.strip() == string.strip()):
            continue
        for part in string.split("\n\n"):
            segment = cleaning.clean(part, source.accelerator, source.wiki)
            if cleaning.is_running_text(segment, text):
                found[text][segment] = None
    english = {segment.lower() for segment in found["en"]}
    shutil.rmtree(os.path.join(folder, name), ignore_errors=True)
    os.makedirs(os.path.join(folder, name))
    for text, segments in found.items():
        kept = [s for s in segments if text == "en" or s.lower() not in english]
        if kept:
            with open(os.path.join(folder, name, text + ".txt"), "w", encoding="utf-8",
                      errors="replace", newline="\n") as file:
                file.writelines(segment + "\n" for segment in kept)
    return name


def extract(root, folder):
    """Extracts all sources, two at a time."""
    with multiprocessing.Pool(2) as pool:
        for name in pool.imap_unordered(_extract, [(n, root, folder) for n in SOURCES], 1):
            print("extracted", name, file=sys.stderr)


def read(folder, source, text):
    """The segments of a text in a source; none if it has none."""
    path = os.path.join(folder, source, text + ".txt")
    if not os.path.exists(path):
        return []
    with open(path, encoding="utf-8", newline="\n") as file:
        return file.read().split("\n")[:-1]


# Where translations are complete, so that a language's own trigrams are learnt from them.
_CLEAN_SOURCES = ("mediawiki", "libreoffice", "chromium", "gnome-user-docs", "libreoffice-help",
                  "wesnoth", "wordpress")
_SAMPLE = 60000
_UNSEEN = math.log(2e-7)


def _trigrams(segment):
    padded = " %s " % segment.lower()
    return [padded[i:i + 3] for i in range(len(padded) - 2)]


def trigram_logs(folder, text):
    """Logarithms of the shares of character trigrams in a sample of every clean source."""
    counts = collections.Counter()
    for source in _CLEAN_SOURCES:
        segments = read(folder, source, text)
        step = max(1, sum(map(len, segments)) // _SAMPLE)
        for segment in segments[::step]:
            counts.update(_trigrams(segment))
    total = sum(counts.values()) + 1
    return {trigram: math.log(count / total) for trigram, count in counts.items()}


class EnglishFilter:
    """Tells the segments of a Latin-script text that English explains better."""

    def __init__(self, folder, text, english):
        self._gain = {}
        if text != "en" and languages.script_of(text) == "Latin":
            own = trigram_logs(folder, text)
            self._gain = {t: own.get(t, _UNSEEN) - english.get(t, _UNSEEN)
                          for t in own.keys() | english.keys()}

    def keeps(self, segment):
        """Whether the segment is the language's own."""
        gain = self._gain
        return not gain or sum(gain.get(t, 0.0) for t in _trigrams(segment)) > 0
