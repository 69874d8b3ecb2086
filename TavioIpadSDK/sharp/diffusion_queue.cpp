#include "TavioIpadSDK/sharp/diffusion_queue.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <system_error>

namespace tavio::sharp {

DiffusionQueue::DiffusionQueue(Dots& dots, bool usesThread)
    : dots_(dots), state_(dots.width, stripRows()) {
    const std::size_t places = usesThread ? kPlaces : 1;
    while (places_.size() < places)
        places_.push_back({.strip = SkewedStrip(dots.width, stripRows())});
    if (!usesThread) return;
    free_.release(kPlaces);
    try {
        thread_.emplace([this] { runThread(); });
    } catch (const std::system_error&) {  // no thread can be started
    }
}

DiffusionQueue::~DiffusionQueue() {
    if (!thread_) return;
    free_.acquire();  // the place may be in work
    places_[filling_].firstRow = kEnd;
    full_.release();
}

SkewedStrip& DiffusionQueue::freeStrip() {
    if (thread_) free_.acquire();
    return places_[filling_].strip;
}

void DiffusionQueue::diffuse(std::int32_t firstRow) {
    Place& place = places_[filling_];
    place.firstRow = firstRow;
    if (!thread_) return diffuseNow(place);
    filling_ = (filling_ + 1) % places_.size();
    full_.release();
}

void DiffusionQueue::diffuseNow(const Place& place) {
    const auto first = static_cast<std::size_t>(place.firstRow);
    const auto end =
        static_cast<std::size_t>(std::min(dots_.height, place.firstRow + place.strip.rows()));
    const std::size_t rowBytes = dots_.rowBytes();
    diffuseStrip(place.strip, place.firstRow, state_,
                 std::span(dots_.bits).subspan(first * rowBytes, (end - first) * rowBytes));
}

void DiffusionQueue::runThread() {
    for (std::size_t taken = 0;; taken = (taken + 1) % places_.size()) {
        full_.acquire();
        if (places_[taken].firstRow == kEnd) return;
        diffuseNow(places_[taken]);
        free_.release();
    }
}

}  // namespace tavio::sharp
