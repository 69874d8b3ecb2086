// The far ends of many printers, some of them with a fault.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tavio/printing/printer_address.h"

namespace tavio::printing::test {

enum class Fault {
    kNone,
    kRefuses,       // every connection
    kBreaksOff,     // in the middle of a job
    kStopsReading,  // in the middle of the first job, until release()
    kSlow,          // takes a few bytes at a time
    kOutOfPaper,    // says so at the beginning of each connection
};

const char* nameOf(Fault fault);

// Far ends with the numbers from 0. All functions may be called on any thread.
class FarEnds {
  public:
    FarEnds() = default;
    FarEnds(const FarEnds&) = delete;
    FarEnds& operator=(const FarEnds&) = delete;
    virtual ~FarEnds() = default;

    // The links to one of them.
    virtual LinkMaker linksTo(std::size_t number) = 0;

    // The ones that have stopped reading go on.
    virtual void release() = 0;

    // What the far end got over each of its connections, in order; after the last job.
    virtual std::vector<std::string> received(std::size_t number) = 0;

    // True if that is everything that arrived at its system, read or not.
    virtual bool isExact() const = 0;
};

// In memory, each on a clock of its own.
std::unique_ptr<FarEnds> farEndsInMemory(const std::vector<Fault>& faults, unsigned seed);

// Over real sockets, served by one thread.
std::unique_ptr<FarEnds> farEndsOverLoopback(const std::vector<Fault>& faults, unsigned seed);

}  // namespace tavio::printing::test
