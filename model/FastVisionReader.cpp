#include "model/FastVisionReader.h"

#include <simdjson.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "model/HeadKeys.h"
#include "model/MLData.h"

namespace fyn::productionrules {

namespace {

using simdjson::dom::array;
using simdjson::dom::element;
using simdjson::dom::element_type;
using simdjson::dom::object;

// Some hundred persons. The parser keeps memory of ten times the largest text it has read: one huge text must
// not cost that for the rest of the process.
constexpr std::size_t kLargestText = 256U << 10U;

/** Of a map with a single head. */
constexpr float kHeadsInOneBucket = 16;

constexpr std::array<std::string_view, 4> kSideKeys{"left", "top", "right", "bottom"};
enum SideKey : std::size_t { kLeft, kTop, kRight, kBottom };
constexpr std::array<std::string_view, 2> kPersonKeys{"fynId", "associatedHeads"};
enum PersonKey : std::size_t { kFynId, kAssociatedHeads };
constexpr std::array<std::string_view, 3> kResultKeys{"timestamp", "frameNumber", "heads"};
enum ResultKey : std::size_t { kTimestamp, kFrameNumber, kHeads };

// Hands each member with one of the keys to `read(position of the key, value)`; keys of the system's future
// are passed over. False when a key stands twice or `read` says so.
template <std::size_t N, typename Read>
bool readMembers(element value, const std::array<std::string_view, N>& keys, Read&& read) {
  object members;
  if (value.get(members) != simdjson::SUCCESS) {
    return false;
  }
  std::array<bool, N> seen{};
  std::size_t next = 0;  // A pipeline writes the keys in the same order each time.
  for (const auto [key, member] : members) {
    for (std::size_t tried = 0; tried < N; ++tried) {
      const std::size_t position = next;
      next = next + 1 < N ? next + 1 : 0;
      if (keys[position] != key) {
        continue;
      }
      if (seen[position] || !read(position, member)) {
        return false;
      }
      seen[position] = true;
      break;
    }
  }
  return true;
}

template <typename Integer>
bool readInteger(element value, Integer& integer) {
  if (value.type() != element_type::INT64) {
    return false;
  }
  // The low 32 bits of a larger number, as everywhere in incoming documents.
  integer = static_cast<Integer>(value.get_int64().value_unsafe());
  return true;
}

bool readNumber(element value, double& number) {
  return (value.type() == element_type::INT64 || value.type() == element_type::DOUBLE) &&
         value.get(number) == simdjson::SUCCESS;
}

bool readFloat(element value, float& number) {
  if (value.type() == element_type::INT64) {
    number = static_cast<float>(value.get_int64().value_unsafe());
    return true;
  }
  double wide = 0;
  if (!readNumber(value, wide) || std::abs(wide) > std::numeric_limits<float>::max()) {
    return false;
  }
  number = static_cast<float>(wide);
  return true;
}

bool readIds(element value, std::vector<std::int32_t>& ids) {
  array list;
  if (value.get(list) != simdjson::SUCCESS) {
    return false;
  }
  ids.reserve(list.size());
  for (const element id : list) {
    if (!readInteger(id, ids.emplace_back())) {
      return false;
    }
  }
  return true;
}

bool readRect(element value, Rect& rect) {
  std::size_t count = 0;
  const bool isUsual = readMembers(value, kSideKeys, [&](std::size_t key, element side) {
    ++count;
    const std::array<std::int32_t*, kSideKeys.size()> sides{&rect.left, &rect.top, &rect.right, &rect.bottom};
    return readInteger(side, *sides[key]);
  });
  return isUsual && count == kSideKeys.size();
}

bool readHead(element value, Head& head) {
  bool isOfThisSystem = false;
  std::uint32_t qfactor = head.qfactor;
  const bool isUsual = readMembers(value, kHeadKeys, [&](std::size_t key, element member) {
    switch (key) {
      case kBbox:
        return readRect(member, head.bbox);
      case kCamId:
        return readInteger(member, head.camId);
      case kExplicitGroup:
        return readIds(member, head.explicitGroup);
      case kExtendedGroup:
        return readIds(member, head.extendedGroup);
      case kFynCamId:
        isOfThisSystem = true;
        return readInteger(member, head.fynCamId);
      case kId:
        return readInteger(member, head.id);
      case kIsSpeaker:
        return member.get(head.isSpeaker) == simdjson::SUCCESS;
      case kPitch:
        return readInteger(member, head.pitch);
      case kProximityGroup:
        return readIds(member, head.proximityGroup);
      case kQfactor:
        return readInteger(member, qfactor);
      case kScore:
        return readNumber(member, head.score);
      case kSsb:
        return readRect(member, head.ssb);
      case kSubsetSpeakers:
        return readIds(member, head.subsetSpeakers);
      case kYaw:
        return readFloat(member, head.yaw);
      default:
        return false;
    }
  });
  if (!isOfThisSystem) {
    head.qfactor = qfactor;
  }
  return isUsual;
}

// `first` serves as the person's first head: nearly all have no other.
bool readHeads(element value, const std::shared_ptr<Head>& first, FynHead& person) {
  array heads;
  if (value.get(heads) != simdjson::SUCCESS) {
    return false;
  }
  if (heads.size() == 1) {
    // A table for a dozen heads would be made for the first, but for this.
    person.mCamIdAssocHeadMap.max_load_factor(kHeadsInOneBucket);
  }
  for (const element seen : heads) {
    auto head = person.mCamIdAssocHeadMap.empty() ? first : std::make_shared<Head>();
    if (!readHead(seen, *head)) {
      return false;
    }
    person.mCamIdAssocHeadMap.emplace(static_cast<std::uint32_t>(head->camId), std::move(head));
  }
  return !person.mCamIdAssocHeadMap.empty();
}

bool readPerson(element value, const std::shared_ptr<Head>& first, FynHead& person) {
  const bool isUsual = readMembers(value, kPersonKeys, [&](std::size_t key, element member) {
    return key == kFynId ? readInteger(member, person.id) : readHeads(member, first, person);
  });
  if (!isUsual || person.id < 0 || person.mCamIdAssocHeadMap.empty()) {
    return false;
  }
  person.updateFeedPriorityList();
  return true;
}

bool readPersons(element value, std::vector<std::shared_ptr<FynHead>>& result) {
  array list;
  if (value.get(list) != simdjson::SUCCESS) {
    return false;
  }
  // Two blocks instead of two allocations a person; they live as long as anybody in them is known.
  const auto persons = std::make_shared<std::vector<FynHead>>(list.size());
  const auto heads = std::make_shared<std::vector<Head>>(list.size());
  result.reserve(list.size());
  for (const element element : list) {
    const std::size_t index = result.size();
    if (index == persons->size() || !readPerson(element, {heads, &(*heads)[index]}, (*persons)[index])) {
      return false;
    }
    result.emplace_back(persons, &(*persons)[index]);
  }
  return true;
}

}  // namespace

struct FastVisionReader::Parser {
  simdjson::dom::parser parser{kLargestText};
};

FastVisionReader::FastVisionReader() : mParser(std::make_unique<Parser>()) {}

FastVisionReader::~FastVisionReader() = default;

bool FastVisionReader::isBuilt() {
  return true;
}

std::shared_ptr<MLData> FastVisionReader::read(const std::string& text) {
  element document;
  if (mParser->parser.parse(text).get(document) != simdjson::SUCCESS) {
    return nullptr;
  }
  auto result = std::make_shared<MLData>();
  bool hasHeads = false;
  const bool isUsual = readMembers(document, kResultKeys, [&](std::size_t key, element member) {
    switch (key) {
      case kTimestamp:
        return readInteger(member, result->timestamp);
      case kFrameNumber:
        return readInteger(member, result->frameNumber);
      default:
        hasHeads = true;
        return readPersons(member, result->heads);
    }
  });
  return isUsual && hasHeads ? result : nullptr;
}

}  // namespace fyn::productionrules
