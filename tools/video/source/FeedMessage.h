#pragma once

#include <sys/un.h>

#include <cstdint>
#include <string>

namespace fyn::productionrules::video {

/** A frame on a feed's socket: this, then for each camera a `FedPicture` and the rows of its pixels. Both
 * programs are of one machine, so numbers are as it has them. */
struct FedHeader {
  std::uint32_t magic = 0x50524232;
  std::uint32_t cameras = 0;
  std::int64_t number = 0;
  std::int64_t ms = 0;
  std::uint32_t hasSound = 0;
  std::uint32_t isSpeech = 0;
};

struct FedPicture {
  std::int32_t width = 0;
  std::int32_t height = 0;
  /** Of the CameraInput. */
  double from = 0;
  double to = 1;
};

constexpr std::uint32_t kMostFedCameras = 16;
constexpr std::int32_t kLargestFedSide = 4096;

/** The address of a socket in the file system. Raises UsageError when the path is too long for one. */
sockaddr_un feedAddress(const std::string& path);

}  // namespace fyn::productionrules::video
