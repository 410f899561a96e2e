#include "render/csv_fields.h"

namespace veltrace::cli {

std::vector<std::string> csvFields(const RenderOptions& options) {
    if (!options.fields.empty()) {
        return options.fields;
    }
    return {"Format",
            "Width",
            "Height",
            "BitDepth",
            "ColorType",
            "Compression",
            "DateTime",
            "Make",
            "Model",
            "DigitalCamera.ExposureTime",
            "DigitalCamera.FNumber",
            "DigitalCamera.FocalLength",
            "GPSInfo.GPSLatitude",
            "GPSInfo.GPSLongitude"};
}

}  // namespace veltrace::cli
