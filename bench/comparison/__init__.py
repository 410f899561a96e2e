"""The sections of bench/compare."""
