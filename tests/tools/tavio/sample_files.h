// Small documents, made by the byte.
#pragma once

#include <cstdint>
#include <string>

namespace tavio::test {

// A BMP file of 24 bits per pixel in one shade of grey, 0 black to 255 white.
std::string greyBmp(std::uint32_t width, std::uint32_t height, std::uint8_t shade = 0);

// A BMP file of 8 x 16 pixels, the last one of which has a colour that the palette does not have.
std::string badIndexBmp();

// A PDF document whose pages have this size in points and show a black rectangle over their left
// half.
std::string pdf(double width, double height, int pages = 1);

// A PDF document with an unknown password.
std::string encryptedPdf();

// A PNG file cut off in its header.
std::string brokenPng();

}  // namespace tavio::test
