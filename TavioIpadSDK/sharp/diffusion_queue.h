// Strips on their way to the kernel of error diffusion, which may run on a thread of its own.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <semaphore>
#include <thread>

#include "TavioIpadSDK/sharp/diffuse_strip.h"
#include "TavioIpadSDK/sharp/dots.h"

namespace tavio::sharp {

// Diffuses a picture strip by strip:
//
//   this thread    |fill 0|fill 1|fill 2|fill 3|
//   its own               |diffuse 0|diffuse 1|diffuse 2|     at most two strips wait
//
// Without a thread, or if none can be started, diffuse() does the work. The destructor waits until all
// strips are done; a strip that freeStrip() returned last and that was not diffused is left out.
class DiffusionQueue {
  public:
    // The dots of the strips are written into `dots`. Throws std::bad_alloc.
    DiffusionQueue(Dots& dots, bool usesThread);
    ~DiffusionQueue();
    DiffusionQueue(const DiffusionQueue&) = delete;
    DiffusionQueue& operator=(const DiffusionQueue&) = delete;

    // A strip to fill. Waits until there is one.
    SkewedStrip& freeStrip();

    // Diffuses it. `firstRow`: its first row in the picture.
    void diffuse(std::int32_t firstRow);

  private:
    static constexpr int kPlaces = 3;
    static constexpr std::int32_t kEnd = -1;  // instead of a first row: there are no more strips

    struct Place {
        SkewedStrip strip;
        std::int32_t firstRow = 0;
    };

    void diffuseNow(const Place& place);
    void runThread();

    Dots& dots_;
    DiffusionState state_;
    std::deque<Place> places_;  // they take turns
    std::size_t filling_ = 0;   // the place that is filled
    std::counting_semaphore<> free_{0};
    std::counting_semaphore<> full_{0};
    std::optional<std::jthread> thread_;
};

}  // namespace tavio::sharp
