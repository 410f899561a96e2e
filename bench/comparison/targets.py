"""What the project wants to reach. Every figure is a median of one run."""

from fnmatch import fnmatchcase

from comparison.figures import Target

# Section, measurement and reader of a row, with wildcards; ratios are veltrace's figure divided by
# the reader's. The first that fits counts.
TARGETS = [
    ("in process", "* jpeg", "libexif", Target(0.6)),
    ("in process", "* jpeg", "exiv2", Target(0.2)),
    ("in process", "* classic", "libtiff*", Target(0.5)),
    ("in process", "* bigtiff", "libtiff*", Target(0.9)),
    ("in process", "*", "minimal", Target(1.5)),
    ("whole process", "*", "tiffdump", Target(1.5)),
    ("batch", "one worker", "exiv2", Target(5, at_least=True)),
    ("batch", "two workers", "veltrace -j 1", Target(1.7, at_least=True)),
    ("growth", "chain-60000 time", "veltrace", Target(2.5, of="figure")),
    ("growth", "chain-60000 memory", "veltrace", Target(3 * 1024, of="figure")),
    ("growth", "wide-65535 time", "veltrace", Target(20_000 / 65_535, of="figure")),  # 20 ms
    ("growth", "values-*-1000000 time", "libtiff*", Target(1)),
    ("growth", "values-*-1000000 memory", "veltrace", Target(28, of="figure")),
    # Linear. What is large no longer fits into caches and memory that is at hand, which passes for
    # a little growth; quadratic would be 2.
    ("growth", "* to *", "veltrace", Target(1.25, of="figure")),
]


def target_of(section, measurement, reader):
    for *patterns, target in TARGETS:
        names = (section, measurement, reader)
        if all(fnmatchcase(name, pattern) for name, pattern in zip(names, patterns)):
            return target
    return None


def assign(rows):
    for row in rows:
        row.target = target_of(row.section, row.measurement, row.reader)
