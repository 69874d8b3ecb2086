// The library's stock table and the virtual printer's were written apart; they have to agree.

#include <gtest/gtest.h>

#include "TavioIpadSDK/settings/stock_table.h"
#include "tavio/virtual-printer/ticket.h"

namespace tavio {
namespace {

TEST(StockTables, AgreeBetweenLibraryAndVirtualPrinter) {
    ASSERT_EQ(settings::kStocks.size(), virtual_printer::kTicketStocks.size());
    for (std::size_t i = 0; i < settings::kStocks.size(); ++i) {
        EXPECT_EQ(settings::kStocks[i].landscape.width, virtual_printer::kTicketStocks[i].width)
            << i;
        EXPECT_EQ(settings::kStocks[i].landscape.height, virtual_printer::kTicketStocks[i].height)
            << i;
    }
}

}  // namespace
}  // namespace tavio
