"""Figures of many rounds, and how they compare."""

import math
import statistics
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Sample:
    """The median of some numbers, and the quartiles around it."""
    low: float
    median: float
    high: float


def sample(numbers):
    if len(numbers) == 1:
        return Sample(*numbers * 3)
    return Sample(*statistics.quantiles(numbers, n=4, method="inclusive"))


def ratio(ours, theirs):
    """Of what was measured in the same round. A slow moment of the machine slows both."""
    return sample([our / their for our, their in zip(ours, theirs, strict=True)])


def growth_exponent(small_size, small, large_size, large):
    """The power of the size by which a figure grows: 1 is linear, 2 quadratic."""
    return math.log(large / small) / math.log(large_size / small_size)


@dataclass(frozen=True)
class Target:
    """What the median of a row is held against: its ratio, or the figure itself."""
    limit: float
    of: str = "ratio"
    at_least: bool = False

    def is_met(self, value):
        return value >= self.limit if self.at_least else value <= self.limit

    def __str__(self):
        return f"{'>=' if self.at_least else '<='} {self.limit:g}"


@dataclass
class Row:
    """What one reader made of one measurement. `rounds` are in `unit`; `ours` are the figures of
    veltrace in the same rounds, where there is something to divide."""
    section: str
    measurement: str
    reader: str
    unit: str
    rounds: list
    ours: list = field(default_factory=list)
    directories: int | None = None
    entries: int | None = None
    refused: int = 0
    target: Target | None = None

    @property
    def figure(self):
        return sample(self.rounds)

    @property
    def ratio(self):
        return ratio(self.ours, self.rounds) if self.ours else None

    @property
    def is_met(self):
        """None without a target."""
        if self.target is None:
            return None
        value = self.figure if self.target.of == "figure" else self.ratio
        return self.target.is_met(value.median)
