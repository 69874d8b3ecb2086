// What the examples that compose a ticket do with it.
#pragma once

#include <iostream>
#include <tavio/printing.h>

// Prints the ticket at an address, and tells what became of it. Returns the exit status.
inline int printTo(const char* address, const tavio::printing::Ticket& ticket) {
    const auto job = tavio::printing::encode(ticket);
    if (!job) {
        for (const auto& problem : job.error()) std::cerr << problem.sentence << '\n';
        return 1;
    }
    for (const auto& warning : job->warnings()) std::cerr << warning.sentence << '\n';
    const auto result = tavio::printing::Printer(address == nullptr ? "" : address).print(*job);
    std::cout << result.describe() << '\n';
    return result.isGood() ? 0 : 1;
}
