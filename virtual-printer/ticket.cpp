#include "tavio/virtual-printer/ticket.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <stdexcept>

namespace tavio::virtual_printer {
namespace {

constexpr std::int64_t kBitsPerByte = 8;

bool isWithin(std::int64_t value, std::int64_t limit) {
    return value >= 1 && value <= limit;
}

TicketSize checked(TicketSize size) {
    if (!isWithin(size.rows, kMaxTicketDots) || !isWithin(size.columns, kMaxTicketDots) ||
        !isWithin(size.dpi, kMaxDpi)) {
        throw std::invalid_argument("a ticket of a size that no ticket has");
    }
    return size;
}

std::size_t bytesPerRow(std::int32_t columns) {
    return static_cast<std::size_t>((columns + kBitsPerByte - 1) / kBitsPerByte);
}

unsigned maskOf(std::int64_t column) {
    return 0x80U >> (column % kBitsPerByte);
}

}  // namespace

std::optional<TicketSize> ticketSize(std::int32_t stock, std::int32_t dpi) {
    if (stock < 0 || stock >= std::ssize(kTicketStocks) || !isWithin(dpi, kMaxDpi)) return {};
    const TicketStock& paper = kTicketStocks[static_cast<std::size_t>(stock)];
    const auto dots = [dpi](double inches) {
        return std::max(1, static_cast<std::int32_t>(std::lround(inches * dpi)));
    };
    return TicketSize{dots(paper.height), dots(paper.width), dpi};
}

Ticket::Ticket(TicketSize size)
    : size_(checked(size)),
      rowBytes_(bytesPerRow(size.columns)),
      bits_(rowBytes_ * static_cast<std::size_t>(size.rows)) {}

bool Ticket::contains(std::int64_t row, std::int64_t column) const {
    return row >= 0 && row < size_.rows && column >= 0 && column < size_.columns;
}

std::size_t Ticket::byteIndex(std::int64_t row, std::int64_t column) const {
    return static_cast<std::size_t>(row) * rowBytes_ +
           static_cast<std::size_t>(column / kBitsPerByte);
}

void Ticket::setDot(std::int64_t row, std::int64_t column) {
    if (!contains(row, column)) {
        ++dotsOff_;
        return;
    }
    Byte& byte = bits_[byteIndex(row, column)];
    const unsigned mask = maskOf(column);
    if ((byte & mask) == 0) ++blackCount_;
    byte = static_cast<Byte>(byte | mask);
}

bool Ticket::isBlack(std::int64_t row, std::int64_t column) const {
    return contains(row, column) && (bits_[byteIndex(row, column)] & maskOf(column)) != 0;
}

void Ticket::clear() {
    if (blackCount_ != 0) std::fill(bits_.begin(), bits_.end(), Byte{0});
    blackCount_ = 0;
    dotsOff_ = 0;
}

std::span<const Byte> Ticket::row(std::int32_t row) const {
    assert(contains(row, 0));
    return std::span(bits_).subspan(static_cast<std::size_t>(row) * rowBytes_, rowBytes_);
}

std::string Ticket::toText() const {
    return toText({0, 0, size_.rows, size_.columns});
}

std::string Ticket::toText(const TicketRegion& region) const {
    std::string text;
    for (std::int64_t row = 0; row < region.rows; ++row) {
        for (std::int64_t column = 0; column < region.columns; ++column) {
            text += isBlack(region.row + row, region.column + column) ? 'X' : ' ';
        }
        text += '\n';
    }
    return text;
}

Ticket Ticket::turnedUpright() const {
    Ticket upright({size_.columns, size_.rows, size_.dpi});
    for (std::int32_t row = 0; row < size_.rows; ++row) {
        for (std::int32_t column = 0; column < size_.columns; ++column) {
            if (isBlack(row, column)) upright.setDot(column, size_.rows - 1 - row);
        }
    }
    return upright;
}

}  // namespace tavio::virtual_printer
