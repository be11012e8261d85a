#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/video/camera/PipedSink.h"

namespace fyn::productionrules::video {

/**
 * Opens what a person names as the place of pictures: "none", "window", or what `writerCommand` takes. Raises
 * UsageError when it cannot be used, as a window without a display.
 */
std::unique_ptr<PictureSink> openTarget(const std::string& target, const VideoFormat& format);

/**
 * The place of the pictures of a stream: the one at its position; for later streams the last of `targets`
 * with the stream's number in its name, when it is a file or a window. Empty when there is none.
 */
std::string targetOfStream(const std::vector<std::string>& targets, std::size_t stream);

/** What `WIDTHxHEIGHT` names; raises UsageError for a size that pictures cannot have. */
cv::Size outputSizeOf(const std::string& text);

/** Whether every picture counts there, also a late one. */
bool keepsEveryPicture(const std::string& target);

}  // namespace fyn::productionrules::video
