"""One text per language from all sources: cache/text/TEXT.txt, a segment a line.

No source gives more than the share at which the shares of all fill the wanted size, so that no
single kind of prose rules. Languages of a close family take the same amounts from the same sources:
else a model would tell them apart by subject.
"""

import multiprocessing
import os

from . import languages, segments
from .sources import SOURCES

WANTED = 1200000  # characters of a text
WANTED_DENSE = 1600000  # of Chinese, Japanese and Korean, which have the most trigrams
_DENSE = ("Japanese", "Han", "Hangul")


def shares(available, wanted):
    """Fills `wanted` from the amounts available, the same highest share for all."""
    left, taken = wanted, {}
    for i, (amount, name) in enumerate(sorted((v, k) for k, v in available.items())):
        taken[name] = min(amount, left // (len(available) - i))
        left -= taken[name]
    return taken


def spread(items, amount):
    """Items of about `amount` characters in all, taken evenly from the whole list."""
    total = sum(map(len, items))
    if total <= amount:
        return items
    chosen, due = [], 0.0
    for item in items:
        due += len(item) * amount / total
        if due >= len(item) / 2:
            chosen.append(item)
            due -= len(item)
    return chosen


def _distinct(job):
    """The distinct segments of a text by source, English ones left out."""
    folder, text, english = job
    keep = segments.EnglishFilter(folder, text, english)
    seen, found = set(), {}
    for source in SOURCES:
        own = []
        for segment in segments.read(folder, source, text):
            if segment not in seen and keep.keeps(segment):
                own.append(segment)
            seen.add(segment)
        if own:
            found[source] = own
    return text, found


def write(folder, target):
    """Writes all texts below `target`."""
    os.makedirs(target, exist_ok=True)
    english = segments.trigram_logs(folder, "en")
    with multiprocessing.Pool(2) as pool:
        found = dict(pool.imap(_distinct, [(folder, t, english) for t in languages.TEXTS], 1))
    sizes = {text: {source: sum(map(len, own)) for source, own in by_source.items()}
             for text, by_source in found.items()}
    limits = dict(sizes)
    for family in languages.CLOSE_FAMILIES:
        common = {source: min(sizes[text].get(source, 0) for text in family) for source in SOURCES}
        for text in family:
            limits[text] = {source: amount for source, amount in common.items() if amount}
    for text in languages.TEXTS:
        dense = languages.script_of(text) in _DENSE
        taken = shares(limits[text], WANTED_DENSE if dense else WANTED)
        with open(os.path.join(target, text + ".txt"), "w", encoding="utf-8",
                  newline="\n") as file:
            for source, own in found[text].items():
                if source in taken:
                    file.writelines(s + "\n" for s in spread(own, taken[source]))


def read(target, text):
    """The segments of a text."""
    with open(os.path.join(target, text + ".txt"), encoding="utf-8", newline="\n") as file:
        return file.read().split("\n")[:-1]
