#include "layouts/people/SplitPersons.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "geometry/Overlap.h"
#include "geometry/RectMath.h"
#include "layouts/people/KnownPlaces.h"
#include "layouts/people/MissedHeads.h"
#include "model/FynCamerasConfig.h"

namespace fyn::productionrules {

namespace {

// For how long a camera's place of somebody whom only others see is known.
constexpr std::uint32_t kRememberedMs = 10000;
// A number that has not been seen for so long will not come back.
constexpr std::uint32_t kNumberMs = 60000;

// Boxes where nobody is have any size.
constexpr double kOneSize = 1.25;

bool isOfOneCamera(const MLData& data) {
  const auto& persons = data.getHeads();
  const auto hasOneHead = [](const auto& person) { return person->mCamIdAssocHeadMap.size() == 1; };
  const auto cameraOf = [](const auto& person) { return person->mCamIdAssocHeadMap.begin()->first; };
  return std::all_of(persons.begin(), persons.end(), [&](const auto& person) {
    return hasOneHead(person) && cameraOf(person) == cameraOf(persons.front());
  });
}

bool areOfOneSize(const Rect& a, const Rect& b) {
  return std::max(heightOf(a), heightOf(b)) <= kOneSize * std::min(heightOf(a), heightOf(b));
}

// Through the sides of an image people leave.
std::uint32_t holdMs(std::uint32_t camId, const Rect& head) {
  const double border = kSideBorder * widthOf(head);
  const Dimension image = getCameraLensModelDimension(static_cast<int>(camId));
  return head.left < border || head.right > image.width - border ? kMissedAtBorderMs : kMissedMs;
}

bool shareACamera(const std::unordered_map<std::uint32_t, std::shared_ptr<Head>>& heads,
                  const FynHead& number) {
  return std::any_of(number.mCamIdAssocHeadMap.begin(), number.mCamIdAssocHeadMap.end(),
                     [&](const auto& head) { return heads.count(head.first) != 0; });
}

}  // namespace

std::shared_ptr<MLData> SplitPersons::rejoin(const std::shared_ptr<MLData>& data, std::uint32_t now,
                                             std::vector<PersonRenamed>& renamed) {
  if (mPersons.empty() && isOfOneCamera(*data)) {
    return data;
  }
  assign(*data, now);
  holdMissed(now);
  std::shared_ptr<MLData> result = isRejoining() ? rejoined(*data) : data;
  remember(now, renamed);
  return result;
}

// Old numbers first: whoever has one keeps it.
void SplitPersons::assign(const MLData& data, std::uint32_t now) {
  std::vector<const FynHead*> further;
  std::vector<const FynHead*> unknown;
  std::set<std::int32_t> numbers;
  for (const std::shared_ptr<FynHead>& number : data.getHeads()) {
    if (!numbers.insert(number->id).second) {
      continue;
    }
    const auto known = mPersons.find(number->id);
    if (known != mPersons.end()) {
      known->second.heads = number->mCamIdAssocHeadMap;
    } else {
      (mFurther.count(number->id) != 0 ? further : unknown).push_back(number.get());
    }
  }
  for (const FynHead* const number : further) {
    FurtherNumber& known = mFurther.at(number->id);
    known.seenAt = now;
    Person& person = mPersons.at(known.person);
    if (shareACamera(person.heads, *number)) {
      mFurther.erase(number->id);
      mPersons[number->id].heads = number->mCamIdAssocHeadMap;
    } else {
      person.heads.insert(number->mCamIdAssocHeadMap.begin(), number->mCamIdAssocHeadMap.end());
      person.isRejoined = true;
    }
  }
  for (const FynHead* const number : unknown) {
    Person* const lost = findLost(*number, now);
    Person& person = lost != nullptr ? *lost : mPersons[number->id];
    person.heads.insert(number->mCamIdAssocHeadMap.begin(), number->mCamIdAssocHeadMap.end());
    person.isRejoined = lost != nullptr;
  }
}

// Null for a newcomer.
SplitPersons::Person* SplitPersons::findLost(const FynHead& number, std::uint32_t now) {
  Person* best = nullptr;
  double most = kSamePlace;
  for (auto& [id, person] : mPersons) {
    const auto isOfLate = [now](const auto& sight) { return now - sight.second.at <= kMissedMs; };
    if (person.sights.size() < 2 || shareACamera(person.heads, number) ||
        std::none_of(person.sights.begin(), person.sights.end(), isOfLate)) {
      continue;
    }
    for (const auto& [camId, head] : number.mCamIdAssocHeadMap) {
      const auto sight = person.sights.find(camId);
      if (sight == person.sights.end() || now - sight->second.at > kRememberedMs) {
        continue;
      }
      const Rect& place = sight->second.head->bbox;
      const double overlap = getIntersectionOverUnion(place, head->bbox);
      if (overlap >= most && areOfOneSize(place, head->bbox)) {
        most = overlap;
        best = &person;
        mFurther[number.id] = {id, now};
      }
    }
  }
  return best;
}

// Whom one camera misses for a moment stays where that camera has seen the head last: the picture would go
// over to another one and back.
void SplitPersons::holdMissed(std::uint32_t now) {
  for (auto& [id, person] : mPersons) {
    if (person.heads.empty()) {
      continue;
    }
    for (const auto& [camId, sight] : person.sights) {
      if (now - sight.at > holdMs(camId, sight.head->bbox) || person.heads.count(camId) != 0) {
        continue;
      }
      auto held = std::make_shared<Head>(*sight.head);
      held->isSpeaker = false;
      person.held[camId] = std::move(held);
    }
  }
}

bool SplitPersons::isRejoining() const {
  return std::any_of(mPersons.begin(), mPersons.end(), [](const auto& person) {
    return person.second.isRejoined || !person.second.held.empty();
  });
}

std::shared_ptr<MLData> SplitPersons::rejoined(const MLData& data) {
  std::vector<std::shared_ptr<FynHead>> persons;
  std::set<std::int32_t> known;
  for (const std::shared_ptr<FynHead>& number : data.getHeads()) {
    const auto further = mFurther.find(number->id);
    const std::int32_t id = further != mFurther.end() ? further->second.person : number->id;
    const Person& person = mPersons.at(id);
    if (!known.insert(id).second) {
      continue;
    }
    if (!person.isRejoined && person.held.empty()) {
      persons.push_back(number);
      continue;
    }
    auto whole = std::make_shared<FynHead>();
    whole->id = id;
    whole->mCamIdAssocHeadMap = person.heads;
    whole->mCamIdAssocHeadMap.insert(person.held.begin(), person.held.end());
    whole->updateFeedPriorityList();
    persons.push_back(std::move(whole));
  }
  auto result = std::make_shared<MLData>();
  result->timestamp = data.timestamp;
  result->frameNumber = data.frameNumber;
  result->setHeads(persons);
  return result;
}

void SplitPersons::remember(std::uint32_t now, std::vector<PersonRenamed>& renamed) {
  for (auto each = mPersons.begin(); each != mPersons.end();) {
    Person& person = each->second;
    for (const auto& [camId, head] : person.heads) {
      Sight& sight = person.sights[camId];
      if (sight.head != nullptr && sight.head->id != head->id && now - sight.at <= kMissedMs) {
        const auto of = [id = each->first, camera = camId](const std::shared_ptr<Head>& seen) {
          auto part = std::make_shared<FynHead>();
          part->id = id;
          part->mCamIdAssocHeadMap[camera] = seen;
          return part;
        };
        renamed.push_back({of(sight.head), of(head)});
      }
      sight = {head, now};
    }
    person.heads.clear();
    person.held.clear();
    person.isRejoined = false;
    const bool isGone = std::all_of(person.sights.begin(), person.sights.end(),
                                    [now](const auto& sight) { return now - sight.second.at > kMissedMs; });
    each = isGone ? mPersons.erase(each) : std::next(each);
  }
  for (auto number = mFurther.begin(); number != mFurther.end();) {
    const bool isGone = mPersons.count(number->second.person) == 0 || now - number->second.seenAt > kNumberMs;
    number = isGone ? mFurther.erase(number) : std::next(number);
  }
}

}  // namespace fyn::productionrules
