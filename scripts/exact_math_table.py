#!/usr/bin/env python3
"""Writes the expected results in tests/unit/exact_math_test.cpp, computed with mpmath.

Usage: python3 scripts/exact_math_table.py [FILE]

FILE defaults to that test, whose lines between "BEGIN expected results" and "END expected results" are replaced. Each
function of src/math/exact_math.h gets a table of arguments with correctly rounded results, and a checksum over the
correctly rounded results for RANDOM_COUNT random arguments, which the test draws in the same way. The hard arguments
below were found by search: among 10^8 random ones and more, and among all floats for the logarithm, their exact results
lie closest to the middle between two neighbours.
"""
import pathlib
import struct
import sys
from fractions import Fraction

import mpmath

TEST = pathlib.Path(__file__).resolve().parent.parent / "tests/unit/exact_math_test.cpp"
BEGIN, END = "// BEGIN expected results", "// END expected results"
RANDOM_COUNT = 10000
CASE_COUNT = 64
DOUBLE = (53, -1074, 1024)  # significant bits, exponent of the smallest number, exponent of the first power too large
FLOAT = (24, -149, 128)
ULP = 2.0**-52

HARD = {
    "ArcCosine": """
        -0x1.85e98c41aa0eep-1
        0x1.5803175459dbep-1
        -0x1.67c5b3768018ep-1
        0x1.a4bc2121ed2c8p-1
        -0x1.d48bd4215de9ep-1
        -0x1.9582c9085af80p-2
        0x1.5e1e053c9b8f8p-3
        0x1.73d7b17e04000p-8
        0x1.417b4d4dc9e98p-1
        -0x1.e48d84b618656p-1
        -0x1.b96e0cfdcbd70p-3
        0x1.61c46d24e1e20p-2
""",
    "ArcTangent2": """
        -0x1.9c183791291a0p-3 -0x1.8ed8b7e14ed1cp-2
        0x1.40fc30018ebe8p-3 -0x1.3ccb1231e10e8p-1
        -0x1.ae259cd520924p-1 -0x1.32c68e1ba5a74p-1
        -0x1.dfc1e31d9a998p-3 0x1.a3c6754111084p-1
        0x1.2bf71ab7bbd10p-1 0x1.4aabeaac21a2cp-1
        -0x1.557039914712cp-2 0x1.56d9929b7686cp-1
        0x1.04e6bb07e5822p-1 0x1.e6b98ecba8deep-1
        -0x1.51e4cb4d88436p-1 -0x1.e9c5b3092b770p-1
        -0x1.2e8e162974780p-7 -0x1.7f44a72a21a80p-7
        -0x1.d74b70a0c6fa6p-1 -0x1.e986b97593e10p-4
        -0x1.871ae45491e00p-3 0x1.6e8f09749ec88p-1
        -0x1.94bd3ddbfd9e0p-3 -0x1.691add232297ep-1
""",
    "ArcTangent2f": """
        -0x1.30030c0000000p-1 0x1.6b9d5a0000000p-2
        -0x1.704b000000000p-1 -0x1.1c884e0000000p-1
        0x1.76fbd40000000p-2 -0x1.5bb0d20000000p-6
        -0x1.a1cc000000000p-1 -0x1.b4d8000000000p-1
        0x1.d440940000000p-1 0x1.9d8ad80000000p-1
        -0x1.59c0720000000p-1 -0x1.a3debc0000000p-2
        -0x1.2c63580000000p-1 0x1.3eb43a0000000p-3
        -0x1.659dcc0000000p-1 0x1.3d2f1a0000000p-5
        -0x1.e83b780000000p-3 -0x1.9f760c0000000p-2
        -0x1.e0f44a0000000p-1 -0x1.c574c80000000p-1
        -0x1.4df55c0000000p-1 -0x1.b5cef80000000p-1
        0x1.aeb6ee0000000p-2 0x1.16454c0000000p-2
""",
    "Power": """
        0x1.057121c045a5dp-1 0x1.b82906caef8b4p-1
        0x1.40855af8de624p+0 0x1.2b86591068890p+1
        0x1.f216930e53a6fp-1 0x1.1d0ec99c595dcp+1
        0x1.42b53b78bc543p-1 -0x1.63d37a1bf7760p-4
        0x1.991813623db62p-2 -0x1.df55c0d428fa2p+0
        0x1.16cb09dffc7e2p+1 0x1.057ef591832f0p-1
        0x1.612d87997d56ap-982 0x1.be02e091c5ae5p-1
        0x1.ceec1c9dbc66dp-968 0x1.b2da40e2f7468p-1
        0x1.a0e1d16e9d9d2p+961 -0x1.e0f4fdb5a0d97p-1
        0x1.9f73349d806e0p-993 0x1.dc942de18d028p-1
        0x1.1f1284bdec0e6p-984 -0x1.a1f534016a4d2p-1
        0x1.f4a106d9b5b7ap-975 0x1.520c5f306ac5fp-1
        0x1.5b95344972fe2p+1 0x1.0000000000000p-1
        0x1.256565cadcbf4p+0 0x1.0000000000000p-1
        0x1.2b035c1197f48p+0 0x1.0000000000000p-1
        0x1.4eb5f85e783a9p+1 0x1.0000000000000p-1
        0x1.283741a1bef08p+0 0x1.0000000000000p-1
        0x1.d407bb3641da5p+0 0x1.0000000000000p-1
        0x1.846e0883c3a3cp+1 -0x1.8b4a54ce26298p+0
        0x1.83cdd8900a75cp+1 -0x1.c15ab46ac6880p+2
        0x1.3f0d3d8fdce20p-3 0x1.ebbfcd9e576f4p+2
        0x1.4c355f6f1765ap+0 -0x1.20156bfefd350p+1
        0x1.ab2f96f8ea82ep+1 -0x1.fc7f83b66c10ap+2
        0x1.bc9fe4f4504d4p+0 -0x1.ae674949e7554p+1
        0x1.c72ddd23fa67ap+1 0x1.e69d5ce4007b0p-1
        0x1.cfe14d30b1c02p+0 0x1.f2e9e11266600p-4
        0x1.04fd60efb59b2p+0 0x1.a619600ac0b50p+0
        0x1.380c7f9925a8fp+1 -0x1.1eac74fd1ad38p+0
        0x1.47c5e60b5dbf6p+1 -0x1.520ece1244e32p+2
        0x1.1e96786688298p-2 -0x1.3c63a1864d780p-1
""",
    "Logarithmf": """
        0x1.b121a60000000p+76
        0x1.bacb4a0000000p+25
        0x1.c09d7c0000000p+27
        0x1.2f1fd60000000p+3
        0x1.22d5700000000p-65
        0x1.5190c00000000p+78
        0x1.827a740000000p-7
        0x1.6351d80000000p+95
        0x1.b97c700000000p-14
        0x1.cb534c0000000p+13
        0x1.d1309c0000000p+62
        0x1.f0dde00000000p-8
""",
}


