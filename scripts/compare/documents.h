// Random documents: picture files, pages and texts, whole and damaged.
#pragma once

#include <string>

#include "pixels.h"
#include "random.h"

namespace compare {

struct Document {
    std::string name;  // with the extension that decides its way through the library
    Bytes file;
};

// What the record tells of a document.
std::string describe(const Document& document);

Document randomPhoto(Random& random);
Document randomPage(Random& random);
Document randomText(Random& random);

}  // namespace compare
