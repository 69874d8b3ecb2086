// What encoding tells, one line each, for tests to compare as a whole.
#pragma once

#include <string>
#include <vector>

#include "tavio/printing/job.h"
#include "tavio/printing/result.h"

namespace tavio::test {

using Lines = std::vector<std::string>;

// "not-found 0.1: photo.png does not exist": kind, ticket, element.
inline Lines told(const printing::Problems& problems) {
    Lines lines;
    for (const printing::Problem& problem : problems) {
        std::string line = std::string(nameOf(problem.kind)) + " " + std::to_string(problem.ticket);
        if (problem.element) line.append(".").append(std::to_string(*problem.element));
        lines.push_back(line + ": " + problem.sentence);
    }
    return lines;
}

// Empty if there is a job.
inline Lines told(const printing::Expected<printing::Job, printing::Problems>& job) {
    return job ? Lines() : told(job.error());
}

// "rows-lost 0.1 (3): ...": kind, ticket, element, count.
inline Lines told(const std::vector<printing::Warning>& warnings) {
    Lines lines;
    for (const printing::Warning& warning : warnings) {
        lines.push_back(std::string(nameOf(warning.kind)) + " " + std::to_string(warning.ticket) +
                        "." + std::to_string(warning.element) + " (" +
                        std::to_string(warning.count) + "): " + warning.sentence);
    }
    return lines;
}

}  // namespace tavio::test
