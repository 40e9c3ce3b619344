"""Trains the models with `orva train` and makes their costs comparable.

Two models of a set share a value only if its quantised byte is the same in both, so the models that
`orva train` writes are adjusted before they are grouped: every model gets the same smallest and
largest cost, hence the same step, and the models of a set the same costs for all trigrams of ASCII
bytes, which are the same text in all of them.
"""

import multiprocessing
import os
import subprocess

WEIGHT = 0.99
PREPROCESS = "DCX"
LOWEST, HIGHEST = 0.0, 12.0
EXTENSION = ".tri"
_HEAD_LINES = 35  # the header, a scalar, 32 lines of byte costs, two scalars


def path_of(name, folder):
    """The file of a trained model."""
    return os.path.join(folder, name + EXTENSION)


def _train(job):
    program, text, model, keep = job
    subprocess.run([program, "train", "-o", model, "--max-tri", str(keep), "--weight", str(WEIGHT),
                    "--preprocess", PREPROCESS, text], check=True, stdout=subprocess.DEVNULL)


class TrainedModel:
    """A model file: its head as it stands and the costs by trigram."""

    def __init__(self, path):
        with open(path, encoding="ascii") as file:
            lines = file.read().split("\n")[:-1]
        self.head = lines[:_HEAD_LINES]
        entries = (line.split("\t") for line in lines[_HEAD_LINES:])
        self.costs = {trigram: float(cost) for cost, trigram in entries}

    def write(self, path):
        """Writes the file; the order of trigrams is kept."""
        with open(path, "w", encoding="ascii", newline="\n") as file:
            file.writelines(line + "\n" for line in self.head)
            file.writelines("%6.4f\t%s\n" % (c, trigram) for trigram, c in self.costs.items())

    def clamp(self):
        """Brings all costs between the ends and both ends into use."""
        costs = self.costs
        for trigram, cost in costs.items():
            costs[trigram] = min(cost, HIGHEST)
        costs[min(costs, key=costs.get)] = LOWEST
        costs[max(costs, key=costs.get)] = HIGHEST


def _is_ascii(trigram):
    return all(trigram[i] < "8" for i in (0, 2, 4))


def share_ascii(members):
    """Gives the models of a set the same ASCII trigrams, each at the first one's cost."""
    common = {}
    for model in members:
        for trigram, cost in model.costs.items():
            if _is_ascii(trigram):
                common.setdefault(trigram, cost)
    for model in members:
        own = {t: c for t, c in model.costs.items() if not _is_ascii(t)}
        model.costs = {**common, **own}


def train(program, table, groups, texts, folder):
    """Trains all models of the table from texts/NAME.txt into `folder`."""
    raw = os.path.join(folder, "raw")
    os.makedirs(raw, exist_ok=True)
    with multiprocessing.Pool(2) as pool:
        pool.map(_train, [(program, os.path.join(texts, model.name + ".txt"),
                           path_of(model.name, raw), model.keep) for model in table], 1)
    trained = {model.name: TrainedModel(path_of(model.name, raw))
               for model in table}
    for group in groups:
        share_ascii([trained[model.name] for model in group])
    for name, model in trained.items():
        model.clamp()
        model.write(path_of(name, folder))
