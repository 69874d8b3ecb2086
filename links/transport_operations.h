// The twelve transport operations, defined over one current link.
//
// Linking Tavio::links defines Open_BT, Write_WF_Data and the others (session/transport.h). Both
// transports lead to the same link: which one it is was decided when the link was chosen.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "links/link.h"

namespace tavio::links {

// Chooses the link that all operations go to from now on; a null pointer chooses none, which is how
// it is in the beginning: then opening fails, writes go nowhere and there is nothing to read. The
// link chosen before is left as it is, also when it is open. Not to be called while a job runs.
void useLink(std::shared_ptr<Link> link);

// One call of a transport operation, as the observer sees it.
struct Operation {
    const char* name = "";            // "Write_WF_Data"
    bool carriesData = false;         // true for the four writes and the two reads
    std::optional<std::size_t> size;  // of a write or a read: bytes passed on; none for no text
};

// Has `observer` called after each operation, on the thread that the operation runs on; an empty
// function ends that. What it throws is dropped. Not to be called while a job runs.
void observeOperations(std::function<void(const Operation&)> observer);

}  // namespace tavio::links
