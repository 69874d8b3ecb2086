// The messages of links over a connection: sentences without a full stop. `peer` is the far end's
// name: "the printer at 192.168.1.50:9100".
#pragma once

#include <chrono>
#include <string>

#include "tavio/links/link_report.h"

namespace tavio::links {

// The failure of every link that was cancelled.
Failure cancelledFailure();

// "the printer at ... closed the connection"
std::string closedSentence(const std::string& peer);

// "the printer at ... closed the connection: Connection reset by peer", or, if the far end did not
// cause the error, "the connection to the printer at ... failed: No route to host"
std::string disconnectedSentence(const std::string& peer, int error);

// "the printer at ... took no byte for 30 s"; `verb` is "took" or "acknowledged".
std::string idleSentence(const std::string& peer, const char* verb, std::chrono::milliseconds time);

// The connection broke off after a job that has arrived.
std::string brokenOffSentence(const std::string& peer);

// The far end ended its side before the job had arrived, but took the rest of it.
std::string endedEarlySentence(const std::string& peer);

// The far end keeps the connection after a job that has arrived.
std::string noEndSentence(const std::string& peer, std::chrono::milliseconds time);

// "30 s", "1.5 s", "200 ms"
std::string toText(std::chrono::milliseconds time);

}  // namespace tavio::links
