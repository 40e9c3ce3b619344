"""The training text of each model: cache/train/NAME.txt.

Models of one language tell charsets apart, so nothing but the charset may differ between their
texts: the same lines in the same order, each line either in all of them or in none. A line that one
of the charsets cannot hold, even rewritten, is left out of all.
"""

import itertools
import os
import textwrap

from . import charsets, languages, texts

MIX_LINES = 400  # of every other text, offered to the mixture
_WRAP_SPACED, _WRAP_DENSE = 72, 36
_EVERY_SIGN = "".join(map(chr, range(0x20, 0x7f))) + "\t\n\r\n"


def interleave(lists):
    """The lists' items by turns, until the shortest that is not repeated ends."""
    if len(lists) == 1:
        return lists[0]
    count = {id(items): sum(other is items for other in lists) for items in lists}
    turns = min(len(items) // count[id(items)] for items in lists)
    iterators = {id(items): iter(items) for items in lists}
    return [next(iterators[id(items)]) for _ in range(turns) for items in lists]


class Corpus:
    """All texts, and a sample of each for the mixtures."""

    def __init__(self, folder):
        self._folder = folder
        self._texts = {}
        self._samples = {}

    def text(self, name):
        """The segments of one text."""
        if name not in self._texts:
            self._texts[name] = texts.read(self._folder, name)
        return self._texts[name]

    def lines(self, language, text=""):
        """The lines of a model's language."""
        names = (text,) if text else languages.MODEL_TEXTS.get(language, (language,))
        return interleave([self.text(name) for name in names])

    def sample(self, language):
        """Lines of all other languages by turns."""
        own = set(languages.MODEL_TEXTS.get(language, (language,)))
        for name in languages.TEXTS:
            if name not in self._samples:
                lines = texts.read(self._folder, name)
                self._samples[name] = lines[::max(1, len(lines) // MIX_LINES)][:MIX_LINES]
        others = [self._samples[name] for name in languages.TEXTS if name not in own]
        return [line for turn in itertools.zip_longest(*others) for line in turn if line]


# What surrounds text in files and on pages, and is not in translations.
_DRESSES = ("* {}", "- {}", "# {}", "    {}", "> {}", "| {} |", "== {} ==", "[{}]", "{{{}}}",
            "`{}`", "\t{}", "_{}_", "{} \\", "<{}>", "{}\r", "~ {} ~", "{}: {}", "{} | {}",
            "{} / {}", "{};",
            "// {}", "/* {} */", "({})", "--- {}", "... {}", "{} = \"{}\"", "{} -> {}", "{} & {}",
            "!!! {}", "{}???", "$ {}", "@{}", "+ {}", "{}^{}", "{} || {}")


def dress(line, number):
    """Every twentieth line as it might stand in a file: in a list, a table, a comment."""
    if number % 20:
        return line
    return _DRESSES[number // 20 % len(_DRESSES)].format(line, line[:20])


def common_lines(lines, language, charset_names):
    """The prepared lines that every charset can hold, as each charset writes them."""
    encoders = [charsets.Encoder(language, charset) for charset in charset_names]
    written = {charset: [] for charset in charset_names}
    dropped = 0
    for number, line in enumerate(lines):
        line = charsets.prepare(dress(line, number), number)
        versions = [encoder.rewrite(line) for encoder in encoders]
        if None in versions:
            dropped += 1
            continue
        for charset, version in zip(charset_names, versions):
            written[charset].append(version)
    return written, dropped


def _mixture(lines, charset, amount):
    """Lines of other languages that the charset holds, about `amount` characters."""
    encoder = charsets.Encoder("", charset)
    chosen = []
    for number, line in enumerate(lines):
        if amount <= 0:
            break
        version = encoder.rewrite(charsets.prepare(line, number))
        if version is not None:
            chosen.append(version)
            amount -= len(version)
    return chosen


def _layout(lines, spaced):
    """One text of the lines: every other one is wrapped as in a file with short lines."""
    width = _WRAP_SPACED if spaced else _WRAP_DENSE
    laid = []
    for number, line in enumerate(lines):
        if number % 2 and len(line) > width:
            if spaced:
                line = "\n".join(textwrap.wrap(line, width, break_long_words=False,
                                               break_on_hyphens=False))
            else:
                line = "\n".join(line[i:i + width] for i in range(0, len(line), width))
        laid.append(line)
    return "\n".join(laid) + "\n"


def _marked(content):
    """The text with a byte order mark before every tenth line.

    The mark is all that tells the two byte orders of ASCII text apart; once would be too rare to
    be learnt.
    """
    lines = content.split("\n")
    return "\n".join("\ufeff" + line if i % 10 == 0 else line for i, line in enumerate(lines))


def write(corpus, models, folder):
    """Writes the training texts of one language's models; returns how many lines were dropped."""
    os.makedirs(folder, exist_ok=True)
    dropped = 0
    language = models[0].language
    for text in dict.fromkeys(model.text for model in models):
        group = [model for model in models if model.text == text]
        lines = corpus.lines(language, text)
        written, missed = common_lines(lines, language, [model.charset for model in group])
        dropped += missed
        for model in group:
            own = written[model.charset]
            size = sum(map(len, own))
            mixed = _mixture(corpus.sample(language), model.charset, size * model.mix)
            mixed += _mixture(corpus.text("en"), model.charset, size * model.english)
            spaced = languages.is_spaced(language if language in languages.TEXTS else "zh_Hans")
            content = _layout(own, spaced or language in ("pt", "no")) + _layout(mixed, True)
            if model.charset.startswith(("UTF-16", "UTF-32")):
                content = _marked(content)
            with open(os.path.join(folder, model.name + ".txt"), "wb") as file:
                file.write(charsets.Encoder("", model.charset).encode(content + _EVERY_SIGN))
    return dropped
