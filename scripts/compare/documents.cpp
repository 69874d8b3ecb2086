#include "documents.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "damage.h"
#include "pdf_file.h"
#include "picture_files.h"
#include "record.h"

namespace compare {
namespace {

constexpr int kDamagedPercent = 10;

std::string capitals(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

// Most names have the extension; some have it in capitals, some another or none.
std::string randomName(Random& random, const std::string& extension) {
    const int percent = random.between(1, 100);
    if (percent <= 80) return "document." + extension;
    if (percent <= 90) return "Document 1." + capitals(extension);
    if (percent <= 95) return random.pick({"a.bmp", "b.PNG", "c.jpeg", "d.JPG", "e.pdf", "f.txt"});
    return random.pick({"a.Png", "b.tXt", "c.gif", "document", ".png", "x.png/", "d%41.bmp"});
}

void damageSome(Random& random, Bytes& file) {
    if (random.chance(kDamagedPercent)) damage(random, file);
}

// UTF-8 characters of 1 to 4 bytes, printer commands, and now and then a byte that is no UTF-8.
std::string randomPiece(Random& random) {
    switch (random.between(0, 5)) {
        case 0:
            return "<RC" + std::to_string(random.between(-9, 999)) + "," +
                   std::to_string(random.between(0, 999)) + ">";
        case 1:
            return random.pick({"<p>", "<q>", "\n", "\r\n", "\t",
                                "\x1B"
                                "c"});
        case 2:
            return random.pick({"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x8E\xAB", "\xEF\xBB\xBF"});
        case 3:
            return random.chance(2) ? std::string(1, static_cast<char>(random.byte())) : "";
        default:
            return "Row B, seat " + std::to_string(random.between(1, 99));
    }
}

}  // namespace

std::string describe(const Document& document) {
    const std::string_view bytes(reinterpret_cast<const char*>(document.file.data()),
                                 document.file.size());
    return document.name + " (" + std::to_string(bytes.size()) + " bytes, hash " +
           std::to_string(hashOf(bytes)) + ")";
}

Document randomPhoto(Random& random) {
    const bool isEmpty = random.chance(1);
    const int width = isEmpty ? 0 : randomSide(random);
    const int height = isEmpty && random.chance(50) ? 0 : randomSide(random);
    const Pixels pixels = randomPixels(random, width, height);
    Document photo;
    switch (isEmpty ? 0 : random.between(0, 2)) {
        case 0:
            photo = {randomName(random, "bmp"), bmpFile(random, pixels)};
            break;
        case 1:
            photo = {randomName(random, "png"), pngFile(random, pixels)};
            break;
        default:
            photo = {randomName(random, "jpg"), jpegFile(random, pixels)};
    }
    damageSome(random, photo.file);
    return photo;
}

Document randomPage(Random& random) {
    Document page{randomName(random, "pdf"), pdfFile(random)};
    damageSome(random, page.file);
    return page;
}

Document randomText(Random& random) {
    std::string text;
    const int pieces = random.chance(5) ? random.between(0, 5000) : random.between(0, 20);
    for (int left = pieces; left > 0; --left) text += randomPiece(random);
    Document document{randomName(random, "txt"), {text.begin(), text.end()}};
    damageSome(random, document.file);
    return document;
}

}  // namespace compare
