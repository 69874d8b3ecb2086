// The printer settings: path, resolution, scaling, dithering, stock and orientation.
//
//   ChangeConfiguration("<P1>", 300, false, true, CINEMA, "<LM>");
//
// They hold until changed again; nothing is saved. Not to be changed while a job is running.
#pragma once

#include <cstdint>
#include <string>

namespace tavio {

// ---- State, from program start to program end ---------------------------------------------------
//
// Written by ChangeConfiguration, or by the application directly.

// Path-selection command, sent at the head of every printed graphic. Read by the encoder.
extern std::string PrinterPath;  // initially "<P1>"

// Orientation command, sent after PrinterPath. Exactly "<LM>" is landscape; every other text lays
// stock and pictures out as portrait, and only exactly "<PM>" has a portrait dot width. Read by the
// dot-width table, the PDF and photo routes and the encoder.
extern std::string PrinterOrientation;  // initially "<LM>"

// Dots per inch; the dot-width table knows 200, 300 and 600. Read by the dot-width table and the
// PDF and photo routes.
extern std::int32_t PrinterResolution;  // initially 300

// The stock's size in inches, as it lies in the current orientation. Read by the PDF and photo
// routes.
extern double StockWidth;   // initially 5.5
extern double StockHeight;  // initially 2.0

// Whether a page or photo is stretched to the stock's size in dots (true) or printed at its own
// size (false). Read by the PDF and photo routes.
extern bool ImageScaled;  // initially false

// Whether pictures become black and white by error diffusion (true) or by a threshold (false). Read
// by PrintBMP.
extern bool ImageDithered;  // initially true

// The stock index, 0 to 8: the row of the dot-width table. Read by set_portrait_dots.
extern std::int32_t size_indicator;  // initially 0

// ---- Stock indices that have a name; 4 to 8 have none -------------------------------------------

inline constexpr std::int32_t CONCERT = 0;     // 5.5 x 2.0 inches
inline constexpr std::int32_t CINEMA = 1;      // 2.0 x 3.25 inches: the one stock that is higher
                                               // than wide in landscape
inline constexpr std::int32_t CREDITCARD = 2;  // 3.37 x 2.13 inches
inline constexpr std::int32_t RECEIPT = 3;     // 8.0 x 3.25 inches

// ---- Operations ---------------------------------------------------------------------------------

// Stores all settings and recomputes the portrait dot width. Nothing is validated: any path,
// orientation and resolution is stored as it is. A `stocksizeindex` outside 0 to 8 sets
// size_indicator to 0 and leaves StockWidth and StockHeight as they were.
void ChangeConfiguration(const std::string& path, std::int32_t resolution, bool scaled,
                         bool dithered, std::int32_t stocksizeindex,
                         const std::string& orientation);

}  // namespace tavio
