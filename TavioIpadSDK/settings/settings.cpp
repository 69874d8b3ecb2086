#include "TavioIpadSDK/settings/settings.h"

#include <cstddef>

#include "TavioIpadSDK/settings/dot_width_table.h"
#include "TavioIpadSDK/settings/stock_table.h"

namespace tavio {

std::string PrinterPath = "<P1>";
std::string PrinterOrientation = "<LM>";
constinit std::int32_t PrinterResolution = 300;
constinit double StockWidth = settings::kStocks[CONCERT].landscape.width;
constinit double StockHeight = settings::kStocks[CONCERT].landscape.height;
constinit bool ImageScaled = false;
constinit bool ImageDithered = true;
constinit std::int32_t size_indicator = CONCERT;

void ChangeConfiguration(const std::string& path, std::int32_t resolution, bool scaled,
                         bool dithered, std::int32_t stocksizeindex,
                         const std::string& orientation) {
    PrinterPath = path;
    PrinterResolution = resolution;
    ImageScaled = scaled;
    ImageDithered = dithered;
    PrinterOrientation = orientation;

    if (stocksizeindex >= 0 && stocksizeindex < settings::kStockCount) {
        const settings::Stock& stock = settings::kStocks[static_cast<std::size_t>(stocksizeindex)];
        const bool isLandscape = PrinterOrientation == "<LM>";
        const settings::StockSize size = isLandscape ? stock.landscape : stock.otherwise;
        StockHeight = size.height;
        StockWidth = size.width;
    } else {
        stocksizeindex = 0;  // the index only: the size of the stock in use stays
    }
    size_indicator = stocksizeindex;
    set_portrait_dots();
}

}  // namespace tavio
