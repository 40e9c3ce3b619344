"""Logistic curves: weights for which answers with probability p are right in a share p."""

import math

_RIDGE = 0.5
_STEPS = 30
_FEWEST_WRONG = 3  # for a weight beyond the constant


def probability(weights, features):
    """The curve's value."""
    score = sum(w * f for w, f in zip(weights, features))
    return 1 / (1 + math.exp(-max(-40.0, min(40.0, score))))


def _solved(matrix, vector):
    """Gauss' elimination, the matrix being positive definite."""
    size = len(vector)
    rows = [list(row) + [value] for row, value in zip(matrix, vector)]
    for i in range(size):
        for j in range(i + 1, size):
            factor = rows[j][i] / rows[i][i]
            rows[j] = [a - factor * b for a, b in zip(rows[j], rows[i])]
    out = [0.0] * size
    for i in reversed(range(size)):
        rest = sum(rows[i][j] * out[j] for j in range(i + 1, size))
        out[i] = (rows[i][size] - rest) / rows[i][i]
    return out


def _fit_on(samples, used):
    """Newton's steps over the features in `used`; all others weigh nothing."""
    weights = [0.0] * len(used)
    for _ in range(_STEPS):
        gradient = [-_RIDGE * w if k else 0.0 for k, w in enumerate(weights)]
        hessian = [[(_RIDGE if i == j and i else 1e-6 if i == j else 0.0)
                    for j in range(len(used))] for i in range(len(used))]
        for features, right in samples:
            own = [features[k] for k in used]
            p = probability(weights, own)
            for i, value in enumerate(own):
                gradient[i] += (right - p) * value
                for j, other in enumerate(own):
                    hessian[i][j] += p * (1 - p) * value * other
        step = _solved(hessian, gradient)
        weights = [w + max(-2.0, min(2.0, s)) for w, s in zip(weights, step)]
        if max(map(abs, step)) < 1e-7:
            break
    return weights


def fit(samples, rising, falling=()):
    """Weights for samples (features, right); the first feature is 1.

    Features whose index is in `rising` never make an answer less likely, those in `falling` never
    more. Of few wrong answers only
    their share is learnt, one more of each kind being supposed.
    """
    size = len(samples[0][0]) if samples else 6
    wrong = sum(1 for _, right in samples if not right)
    if min(wrong, len(samples) - wrong) < _FEWEST_WRONG:
        odds = (len(samples) - wrong + 1) / (wrong + 1)
        return [math.log(odds)] + [0.0] * (size - 1)
    used = list(range(size))
    while True:
        found = _fit_on(samples, used)
        against = [k for k, w in zip(used, found)
                   if (k in rising and w < 0) or (k in falling and w > 0)]
        if not against:
            weights = [0.0] * size
            for k, w in zip(used, found):
                weights[k] = w
            return weights
        used = [k for k in used if k not in against]


def calibration_error(answers, bins=10):
    """Expected calibration error of pairs (probability, right)."""
    sums = [[0.0, 0] for _ in range(bins)]
    for p, right in answers:
        bin_of = sums[min(bins - 1, int(p * bins))]
        bin_of[0] += p
        bin_of[1] += right
    return sum(abs(p - right) for p, right in sums) / max(1, len(answers))
