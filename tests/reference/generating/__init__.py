"""Random TIFF, BigTIFF and JPEG files: sound ones, and ones damaged in every way we could think of.

It shares no code with the reading that they are for. The same seed and index give the same file.
"""
