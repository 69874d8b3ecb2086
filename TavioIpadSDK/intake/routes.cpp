#include "TavioIpadSDK/intake/routes.h"

namespace tavio::intake {
namespace {

struct Entry {
    std::string_view extension;
    Route route;
};

constexpr Entry kEntries[] = {
    {"TXT", Route::kText},   {"txt", Route::kText},    //
    {"PDF", Route::kPage},   {"pdf", Route::kPage},    //
    {"PNG", Route::kPhoto},  {"png", Route::kPhoto},   //
    {"JPG", Route::kPhoto},  {"jpg", Route::kPhoto},   //
    {"JPEG", Route::kPhoto}, {"jpeg", Route::kPhoto},  //
    {"BMP", Route::kPhoto},  {"bmp", Route::kPhoto},
};

}  // namespace

Route routeOf(std::string_view extension) {
    for (const Entry& entry : kEntries)
        if (entry.extension == extension) return entry.route;
    return Route::kNone;
}

}  // namespace tavio::intake
