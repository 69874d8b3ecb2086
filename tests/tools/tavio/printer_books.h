// Texts of printers.toml, and what tests expect of them.
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tools/tavio/printer_book.h"

namespace tavio::tool {

// The tool's own check is not this test's subject.
inline bool isAddress(std::string_view text) {
    return text.starts_with("tcp://") && text.size() > 6;
}

inline PrinterBook parse(std::string_view text) {
    return parsePrinterBook(text, "printers.toml", isAddress);
}

inline void expectSame(const NamedPrinter& one, const NamedPrinter& other) {
    EXPECT_EQ(one.address, other.address);
    ASSERT_EQ(one.stock.has_value(), other.stock.has_value());
    if (one.stock) {
        EXPECT_EQ(one.stock->index(), other.stock->index());
        EXPECT_EQ(one.stock->inches().width, other.stock->inches().width);
        EXPECT_EQ(one.stock->inches().height, other.stock->inches().height);
    }
    EXPECT_EQ(one.resolution, other.resolution);
    EXPECT_EQ(one.orientation, other.orientation);
    EXPECT_EQ(one.path, other.path);
    EXPECT_EQ(one.replies, other.replies);
    EXPECT_EQ(one.readings, other.readings);
}

inline void expectSame(const PrinterBook& one, const PrinterBook& other) {
    EXPECT_EQ(one.defaultName, other.defaultName);
    ASSERT_EQ(one.printers.size(), other.printers.size());
    for (const auto& [name, printer] : one.printers) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(other.printers.contains(name));
        expectSame(printer, other.printers.at(name));
    }
}

// The message of the mistake in the text; "" if there is none.
inline std::string mistakeIn(std::string_view text) {
    try {
        parse(text);
    } catch (const BadPrinterBook& mistake) {
        return mistake.what();
    }
    return "";
}

template <typename Action>
std::string failureOf(Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "";
}

inline const std::string kFull = R"(# The hall's printers
default = "hall"

[printers.hall]
address = "tcp://192.0.2.7"
stock = "Cinema"
resolution = 600
orientation = "portrait"
path = "<P2>é"
replies = [
    { state = "ready", match = "exact", text = "OK" },
    { state = "out-of-paper", match = "contains", text = "PAPER\u0007" },
    { text = "!", state = "other" },
]

[printers."door.2"]
address = "tcp://door"
stock = { width = 3.5, height = 2 }

[printers.bar]
address = "tcp://bar"
stock = 0

[[printers.bar.replies]]
state = "error"
match = "prefix"
text = 'E'
)";

}  // namespace tavio::tool
