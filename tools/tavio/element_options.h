// The arguments and options of what is drawn without a file: codes, words, lines and boxes.
#pragma once

#include "tools/tavio/command_spec.h"

namespace tavio::tool {

// KIND, DATA and how the code is drawn.
OptionSpecs codeElementOptions(Options& options);

// TEXT and how the words are set.
OptionSpecs wordsElementOptions(Options& options);

// --length and how the line is drawn.
OptionSpecs lineElementOptions(Options& options);

// WxH and how the box is drawn.
OptionSpecs boxElementOptions(Options& options);

// --size, --printer-face: of a text in the printer's own face.
OptionSpecs textFaceOptions(Options& options);

}  // namespace tavio::tool
