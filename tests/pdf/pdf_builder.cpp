#include "pdf/pdf_builder.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace tavio::test {

int PdfBuilder::add(std::string_view body) {
    objects_.emplace_back(body);
    return static_cast<int>(objects_.size());
}

int PdfBuilder::addStream(std::string_view dictionaryEntries, std::string_view data) {
    std::string body = "<< /Length " + std::to_string(data.size()) + " ";
    body.append(dictionaryEntries).append(" >>\nstream\n").append(data).append("\nendstream");
    return add(body);
}

std::string PdfBuilder::finish(std::string_view trailerEntries) const {
    std::string text = "%PDF-1.7\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        const std::string offset = std::to_string(text.size());
        table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        text += std::to_string(i + 1) + " 0 obj\n" + objects_[i] + "\nendobj\n";
    }
    const std::string start = std::to_string(text.size());
    const std::string size = std::to_string(objects_.size() + 1);
    text += "xref\n0 " + size + "\n" + table + "trailer\n<< /Size " + size + " ";
    return text.append(trailerEntries) + " >>\nstartxref\n" + start + "\n%%EOF\n";
}

std::string documentOf(const std::vector<PageText>& pages, std::string_view inherited) {
    PdfBuilder builder;
    builder.add("<< /Type /Catalog /Pages 2 0 R >>");
    std::string kids;
    for (std::size_t i = 0; i < pages.size(); ++i) kids += std::to_string(3 + 2 * i) + " 0 R ";
    builder.add("<< /Type /Pages /Count " + std::to_string(pages.size()) + " /Kids [" + kids +
                "] " + std::string(inherited) + " >>");
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const std::string content = std::to_string(4 + 2 * i);
        builder.add("<< /Type /Page /Parent 2 0 R /Contents " + content + " 0 R " +
                    pages[i].entries + " >>");
        builder.addStream("", pages[i].content);
    }
    return builder.finish("/Root 1 0 R");
}

std::string encryptedDocument() {
    PdfBuilder builder;
    builder.add("<< /Type /Catalog /Pages 2 0 R >>");
    builder.add("<< /Type /Pages /Count 1 /Kids [3 0 R] >>");
    builder.add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] >>");
    const std::string key = "<" + std::string(64, '7') + ">";
    builder.add("<< /Filter /Standard /V 1 /R 2 /Length 40 /P -4 /O " + key + " /U " + key + " >>");
    return builder.finish("/Root 1 0 R /Encrypt 4 0 R /ID [<00> <00>]");
}

std::string endlessDocument() {
    PdfBuilder builder;
    builder.add("<< /Type /Catalog /Pages 2 0 R >>");
    builder.add("<< /Type /Pages /Count 1 /Kids [3 0 R] >>");
    builder.add(
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] /Contents 4 0 R"
        " /Resources << /XObject << /F 5 0 R >> >> >>");
    builder.addStream("", "/F Do");
    std::string drawNext;
    for (int i = 0; i < 50; ++i) drawNext += "/F Do ";
    for (int next = 6; next <= 10; ++next) {
        builder.addStream(
            "/Type /XObject /Subtype /Form /BBox [0 0 100 100] /Resources"
            " << /XObject << /F " +
                std::to_string(next) + " 0 R >> >>",
            drawNext);
    }
    builder.addStream("/Type /XObject /Subtype /Form /BBox [0 0 100 100]", "0 0 90 90 re f");
    return builder.finish("/Root 1 0 R");
}

std::string annotatedDocument(const std::string& subtype, const std::string& flags) {
    PdfBuilder builder;
    builder.add("<< /Type /Catalog /Pages 2 0 R >>");
    builder.add("<< /Type /Pages /Count 1 /Kids [3 0 R] >>");
    builder.add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] /Annots [4 0 R] >>");
    builder.add("<< /Type /Annot /Subtype /" + subtype + " /Rect [0 0 10 10] " + flags +
                " /AP << /N 5 0 R >> >>");
    builder.addStream("/Type /XObject /Subtype /Form /BBox [0 0 10 10]", "0 0 10 10 re f");
    return builder.finish("/Root 1 0 R");
}

platform::Url DocumentFolder::write(std::string_view name, std::string_view bytes) const {
    std::ofstream file(path(name), std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("cannot write " + path(name).string());
    return platform::Url::fromPath(path(name).string());
}

std::string DocumentFolder::writeProgram(std::string_view name,
                                         std::string_view shellScript) const {
    write(name, "#!/bin/sh\n" + std::string(shellScript) + "\n");
    std::filesystem::permissions(path(name), std::filesystem::perms::owner_all);
    return path(name).string();
}

}  // namespace tavio::test