def rounded(value, kind):
    """The mpmath number rounded to nearest, ties to even."""
    digits, lowest, limit = kind
    if value == 0:
        return 0.0
    exact = Fraction(int(value.man)) * Fraction(2) ** int(value.exp)  # without the sign
    exponent = int(value.exp) + int(value.man).bit_length() - 1
    quantum = Fraction(2) ** max(exponent - digits + 1, lowest)
    nearest = round(exact / quantum) * quantum
    result = float("inf") if nearest >= 2**limit else float(nearest)
    return -result if value < 0 else result


def arc_cosine(x):
    return rounded(mpmath.acos(x), DOUBLE)


def arc_tangent2(y, x, kind=DOUBLE):
    # The arc tangent of a small ratio differs from it only in a digit as far down as the square of the ratio.
    ratio = abs(mpmath.mpf(y) / mpmath.mpf(x))
    with mpmath.workprec(6000 if ratio < 2.0**-100 else mpmath.mp.prec):
        return rounded(mpmath.atan2(y, x), kind)


def arc_tangent2f(y, x):
    return arc_tangent2(y, x, FLOAT)


def power(base, exponent):
    value = mpmath.power(base, exponent)
    with mpmath.workprec(200):
        return rounded(+value, DOUBLE)  # An exact result is one again after this.


