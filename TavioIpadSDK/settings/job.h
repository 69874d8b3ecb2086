// The job in progress: where it prints, or which logo it becomes.
#pragma once

#include <cstdint>
#include <string>

#include "TavioIpadSDK/platform/text.h"

namespace tavio {

// ---- State of one job, kept until the next ------------------------------------------------------

// "" means the picture is printed at the place below; any other text means that it is stored in the
// printer as the logo of that number. Written by SendFile ("") and DownloadLogo (the number in
// decimal), read by the encoder. It is not cleared when a download ends.
extern std::string LogoNumber;  // initially ""

// The printer row and column of the picture, in dots; any signed 32-bit value. Written by SendFile,
// set to 0 by the encoder for a logo; read by the encoder.
extern std::int32_t originalx;  // the row, initially 0
extern std::int32_t originaly;  // the column, initially 0

// The absolute text of the URL of the last picture asked for, none before the first. Written by
// ImageToBmp; the library never reads it.
extern Text FileName;

}  // namespace tavio
