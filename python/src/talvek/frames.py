"""Frames, the OBJ files in which the program leaves a surface, as arrays.

A frame has one line for every vertex and one for its normal, both with six decimals, and then the faces. Numbers are
read eight characters at a time; a frame with numbers that this does not fit is read line by line.
"""

from __future__ import annotations

import mmap
import os
import re
from collections.abc import Iterator

import numpy as np
from numpy.typing import NDArray

from talvek.errors import MeshError

Floats = NDArray[np.float32]
Integers = NDArray[np.int32]
Words = NDArray[np.uint64]

_DECIMALS = 6
_BLOCK = 1 << 19
_HEADER = re.compile(rb"(?:^|\n)# (\d+) vertices\r?\n")

_ZEROS = np.uint64(0x3030303030303030)
_NO_DIGITS = np.uint64(0x1010101010101010)
_ONES = np.uint64(0x0101010101010101)


def _shift(words: Words, bits: int) -> Words:
    return words >> np.uint64(bits)


def _join_digits(digits: Words) -> Words:
    """The numbers whose eight decimal digits are the bytes of words, the first one the lowest byte."""
    pairs = (digits * np.uint64(10)) + _shift(digits, 8)
    upper = (pairs & np.uint64(0x000000FF000000FF)) * np.uint64(100 + (1000000 << 32))
    lower = (_shift(pairs, 16) & np.uint64(0x000000FF000000FF)) * np.uint64(1 + (10000 << 32))
    return _shift(upper + lower, 32)


def _ending_at(words: Words, ends: NDArray[np.int64]) -> tuple[Words, NDArray[np.bool_]]:
    """Whole numbers of up to seven digits that end before given places, and whether a minus stands before them.

    ``words[i]`` are the eight bytes from place i on.
    """
    digits = words[ends - 8] ^ _ZEROS
    others = digits & _NO_DIGITS
    if not np.all(others):
        raise ValueError("a number of more than seven digits")
    for bits in (8, 16, 32):
        others |= _shift(others, bits)
    sign = _shift(others ^ _shift(others, 8), 4)
    is_negative = (digits & sign) != 0
    return _join_digits(digits & ~(_shift(others, 4) * np.uint64(0xFF))), is_negative


def _words(data: mmap.mmap | bytes, start: int, end: int) -> tuple[NDArray[np.uint8], Words]:
    """The bytes of a part of a file, and the eight bytes from each of them on."""
    padded = np.empty(end - start + 16, dtype=np.uint8)
    padded[:8] = padded[-8:] = ord(" ")
    padded[8:-8] = np.frombuffer(data, dtype=np.uint8, count=end - start, offset=start)
    words: Words = np.ndarray(len(padded) - 7, dtype=np.uint64, buffer=padded.data, strides=(1,))
    return padded, words


def _decimals(data: mmap.mmap | bytes, start: int, end: int) -> tuple[NDArray[np.int64], Words]:
    padded, words = _words(data, start, end)
    return np.flatnonzero(padded == ord(".")), words


def _numbers(words: Words, points: NDArray[np.int64]) -> NDArray[np.float64]:
    """The numbers with a decimal point at given places."""
    whole, is_negative = _ending_at(words, points)
    digits = (words[points + 1] ^ _ZEROS) & np.uint64((1 << 8 * _DECIMALS) - 1)
    if np.any((digits + np.uint64(0x060606060606)) & np.uint64(0xF0F0F0F0F0F0)):
        raise ValueError("a number without six decimals")
    scaled = whole * np.uint64(10**_DECIMALS) + _join_digits(_aligned(digits))
    values: NDArray[np.float64] = scaled.astype(np.float64) / 10**_DECIMALS
    np.negative(values, out=values, where=is_negative)
    return values


def _aligned(digits: Words) -> Words:
    """Six digits as the last of eight."""
    return digits << np.uint64(8 * (8 - _DECIMALS))