def logarithmf(x):
    return rounded(mpmath.log(x), FLOAT)


class Generator:
    """The test's generator of random numbers."""

    def __init__(self):
        self.state = 1

    def next(self):
        """53 bits."""
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) % 2**64
        return self.state >> 11

    def unit(self):
        return self.next() * 2.0**-53

    def float_unit(self):
        return (self.next() >> 29) * 2.0**-24


def float_from_bits(bits):
    return struct.unpack("<f", struct.pack("<I", bits))[0]


DRAW = {
    "ArcCosine": lambda g: (2 * g.unit() - 1,),
    "ArcTangent2": lambda g: (2 * g.unit() - 1, 2 * g.unit() - 1),
    "ArcTangent2f": lambda g: (2 * g.float_unit() - 1, 2 * g.float_unit() - 1),
    "Power": lambda g: (4 * g.unit(), 16 * g.unit() - 8),
    "Logarithmf": lambda g: (float_from_bits(1 + g.next() % 0x7F7FFFFF),),
}
FUNCTION = {
    "ArcCosine": arc_cosine,
    "ArcTangent2": arc_tangent2,
    "ArcTangent2f": arc_tangent2f,
    "Power": power,
    "Logarithmf": logarithmf,
}

STRUCTURED = {
    "ArcCosine": [(s * x,) for s in (1, -1) for x in
                  [1 - ULP / 2, 1 - ULP, 0.999, 0.5 + ULP / 2, 0.5, 0.5 - ULP / 4, 0.4921875, 0.1, 0.0078125, 2**-27,
                   6e-17, 2.0**-60, 2.0**-1074, 0.25, 0.7071067811865476, 0.8660254037844386, 0.9375]],
    "ArcTangent2": [(3 * 2.0**-1074, 2.0), (2.0**-1074, 2.0), (5 * 2.0**-1074, -2.0), (7 * 2.0**-1074, 2.0),
                    (2.0**-1074, 1.0), (2.0**-1074, 2.0**1023), (2.0**-1022, 1 + ULP), (2.0**-1074, 2.0**-1074),
                    (1.7e308, 2.0**-1074), (1.7e308, -1.7e308), (2.0**-30, 1 - ULP / 2), (2.0**-53, 1 - ULP / 2),
                    (3 * 2.0**-40, 1 - 3 * ULP / 2), (2.0**-27, 1.0), (2.0**-33, 1 - ULP / 2), (2.0**-70, 3.0),
                    (-2.0**-70, -3.0), (1e-20, -1.0), (1.0, 1e-20), (-1.0, 1e-20), (1.0, 1.0), (1.0, -1.0),
                    (1 - ULP / 2, 1.0), (1.0, 1 - ULP / 2), (-3.0, 4.0), (4.0, -3.0), (1.0, 128.0), (3.0, 128.0),
                    (127.0, 128.0), (1e300, 1e-5), (1e-300, 3e-300), (2.0**-1060, 3 * 2.0**-1062)],
    "ArcTangent2f": [(3 * 2.0**-149, 2.0), (2.0**-149, 2.0), (5 * 2.0**-149, -2.0), (7 * 2.0**-149, 2.0),
                     (2.0**-149, 2.0**127), (2.0**-149, 2.0**-149), (2.0**127, 2.0**-149), (2.0**-126, 1 + 2.0**-23),
                     (2.0**-20, 1 - 2.0**-24), (2.0**-10, 1 - 2.0**-24), (1.0, 1.0), (1.0, -1.0), (-3.0, 4.0),
                     (4.0, -3.0), (1.0, 128.0), (3.0, 128.0), (127.0, 128.0), (2.0**-70, 3.0), (-2.0**-70, -3.0)],
    "Power": [(3.0, 34.0), (3.0, 33.0), (3.0, 35.0), (5.0, 23.0), (7.0, 19.0), (11.0, 15.0), (81.0, 0.25),
              (3.0**32, 1.0625), (3.0**32, 1.03125), (243.0 * 2**10, 0.2), (1 - 2.0**-27, 2.0), (1 - 2.0**-18, 3.0),
              (9.0 / 4, 17.0), (9.0 / 4, 16.5), (2.0, -1075.0), (2.0, -1074.0), (2.0, -1073.5), (4.0, -537.5),
              (0.5, 1075.0),
              (2.0**-1074, 1.0), (2.0**-1074, 0.5), (2.0**-1074, -0.9), (3 * 2.0**-43, 25.0), (5 * 2.0**-215, 5.0),
              (3 * 2.0**-215, 5.0), (1 + 3 * ULP, 0.75), (1 + ULP, 1.5), (1 + ULP, -0.5), (1 + 3 * ULP, 0.5),
              (1 + 6 * ULP, 0.25), (1 - ULP, 0.25), (1 - ULP / 2, 1.5), (1 - ULP / 2, 2.5), (1 + ULP, 2.0**60),
              (1 + ULP, -3.1e18), (1 - ULP / 2, 6.5e18), (10.0, 308.0), (10.0, 309.0), (10.0, -323.0), (10.0, -324.0),
              (10.0, 22.0), (10.0, 23.0), (2.718281828459045, 709.782712893384),
              (2.718281828459045, -745.1332191019411), (2.718281828459045, -745.2), (0.5, 2.0**-60), (1e-300, 2.0**-80),
              (0.9, 1e5), (2.0, 0.5), (7.0, -1.0),
              (1e300, 2.0**-61), (1e-300, 2.0**-62), (2.0**-1074, -2.0**-62), (1.5, 34.0), (6.0, 34.0), (0.75, 34.0),
              (0.1875, 34.0), (24.0, 34.0), (3 * 2.0**-31, 34.0)],
    "Logarithmf": [(x,) for x in
                   [2.0**-149, 3 * 2.0**-149, 2.0**-126, 2.0**127, float_from_bits(0x7F7FFFFF), 1 - 2.0**-24,
                    1 + 2.0**-23, 1 - 2.0**-12, 1 + 2.0**-12, 0.5, 2.0, 10.0, 1.40625, 1.40625 + 2.0**-23, 1.015625,
                    0.984375, 0.703125, 3.0, 7.0, 1e6]],
}


