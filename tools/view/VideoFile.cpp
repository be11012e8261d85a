#include "tools/view/VideoFile.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>

#include "tools/base/FileFault.h"
#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

constexpr std::int64_t kPiece = 65'536;

struct VideoKind {
  std::string_view extension;
  const char* contentType;
};
/** Browsers look into files of other kinds themselves. */
constexpr std::array<VideoKind, 4> kKinds{
    {{".mp4", "video/mp4"}, {".m4v", "video/mp4"}, {".webm", "video/webm"}, {".mkv", "video/x-matroska"}}};

}  // namespace

VideoFile::VideoFile(const std::string& path)
    : mPath(path), mName(std::filesystem::path(path).filename().string()) {
  std::error_code error;
  // The opening of a pipe would wait for its other end.
  if (std::filesystem::is_other(path, error)) {
    throw UsageError(path + ": is no file, so a page cannot jump in it");
  }
  if (std::filesystem::is_directory(path, error) || !std::ifstream(path, std::ios::binary)) {
    cannotOpen(path, "reading");
  }
  mSize = static_cast<std::int64_t>(std::filesystem::file_size(path, error));
}

const char* VideoFile::contentType() const {
  const std::string extension = std::filesystem::path(mName).extension().string();
  const auto* const kind = std::find_if(kKinds.begin(), kKinds.end(),
                                        [&](const VideoKind& each) { return each.extension == extension; });
  return kind == kKinds.end() ? "application/octet-stream" : kind->contentType;
}

Pieces VideoFile::answer(const httplib::Request& request, httplib::Response& response) const {
  std::int64_t first = 0;
  std::int64_t end = mSize;
  response.set_header("Accept-Ranges", "bytes");
  if (request.ranges.size() == 1) {
    const auto [from, to] = request.ranges.front();
    first = from < 0 ? std::max<std::int64_t>(0, mSize - to) : from;
    end = from < 0 || to < 0 ? mSize : std::min<std::int64_t>(mSize, to + 1);
    if (first >= end) {
      response.status = 416;
      response.set_header("Content-Range", "bytes */" + std::to_string(mSize));
      return nullptr;
    }
    response.status = 206;
    response.set_header("Content-Range", "bytes " + std::to_string(first) + '-' + std::to_string(end - 1) +
                                             '/' + std::to_string(mSize));
  } else {
    response.status = 200;
  }
  const auto file = std::make_shared<std::ifstream>(mPath, std::ios::binary);
  file->seekg(first);
  return [file, left = end - first]() mutable -> std::optional<std::string> {
    std::string piece(static_cast<std::size_t>(std::min(left, kPiece)), '\0');
    file->read(piece.data(), static_cast<std::streamsize>(piece.size()));
    piece.resize(static_cast<std::size_t>(file->gcount()));
    left -= file->gcount();
    return piece.empty() ? std::nullopt : std::optional(std::move(piece));
  };
}

}  // namespace fyn::productionrules
