#!/usr/bin/env python3
"""An independent model of the dialect's decimals and dates: random cases with the answers expected.

Usage: oracle.py SEED COUNT

Writes one case a line, fields separated by tabs; the last one is the answer. The rules are written
here from the documentation of Transact-SQL ("Precision, scale, and length", "CAST and CONVERT",
"DATEDIFF", "DATEADD") on Python's decimal, fractions and datetime, and share nothing with the C++ code
that oracle_test.cpp runs the same cases through.
"""

import datetime
import decimal
import random
import sys
from decimal import Decimal
from fractions import Fraction

decimal.getcontext().prec = 300

BASE = datetime.datetime(1900, 1, 1)
OVERFLOW = "overflow"
DIVIDE_BY_ZERO = "divide by zero"


# ---- Types --------------------------------------------------------------------------------------

def keep_integral(precision, scale, integral):
    """+, -, UNION, %: "scale = min(precision, 38) - max(p1 - s1, p2 - s2)" where places run out."""
    if precision > 38 and integral > 38 - scale:
        scale = 38 - integral
    return min(precision, 38), scale


def keep_six(precision, scale):
    """* and /: the three numbered rules."""
    integral = precision - scale
    if precision > 38:
        if integral < 32:
            scale = min(scale, 38 - integral)
        elif scale > 6:
            scale = 6
        precision = 38
    return precision, scale


def result_type(op, p1, s1, p2, s2):
    if op in ("add", "sub"):
        integral = max(p1 - s1, p2 - s2)
        return keep_integral(max(s1, s2) + integral + 1, max(s1, s2), integral)
    if op == "mul":
        return keep_six(p1 + p2 + 1, s1 + s2)
    if op == "div":
        scale = max(6, s1 + p2 + 1)
        return keep_six(p1 - s1 + s2 + scale, scale)
    if op == "mod":
        integral = min(p1 - s1, p2 - s2)
        return keep_integral(max(s1, s2) + integral, max(s1, s2), integral)
    raise ValueError(op)


# ---- Numbers ------------------------------------------------------------------------------------

def at_scale(value, scale, rounding):
    return value.quantize(Decimal(1).scaleb(-scale), rounding=rounding)


def shown(value, precision, scale):
    """The value as decimal(precision, scale) is written, or its overflow."""
    if abs(value) >= Decimal(10) ** (precision - scale):
        return OVERFLOW
    text = f"{value:.{scale}f}"
    return text.replace("-", "") if value == 0 else text


def random_number(rng, precision, scale):
    """A coefficient of any length up to the precision, with a liking for the edges."""
    kind = rng.random()
    if kind < 0.05:
        coefficient = 0
    elif kind < 0.10:
        coefficient = 10**precision - 1
    elif kind < 0.15:
        coefficient = 10 ** rng.randint(0, precision - 1)
    elif kind < 0.20:
        near = 2 ** rng.choice((31, 32, 63, 64, 96)) + rng.randint(-1, 1)
        coefficient = min(near, 10**precision - 1)
    else:
        coefficient = rng.randint(0, 10 ** rng.randint(1, precision) - 1)
    if rng.random() < 0.4:
        coefficient = -coefficient
    return Decimal(coefficient).scaleb(-scale)


def random_type(rng):
    if rng.random() < 0.4:  # what the tables of the ERP use
        return rng.choice(((28, 10), (38, 10), (18, 0), (10, 0), (23, 10), (18, 2), (5, 2),
                           (38, 0)))
    precision = rng.randint(1, 38)
    return precision, rng.randint(0, precision)