def cases(name):
    """Arguments for the table: the hard ones, those above, and random ones until there are CASE_COUNT."""
    generator = Generator()
    chosen = [tuple(map(float.fromhex, line.split())) for line in HARD[name].strip().splitlines()] + STRUCTURED[name]
    while len(chosen) < CASE_COUNT:
        chosen.append(DRAW[name](generator))
    return chosen


def checksum(name):
    generator = Generator()
    value = 0
    for _ in range(RANDOM_COUNT):
        result = FUNCTION[name](*DRAW[name](generator))
        bits = struct.unpack("<Q", struct.pack("<d", result))[0]
        value = (value ^ value >> 32 ^ bits) * 0x100000001B3 % 2**64
    return value


def hex_text(value):
    if value == float("inf"):
        return "kInfinity"
    return value.hex().replace("0x1.0000000000000p", "0x1p").replace("p+", "p")


def table(name):
    rows = [arguments + (FUNCTION[name](*arguments),) for arguments in cases(name)]
    lines = [f"constexpr std::array<std::array<double, {len(rows[0])}>, {len(rows)}> k{name}Cases{{{{"]
    lines += ["    {" + ", ".join(map(hex_text, row)) + "}," for row in rows]
    return lines + ["}};", f"constexpr std::uint64_t k{name}Checksum = {checksum(name):#018x};", ""]


def main():
    mpmath.mp.prec = 400
    path = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else TEST
    before, rest = path.read_text().split(BEGIN)
    after = rest.split(END)[1]
    lines = [f"constexpr int kRandomCount = {RANDOM_COUNT};", ""]
    for name in FUNCTION:
        lines += table(name)
    # Without a newline of the platform's own.
    path.write_bytes("".join([before, BEGIN, "\n", "\n".join(lines), END, after]).encode())


if __name__ == "__main__":
    main()
