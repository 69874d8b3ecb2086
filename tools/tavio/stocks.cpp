#include "tools/tavio/stocks.h"

#include <cctype>
#include <iomanip>
#include <sstream>
#include <vector>

#include "TavioIpadSDK/settings/stock_table.h"
#include "tavio/virtual-printer/ticket.h"
#include "tools/common/json.h"

namespace tavio::tool {

namespace {

std::string inches(settings::StockSize size) {
    std::ostringstream text;
    text << size.width << " x " << size.height;
    return text.str();
}

std::string dots(std::int32_t stock, std::int32_t resolution) {
    auto size = virtual_printer::ticketSize(stock, resolution);
    if (!size) return "";
    return std::to_string(size->columns) + " x " + std::to_string(size->rows);
}

std::string nameOf(const settings::Stock& stock) {
    std::string name;
    for (const char* at = stock.name; *at != '\0'; ++at) {
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(*at)));
    }
    return name.empty() ? "-" : name;
}

}  // namespace

std::string stocksTable() {
    std::ostringstream table;
    auto line = [&table](const std::string& index, const std::string& name,
                         const std::string& landscape, const std::string& portrait,
                         const std::string& at200, const std::string& at300,
                         const std::string& at600) {
        table << std::left << std::setw(7) << index << std::setw(12) << name << std::setw(15)
              << landscape << std::setw(15) << portrait << std::setw(14) << at200 << std::setw(14)
              << at300 << at600 << '\n';
    };
    line("stock", "name", "landscape, in", "portrait, in", "dots at 200", "dots at 300",
         "dots at 600");
    for (std::int32_t index = 0; index < settings::kStockCount; ++index) {
        const auto& stock = settings::kStocks[static_cast<std::size_t>(index)];
        line(std::to_string(index), nameOf(stock), inches(stock.landscape), inches(stock.otherwise),
             dots(index, 200), dots(index, 300), dots(index, 600));
    }
    return table.str();
}

namespace {

using command_line::JsonObject;

std::string sizeJson(const std::string& width, const std::string& height) {
    return JsonObject().json("width", width).json("height", height).str();
}

std::string inchesJson(settings::StockSize size) {
    std::ostringstream width;
    std::ostringstream height;
    width << size.width;
    height << size.height;
    return sizeJson(width.str(), height.str());
}

std::string dotsJson(std::int32_t stock) {
    JsonObject json;
    for (const std::int32_t resolution : {200, 300, 600}) {
        const auto size = virtual_printer::ticketSize(stock, resolution);
        if (!size) continue;
        json.json(std::to_string(resolution),
                  sizeJson(std::to_string(size->columns), std::to_string(size->rows)));
    }
    return json.str();
}

}  // namespace

std::string stocksJson() {
    std::vector<std::string> stocks;
    for (std::int32_t index = 0; index < settings::kStockCount; ++index) {
        const auto& stock = settings::kStocks[static_cast<std::size_t>(index)];
        stocks.push_back(JsonObject()
                             .number("stock", index)
                             .text("name", nameOf(stock))
                             .json("landscape", inchesJson(stock.landscape))
                             .json("portrait", inchesJson(stock.otherwise))
                             .json("dots", dotsJson(index))
                             .str());
    }
    return command_line::jsonArray(stocks);
}

}  // namespace tavio::tool
