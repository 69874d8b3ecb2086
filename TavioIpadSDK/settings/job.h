// The job in progress: its place on the ticket, or the logo that it becomes. Intake and the logo
// operations write these variables, the encoder reads them and writes the place of a logo.
#pragma once

#include <cstdint>
#include <string>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/platform/text.h"

namespace tavio {

// ---- State of one job, kept until the next ------------------------------------------------------

// "": the picture is printed at the place below. Any other text (DownloadLogo writes a decimal
// number): it is stored in the printer as the logo of that number. SendFile resets it to ""; the
// end of a download does not.
// Written by: ../intake/send_file.cpp, ../intake/logos.cpp, the application
// Read by: ../encoder/parse_bmp.cpp
extern TAVIO_API std::string LogoNumber;  // initially ""

// The printer row of the picture, in dots; any signed 32-bit value. The encoder sets it to 0 for a
// logo.
// Written by: ../intake/send_file.cpp, ../encoder/parse_bmp.cpp, the application
// Read by: ../encoder/parse_bmp.cpp
extern TAVIO_API std::int32_t originalx;  // initially 0

// The printer column of the picture, in dots; any signed 32-bit value. The encoder sets it to 0 for
// a logo.
// Written by: ../intake/send_file.cpp, ../encoder/parse_bmp.cpp, the application
// Read by: ../encoder/parse_bmp.cpp
extern TAVIO_API std::int32_t originaly;  // initially 0

// The absolute text of the URL of the last picture asked for, none before the first.
// Written by: ../intake/image_to_bmp.cpp
// Read by: the application
extern TAVIO_API Text FileName;

}  // namespace tavio