def _blocks(data: mmap.mmap, start: int) -> Iterator[tuple[int, int]]:
    """Parts of a file that end where a vertex begins, or the file ends."""
    while start < len(data):
        end = min(start + _BLOCK, len(data))
        if end < len(data):
            end = data.rfind(b"\nv ", start, end) + 1 or end
        yield start, end
        start = end


def _read_columns(data: mmap.mmap, start: int, count: int, columns: slice) -> Floats:
    """Three of the six numbers of every vertex, of a frame whose lines all have the form of the program."""
    result = np.empty((count, 3), dtype=np.float32)
    done = 0
    for begin, end in _blocks(data, start):
        if done == count:
            break
        points, words = _decimals(data, begin, end)
        if len(points) % 6 or done + len(points) // 6 > count:
            raise ValueError("a line without three numbers")
        chosen = np.ascontiguousarray(points.reshape(-1, 6)[:, columns])
        result[done : done + len(chosen)] = _numbers(words, chosen.ravel()).reshape(-1, 3)
        done += len(chosen)
    if done != count:
        raise ValueError("fewer vertices than the header says")
    return result


def _read_lines(path: str, word: str) -> Floats:
    """The numbers of all lines of a kind, in whatever form they are."""
    with open(path, encoding="ascii", errors="replace") as file:
        rows = [line.split()[1:4] for line in file if line.startswith(word + " ")]
    return np.array(rows, dtype=np.float64).reshape(-1, 3).astype(np.float32)


def _vertex_count(data: mmap.mmap) -> int | None:
    header = _HEADER.search(data[:400])
    return int(header[1]) if header else None


def _read(path: str, columns: slice, word: str) -> Floats:
    try:
        with open(path, "rb") as file, mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as data:
            count = _vertex_count(data)
            start = data.find(b"\nv ") + 1
            if count is not None and start > 0:
                try:
                    return _read_columns(data, start, count, columns)
                except ValueError:
                    pass
        return _read_lines(path, word)
    except (OSError, ValueError) as error:
        raise MeshError(f"{path}: {error}") from error


def read_vertices(path: str | os.PathLike[str]) -> Floats:
    """Read the vertices of a frame.

    Returns
    -------
    array of float32, shape (V, 3), in mm
        The very numbers that the file holds, each rounded once.
    """
    return _read(os.fspath(path), slice(0, 3), "v")


def read_normals(path: str | os.PathLike[str]) -> Floats:
    """Read the normals of a frame's vertices.

    Returns
    -------
    array of float32, shape (V, 3)
        Of length 1, or 0 where a vertex has none.
    """
    return _read(os.fspath(path), slice(3, 6), "vn")


def _read_corners(data: mmap.mmap, start: int) -> Integers:
    corners = []
    while start < len(data):
        end = min(start + _BLOCK, len(data))
        end = data.rfind(b"\n", start, end) + 1 or end
        padded, words = _words(data, start, end)
        is_digit = (padded >= ord("0")) & (padded <= ord("9"))
        ends = np.flatnonzero(is_digit[:-1] & ~is_digit[1:]) + 1
        if len(ends) % 3:
            raise ValueError("a face without three corners")
        corners.append(_ending_at(words, ends)[0].astype(np.int32))
        start = end
    return (np.concatenate(corners) if corners else np.empty(0, dtype=np.int32)).reshape(-1, 3) - np.int32(1)


def read_faces(path: str | os.PathLike[str]) -> Integers:
    """Read the faces of a frame.

    Returns
    -------
    array of int32, shape (F, 3)
        The vertices at the corners, counted from 0.
    """
    try:
        with open(path, "rb") as file, mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as data:
            start = data.find(b"\nf ") + 1
            return _read_corners(data, start) if start > 0 else np.empty((0, 3), dtype=np.int32)
    except (OSError, ValueError) as error:
        raise MeshError(f"{os.fspath(path)}: {error}") from error
