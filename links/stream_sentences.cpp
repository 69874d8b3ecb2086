#include "tavio/links/stream_sentences.h"

#include <cerrno>
#include <system_error>

namespace tavio::links {

Failure cancelledFailure() {
    return {FailureKind::kCancelled, "cancelled"};
}

std::string closedSentence(const std::string& peer) {
    return peer + " closed the connection";
}

std::string disconnectedSentence(const std::string& peer, int error) {
    const std::string why = ": " + std::generic_category().message(error);
    switch (error) {
        case EPIPE:
        case ECONNRESET:
        case ECONNABORTED:
        case ENOTCONN:
            return closedSentence(peer).append(why);
        default:
            return std::string("the connection to ").append(peer).append(" failed").append(why);
    }
}

std::string idleSentence(const std::string& peer, const char* verb,
                         std::chrono::milliseconds time) {
    return std::string(peer).append(" ").append(verb).append(" no byte for ").append(toText(time));
}

std::string brokenOffSentence(const std::string& peer) {
    return peer +
           " broke the connection off after it had been sent everything: some of it may not have "
           "been read";
}

std::string endedEarlySentence(const std::string& peer) {
    return peer +
           " ended its side of the connection before it had been sent everything: some of it may "
           "not have been read";
}

std::string noEndSentence(const std::string& peer, std::chrono::milliseconds time) {
    return std::string(peer)
        .append(" has been sent everything, but did not end the connection within ")
        .append(toText(time));
}

std::string toText(std::chrono::milliseconds time) {
    const auto count = time.count();
    if (count < 1000) return std::to_string(count) + " ms";
    std::string text = std::to_string(count / 1000);
    if (count % 1000 != 0) {
        std::string fraction = std::to_string(1000 + count % 1000).substr(1);
        fraction.erase(fraction.find_last_not_of('0') + 1);
        text.append(".").append(fraction);
    }
    return text.append(" s");
}

}  // namespace tavio::links
