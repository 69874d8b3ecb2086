#include "TavioIpadSDK/pdf/helper/built_in_page.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/machine/write_all.h"
#include "TavioIpadSDK/pdf/helper/draw_page.h"
#include "TavioIpadSDK/pdf/helper/draw_rows.h"
#include "TavioIpadSDK/pdf/helper/record_page.h"

namespace tavio::pdf_helper {

namespace {

// The faces that a document may use without bringing them along.
constexpr std::array kFaces = {
    "Courier",     "Courier-Bold",   "Courier-Oblique",   "Courier-BoldOblique",
    "Helvetica",   "Helvetica-Bold", "Helvetica-Oblique", "Helvetica-BoldOblique",
    "Times-Roman", "Times-Bold",     "Times-Italic",      "Times-BoldItalic",
    "Symbol",      "ZapfDingbats",
};

std::string fontsOf() {
    std::string fonts;
    for (std::size_t i = 0; i < kFaces.size(); ++i) {
        fonts += "/F" + std::to_string(i) + " << /Type /Font /Subtype /Type1 /BaseFont /" +
                 kFaces.at(i) + " >> ";
    }
    return fonts;
}

// A letter of each face, an area, and a line.
std::string contentOf() {
    std::string content = "0 0 2 2 re f 0 0 m 9 9 l S BT ";
    for (std::size_t i = 0; i < kFaces.size(); ++i) {
        content += "/F" + std::to_string(i) + " 8 Tf (a) Tj ";
    }
    return content + "ET";
}

std::string documentOf(const std::vector<std::string>& objects) {
    std::string document = "%PDF-1.4\n";
    std::string places = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const std::string place = std::to_string(document.size());
        places += std::string(10 - place.size(), '0') + place + " 00000 n \n";
        document += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::string count = std::to_string(objects.size() + 1);
    const std::string table = std::to_string(document.size());
    return document + "xref\n0 " + count + "\n" + places + "trailer << /Size " + count +
           " /Root 1 0 R >>\nstartxref\n" + table + "\n%%EOF\n";
}

std::string builtInDocument() {
    const std::string content = contentOf();
    return documentOf({
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 20 20] /Contents 4 0 R /Resources << /Font "
        "<< " +
            fontsOf() + ">> >> >>",
        "<< /Length " + std::to_string(content.size()) + " >> stream\n" + content + "\nendstream",
    });
}

}  // namespace

void drawBuiltInPage() {
    const std::string bytes = builtInDocument();
    machine::Descriptor file(::memfd_create("page", MFD_CLOEXEC));
    if (machine::writeAll(file.get(), std::as_bytes(std::span(bytes))) != 0) return;
    // Stays open: the engine unloads itself with its last document.
    static const OpenedDocument document = openDocument(file.release());
    constexpr double kMaxPoints = 100;
    drawPage(document, 1, kMaxPoints);
    const RecordedPage page =
        recordPage(document, 1, kMaxPoints, {300, {sharp::Fit::kActual, sharp::Turn::k0, 1, 1}});
    if (page.recording) drawRows(page, [](std::span<const Byte>) { return true; });
}

}  // namespace tavio::pdf_helper
