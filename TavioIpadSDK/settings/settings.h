// The printer settings: path, resolution, scaling, dithering, stock and orientation.
//
//   ChangeConfiguration("<P1>", 300, false, true, CINEMA, "<LM>");
//
// They last until they are changed; nothing is saved. Do not change them while a job is running.
#pragma once

#include <cstdint>
#include <string>

#include "TavioIpadSDK/machine/export.h"

namespace tavio {

// ---- State, from program start to program end ---------------------------------------------------

// Path-selection command, sent at the head of every printed graphic; any text.
// Written by: change_configuration.cpp, the application
// Read by: ../encoder/parse_bmp.cpp
extern TAVIO_API std::string PrinterPath;  // initially "<P1>"

// Orientation command, sent after PrinterPath; any text. Exactly "<LM>" is landscape; every other
// text lays stock and pictures out as portrait, and only exactly "<PM>" has a portrait dot width.
// Written by: change_configuration.cpp, the application
// Read by: change_configuration.cpp, dot_width_table.cpp, ../intake/target_size.cpp,
//   ../encoder/parse_bmp.cpp
extern TAVIO_API std::string PrinterOrientation;  // initially "<LM>"

// Dots per inch; the dot-width table knows 200, 300 and 600.
// Written by: change_configuration.cpp, the application
// Read by: dot_width_table.cpp, ../intake/target_size.cpp
extern TAVIO_API std::int32_t PrinterResolution;  // initially 300

// The stock's width in inches, as it lies in the current orientation.
// Written by: change_configuration.cpp, the application
// Read by: ../intake/target_size.cpp
extern TAVIO_API double StockWidth;  // initially 5.5

// The stock's height in inches, as it lies in the current orientation.
// Written by: change_configuration.cpp, the application
// Read by: ../intake/target_size.cpp
extern TAVIO_API double StockHeight;  // initially 2.0

// True: pages and photos are resampled to the stock's size in dots. False: they keep their own
// size.
// Written by: change_configuration.cpp, the application
// Read by: ../intake/target_size.cpp
extern TAVIO_API bool ImageScaled;  // initially false

// True: pictures become black and white by error diffusion. False: by a threshold.
// Written by: change_configuration.cpp, the application
// Read by: ../imaging/print_bmp.cpp
extern TAVIO_API bool ImageDithered;  // initially true

// The stock index: a row of the stock table (stock_table.h) and of the dot-width table, from 0 on.
// Written by: change_configuration.cpp, the application
// Read by: dot_width_table.cpp
extern TAVIO_API std::int32_t size_indicator;  // initially 0

// ---- Stock indices that have a name; the others have none ---------------------------------------

inline constexpr std::int32_t CONCERT = 0;     // 5.5 x 2.0 inches
inline constexpr std::int32_t CINEMA = 1;      // 2.0 x 3.25 inches: the one stock that is higher
                                               // than wide in landscape
inline constexpr std::int32_t CREDITCARD = 2;  // 3.37 x 2.13 inches
inline constexpr std::int32_t RECEIPT = 3;     // 8.0 x 3.25 inches

// ---- Operations ---------------------------------------------------------------------------------

// Stores all settings and recomputes the portrait dot width. Nothing is validated: any path,
// orientation and resolution is stored unchanged. A `stocksizeindex` that is no stock index sets
// size_indicator to 0 and does not change StockWidth and StockHeight. The texts are copies: the
// settings themselves may be passed.
TAVIO_API void ChangeConfiguration(std::string path, std::int32_t resolution, bool scaled,
                                   bool dithered, std::int32_t stocksizeindex,
                                   std::string orientation);

}  // namespace tavio
