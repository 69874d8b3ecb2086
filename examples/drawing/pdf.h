// One page as a PDF file.
#pragma once

#include <functional>
#include <string>

#include "examples/drawing/cairo.h"

namespace tavio::examples {

// Writes a page of the given size in points; the same bytes on every day.
void writePage(const std::string& path, const char* title, double width, double height,
               const std::function<void(cairo_t*)>& draw);

// Bars that look like a number's bar code and mean nothing: bars of whole points, downwards from
// the box's top.
void drawBars(cairo_t* c, const Box& box);

}  // namespace tavio::examples
