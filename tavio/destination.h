// Where a job's bytes go in this run of the tool.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "links/link.h"
#include "tavio/console.h"
#include "tavio/options.h"
#include "tavio/preview_link.h"

namespace tavio::tool {

struct Destination {
    std::shared_ptr<links::Link> link;

    // To be called after the link is closed, and only when the job has succeeded: puts what came
    // out in its place; true on success, otherwise the link's failure() says why not.
    std::function<bool()> commit;

    // Warns of what the far end found wrong; after commit.
    std::function<void(Console&)> report;
};

// Throws Failure where no link leads to the target.
Destination destinationOf(const Options& options);

// Warns of what the preview found wrong, and of tickets beyond those that it wrote.
void reportPreview(const PreviewLink& preview, Console& console);

}  // namespace tavio::tool
