// The head of an HTTP request: the request line and the headers, before the library takes it apart.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavio::virtual_printer {

inline constexpr std::size_t kMaxHeadBytes = std::size_t{16} << 10U;

// Where the head ends that the bytes begin with, behind its blank line; npos while it is incomplete.
std::size_t headEnd(std::string_view bytes);

// The head without the headers that ask for what is never given, parts of a file and compression:
// taking them apart can cost much more than they are long.
std::string withoutCostlyHeaders(std::string_view head);

// Whether a request with this Host header may be answered. A server for this machine only answers
// to its own names, so that no page of the Internet reaches it by a name that leads here.
//   host           "127.0.0.1:9180"; "" where there is none
//   boundAddress   what the server listens on, as it was given: "127.0.0.1", "::1", "0.0.0.0"
bool isHostAllowed(std::string_view host, std::string_view boundAddress);

// Whether a request that changes something comes from the server's own page, or from no page.
//   origin   "http://127.0.0.1:9180"; "" where there is none, as from other programs than browsers
//   site     the Sec-Fetch-Site header; "" where there is none
bool isOriginAllowed(std::string_view origin, std::string_view site, std::string_view host);

}  // namespace tavio::virtual_printer
