#include "tools/tavio/sample_files.h"

#include <cstddef>
#include <sstream>
#include <vector>

namespace tavio::test {

namespace {

std::string littleEndian(std::uint32_t value, int bytes) {
    std::string text;
    for (int at = 0; at < bytes; ++at) text += static_cast<char>((value >> (8 * at)) & 255);
    return text;
}

// The first object is the catalogue.
std::string pdfOf(const std::vector<std::string>& objects, const std::string& inTrailer) {
    const std::string size = std::to_string(objects.size() + 1);
    std::string file = "%PDF-1.4\n";
    std::string table = "xref\n0 " + size + "\n0000000000 65535 f \n";
    for (std::size_t index = 0; index < objects.size(); ++index) {
        std::string offset = std::to_string(file.size());
        table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        file += std::to_string(index + 1) + " 0 obj\n" + objects[index] + "\nendobj\n";
    }
    return file + table + "trailer << /Size " + size + " /Root 1 0 R " + inTrailer +
           " >>\nstartxref\n" + std::to_string(file.size()) + "\n%%EOF\n";
}

}  // namespace

std::string greyBmp(std::uint32_t width, std::uint32_t height, std::uint8_t shade) {
    const std::uint32_t rowBytes = (3 * width + 3) / 4 * 4;
    const std::uint32_t pixelBytes = rowBytes * height;
    std::string file = "BM" + littleEndian(54 + pixelBytes, 4) + littleEndian(0, 4) +
                       littleEndian(54, 4) + littleEndian(40, 4) + littleEndian(width, 4) +
                       littleEndian(height, 4) + littleEndian(1, 2) + littleEndian(24, 2) +
                       littleEndian(0, 4) + littleEndian(pixelBytes, 4) + littleEndian(2835, 4) +
                       littleEndian(2835, 4) + std::string(8, '\0');
    return file + std::string(pixelBytes, static_cast<char>(shade));
}

std::string badIndexBmp() {
    const std::string palette = littleEndian(0, 4) + littleEndian(0xFFFFFF, 4);
    std::string pixels(8 * 16, '\1');
    pixels[7] = '\2';  // the bottom row comes first
    return "BM" + littleEndian(62 + 8 * 16, 4) + littleEndian(0, 4) + littleEndian(62, 4) +
           littleEndian(40, 4) + littleEndian(8, 4) + littleEndian(16, 4) + littleEndian(1, 2) +
           littleEndian(8, 2) + littleEndian(0, 4) + littleEndian(8 * 16, 4) +
           std::string(8, '\0') + littleEndian(2, 4) + littleEndian(0, 4) + palette + pixels;
}

std::string pdf(double width, double height, int pages) {
    std::ostringstream box;
    box << "[0 0 " << width << ' ' << height << ']';
    std::ostringstream drawing;
    drawing << "0 g 0 0 " << width / 2 << ' ' << height << " re f\n";
    std::string kids;
    for (int page = 0; page < pages; ++page) kids += std::to_string(page + 4) + " 0 R ";
    std::vector<std::string> objects{
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages) + " >>",
        "<< /Length " + std::to_string(drawing.str().size()) + " >>\nstream\n" + drawing.str() +
            "endstream"};
    const std::string page =
        "<< /Type /Page /Parent 2 0 R /MediaBox " + box.str() + " /Contents 3 0 R >>";
    objects.insert(objects.end(), static_cast<std::size_t>(pages), page);
    return pdfOf(objects, "");
}

std::string encryptedPdf() {
    const std::string key = "<" + std::string(64, '7') + ">";
    return pdfOf(
        {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 72 72] >>",
         "<< /Filter /Standard /V 1 /R 2 /Length 40 /P -4 /O " + key + " /U " + key + " >>"},
        "/Encrypt 4 0 R /ID [<00> <00>]");
}

std::string brokenPng() {
    return "\x89PNG\r\n\x1A\n" + std::string("\0\0\0\rIHDR", 8);
}

}  // namespace tavio::test
