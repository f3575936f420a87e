#!/usr/bin/env python3
"""Makes tune.ogg: four bars of a small waltz for plucked strings and a soft bass.

Each note is a string after Karplus and Strong: a burst of noise that goes round a delay of one
period and loses its upper partials on the way. The noise has a fixed seed, so that the tune is the
same at each run.

Usage: make_tune.py [TARGET]; needs ffmpeg.
"""

import array
import pathlib
import random
import subprocess
import sys
import tempfile
import wave

RATE = 44100
BEAT = 0.42  # Seconds.

NAMES = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}

# Beat, length in beats, note, loudness, place from left (0) to right (1).
MELODY = [
    (0, 1, "E5", 0.8, 0.6), (1, 1, "G5", 0.7, 0.6), (2, 1, "C6", 0.9, 0.6),
    (3, 2, "B5", 0.9, 0.6), (5, 1, "G5", 0.7, 0.6),
    (6, 1, "A5", 0.8, 0.6), (7, 1, "G5", 0.7, 0.6), (8, 0.5, "F5", 0.7, 0.6),
    (8.5, 0.5, "D5", 0.7, 0.6), (9, 3, "E5", 0.9, 0.6), (10.5, 2, "C6", 0.45, 0.7),
]
CHORDS = [  # A bass on the first beat, two notes on the second and the third.
    ("C3", "E4", "G4"),
    ("G2", "D4", "G4"),
    ("F3", "A3", "D4"),
    ("C3", "E4", "G4"),
]


def frequency(note):
    half_tones = NAMES[note[0]] + 12 * (int(note[1]) - 4) - 9
    return 440.0 * 2.0 ** (half_tones / 12.0)


def pluck(note, seconds, chance, brightness):
    """Samples of one string, from -1 to 1."""
    period = RATE / frequency(note)
    size = int(period) + 1
    ring = [chance.uniform(-1.0, 1.0) for _ in range(size)]
    for _ in range(brightness):  # A softer finger.
        ring = [(ring[i - 1] + ring[i]) / 2.0 for i in range(size)]
    middle = sum(ring) / size  # A string has no steady part.
    ring = [value - middle for value in ring]
    # The delay is too long by this part of a sample, so it reads that far ahead.
    ahead = size - period
    count = int(seconds * RATE)
    loss = 0.001 ** (period / RATE / 2.5)  # Down by 60 dB after 2.5 seconds.
    samples = [0.0] * count
    fade = int(0.04 * RATE)
    for i in range(count):
        value = ring[i % size]
        following = ring[(i + 1) % size]
        samples[i] = value * min(1.0, (count - i) / fade)
        ring[i % size] = loss * ((1.0 - ahead) * value + ahead * following)
    return samples


def render():
    chance = random.Random(1848)
    notes = [(beat, length + 1.0, note, loudness, place, 1)
             for beat, length, note, loudness, place in MELODY]
    for bar, (bass, middle, upper) in enumerate(CHORDS):
        last = bar == len(CHORDS) - 1
        notes.append((bar * 3, 3.0, bass, 0.8, 0.5, 6))
        for beat in (1, 2):
            notes.append((bar * 3 + beat, 2.0 if last else 1.0, middle, 0.4, 0.3, 4))
            notes.append((bar * 3 + beat, 2.0 if last else 1.0, upper, 0.4, 0.35, 4))
    total = int((len(CHORDS) * 3 + 2) * BEAT * RATE)
    sides = [[0.0] * total, [0.0] * total]
    for beat, length, note, loudness, place, brightness in notes:
        start = int(beat * BEAT * RATE)
        for i, value in enumerate(pluck(note, length * BEAT, chance, brightness)):
            if start + i < total:
                sides[0][start + i] += value * loudness * (1.0 - place)
                sides[1][start + i] += value * loudness * place
    # A little room: each side hears the other a moment later.
    for delay, part in ((1723, 0.22), (3011, 0.14)):
        for i in range(delay, total):
            left = sides[0][i - delay]
            sides[0][i] += part * sides[1][i - delay]
            sides[1][i] += part * left
    loudest = max(max(map(abs, side)) for side in sides)
    return [[0.7 * value / loudest for value in side] for side in sides]


def main():
    here = pathlib.Path(__file__).resolve().parent
    target = sys.argv[1] if len(sys.argv) > 1 else str(here / "tune.ogg")
    left, right = render()
    frames = array.array("h")
    for pair in zip(left, right):
        frames.extend(int(32767 * value) for value in pair)
    if sys.byteorder == "big":
        frames.byteswap()
    with tempfile.TemporaryDirectory() as folder:
        source = str(pathlib.Path(folder) / "tune.wav")
        with wave.open(source, "wb") as file:
            file.setnchannels(2)
            file.setsampwidth(2)
            file.setframerate(RATE)
            file.writeframes(frames.tobytes())
        subprocess.run(
            ["ffmpeg", "-v", "error", "-y", "-i", source, "-c:a", "libvorbis", "-q:a", "5",
             "-metadata", "title=Four Bars", "-metadata", "artist=TuneHive",
             "-metadata", "album=First Steps", "-metadata", "genre=Instrumental",
             "-flags", "+bitexact", "-fflags", "+bitexact", target],
            check=True)


if __name__ == "__main__":
    main()
