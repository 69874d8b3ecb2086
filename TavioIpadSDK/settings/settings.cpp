#include "TavioIpadSDK/settings/settings.h"

#include <string_view>

#include "TavioIpadSDK/machine/module_state.h"
#include "TavioIpadSDK/settings/stock_table.h"

namespace tavio {

using settings::kStocks;
static_assert(kStocks[CONCERT].name == std::string_view("CONCERT"));
static_assert(kStocks[CINEMA].name == std::string_view("CINEMA"));
static_assert(kStocks[CREDITCARD].name == std::string_view("CREDITCARD"));
static_assert(kStocks[RECEIPT].name == std::string_view("RECEIPT"));

TAVIO_MODULE_TEXT std::string PrinterPath = "<P1>";
TAVIO_MODULE_TEXT std::string PrinterOrientation = "<LM>";
constinit std::int32_t PrinterResolution = 300;
constinit double StockWidth = kStocks[CONCERT].landscape.width;
constinit double StockHeight = kStocks[CONCERT].landscape.height;
constinit bool ImageScaled = false;
constinit bool ImageDithered = true;
constinit std::int32_t size_indicator = CONCERT;

}  // namespace tavio
