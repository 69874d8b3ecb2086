// Judges a report with the knowledge of both ends.
#pragma once

#include <string>
#include <vector>

#include "scenarios/scenario.h"

namespace tavio::scenarios {

// Everything that is wrong with a plan that was carried out, one sentence each:
//
// - "nothing sent" of which a byte arrived; "partly sent" that counts bytes that did not arrive, or
//   of a job that was acknowledged in full; "sent" or "answered" of a job that did not arrive in
//   full, or that the printer had not answered
// - a reason that is none: a deadline that had not passed, a printer that had not closed, a cancel
//   that nobody asked for
// - numbers that are not the system's; a reply that is not what the printer said
// - a job that the printer did not print in full, though it was sent, without a word: but for
//   bytes that the printer itself drops, which nobody can see from here
// - a call that took longer than its deadlines and a tenth
// - bytes at the printer that are not the job's first ones, in order
// - tickets that are not what these bytes print
// - misuse of the system: descriptors left open, waiting for ever, polling without waiting
std::vector<std::string> objectionsTo(const Plan& plan, const Trial& trial);

}  // namespace tavio::scenarios
