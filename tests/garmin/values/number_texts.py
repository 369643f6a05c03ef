#!/usr/bin/env python3
"""The checksum of a million number texts, by Python's own shortest digits.

Run it when the values of NumbersTest.cpp (NumberText.IsTheShortestOfAMillion) change, and store what
it prints there.
"""
import decimal
import math
import struct

MASK = (1 << 64) - 1


def random_numbers(state):
    """splitmix64."""
    while True:
        state = (state + 0x9E3779B97F4A7C15) & MASK
        z = state
        z = ((z ^ (z >> 30)) * 0xBF58476D1CE4E5B9) & MASK
        z = ((z ^ (z >> 27)) * 0x94D049BB133111EB) & MASK
        yield z ^ (z >> 31)


def plain(digits):
    text = format(decimal.Decimal(digits), 'f')
    if '.' in text:
        text = text.rstrip('0').rstrip('.')
    return '0' if text == '-0' else text


def double_text(value):
    if not math.isfinite(value):
        return '0'
    # Beyond 2^53 all digits are written: the shortest ones would need zeros that are not the value's.
    return str(int(value)) if abs(value) >= 2**53 else plain(repr(value))


def single_text(value):
    if not math.isfinite(value):
        return '0'
    if abs(value) >= 2**24:
        return str(int(value))
    for precision in range(9):
        digits = f'{value:.{precision}e}'
        if struct.pack('<f', float(digits)) == struct.pack('<f', value):
            return plain(digits)
    raise AssertionError(value)


def rounded(value, decimals):
    scaled = value * 10.0**decimals
    return round(scaled) / 10.0**decimals if abs(scaled) < 2**53 else value


def double_of(bits):
    return struct.unpack('<d', struct.pack('<Q', bits))[0]


def single_of(bits):
    return struct.unpack('<f', struct.pack('<I', bits & 0xFFFFFFFF))[0]


def text(kind, bits):
    low = bits & 0xFFFFFFFF
    semicircles = low - 2**32 if low >= 2**31 else low
    if kind == 0:
        return double_text(double_of(bits))
    if kind == 1:
        return single_text(single_of(bits))
    if kind == 2:
        return double_text(semicircles * 8.38190317153931e-8)
    if kind == 3:
        return double_text(rounded(semicircles * 8.38190317153931e-8, 6))
    if kind == 4:
        return single_text(rounded(single_of(bits), 0))
    if kind == 5:
        return double_text(32873 + (low >> 1) / 86400.0)
    if kind == 6:
        return double_text(rounded(double_of(bits), 6))
    return double_text(float(bits >> 14) / 10.0**(bits % 14))


def checksum():
    """FNV-1a of the texts, each with a line feed."""
    numbers = random_numbers(20070615)
    value = 0xCBF29CE484222325
    for i in range(1_000_000):
        for byte in (text(i % 8, next(numbers)) + '\n').encode():
            value = ((value ^ byte) * 0x100000001B3) & MASK
    return value


print(f'0x{checksum():016X}')
