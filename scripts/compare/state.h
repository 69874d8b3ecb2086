// The public variables of the library, in the record.
#pragma once

namespace compare {

void recordState();

}  // namespace compare
