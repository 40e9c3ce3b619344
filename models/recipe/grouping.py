"""The fact-set file, the group and its table."""

import collections
import os
import subprocess

from .training import EXTENSION, TrainedModel


def write_facts(groups, path):
    """One set a line: full names, so that no name is the beginning of another model's."""
    with open(path, "w", encoding="ascii", newline="\n") as file:
        for group in groups:
            file.write("\t".join(model.name for model in group) + "\n")


def compile_group(program, paths, facts, folder, verbose):
    """Compiles Model.grp and names its charsets in Model.stc."""
    os.makedirs(folder, exist_ok=True)
    command = [program, "group", "-o", os.path.join(folder, "Model.grp"), "--facts", facts,
               "--stc", os.path.join(folder, "Model.stc")]
    subprocess.run(command + (["-v"] if verbose else []) + paths, check=True)


def count_values(paths, groups):
    """By trigram: how many values it has without sets, and how many are left with them."""
    set_of = {model.name: i for i, group in enumerate(groups) for model in group}
    size_of = [len(group) for group in groups]
    holders = {}
    for path in paths:
        name = os.path.basename(path)[:-len(EXTENSION)]
        for trigram, cost in TrainedModel(path).costs.items():
            # A step is 13/256 of the range that all models share.
            value = int(cost * 256 / 13 + 0.5)
            holders.setdefault(trigram, []).append((set_of.get(name, -1), value))
    counts = {}
    for trigram, entries in holders.items():
        by_set = {}
        for owner, value in entries:
            by_set.setdefault(owner, []).append(value)
        left = 0
        for owner, values in by_set.items():
            shared = owner >= 0 and len(values) == size_of[owner] and len(set(values)) == 1
            left += 1 if shared else len(values)
        counts[trigram] = (len(entries), left)
    return counts


RUN = 10000  # bytes between two results of the automaton


def values_per_byte(counts, text):
    """Values for each byte of a text: without sets, with them, and once each trigram of a run."""
    kept = bytes(c for c in text.lower() if not 0x30 <= c <= 0x39)
    before = after = once = 0
    for start in range(0, len(kept), RUN):
        run = kept[start:start + RUN]
        trigrams = collections.Counter(run[i:i + 3].hex() for i in range(len(run) - 2))
        for trigram, times in trigrams.items():
            without, left = counts.get(trigram, (0, 0))
            before += without * times
            after += left * times
            once += left
    return [total / max(1, len(kept)) for total in (before, after, once)]


def print_table(table, paths):
    """One line a model: bytes of its file, trigrams."""
    for model, path in zip(table, paths):
        print("%-22s %9d bytes %7d trigrams" % (model.name, os.path.getsize(path),
                                                len(TrainedModel(path).costs)))
