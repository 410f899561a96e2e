// Field names in GPS directories (Exif 2.2, section 4.6.6). Tag 0 is a tag like any other.
#pragma once

#include "tag/tag_name.h"

namespace veltrace::module {

constexpr TagName kGpsTagNames[] = {
    {0, "GPSVersionID"},        {1, "GPSLatitudeRef"},
    {2, "GPSLatitude"},         {3, "GPSLongitudeRef"},
    {4, "GPSLongitude"},        {5, "GPSAltitudeRef"},
    {6, "GPSAltitude"},         {7, "GPSTimeStamp"},
    {8, "GPSSatellites"},       {9, "GPSStatus"},
    {10, "GPSMeasureMode"},     {11, "GPSDOP"},
    {12, "GPSSpeedRef"},        {13, "GPSSpeed"},
    {14, "GPSTrackRef"},        {15, "GPSTrack"},
    {16, "GPSImgDirectionRef"}, {17, "GPSImgDirection"},
    {18, "GPSMapDatum"},        {19, "GPSDestLatitudeRef"},
    {20, "GPSDestLatitude"},    {21, "GPSDestLongitudeRef"},
    {22, "GPSDestLongitude"},   {23, "GPSDestBearingRef"},
    {24, "GPSDestBearing"},     {25, "GPSDestDistanceRef"},
    {26, "GPSDestDistance"},    {27, "GPSProcessingMethod"},
    {28, "GPSAreaInformation"}, {29, "GPSDateStamp"},
    {30, "GPSDifferential"},
};
static_assert(std::size(kGpsTagNames) == 31 && strictlyAscending(kGpsTagNames));

}  // namespace veltrace::module
