"""Trains the models with `orva train` and makes their costs comparable.

Two models of a set share a value only if its quantised byte is the same in both, so the models that
`orva train` writes are adjusted before they are grouped: every model gets the same smallest and
largest cost, hence the same step, and the models of a set the same costs for all trigrams of ASCII
bytes, which are the same text in all of them.
"""

import multiprocessing
import os
import subprocess

from . import charsets

WEIGHT = 0.99
PREPROCESS = "DCX"
LOWEST, HIGHEST = 0.0, 12.0
LOWEST_BYTE, HIGHEST_BYTE = 5.0, 20.0
UNUSUAL, SIGN = 3, 16
SAME = 0.5  # costs that differ by less are the same but for chance
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

    def byte_costs(self):
        """The costs of the 256 bytes; negative for a byte that never occurred."""
        return [float(cost) for line in self.head[2:34] for cost in line.split()]

    def set_byte_costs(self, costs):
        """Replaces them."""
        for i in range(32):
            self.head[2 + i] = "".join("%7.4f " % cost for cost in costs[8 * i:8 * i + 8])

    def price_unseen(self, charset):
        """Prices bytes above 0x7F where they form none of the model's trigrams.

        Documents hold signs that training texts write in ASCII, and hardly any bytes in unusual
        order are UTF-8, while in single-byte charsets they are rare words.
        """
        costs = self.byte_costs()
        for byte in range(0x80, 256):
            if charset == "UTF-8" and costs[byte] >= 0:
                costs[byte] += UNUSUAL
            elif charsets.is_sign(charset, byte):
                costs[byte] = min(SIGN, costs[byte] if costs[byte] >= 0 else SIGN)
        self.set_byte_costs(costs)

    def clamp(self):
        """Brings all costs between the ends and both ends into use."""
        _clamp(self.costs, LOWEST, HIGHEST)
        seen = {byte: cost for byte, cost in enumerate(self.byte_costs()) if cost >= 0}
        _clamp(seen, LOWEST_BYTE, HIGHEST_BYTE)
        self.set_byte_costs([seen.get(byte, -1.0) for byte in range(256)])


def _clamp(costs, lowest, highest):
    for key, cost in costs.items():
        costs[key] = min(max(cost, lowest), highest)
    costs[min(costs, key=costs.get)] = lowest
    costs[max(costs, key=costs.get)] = highest


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
    first = members[0].byte_costs()
    for model in members[1:]:
        model.set_byte_costs(first[:128] + model.byte_costs()[128:])


def share_byte_orders(one, other):
    """Gives both byte orders the same costs where they see the same bytes.

    Text without letters above U+00FF is the same bytes in the same order but for the first one, and
    then nothing but a byte order mark, and no chance in training, may tell them apart.
    """
    for trigram, cost in one.costs.items():
        if abs(other.costs.get(trigram, HIGHEST) - cost) < SAME:
            other.costs[trigram] = cost
    byte_costs = other.byte_costs()
    for byte, cost in enumerate(one.byte_costs()):
        if abs(byte_costs[byte] - cost) < SAME:
            byte_costs[byte] = cost
    other.set_byte_costs(byte_costs)


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
    for model in table:
        other = charsets.other_byte_order(model.charset)
        if other and other.endswith("BE"):
            share_byte_orders(trained[model.name], trained[model.language + other])
    for model in table:
        trained[model.name].price_unseen(model.charset)
        trained[model.name].clamp()
        trained[model.name].write(path_of(model.name, folder))
