#include "tavio/links/local_link.h"

#include <cassert>
#include <exception>
#include <new>

#include "tavio/links/stream_sentences.h"

namespace tavio::links {

namespace {

Failure outOfMemory() {
    return {FailureKind::kOutOfMemory, "out of memory"};
}

}  // namespace

bool LocalLink::fail(const std::string& why) {
    return fail(Failure{FailureKind::kOther, why});
}

bool LocalLink::fail(const Failure& why) {
    if (!report_.failure.empty() || why.sentence.empty()) return false;
    report_.failure = why.sentence;
    report_.failureKind = why.kind;
    return false;
}

bool LocalLink::failIfCancelled() {
    return cancelled_.load() && !fail(cancelledFailure());
}

bool LocalLink::begin(const std::string& /*address*/) {
    return true;
}

bool LocalLink::open(const std::string& address) {
    close();
    report_ = {};
    inJob_ = true;
    if (failIfCancelled()) return false;
    try {
        open_ = begin(address) && report_.failure.empty();
    } catch (const std::bad_alloc&) {
        return fail(outOfMemory());
    } catch (const std::exception& error) {
        return fail(error.what());
    }
    return open_;
}

bool LocalLink::write(std::span<const Byte> bytes) {
    if (!inJob_ && !takesAlways()) return false;
    report_.offered += bytes.size();
    if (failIfCancelled() || !report_.failure.empty()) return false;
    try {
        if (!take(bytes)) return fail("the bytes were refused");
    } catch (const std::bad_alloc&) {
        return fail(outOfMemory());
    } catch (const std::exception& error) {
        return fail(error.what());
    }
    report_.accepted += bytes.size();
    if (!bytes.empty()) report_.answered = false;
    reportProgress();
    return true;
}

bool LocalLink::drain() {
    return !failIfCancelled() && report_.failure.empty();
}

Text LocalLink::read() {
    if (failIfCancelled()) return std::nullopt;
    Text reply = answer();
    if (reply && inJob_) keepReply(*reply);
    return reply;
}

void LocalLink::keepReply(const std::string& reply) {
    if (!report_.reply) report_.reply = "";
    assert(report_.reply->size() <= kMaxReplyBytes);
    report_.reply->append(reply, 0, kMaxReplyBytes - report_.reply->size());
    report_.answered = true;
}

void LocalLink::close() {
    if (!inJob_) return;
    if (open_) {
        try {
            end();
        } catch (const std::bad_alloc&) {
            fail(outOfMemory());
        } catch (const std::exception& error) {
            fail(error.what());
        }
    }
    open_ = false;
    inJob_ = false;
}

// An exception of the observer is dropped.
void LocalLink::reportProgress() noexcept {
    try {
        if (observer_) observer_({report_.offered, report_.accepted});
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
}

}  // namespace tavio::links
