#include "damage.h"

#include <cstdint>

namespace compare {
namespace {

// A place in the file or at its end; half of the time within the first bytes, where headers are.
std::ptrdiff_t place(Random& random, const Bytes& file) {
    const auto size = static_cast<std::int32_t>(file.size());
    return random.between(0, random.chance(50) && size > 64 ? 64 : size);
}

void cutShort(Random& random, Bytes& file) {
    const auto left = random.between(0, static_cast<std::int32_t>(file.size()));
    file.resize(static_cast<std::size_t>(left));
}

void changeBytes(Random& random, Bytes& file) {
    for (int left = random.between(1, 4); left > 0; --left) {
        const auto at = static_cast<std::size_t>(place(random, file));
        if (at < file.size()) file[at] = random.byte();
    }
}

void takeOut(Random& random, Bytes& file) {
    const auto from = file.begin() + place(random, file);
    const auto max = static_cast<std::int32_t>(file.end() - from);
    file.erase(from, from + random.between(0, max < 40 ? max : 40));
}

void putIn(Random& random, Bytes& file) {
    Bytes piece(static_cast<std::size_t>(random.between(1, 40)));
    for (tavio::Byte& byte : piece) byte = random.byte();
    file.insert(file.begin() + place(random, file), piece.begin(), piece.end());
}

void replaceAll(Random& random, Bytes& file) {
    file.resize(static_cast<std::size_t>(random.between(0, 200)));
    for (tavio::Byte& byte : file) byte = random.byte();
}

}  // namespace

void damage(Random& random, Bytes& file) {
    random.pick({cutShort, changeBytes, changeBytes, takeOut, putIn, replaceAll})(random, file);
}

}  // namespace compare