def arithmetic_case(rng):
    op = rng.choice(("add", "sub", "mul", "mul", "div", "div", "mod"))
    (p1, s1), (p2, s2) = random_type(rng), random_type(rng)
    a, b = random_number(rng, p1, s1), random_number(rng, p2, s2)
    p, s = result_type(op, p1, s1, p2, s2)
    if op == "add":
        value = at_scale(a + b, s, decimal.ROUND_HALF_UP)
    elif op == "sub":
        value = at_scale(a - b, s, decimal.ROUND_HALF_UP)
    elif op == "mul":
        value = at_scale(a * b, s, decimal.ROUND_HALF_UP)
    elif b == 0:
        value = None
    elif op == "div":
        quotient = Fraction(a) / Fraction(b)
        scaled = abs(quotient.numerator) * 10**s // quotient.denominator
        value = Decimal(scaled if quotient > 0 else -scaled).scaleb(-s)
    else:
        remainder = Fraction(a) - int(Fraction(a) / Fraction(b)) * Fraction(b)
        exact = max(s1, s2)
        value = Decimal(int(remainder * 10**exact)).scaleb(-exact)
        value = at_scale(value, s, decimal.ROUND_HALF_UP)
    answer = DIVIDE_BY_ZERO if value is None else shown(value, p, s)
    return [op, f"{a:f}", p1, s1, f"{b:f}", p2, s2, p, s, answer]


def compare_case(rng):
    (p1, s1), (p2, s2) = random_type(rng), random_type(rng)
    a = random_number(rng, p1, s1)
    b = random_number(rng, p2, s2)
    if rng.random() < 0.3 and s1 == s2 and p2 >= p1:
        b = a
    return ["cmp", f"{a:f}", p1, s1, f"{b:f}", p2, s2, (a > b) - (a < b)]


def cast_case(rng):
    (p1, s1), (p2, s2) = random_type(rng), random_type(rng)
    a = random_number(rng, p1, s1)
    return ["cast", f"{a:f}", p1, s1, p2, s2, shown(at_scale(a, s2, decimal.ROUND_HALF_UP), p2, s2)]


def cast_to_int_case(rng):
    p, s = random_type(rng)
    a = random_number(rng, p, s)
    whole = int(a)
    return ["int", f"{a:f}", p, s, whole if -(2**31) <= whole < 2**31 else OVERFLOW]


def round_case(rng):
    p, s = random_type(rng)
    a = random_number(rng, p, s)
    digits = rng.randint(-40, 40)
    cut = rng.randint(0, 1)
    value = a
    if digits < s:
        rounding = decimal.ROUND_DOWN if cut else decimal.ROUND_HALF_UP
        value = at_scale(a.quantize(Decimal(1).scaleb(-digits), rounding=rounding), s, rounding)
    return ["round", f"{a:f}", p, s, digits, cut, shown(value, p, s)]


def aggregate_case(rng):
    p, s = random_type(rng)
    values = [random_number(rng, p, s) for _ in range(rng.randint(1, 8))]
    total = sum(values, Decimal(0))
    partial = Decimal(0)
    overflow = False
    for value in values:
        partial += value
        overflow = overflow or abs(partial) >= Decimal(10) ** (38 - s)
    average_scale = max(s, 6)
    coefficient = int(total.scaleb(s)) * 10 ** (average_scale - s)
    cut = abs(coefficient) // len(values)
    average = Decimal(-cut if coefficient < 0 else cut).scaleb(-average_scale)
    listed = ",".join(f"{value:f}" for value in values)
    return ["aggregate", listed, p, s,
            OVERFLOW if overflow else shown(total, 38, s),
            OVERFLOW if overflow else shown(average, 38, average_scale),
            shown(min(values), p, s), shown(max(values), p, s)]


# ---- Dates --------------------------------------------------------------------------------------

def to_tick(moment):
    """The nearest 1/300 s since 1900."""
    microseconds = (moment - BASE) // datetime.timedelta(microseconds=1)
    return (Fraction(microseconds * 300, 1000000) + Fraction(1, 2)).__floor__()


def random_moment(rng):
    day = datetime.datetime(1753, 1, 1) + datetime.timedelta(days=rng.randint(0, 3012153))
    if rng.random() < 0.5:
        day = datetime.datetime(2026, 1, 1) + datetime.timedelta(days=rng.randint(-800, 800))
    if rng.random() < 0.3:
        return day
    return day + datetime.timedelta(milliseconds=rng.randint(0, 86399990))


def at_tick(moment):
    """The moment as the server keeps it: (whole seconds, milliseconds rounded from the tick)."""
    tick = to_tick(moment)
    seconds, rest = divmod(tick, 300)
    milliseconds = (Fraction(rest * 10, 3) + Fraction(1, 2)).__floor__()
    return BASE + datetime.timedelta(seconds=seconds), milliseconds


