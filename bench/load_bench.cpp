// Loading a 3000 x 500 frame: this program's reader beside CFITSIO on the same file.
#include <benchmark/benchmark.h>
#include <fitsio.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <vector>

#include "fits/fits_reader.h"
#include "fits/header.h"
#include "fits/pixel_codec.h"

namespace halmek {
namespace {

constexpr int columns = 3000;
constexpr int rows = 500;

// A frame of that pixel type with a plausible range of values, written once for both readers.
class FrameFile {
 public:
  explicit FrameFile(int type)
      : folder_(std::filesystem::temp_directory_path() / ("halmek-bench-" + std::to_string(getpid()))),
        name_("frame" + std::to_string(type) + ".fts") {
    std::filesystem::create_directories(folder_);
    FitsHeader header;
    AppendCard(header, NumberCard("SIMPLE", "T", " /"));
    AppendCard(header, NumberCard("BITPIX", std::to_string(type == 17 ? 16 : type), " /"));
    AppendCard(header, NumberCard("NAXIS", "2", " /"));
    AppendCard(header, NumberCard("NAXIS1", std::to_string(columns), " /"));
    AppendCard(header, NumberCard("NAXIS2", std::to_string(rows), " /"));
    if (type == 17)
      AppendCard(header, NumberCard("BZERO", "32768", " /"));
    std::string bytes = HeaderBytes(header);

    std::mt19937 random(1);
    std::vector<double> values(static_cast<size_t>(columns) * rows);
    for (double& value : values)
      value = static_cast<double>(400 + random() % 20000);
    const size_t start = bytes.size();
    bytes.resize(start + values.size() * static_cast<size_t>(BytesPerPixel(type)));
    const auto data = std::as_writable_bytes(std::span(bytes)).subspan(start);
    if (type == pixel_types::real64)
      PutReals64(values, data);
    else
      EncodePixels(type, values, data);
    bytes.resize((bytes.size() + recordLength - 1) / recordLength * recordLength, '\0');
    std::ofstream(path(), std::ios::binary) << bytes;
  }
  ~FrameFile() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  FrameFile(const FrameFile&) = delete;
  FrameFile& operator=(const FrameFile&) = delete;

  std::string folder() const { return folder_.string(); }
  std::string name() const { return name_; }
  std::string path() const { return (folder_ / name_).string(); }

 private:
  // The program itself does not write this type.
  static void PutReals64(const std::vector<double>& values, std::span<std::byte> bytes) {
    for (size_t i = 0; i < values.size(); ++i) {
      std::byte* const pixel = bytes.data() + 8 * i;
      std::copy_n(reinterpret_cast<const std::byte*>(&values[i]), 8, pixel);
      std::reverse(pixel, pixel + 8);
    }
  }

  std::filesystem::path folder_;
  std::string name_;
};

void LoadByHalmek(benchmark::State& state, int type) {
  const FrameFile file(type);
  const auto session = std::make_unique<Session>();
  session->dataFolder = file.folder();
  for (auto _ : state) {
    LoadFits2D(*session, file.name());
    benchmark::DoNotOptimize(session->imageMax);
  }
}

void LoadByCfitsio(benchmark::State& state, int type) {
  const FrameFile file(type);
  std::vector<double> image(static_cast<size_t>(columns) * rows);
  for (auto _ : state) {
    fitsfile* fits = nullptr;
    int status = 0;
    fits_open_file(&fits, file.path().c_str(), READONLY, &status);
    fits_read_img(fits, TDOUBLE, 1, static_cast<LONGLONG>(image.size()), nullptr, image.data(), nullptr,
                  &status);
    fits_close_file(fits, &status);
    if (status != 0)
      state.SkipWithError("CFITSIO failed");
    const auto range = std::minmax_element(image.begin(), image.end());
    benchmark::DoNotOptimize(*range.second);
  }
}

const bool registered = [] {
  for (int type : {16, 17, 32, -32, -64}) {
    const std::string name = std::to_string(type);
    benchmark::RegisterBenchmark(("LoadFits2D/halmek/" + name).c_str(), LoadByHalmek, type)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("LoadFits2D/cfitsio/" + name).c_str(), LoadByCfitsio, type)
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
}  // namespace halmek
