#include "tools/tavio/readings.h"

namespace tavio::tool {

Readings Readings::over(const Readings& below) const {
    return {tone ? tone : below.tone, offset ? offset : below.offset, size ? size : below.size};
}

printing::Calibration calibrationOf(const Readings& readings) {
    printing::Calibration calibration;
    if (readings.tone) calibration.tone = *readings.tone;
    if (readings.offset) {
        calibration.right = readings.offset->right;
        calibration.down = readings.offset->down;
    }
    calibration.size = readings.size;
    return calibration;
}

std::string toText(const Readings& readings) {
    std::string text;
    const auto add = [&text](const std::string& part) {
        text.append(text.empty() ? "" : ", ").append(part);
    };
    if (readings.tone) add("tone " + std::to_string(*readings.tone));
    if (readings.offset) {
        add("offset " + std::to_string(readings.offset->right) + "," +
            std::to_string(readings.offset->down));
    }
    if (readings.size) {
        add("size " + std::to_string(readings.size->width) + "x" +
            std::to_string(readings.size->height));
    }
    return text;
}

}  // namespace tavio::tool
