// TcpLink's messages about a connection to the printer at 192.0.2.7.
#pragma once

#include <cerrno>
#include <string>
#include <system_error>

namespace tavio::links::test {

inline const std::string kPeer = "the printer at 192.0.2.7:9100";
inline const std::string kNotRead =
    kPeer +
    " broke the connection off after it had been sent everything: some of it may not have been "
    "read";
inline const std::string kEndedEarly =
    kPeer +
    " ended its side of the connection before it had been sent everything: some of it may not have "
    "been read";
inline const std::string kNoEnd =
    kPeer + " has been sent everything, but did not end the connection within 5 s";

inline std::string messageOf(int error) {
    return std::generic_category().message(error);
}

// The message after `error` has ended the connection.
inline std::string endedBy(int error) {
    switch (error) {
        case EPIPE:
        case ECONNRESET:
        case ECONNABORTED:
        case ENOTCONN:
            return kPeer + " closed the connection: " + messageOf(error);
        default:
            return "the connection to " + kPeer + " failed: " + messageOf(error);
    }
}

}  // namespace tavio::links::test
