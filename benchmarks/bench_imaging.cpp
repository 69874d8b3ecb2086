#include <cstddef>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "TavioIpadSDK/imaging/bitmap_file.h"
#include "TavioIpadSDK/imaging/diffuse_picture.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/error_diffusion.h"
#include "TavioIpadSDK/imaging/monochrome.h"
#include "TavioIpadSDK/imaging/print_bmp.h"
#include "TavioIpadSDK/imaging/threshold_rows.h"
#include "TavioIpadSDK/pictures/open_picture.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/settings/settings.h"
#include "TavioIpadSDK/stretch/resampled_rows.h"
#include "benchmarks/bench_inputs.h"
#include "benchmarks/stages.h"

namespace tavio::benchmarks {
namespace {

using pictures::Picture;

// From the resampled picture to the bytes that are sent.
Stages::Work printing(DotSize size, bool dithered) {
    const auto picture =
        std::make_shared<const std::optional<Picture>>(photoLike(size.width, size.height));
    const auto link = sendToNobody();
    return [picture, link, size, dithered](benchmark::State&) {
        ImageDithered = dithered;
        imaging::PrintBMP(size.width, size.height, *picture);
        ImageDithered = true;
    };
}

// A resampled picture, and room for its entries.
struct Fitted {
    explicit Fitted(DotSize size)
        : picture(photoLike(size.width, size.height)),
          entries(static_cast<std::size_t>(imaging::paddedWidth(size.width)) *
                  static_cast<std::size_t>(size.height)) {}

    Picture picture;
    Bytes entries;
};

void addConversions(Stages& stages) {
    const DotSize size = stages.page();
    stages.add("dither, one core", [size] {
        return [fitted = std::make_shared<Fitted>(size)](benchmark::State&) {
            imaging::ErrorDiffusion diffusion(fitted->picture.width);
            diffusion.convert(fitted->picture.pixels, fitted->entries);
        };
    });
    stages.add("dither, two cores", [size] {
        return [fitted = std::make_shared<Fitted>(size)](benchmark::State&) {
            imaging::diffusePicture(fitted->picture.pixels, fitted->picture.width,
                                    fitted->picture.height, fitted->entries);
        };
    });
    stages.add("threshold", [size] {
        return [fitted = std::make_shared<Fitted>(size)](benchmark::State&) {
            imaging::thresholdRows(fitted->picture.pixels, fitted->picture.width, fitted->entries);
        };
    });
    stages.add("pack", [size] {
        imaging::ConvertToMonochrome(textPage(size.width, size.height));
        return [](benchmark::State&) { imaging::createRawMonochromeData(); };
    });
    stages.add("all, dithered", [size] { return printing(size, true); });
    stages.add("all, threshold", [size] { return printing(size, false); });
}

// Reads rows as the dither does.
void takeAll(pictures::PictureRows& rows) {
    const std::int32_t strip = imaging::ErrorDiffusion::bestStrip();
    while (!rows.next(strip).empty()) continue;
}

void addResampling(Stages& stages, const std::string& name, DotSize from, DotSize to) {
    stages.add("resample, " + name, [from, to] {
        const auto picture = std::make_shared<const Picture>(photoLike(from.width, from.height));
        return [picture, to](benchmark::State&) {
            const auto rows =
                stretch::resampledRows(pictures::rowsOf(*picture), to.width, to.height);
            takeAll(*rows);
        };
    });
}

}  // namespace

void addImaging(Stages& stages) {
    addConversions(stages);
    const DotSize page = stages.page();
    // Like a 12-megapixel photo on a letter-size page at 600 dots per inch: larger in both
    // directions.
    addResampling(stages, "photo to page", {page.width * 40 / 51, page.height * 5 / 11}, page);
    // The same photo on a ticket: smaller in both directions.
    addResampling(stages, "photo to ticket", {page.width * 40 / 51, page.height * 5 / 11},
                  {page.width * 11 / 34, page.height / 11});
    // A PDF page: one pixel a point.
    addResampling(stages, "page at one pixel a point", {page.width * 3 / 25, page.height * 3 / 25},
                  page);
}

void addDecode(Stages& stages, const std::string& path) {
    stages.addOnce("decode, photo", [path]() -> Stages::Work {
        std::ifstream stream(path, std::ios::binary);
        const auto file = std::make_shared<const Bytes>(std::istreambuf_iterator<char>(stream),
                                                        std::istreambuf_iterator<char>());
        return [file](benchmark::State& state) {
            const pictures::OpenedPicture picture = pictures::openPicture(file);
            if (picture.rows) {
                takeAll(*picture.rows);
            } else {
                state.SkipWithError(picture.why.c_str());
            }
        };
    });
}

}  // namespace tavio::benchmarks
