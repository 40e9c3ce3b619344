"""Text held back: what the sources have of each text beyond the amounts that models are trained on.

Read from the caches of the recipe; kept as cache/heldback/TEXT.txt until the training texts change.
"""

import multiprocessing
import os

from . import languages, segments, texts
from .sources import SOURCES

_PER_SOURCE = 150000  # characters of one text from one source
ENOUGH = 20000  # characters; a text with fewer is not used


def _hold_back(job):
    """Writes the segments of a text that are not in its training text, English ones left out."""
    cache, text, english = job
    folder = os.path.join(cache, "segments")
    seen = set(texts.read(os.path.join(cache, "text"), text))
    keep = segments.EnglishFilter(folder, text, english)
    lines = []
    for source in SOURCES:
        fresh = [s for s in segments.read(folder, source, text) if s not in seen]
        seen.update(fresh)
        lines += [s for s in texts.spread(fresh, _PER_SOURCE) if keep.keeps(s)]
    with open(os.path.join(cache, "heldback", text + ".txt"), "w", encoding="utf-8",
              newline="\n") as file:
        file.writelines(line + "\n" for line in lines)


def _is_older(path, other):
    return not os.path.exists(path) or os.path.getmtime(path) < os.path.getmtime(other)


def write(cache):
    """Writes what is missing or older than its training text."""
    os.makedirs(os.path.join(cache, "heldback"), exist_ok=True)
    due = [text for text in languages.TEXTS
           if _is_older(os.path.join(cache, "heldback", text + ".txt"),
                        os.path.join(cache, "text", text + ".txt"))]
    if not due:
        return
    english = segments.trigram_logs(os.path.join(cache, "segments"), "en")
    with multiprocessing.Pool(2) as pool:
        list(pool.imap_unordered(_hold_back, [(cache, text, english) for text in due], 1))


def read(cache):
    """The usable texts' segments by name, and the names of the texts that have too little."""
    usable, poor = {}, []
    for text in languages.TEXTS:
        lines = texts.read(os.path.join(cache, "heldback"), text)
        if sum(map(len, lines)) < ENOUGH:
            poor.append(text)
        else:
            usable[text] = lines
    return usable, poor
