// decode_once PHOTO.jpg: decodes a JPEG file to red, green, blue and alpha, each row into the same
// memory, and does nothing else. Every program that prints the file has to do this much.
#include <cstdio>
#include <vector>

// Needs FILE declared before it.
#include <jpeglib.h>

int main(int argc, char** argv) {
    std::FILE* file = argc == 2 ? std::fopen(argv[1], "rb") : nullptr;
    if (file == nullptr) {
        std::fputs("usage: decode_once PHOTO.jpg\n", stderr);
        return 2;
    }
    jpeg_decompress_struct decoder{};
    jpeg_error_mgr errors{};
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_stdio_src(&decoder, file);
    jpeg_read_header(&decoder, TRUE);
    decoder.out_color_space = JCS_EXT_RGBA;
    jpeg_start_decompress(&decoder);
    std::vector<JSAMPLE> row(std::size_t{decoder.output_width} * 4);
    JSAMPROW samples = row.data();
    while (decoder.output_scanline < decoder.output_height)
        jpeg_read_scanlines(&decoder, &samples, 1);
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    std::fclose(file);
    return 0;
}
