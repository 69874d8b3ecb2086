#include "tavio/printing/guarded_link.h"

#include <algorithm>
#include <new>
#include <utility>

namespace tavio::printing {

namespace {

// Makes the counts those of a job of `total` bytes, whatever the link says.
void fit(links::LinkReport& report, std::uint64_t total) {
    report.offered = total;
    report.accepted = std::min(report.accepted, total);
    if (report.acknowledged) {
        report.acknowledged = std::min(*report.acknowledged, report.accepted);
    }
}

}  // namespace

links::Failure failureOf(const std::exception_ptr& exception, const char* what) noexcept try {
    try {
        std::rethrow_exception(exception);
    } catch (const std::bad_alloc&) {
        return {links::FailureKind::kOutOfMemory, "out of memory"};
    } catch (const std::exception& error) {
        return {links::FailureKind::kOther, std::string(what).append(": ").append(error.what())};
    } catch (...) {
        return {links::FailureKind::kOther, what};
    }
} catch (const std::exception&) {
    return {links::FailureKind::kOutOfMemory, "out of memory"};
}

GuardedLink::GuardedLink(const LinkMaker& makeLink, TurnQueue::Turn& turn) noexcept : turn_(turn) {
    try {
        link_ = makeLink();
        if (!link_) thrown_ = {links::FailureKind::kOther, "no link to the printer was made"};
    } catch (...) {
        thrown_ = failureOf(std::current_exception(), "no link to the printer can be made");
    }
    turn_.use(link_.get());
}

GuardedLink::~GuardedLink() {
    turn_.use(nullptr);
}

template <typename Operation>
void GuardedLink::guard(const Operation& operation) noexcept {
    try {
        operation(*link_);
    } catch (...) {
        if (thrown_.kind != links::FailureKind::kNone) return;
        thrown_ = failureOf(std::current_exception(), "the link failed");
    }
}

bool GuardedLink::open() noexcept {
    bool isOpen = false;
    if (thrown_.kind == links::FailureKind::kNone) {
        guard([&](links::Link& link) { isOpen = link.open(""); });
    }
    return isOpen;
}

bool GuardedLink::write(std::span<const Byte> bytes) noexcept {
    if (thrown_.kind != links::FailureKind::kNone) return false;
    hasWritten_ = true;
    isWriteComplete_ = false;
    bool isWritten = false;
    guard([&](links::Link& link) {
        isWritten = link.write(bytes);
        isWriteComplete_ = true;
    });
    return isWritten;
}

bool GuardedLink::drain() noexcept {
    bool isDrained = false;
    if (thrown_.kind == links::FailureKind::kNone) {
        guard([&](links::Link& link) { isDrained = link.drain(); });
    }
    return isDrained;
}

Text GuardedLink::read() noexcept {
    Text reply;
    if (thrown_.kind == links::FailureKind::kNone) {
        guard([&](links::Link& link) { reply = link.read(); });
    }
    return reply;
}

void GuardedLink::close() noexcept {
    if (link_) guard([](links::Link& link) { link.close(); });
}

void GuardedLink::observeProgress(links::ProgressObserver observer) noexcept {
    if (link_) guard([&](links::Link& link) { link.observeProgress(std::move(observer)); });
}

links::LinkReport GuardedLink::report(std::uint64_t total) noexcept {
    links::LinkReport report;
    bool isKnown = !hasWritten_;
    if (link_) {
        guard([&](links::Link& link) {
            report = link.report();
            isKnown = isWriteComplete_;
        });
    }
    if (!isKnown) report.accepted = total;
    fit(report, total);
    if (report.failure.empty() && thrown_.kind != links::FailureKind::kNone) {
        report.failure = std::move(thrown_.sentence);
        report.failureKind = thrown_.kind;
    }
    return report;
}

}  // namespace tavio::printing
