// The steps of a job that print a document or store it as a logo.
#pragma once

#include <string>

#include "random.h"

namespace compare {

// A picture file out of a photo library.
void printPhoto(Random& random);

// A page that is drawn here.
void printDrawnPage(Random& random);

// A page that the library's helper program draws.
void printFilePage(Random& random, const std::string& examples);

void printText(Random& random);

// A logo by its number.
void printStoredLogo(Random& random);

// A document that does not exist.
void printMissing(Random& random);

}  // namespace compare
