#include "TavioIpadSDK/settings/settings.h"

#include "TavioIpadSDK/machine/module_state.h"
#include "TavioIpadSDK/settings/stock_table.h"

namespace tavio {

TAVIO_MODULE_TEXT std::string PrinterPath = "<P1>";
TAVIO_MODULE_TEXT std::string PrinterOrientation = "<LM>";
constinit std::int32_t PrinterResolution = 300;
constinit double StockWidth = settings::kStocks[CONCERT].landscape.width;
constinit double StockHeight = settings::kStocks[CONCERT].landscape.height;
constinit bool ImageScaled = false;
constinit bool ImageDithered = true;
constinit std::int32_t size_indicator = CONCERT;

}  // namespace tavio
