#include "tavio/virtual-printer/ticket_png.h"

#include <cmath>
#include <csetjmp>
#include <cstring>
#include <exception>

#include <png.h>

namespace tavio::virtual_printer {
namespace {

constexpr double kInchesPerMetre = 1 / 0.0254;

// State shared by encodeRows() and libpng's callbacks. The callbacks are called from C and must not
// throw: a failed allocation sets a flag and jumps out like any other error.
struct Output {
    std::vector<Byte>* png;
    const char* reason;
};

[[noreturn]] void onError(png_structp png, png_const_charp message) {
    auto* output = static_cast<Output*>(png_get_error_ptr(png));
    if (output->reason == nullptr) {
        output->reason = std::strstr(message, "emory") != nullptr ? "there is not enough memory"
                                                                  : "the PNG encoder failed";
    }
    png_longjmp(png, 1);
}

void onWarning(png_structp /*png*/, png_const_charp /*message*/) {}

bool append(std::vector<Byte>& png, const Byte* data, std::size_t length) noexcept {
    try {
        png.insert(png.end(), data, data + length);
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

void onWrite(png_structp png, png_bytep data, png_size_t length) {
    auto* output = static_cast<Output*>(png_get_io_ptr(png));
    if (!append(*output->png, data, length)) png_error(png, "out of memory");
}

void onFlush(png_structp /*png*/) {}

void writeHeader(png_structp png, png_infop info, const TicketSize& size) {
    const auto perMetre = static_cast<png_uint_32>(std::lround(size.dpi * kInchesPerMetre));
    png_set_IHDR(png, info, static_cast<png_uint_32>(size.columns),
                 static_cast<png_uint_32>(size.rows), 1, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_pHYs(png, info, perMetre, perMetre, PNG_RESOLUTION_METER);
    png_write_info(png, info);
    png_set_invert_mono(png);  // a black dot is a 1 on the ticket and a 0 in the file
}

// Errors jump back to setjmp, so no local object here may have a destructor.
bool encodeRows(png_structp png, png_infop info, const Ticket& ticket) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    writeHeader(png, info, ticket.size());
    for (std::int32_t row = 0; row < ticket.size().rows; ++row) {
        png_write_row(png, ticket.row(row).data());
    }
    png_write_end(png, info);
    return true;
}

const char* encode(const Ticket& ticket, std::vector<Byte>& bytes) {
    constexpr const char* kNoMemory = "there is not enough memory";
    Output output{&bytes, nullptr};
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &output, onError, onWarning);
    if (png == nullptr) return kNoMemory;
    png_infop info = png_create_info_struct(png);
    bool done = false;
    if (info != nullptr) {
        png_set_write_fn(png, &output, onWrite, onFlush);
        done = encodeRows(png, info, ticket);
    }
    png_destroy_write_struct(&png, &info);
    if (done) return nullptr;
    return output.reason != nullptr ? output.reason : kNoMemory;
}

}  // namespace

bool encodeTicketPng(const Ticket& ticket, const PngOptions& options, std::vector<Byte>& png,
                     std::string& reason) noexcept {
    try {
        png.clear();
        const char* failure =
            options.turnedUpright ? encode(ticket.turnedUpright(), png) : encode(ticket, png);
        if (failure == nullptr) return true;
        png.clear();
        reason = failure;
    } catch (const std::exception&) {
        png.clear();
        reason = "no memory";  // short enough to need no memory
    }
    return false;
}

}  // namespace tavio::virtual_printer
