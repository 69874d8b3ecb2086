// The steps of a job that concern its session.
#pragma once

#include "random.h"

namespace compare {

// Over Bluetooth or WiFi; some fail.
void openSession(Random& random);

// The session in use, or the other kind.
void closeSession(Random& random);

// The printer has a reply or none.
void readPrinter(Random& random);

// Cut, eject, or clear the printer's memory.
void finish(Random& random);

// A text, also empty, none, or of bytes that are no text.
void sendText(Random& random);

// Bytes, also none.
void sendData(Random& random);

}  // namespace compare
