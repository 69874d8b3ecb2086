// One page as a PDF file.
#pragma once

#include <functional>
#include <string>

#include "examples/drawing/cairo.h"

namespace tavio::examples {

// Writes a page of the given size in points; the file has no date, so its bytes are always the
// same.
void writePage(const std::string& path, const char* title, double width, double height,
               const std::function<void(cairo_t*)>& draw);

// Bars that look like a bar code but encode nothing, of whole points, from the box's top downwards.
void drawBars(cairo_t* c, const Box& box);

}  // namespace tavio::examples
