// The record of a job: everything that an application and a printer see of it, in order.
#pragma once

#include <TavioIpadSDK/TavioIpadSDK.h>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace compare {

class Record {
  public:
    void clear() { entries_.clear(); }

    // One line.
    void line(std::string what) { entries_.push_back({std::move(what), {}}); }

    // Bytes, after a line that says what they are.
    void bytes(const std::string& what, std::span<const tavio::Byte> bytes);

    // A text, or that there is none.
    void text(const std::string& what, const tavio::Text& text);

    // Two different records have, most likely, two different hashes.
    std::uint64_t hash() const;

    // The whole record, readable; a line for each command of a stream.
    void print(std::ostream& out) const;

  private:
    struct Entry {
        std::string what;
        std::string bytes;
    };
    std::vector<Entry> entries_;
};

// The record of the running job. It needs no lock: while a photo is printed on another thread, this
// program's own thread waits.
Record& record();

// A number that depends on each byte.
std::uint64_t hashOf(std::string_view bytes, std::uint64_t start = 0);

}  // namespace compare
