// Speed of the image formats, in pixels a second, on the picture that is named.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "image/img_reduce.h"
#include "image/zavimg.h"

namespace {

using namespace zav;

IMG_report picture;

using Writer = int (*)(const std::string& filename, IMG_report* image);

void count_pixels(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * picture.width * picture.height);
}

void write_picture(benchmark::State& state, Writer write) {
    for (auto _ : state) {
        IMG_report image = picture;  // GIF changes it
        if (write("/dev/null", &image) <= 0) {
            state.SkipWithError("the picture can't be written");
            break;
        }
    }
    count_pixels(state);
}

void read_picture(benchmark::State& state, Writer write) {
    const std::string file = "bench_image.tmp";
    IMG_report image = picture;
    if (write(file, &image) <= 0) {
        state.SkipWithError("the picture can't be written");
        return;
    }
    for (auto _ : state) {
        IMG_report again;
        if (IMG_read(file, &again, 0) <= 0) {
            state.SkipWithError("the picture can't be read");
            break;
        }
    }
    std::remove(file.c_str());
    count_pixels(state);
}

void reduce_colors(benchmark::State& state) {
    IMG_report many = picture;
    for (std::size_t i = 0; i < many.data.size(); ++i) many.data[i] = static_cast<unsigned char>(many.data[i] ^ i % 5);
    for (auto _ : state) {
        IMG_report image = many;
        img_reduce_colors(&image);
        benchmark::DoNotOptimize(image.data.data());
    }
    count_pixels(state);
}

int write_compressed(const std::string& filename, IMG_report* image) { return IMG_write(filename, image, 1); }

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc < 2 || IMG_read(argv[1], &picture, 0) <= 0) {
        std::fprintf(stderr, "usage: bench_image [benchmark options] PICTURE\n");
        return 2;
    }
    img_reduce_colors(&picture);
    struct Row {
        const char* name;
        Writer write;
    };
    for (const Row& row : {Row{"GIF", GIF_write}, Row{"PNG", PNG_write}, Row{"XWD", XWD_write},
                           Row{"native compressed", write_compressed}}) {
        benchmark::RegisterBenchmark((std::string("write ") + row.name).c_str(), write_picture, row.write);
        benchmark::RegisterBenchmark((std::string("read ") + row.name).c_str(), read_picture, row.write);
    }
    benchmark::RegisterBenchmark("reduce colors", reduce_colors);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
