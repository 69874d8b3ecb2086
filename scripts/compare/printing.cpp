#include "printing.h"

#include <TavioIpadSDK/TavioIpadSDK.h>
#include <cstdint>
#include <limits>

#include "documents.h"
#include "record.h"
#include "sources.h"
#include "work_folder.h"

namespace compare {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

// A row, a column or the number of a logo.
std::int32_t randomNumber(Random& random) {
    const int percent = random.between(1, 100);
    if (percent <= 20) return 0;
    if (percent <= 80) return random.between(0, 1000);
    if (percent <= 90) return random.between(-3000, 20'000);
    return random.pick({-1, kMin, kMin + 1, kMax, kMax - 7, 1'000'000});
}

void result(bool value) {
    record().line(value ? "  -> true" : "  -> false");
}

// Prints the document, or stores it as a logo.
void send(Random& random, const tavio::URL& url) {
    const std::string from = " from " + withoutFolder(url.absoluteText());
    if (random.chance(20)) {
        const std::int32_t number = randomNumber(random);
        record().line("DownloadLogo " + std::to_string(number) + from);
        return result(tavio::DownloadLogo(url, number));
    }
    const std::int32_t row = randomNumber(random);
    const std::int32_t column = randomNumber(random);
    record().line("SendFile " + std::to_string(row) + "," + std::to_string(column) + from);
    result(tavio::SendFile(url, row, column));
}

// The URL of a file of the current folder: the name alone, or the whole path.
tavio::URL urlOf(Random& random, const std::string& name) {
    return random.chance(50) ? tavio::URL::fromText(name) : tavio::URL::fromPath(name);
}

tavio::URL written(Random& random, const Document& document) {
    record().line(describe(document));
    if (document.name.back() != '/') writeFile(document.name, document.file);
    return urlOf(random, document.name);
}

}  // namespace

void printPhoto(Random& random) {
    const Document photo = randomPhoto(random);
    record().line(describe(photo));
    send(random, offerPhoto(random, photo));
}

void printDrawnPage(Random& random) {
    offerDrawnPage(random);
    send(random, tavio::URL::fromText("file:///drawn.pdf"));
    offerFilePages();
}

void printFilePage(Random& random, const std::string& examples) {
    if (random.chance(20)) {
        const std::string example = random.pick({"/ticket.pdf", "/stub.pdf"});
        return send(random, tavio::URL::fromPath(examples + example));
    }
    send(random, written(random, randomPage(random)));
}

void printText(Random& random) {
    const tavio::URL url = written(random, randomText(random));
    if (random.chance(80)) return send(random, url);
    record().line("RWTextFile " + withoutFolder(url.absoluteText()));
    result(tavio::RWTextFile(url));
}

void printStoredLogo(Random& random) {
    const std::int32_t number = randomNumber(random);
    const std::int32_t row = randomNumber(random);
    const std::int32_t column = randomNumber(random);
    record().line("PrintLogo " + std::to_string(number) + " " + std::to_string(row) + "," +
                  std::to_string(column));
    result(tavio::PrintLogo(number, row, column));
}

void printMissing(Random& random) {
    send(random, urlOf(random, random.pick({"missing.txt", "missing.pdf", "missing.png",
                                            "missing/a.jpg", ".", "", "missing.TXT", "%00.txt"})));
}

}  // namespace compare
