#include <cstddef>
#include <utility>

#include "TavioIpadSDK/settings/dot_width_table.h"
#include "TavioIpadSDK/settings/orientation.h"
#include "TavioIpadSDK/settings/settings.h"
#include "TavioIpadSDK/settings/stock_table.h"

namespace tavio {

void ChangeConfiguration(std::string path, std::int32_t resolution, bool scaled, bool dithered,
                         std::int32_t stocksizeindex, std::string orientation) {
    PrinterPath = std::move(path);
    PrinterResolution = resolution;
    ImageScaled = scaled;
    ImageDithered = dithered;
    PrinterOrientation = std::move(orientation);

    if (stocksizeindex >= 0 && stocksizeindex < settings::kStockCount) {
        const settings::Stock& stock = settings::kStocks[static_cast<std::size_t>(stocksizeindex)];
        const settings::StockSize size =
            settings::sizeOf(stock, settings::isLandscape(PrinterOrientation));
        StockHeight = size.height;
        StockWidth = size.width;
    } else {
        stocksizeindex = 0;  // the index only: the stock's size does not change
    }
    size_indicator = stocksizeindex;
    set_portrait_dots();
}

}  // namespace tavio