def written(moment):
    whole, milliseconds = at_tick(moment)
    return f"{whole.year:04d}-{whole:%m-%d %H:%M:%S}.{milliseconds:03d}"


def unit_of(part, moment):
    moment, milliseconds = at_tick(moment)
    days = (moment - BASE).days
    seconds = (moment - BASE) // datetime.timedelta(seconds=1)
    return {
        "year": moment.year,
        "quarter": moment.year * 4 + (moment.month - 1) // 3,
        "month": moment.year * 12 + moment.month,
        "day": days,
        "week": (moment.toordinal() - moment.isoweekday() % 7) // 7,  # the Sunday before
        "hour": seconds // 3600,
        "minute": seconds // 60,
        "second": seconds,
        "millisecond": seconds * 1000 + milliseconds,
    }[part]


def difference_case(rng):
    part = rng.choice(("year", "quarter", "month", "day", "week", "hour", "minute", "second", "millisecond"))
    a, b = random_moment(rng), random_moment(rng)
    if rng.random() < 0.5:
        b = a + datetime.timedelta(seconds=rng.randint(-200000, 200000))
    if not datetime.datetime(1753, 1, 1) <= b < datetime.datetime(9999, 12, 31):
        b = a
    value = unit_of(part, b) - unit_of(part, a)
    return ["datediff", part, f"{written(a)}", f"{written(b)}",
            value if -(2**31) <= value < 2**31 else OVERFLOW]


def add_months(moment, months):
    total = moment.year * 12 + moment.month - 1 + months
    year, month = divmod(total, 12)
    if not 1753 <= year <= 9999:
        return None
    next_month = None
    if (year, month) != (9999, 11):
        next_month = datetime.date(year + month // 11,
                                   month % 11 + 1 if month == 11 else month + 2, 1)
    last = 31 if next_month is None else (next_month - datetime.timedelta(days=1)).day
    return moment.replace(year=year, month=month + 1, day=min(moment.day, last))


def sum_case(rng):
    part = rng.choice(("year", "quarter", "month", "day", "week", "hour", "minute", "second"))
    number = rng.choice((rng.randint(-30, 30), rng.randint(-3000, 3000)))
    moment, _ = at_tick(random_moment(rng))
    if part in ("year", "quarter", "month"):
        value = add_months(moment, number * {"year": 12, "quarter": 3, "month": 1}[part])
    else:
        try:
            value = moment + datetime.timedelta(**{part + "s": number})
        except OverflowError:
            value = None
    if value is not None and not datetime.datetime(1753, 1, 1) <= value:
        value = None
    return ["dateadd", part, number, written(moment), OVERFLOW if value is None else written(value)]


def read_case(rng):
    """A date in one of the forms that the server reads."""
    moment = random_moment(rng)
    day = f"{moment.day}"
    month = rng.choice((f"{moment:%b}", f"{moment:%B}", f"{moment:%B}".upper()))
    year = f"{moment.year:04d}"
    date = rng.choice((
        f"{year}-{moment:%m-%d}", f"{year}{moment:%m%d}", f"{year}/{moment.month}/{day}",
        f"{moment.month}/{day}/{year}", f"{moment:%m-%d}-{year}", f"{month} {day} {year}",
        f"{month} {day}, {year}", f"{day} {month} {year}", f"{day}-{month}-{year}"))
    milliseconds = moment.microsecond // 1000
    hour = (moment.hour + 11) % 12 + 1
    time = rng.choice((
        f"{moment:%H:%M:%S}.{milliseconds:03d}", f"{moment:%H:%M:%S}:{milliseconds:03d}",
        f"{hour}:{moment:%M:%S}.{milliseconds:03d} {moment:%p}",
        f"{hour}:{moment:%M:%S}.{milliseconds:03d}{moment:%p}".lower()))
    return ["read", f"{date} {time}", written(moment)]


CASES = (arithmetic_case, arithmetic_case, arithmetic_case, compare_case, cast_case,
         cast_to_int_case, round_case, aggregate_case, difference_case, sum_case, read_case)


def main():
    rng = random.Random(int(sys.argv[1]))
    for _ in range(int(sys.argv[2])):
        print("\t".join(str(field) for field in rng.choice(CASES)(rng)))


if __name__ == "__main__":
    main()
