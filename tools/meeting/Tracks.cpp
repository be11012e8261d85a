#include "tools/meeting/Tracks.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "tools/meeting/CsvReader.h"

namespace fyn::productionrules {

namespace {

constexpr std::int64_t kLastPerson = std::numeric_limits<std::int32_t>::max();
/** Far outside any image, and sums of a few of them stay within 32 bits. */
constexpr std::int64_t kFarthestPixel = 1'000'000;
constexpr std::int64_t kLargestImage = 65535;

std::optional<Dimension> imageSizeIn(const std::vector<std::string>& comments) {
  constexpr std::string_view kWord = "image ";
  for (const std::string& comment : comments) {
    if (comment.compare(0, kWord.size(), kWord) == 0) {
      const std::string_view rest = std::string_view(comment).substr(kWord.size());
      if (const auto size = parseImageSize(rest.substr(0, rest.find_first_of(", ")))) {
        return size;
      }
    }
  }
  return std::nullopt;
}

std::int32_t pixel(const CsvReader& rows, std::size_t column) {
  return static_cast<std::int32_t>(rows.integer(column, -kFarthestPixel, kFarthestPixel));
}

std::vector<TrackedHead>::iterator findPerson(std::vector<TrackedHead>& heads, std::int32_t person) {
  return std::lower_bound(heads.begin(), heads.end(), person,
                          [](const TrackedHead& head, std::int32_t id) { return head.person < id; });
}

}  // namespace

std::optional<Dimension> parseImageSize(std::string_view text) {
  std::int64_t width = 0;
  std::int64_t height = 0;
  const char* const end = text.data() + text.size();
  const auto first = std::from_chars(text.data(), end, width);
  if (first.ec != std::errc() || first.ptr == end || *first.ptr != 'x') {
    return std::nullopt;
  }
  const auto second = std::from_chars(first.ptr + 1, end, height);
  if (second.ec != std::errc() || second.ptr != end || width < 1 || height < 1 || width > kLargestImage ||
      height > kLargestImage) {
    return std::nullopt;
  }
  return Dimension{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)};
}

CameraTracks readTracks(std::istream& input, const std::string& name,
                        std::optional<Dimension> fallbackImage) {
  CsvReader rows(input, name, {"t_ms", "person_id", "left", "top", "right", "bottom"});
  CameraTracks tracks;
  tracks.name = name;
  while (rows.next()) {
    const std::int64_t time = rows.integer(0, 0, kLongestRecordingMs);
    TrackedHead head;
    head.person = static_cast<std::int32_t>(rows.integer(1, 0, kLastPerson));
    head.box = {pixel(rows, 2), pixel(rows, 3), pixel(rows, 4), pixel(rows, 5)};
    if (head.box.left >= head.box.right || head.box.top >= head.box.bottom) {
      rows.fail("the box is empty: left must be less than right, top less than bottom");
    }
    std::vector<TrackedHead>& heads = tracks.frames[time];
    const auto position = findPerson(heads, head.person);
    if (position != heads.end() && position->person == head.person) {
      rows.fail("person " + std::to_string(head.person) + " stands twice at " + std::to_string(time) + " ms");
    }
    heads.insert(position, head);
  }
  if (tracks.frames.empty()) {
    rows.fail("there are no rows");
  }
  const std::optional<Dimension> image = imageSizeIn(rows.comments());
  if (!image && !fallbackImage) {
    rows.fail("no comment '# image WxH' tells the image size; give it with --image WxH");
  }
  tracks.image = image ? *image : *fallbackImage;
  return tracks;
}

void addPoses(std::istream& input, const std::string& name, CameraTracks& tracks) {
  CsvReader rows(input, name, {"t_ms", "person_id", "yaw_deg", "pitch_deg"});
  while (rows.next()) {
    const std::int64_t time = rows.integer(0, 0, kLongestRecordingMs);
    const auto person = static_cast<std::int32_t>(rows.integer(1, 0, kLastPerson));
    const auto frame = tracks.frames.find(time);
    const auto head = frame == tracks.frames.end() ? std::vector<TrackedHead>::iterator()
                                                   : findPerson(frame->second, person);
    if (frame == tracks.frames.end() || head == frame->second.end() || head->person != person) {
      rows.fail("person " + std::to_string(person) + " has no box at " + std::to_string(time) + " ms in " +
                tracks.name);
    }
    head->yaw = rows.number(2);
    head->pitch = rows.number(3);
  }
}

std::int64_t frameInterval(const CameraTracks& tracks) {
  std::vector<std::int64_t> intervals;
  for (auto frame = tracks.frames.begin(); frame != tracks.frames.end(); ++frame) {
    const auto following = std::next(frame);
    if (following != tracks.frames.end()) {
      intervals.push_back(following->first - frame->first);
    }
  }
  if (intervals.empty()) {
    return 0;
  }
  const auto middle = intervals.begin() + static_cast<std::ptrdiff_t>(intervals.size() / 2);
  std::nth_element(intervals.begin(), middle, intervals.end());
  return *middle;
}

}  // namespace fyn::productionrules
