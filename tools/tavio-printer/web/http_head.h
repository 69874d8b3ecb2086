// The head of an HTTP request: the request line and the headers, before the library parses it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavio::virtual_printer {

inline constexpr std::size_t kMaxHeadBytes = std::size_t{16} << 10U;

// The end of the head at the beginning of the bytes, after its blank line; npos if it is
// incomplete.
std::size_t headEnd(std::string_view bytes);

// The head without the headers that ask for parts of a file and for compression, which this server
// never gives: parsing them can take much more time than their length suggests.
std::string withoutCostlyHeaders(std::string_view head);

// True if a request with this Host header may be answered. A server on a loopback address answers
// only to its own names, so that no page of the Internet reaches it by a name that resolves to this
// machine.
//   host           "127.0.0.1:9180"; "" if there is none
//   boundAddress   the address that the server listens on, as given: "127.0.0.1", "::1", "0.0.0.0"
bool isHostAllowed(std::string_view host, std::string_view boundAddress);

// True if a request that changes something comes from the server's own page, or from no page.
//   origin   "http://127.0.0.1:9180"; "" if there is none, as from programs other than browsers
//   site     the Sec-Fetch-Site header; "" if there is none
bool isOriginAllowed(std::string_view origin, std::string_view site, std::string_view host);

}  // namespace tavio::virtual_printer
