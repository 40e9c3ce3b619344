"""The table of models (MODELS) and the sets that share what they know (`sets`)."""

import collections
import os

from . import charsets

TABLE = os.path.join(os.path.dirname(__file__), "MODELS")
MOST_MODELS = 199
MIX = 0.02
# Documents in any language hold English: names, quotations, what markup and programs leave behind.
ENGLISH = 0.15

Model = collections.namedtuple("Model", "name language charset text mix english keep")


def _keep_of(language, charset):
    """How many trigrams a model keeps unless the table says so."""
    if language in ("zh", "ja", "ko"):
        return 40000
    return 6000 if charsets.is_single_byte(charset) else 8000


def read():
    """The models in group order."""
    table = []
    with open(TABLE, encoding="utf-8") as file:
        for line in file:
            if not line.strip() or line[0] == "#":
                continue
            language, charset, *options = line.split()
            given = dict(option.split("=") for option in options)
            table.append(Model(language + charset, language, charset, given.get("text", ""),
                               float(given.get("mix", MIX)),
                               float(given.get("english", 0 if language == "en" else ENGLISH)),
                               int(given.get("keep", _keep_of(language, charset)))))
    assert len(table) <= MOST_MODELS and len({model.name for model in table}) == len(table)
    return table


def sets(table):
    """Lists of models that share values: those of a language in which ASCII reads the same."""
    members = collections.OrderedDict()
    for model in table:
        if charsets.is_ascii_based(model.charset):
            members.setdefault(model.language, []).append(model)
    return [group for group in members.values() if len(group) > 1]
