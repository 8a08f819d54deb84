"""Second-order filters by the bilinear transform, as coefficients that scipy's lfilter takes."""

import math


def _shape(frequency, quality, rate):
    angle = 2.0 * math.pi * frequency / rate
    return math.cos(angle), math.sin(angle) / (2.0 * quality)


def high_pass(frequency, quality, rate):
    cosine, alpha = _shape(frequency, quality, rate)
    side = (1.0 + cosine) / 2.0
    return (side, -2.0 * side, side), (1.0 + alpha, -2.0 * cosine, 1.0 - alpha)


def bell(frequency, quality, decibels, rate):
    cosine, alpha = _shape(frequency, quality, rate)
    a = 10.0 ** (decibels / 40.0)
    return (
        (1.0 + alpha * a, -2.0 * cosine, 1.0 - alpha * a),
        (1.0 + alpha / a, -2.0 * cosine, 1.0 - alpha / a),
    )


def high_shelf(frequency, quality, decibels, rate):
    cosine, alpha = _shape(frequency, quality, rate)
    return _shelf(-cosine, alpha, decibels, sign=1.0)


def low_shelf(frequency, quality, decibels, rate):
    cosine, alpha = _shape(frequency, quality, rate)
    return _shelf(cosine, alpha, decibels, sign=-1.0)


def _shelf(cosine, alpha, decibels, sign):
    a = 10.0 ** (decibels / 40.0)
    root = 2.0 * math.sqrt(a) * alpha
    # The two shelves are mirror images of each other, about a quarter of the rate.
    return (
        (
            a * ((a + 1.0) - (a - 1.0) * cosine + root),
            -sign * 2.0 * a * ((a - 1.0) - (a + 1.0) * cosine),
            a * ((a + 1.0) - (a - 1.0) * cosine - root),
        ),
        (
            (a + 1.0) + (a - 1.0) * cosine + root,
            sign * 2.0 * ((a - 1.0) + (a + 1.0) * cosine),
            (a + 1.0) + (a - 1.0) * cosine - root,
        ),
    )
