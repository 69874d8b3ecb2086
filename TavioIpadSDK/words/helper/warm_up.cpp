#include "TavioIpadSDK/words/helper/warm_up.h"

#include <chrono>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>
#include <thread>

#include "TavioIpadSDK/words/helper/draw_block.h"
#include "TavioIpadSDK/words/helper/fit_block.h"
#include "TavioIpadSDK/words/helper/fonts.h"

namespace tavio::words_helper {

namespace {

void drawSample() {
    const std::optional<Fonts> fonts = fontsOfMachine("sans");
    if (!fonts) return;
    words::Setting setting;
    setting.width = setting.height = 200;
    Text text(*fonts, "Aa 1", setting);
    const FittedBlock fitted = fitBlock(text, setting);
    if (fitted.fits) drawBlock(fitted, setting);
}

bool hasOtherThreads() {
    std::error_code error;
    const std::filesystem::directory_iterator threads("/proc/self/task", error);
    return !error && std::distance(begin(threads), end(threads)) > 1;
}

// The text's thread ends soon after the text.
void waitForOtherThreads() {
    constexpr int kMaxMilliseconds = 1000;
    for (int waited = 0; waited < kMaxMilliseconds && hasOtherThreads(); ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

}  // namespace

void warmUp() {
    loadFontsOfMachine();
    drawSample();
    waitForOtherThreads();
}

}  // namespace tavio::words_helper
