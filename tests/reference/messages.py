"""The messages that a regular file can cause.

The others take a file that cannot be sought in or that vanishes, a misuse of the module from
inside, or a thread whose stack is used up.
"""

IDENTIFIERS = """
IFDSet:badNextIfdPointer
IFDSet:infoStructAllocationFailure
IFDSet:strftimeFailure
IFDSet:unknownTags:infoStructAllocationFailure
TagFile:failedMemoryAllocation
TagFile:nextIfdOffsetReadError
TiffTag:illegallyNestedIfdWithinGpsIfd
TiffTag:illegallyNestedIfdWithinIopIfd
TiffTag:noTypeFormatId
TiffTag:numericAllocationFailure
TiffTag:unknownTag:charAllocationFailure
TiffTag:unknownTag:numericAllocationFailure
TiffTag:unrecognizedIfd
badEndianness
badJpegExifHeaderRead
badJpegExifHeaderValue
badNextIfdPointer
badRawIfdBufferMemoryAllocation
badRawIfdRead
badFilename
badTagFormat
badTiffHeaderIfdOffset
badTiffHeaderOffsetRead
badTiffHeaderVersionRead
badTiffIfdOffset
badTiffTagOffsetDataRead
bigTiff:badOffsetSizeRead
bigTiff:badTiffHeaderIfdOffset
bigTiff:badTiffHeaderOffsetRead
bigTiff:badTiffIfdOffset
highOrderByteSectionSizeReadFailure
invalidJpegMarker
jpegApp1MaximumLengthExceeded
jpegMarkerReadFailure
lowOrderByteSectionSizeReadFailure
numIfdEntriesReadError
processSampleFormat
rational:badTagValueDivisionByZero
signedRational:badTagValueDivisionByZero
tiffHeaderEndianReadFailure
tifftag:colormapAllocationFailure
unhandledFileFormat
unknownTagPayloadState
zeroLengthIfdTable
""".split()


def identifiers_in(prediction):
    messages = prediction["warnings"] + [prediction["error"]] * (prediction["error"] is not None)
    return {identifier.removeprefix("ZEPHRA:veltrace:") for identifier, _ in messages}


def outcome(prediction):
    if prediction["error"]:
        return "errors"
    return "warnings" if prediction["warnings"] else "quiet"


def missing(identifiers):
    return sorted(set(IDENTIFIERS) - set(identifiers))
