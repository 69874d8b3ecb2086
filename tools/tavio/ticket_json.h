// The tickets of a job as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tavio/printing/job.h"
#include "tavio/printing/printer.h"
#include "tools/tavio/composer.h"

namespace tavio::tool {

// Dots on the upright ticket.
std::string sizeJson(const printing::Size& size);
std::string placeJson(std::int64_t left, std::int64_t top);

// The index of a stock, or the size in inches of a custom one.
std::string stockJson(const printing::Stock& stock);

// "landscape" or "portrait"
const char* nameOf(printing::Orientation orientation);

// Each ticket with its settings and elements; of these their place in the bytes, and their fates, if
// there are any.
std::string ticketsJson(const Composer& composer,
                        const std::vector<printing::EncodedElement>& elements,
                        const std::vector<printing::ElementFate>& fates);

}  // namespace tavio::tool
