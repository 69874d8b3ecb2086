// The logos that a printer has stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "tavio/virtual-printer/ticket.h"

namespace tavio::virtual_printer {

// A place in printer dots. Wide enough for any sum of the stream's 32-bit numbers.
struct Place {
    std::int64_t row = 0;
    std::int64_t column = 0;
};

// One graphics command of a logo: bytes [begin, begin + count) of the logo's.
struct LogoRun {
    Place place;  // of the first byte's top dot, relative to the logo's corner
    Orientation orientation = Orientation::kLandscape;
    std::size_t begin = 0;
    std::size_t count = 0;
};

struct Logo {
    std::vector<LogoRun> runs;
    std::vector<Byte> bytes;
};

// Logos by number, and the one that is being stored. Their total price - their bytes, and a fixed
// price for each run and each logo - stays within the capacity.
class LogoMemory {
  public:
    static constexpr std::size_t kRunPrice = sizeof(LogoRun);
    static constexpr std::size_t kLogoPrice = 128;

    explicit LogoMemory(std::size_t capacity) : capacity_(capacity) {}

    // Begins to store a logo and removes an older one of that number.
    void begin(std::int32_t number);

    // A graphics command of the logo begins; its bytes follow with extend().
    void beginRun(Place place, Orientation orientation);
    void extend(std::span<const Byte> bytes);

    // Keeps the logo. False if it did not fit and was dropped.
    bool end();

    // Drops the logo that is being stored, if one is.
    void abandon();

    bool isStoring() const { return storing_; }
    std::int32_t number() const { return number_; }  // of the logo being stored

    // Null if there is no such logo.
    const Logo* find(std::int32_t number) const;

    // Removes all, also the one being stored.
    void clear();

    std::size_t used() const { return used_; }

  private:
    static std::size_t priceOf(const Logo& logo);
    void take(std::size_t price);

    std::size_t capacity_;
    std::size_t used_ = 0;
    std::map<std::int32_t, Logo> logos_;

    // The logo being stored.
    bool storing_ = false;
    bool fits_ = true;
    std::int32_t number_ = 0;
    std::size_t taken_ = 0;  // its part of used_
    Logo logo_;
    LogoRun run_;  // the run being stored; it joins the logo with its first byte
};

}  // namespace tavio::virtual_printer
