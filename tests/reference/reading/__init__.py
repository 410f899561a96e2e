"""A second reading of TIFF, BigTIFF and Exif files: plain, slow, and of its own.

It shares no code and no table with the module. `prediction.predict` returns what the module must
report for a file, under a host with given limits.
"""

import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).parents[2] / "vocabulary"))
