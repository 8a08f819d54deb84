"""Turns synthetic speech into a recording that stays clear in noise, as loud as its neighbours.

The loader brings every recording to full scale, so what decides how loud it speaks is its
loudness at a peak of 1: that is what is made equal here, by limiting the peaks.
"""

import numpy
from scipy.ndimage import minimum_filter1d, uniform_filter1d
from scipy.signal import lfilter, resample_poly

import filters

RATE = 48000
PEAK = round(32768 * 10 ** (-1 / 20))
LOUDNESS = -9.0
SILENCE = -48.0


def master(samples, rate):
    """16-bit samples at RATE: trimmed, equalised, compressed, of LOUDNESS at full peak."""
    assert RATE % 1000 == 0 and rate % 1000 == 0
    sound = resample_poly(samples, RATE // 1000, rate // 1000)
    sound = limit_to_loudness(compress(trim(equalise(sound))))
    return numpy.rint(sound / abs(sound).max() * PEAK).astype(numpy.int16)


def equalise(sound):
    """Less of what muffles and booms, more of what tells consonants apart."""
    for numerator, denominator in (
        filters.high_pass(110, 0.707, RATE),
        filters.low_shelf(350, 0.707, -6, RATE),
        filters.bell(2800, 1.0, 4, RATE),
        filters.high_shelf(1800, 0.707, 6, RATE),
    ):
        sound = lfilter(numerator, denominator, sound)
    return sound


def compress(sound, ratio=2.0, floor=-25.0, window=0.010):
    """Divides the level's distance from full scale by `ratio`, down to `floor` dB of the peak."""
    level = numpy.sqrt(uniform_filter1d(sound**2, int(window * RATE), mode="constant"))
    level = numpy.maximum(level / level.max(), 10 ** (floor / 20))
    return sound * level ** (1 / ratio - 1)


def trim(sound, fade_in=0.002, fade_out=0.008):
    """Cuts what lies below SILENCE at both ends, and fades the cuts."""
    audible = numpy.flatnonzero(abs(sound) > abs(sound).max() * 10 ** (SILENCE / 20))
    rise, fall = int(fade_in * RATE), int(fade_out * RATE)
    start, end = max(0, audible[0] - rise), min(len(sound), audible[-1] + 1 + fall)
    sound = sound[start:end].copy()
    sound[:rise] *= (1 - numpy.cos(numpy.pi * numpy.arange(rise) / rise)) / 2
    sound[-fall:] *= (1 + numpy.cos(numpy.pi * numpy.arange(1, fall + 1) / fall)) / 2
    return sound


def loudness(sound):
    """Ungated K-weighted loudness in LUFS (ITU-R BS.1770-4, its filters for 48 kHz)."""
    shelf = (
        (1.53512485958697, -2.69169618940638, 1.19839281085285),
        (1.0, -1.69065929318241, 0.73248077421585),
    )
    high_pass = ((1.0, -2.0, 1.0), (1.0, -1.99004745483398, 0.99007225036621))
    weighted = lfilter(*high_pass, lfilter(*shelf, sound))
    return -0.691 + 10 * numpy.log10(numpy.mean(weighted**2))


def limit(sound, drive, window=0.003):
    """`sound` times `drive`, with no sample above 1: the gain falls ahead of each peak."""
    driven = sound * drive
    width = int(window * RATE) | 1
    ceiling = 1.0 / numpy.maximum(abs(driven), 1.0)
    gain = uniform_filter1d(minimum_filter1d(ceiling, width, mode="nearest"), width, mode="nearest")
    return driven * gain


def limit_to_loudness(sound):
    """The limited `sound` whose loudness at full peak is LOUDNESS, found by bisection."""
    low, high = 0.5, 64.0
    for _ in range(40):
        drive = (low * high) ** 0.5
        limited = limit(sound, drive)
        if loudness(limited / abs(limited).max()) < LOUDNESS:
            low = drive
        else:
            high = drive
    return limited
