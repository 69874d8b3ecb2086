#include "job.h"

#include "printing.h"
#include "sessions.h"
#include "settings.h"
#include "state.h"

namespace compare {
namespace {

// One step in a hundred draws a page with the helper program, the slowest step by far.
void printSomething(Random& random, const std::string& examples) {
    const int percent = random.between(1, 100);
    if (percent <= 55) return printPhoto(random);
    if (percent <= 67) return printDrawnPage(random);
    if (percent <= 68) return printFilePage(random, examples);
    if (percent <= 78) return printText(random);
    if (percent <= 84) return printStoredLogo(random);
    if (percent <= 87) return printMissing(random);
    if (percent <= 94) return sendText(random);
    sendData(random);
}

}  // namespace

void runJob(Random& random, const std::string& examples) {
    if (random.chance(70)) openSession(random);
    if (random.chance(85)) configure(random);
    if (random.chance(10)) assignVariables(random);
    for (int left = random.between(1, 3); left > 0; --left) printSomething(random, examples);
    if (random.chance(50)) finish(random);
    if (random.chance(30)) readPrinter(random);
    if (random.chance(60)) closeSession(random);
    recordState();
}

}  // namespace compare
