// image_convert FROM [TO]: reads an image file and writes it as GIF or PNG, by the ending of its name.

#include <cstdio>
#include <string>

#include "image/zavimg.h"

int main(int argc, char** argv) {
    using namespace zav;
    IMG_report image;
    if (argc < 2 || IMG_read(argv[1], &image, 0) <= 0) return 1;
    if (argc < 3) return 0;
    const std::string to = argv[2];
    return (to.ends_with(".gif") ? GIF_write(to, &image) : PNG_write(to, &image)) > 0 ? 0 : 1;
}
