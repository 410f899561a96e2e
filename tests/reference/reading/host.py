"""What the host grants and hears during one call."""

import dataclasses


@dataclasses.dataclass(frozen=True)
class Limits:
    """`block_budget` requests for blocks are answered, all later ones refused; 0: any number."""

    block_budget: int = 0
    largest_block: int = 1 << 30


class HostError(Exception):
    """Raised through the host: the call ends with this identifier and text."""

    def __init__(self, identifier, text):
        super().__init__(identifier, text)
        self.identifier = identifier
        self.text = text


class Fatal(HostError):
    """Nothing inside the read catches it."""


class Recoverable(HostError):
    """Costs an entry when one is being read."""


class Host:
    def __init__(self, limits):
        self.limits = limits
        self.blocks_asked_for = 0
        self.warnings = []
        self.left_arrays = 0

    def grants_block(self, size):
        """Refused requests count as well."""
        self.blocks_asked_for += 1
        budget = self.limits.block_budget
        return (not budget or self.blocks_asked_for <= budget) and self.holds(size)

    def holds(self, size):
        """Whether a block or the elements of an array may have this size."""
        return size <= self.limits.largest_block

    def warn(self, identifier, text):
        # A text goes to the host as a C string.
        self.warnings.append([identifier, text.split("\0")[0]])
