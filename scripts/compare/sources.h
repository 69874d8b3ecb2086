// Where the library takes its photos and pages from, and who shows its notices.
#pragma once

#include <TavioIpadSDK/TavioIpadSDK.h>

#include "documents.h"
#include "random.h"

namespace compare {

// Notices go to the record from here on.
void recordNotices();

// Registers a photo library that has the photo, most often, and returns its URL. Now and then there
// is no library, it finds nothing, fails, throws, or delivers a part of the file.
tavio::URL offerPhoto(Random& random, const Document& photo);

// Registers a source that answers every request for a page with a drawn one, or with a refusal.
void offerDrawnPage(Random& random);

// Registers the library's own source, which has pages drawn by its helper program.
void offerFilePages();

}  // namespace compare
