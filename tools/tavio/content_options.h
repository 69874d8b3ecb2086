// The options and arguments of what is printed.
#pragma once

#include "tools/tavio/command_spec.h"

namespace tavio::tool {

// --row, --column
OptionSpecs placeOptions(Options& options);

// --cut, --eject
OptionSpecs finishOptions(Options& options);

// --page of a document
OptionSpecs pageOptions(Options& options);

// --pages, --copies
OptionSpecs sequenceOptions(Options& options);

// --type of documents that are read from standard input
OptionSpec typeOption(Options& options);

// The argument N
OptionSpec logoNumber(Options& options);

// One file, or one or more.
OptionSpec fileArgument(Options& options, std::string name, std::string help);
OptionSpec filesArgument(Options& options, std::string name, std::string help);

}  // namespace tavio::tool
