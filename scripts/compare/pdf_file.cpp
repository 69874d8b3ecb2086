#include "pdf_file.h"

#include <string>
#include <vector>

namespace compare {
namespace {

std::string numbers(Random& random, std::initializer_list<int> upTo) {
    std::string text;
    for (const int max : upTo) text += std::to_string(random.between(0, max)) + " ";
    return text;
}

// A colour, then a rectangle, a line or letters in it.
std::string shape(Random& random) {
    const std::string colour =
        "0." + numbers(random, {9}) + "0." + numbers(random, {9}) + "0." + numbers(random, {9});
    switch (random.between(0, 2)) {
        case 0:
            return colour + "rg " + numbers(random, {200, 200, 200, 100}) + "re f\n";
        case 1:
            return colour + "RG " + numbers(random, {5}) + "w " + numbers(random, {300, 300}) +
                   "m " + numbers(random, {300, 300}) + "l S\n";
        default:
            return colour + "rg BT /F1 " + numbers(random, {40}) + "Tf " +
                   numbers(random, {200, 200}) + "Td (Row B, seat 12) Tj ET\n";
    }
}

std::string content(Random& random) {
    std::string operators;
    for (int left = random.between(0, 12); left > 0; --left) operators += shape(random);
    return operators;
}

std::string pageEntries(Random& random) {
    std::string box = "[0 0 " + std::to_string(random.between(1, 400)) + "." +
                      std::to_string(random.between(0, 99)) + " " +
                      std::to_string(random.between(1, 400)) + "]";
    std::string entries = "/MediaBox " + box;
    if (random.chance(30)) {
        const int left = random.between(0, 30);
        const int bottom = random.between(0, 30);
        entries += " /CropBox [" + std::to_string(left) + " " + std::to_string(bottom) + ".5 " +
                   std::to_string(left + random.between(1, 300)) + " " +
                   std::to_string(bottom + random.between(1, 300)) + "]";
    }
    if (random.chance(20)) entries += " /Rotate " + std::to_string(90 * random.between(0, 3));
    return entries;
}

// The objects of a document, from number 1 on.
std::vector<std::string> objects(Random& random) {
    const bool hasPage = random.chance(95);
    const std::string operators = content(random);
    return {"<< /Type /Catalog /Pages 2 0 R >>",
            hasPage ? "<< /Type /Pages /Count 1 /Kids [3 0 R] >>"
                    : "<< /Type /Pages /Count 0 /Kids [] >>",
            "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << /Font << /F1 5 0 R >> >> " +
                pageEntries(random) + " >>",
            "<< /Length " + std::to_string(operators.size()) + " >>\nstream\n" + operators +
                "\nendstream",
            "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"};
}

}  // namespace

Bytes pdfFile(Random& random) {
    std::string text = "%PDF-1.7\n";
    std::string table = "0000000000 65535 f \n";
    int number = 0;
    for (const std::string& object : objects(random)) {
        const std::string offset = std::to_string(text.size());
        table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        text += std::to_string(++number) + " 0 obj\n" + object + "\nendobj\n";
    }
    const std::string start = std::to_string(text.size());
    const std::string size = std::to_string(number + 1);
    text += "xref\n0 " + size + "\n" + table + "trailer\n<< /Root 1 0 R /Size " + size +
            " >>\nstartxref\n" + start + "\n%%EOF\n";
    return {text.begin(), text.end()};
}

}  // namespace compare
