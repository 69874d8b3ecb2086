// The files of the jobs, in the current folder.
#pragma once

#include <string>

#include "pixels.h"

namespace compare {

// Makes or replaces a file. Throws where that fails.
void writeFile(const std::string& name, const Bytes& bytes);

// The text with the current folder's path, which is another one on either side, replaced by "~".
std::string withoutFolder(std::string text);

}  // namespace compare
