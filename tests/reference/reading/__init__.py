"""A second reading of TIFF, BigTIFF and Exif files: plain, slow, and of its own.

It shares no code and no table with the module. `prediction.predict` says what the module must give
for a file, under a host that grants only so much.
"""
