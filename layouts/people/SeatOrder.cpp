#include "layouts/people/SeatOrder.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "geometry/RectMath.h"
#include "layouts/people/HeadsInView.h"

namespace fyn::productionrules {

namespace {

// Heads that two cameras have in common say how large one camera's distances are in the other only where they
// lie apart: the sum of squared distances from their mean, in square pixels (two heads 100 pixels apart).
constexpr double kApart = 5000;
constexpr double kLeastScale = 0.5;
constexpr double kMostScale = 2;

// Two heads are at one place when they are this close, of the larger one's height, and so much alike in size.
constexpr double kOnePlace = 0.5;
constexpr double kOneSize = 1.3;

double middleOf(const Head& head) {
  return (double{1} * head.bbox.left + head.bbox.right) / 2;
}

/** Where a head is, or would be, in the picture of one camera, in its pixels. */
struct Place {
  double middle = 0;
  double top = 0;
  double height = 0;
};

/** From one camera's picture to another's, by the heads of those whom both see: the line of least squares. */
class CameraMapping {
 public:
  CameraMapping(const MLData& data, const HeadsInView& from, const HeadsInView& to) {
    double sumX = 0;
    double sumY = 0;
    double sumXX = 0;
    double sumXY = 0;
    double topThere = 0;
    double topHere = 0;
    for (const std::shared_ptr<FynHead>& person : data.getHeads()) {
      const Head* const there = from.find(*person);
      const Head* const here = to.find(*person);
      if (there == nullptr || here == nullptr) {
        continue;
      }
      const double x = middleOf(*there);
      const double y = middleOf(*here);
      ++mCommon;
      sumX += x;
      sumY += y;
      sumXX += x * x;
      sumXY += x * y;
      topThere += there->bbox.top;
      topHere += here->bbox.top;
    }
    if (mCommon == 0) {
      return;
    }
    const double spread = sumXX - sumX * sumX / mCommon;
    if (spread > kApart) {
      const double scale = (sumXY - sumX * sumY / mCommon) / spread;
      mScale = std::clamp(scale, kLeastScale, kMostScale);
      mIsSure = scale == mScale;
      mIsOpposite = scale < 0;
    }
    mOffset = (sumY - mScale * sumX) / mCommon;
    mDown = (topHere - mScale * topThere) / mCommon;
  }

  bool isKnown() const { return mCommon > 0 && !mIsOpposite; }
  /** Whether a place can be told from the one beside it. */
  bool isSure() const { return mIsSure; }

  Place placeOf(const Head& head) const {
    return {mScale * middleOf(head) + mOffset, mScale * head.bbox.top + mDown, mScale * heightOf(head.bbox)};
  }

 private:
  int mCommon = 0;
  bool mIsSure = false;
  bool mIsOpposite = false;
  double mScale = 1;
  double mOffset = 0;
  double mDown = 0;
};

struct PlacedSeat {
  Seat seat;
  /** Nothing where nobody is in common. */
  std::optional<Place> place;
  /** By the camera itself. */
  bool isSeen = false;
  bool isSure = false;
};

bool isBefore(const PlacedSeat& a, const PlacedSeat& b) {
  if (!a.place || !b.place) {
    return a.place.has_value() && !b.place.has_value();
  }
  return a.place->middle < b.place->middle;
}

bool shareACamera(const FynHead& a, const FynHead& b) {
  return std::any_of(a.mCamIdAssocHeadMap.begin(), a.mCamIdAssocHeadMap.end(),
                     [&](const auto& entry) { return b.mCamIdAssocHeadMap.count(entry.first) != 0; });
}

bool areOnePlace(const Place& a, const Place& b) {
  const double size = std::max(a.height, b.height);
  return std::abs(a.middle - b.middle) < kOnePlace * size && std::abs(a.top - b.top) < kOnePlace * size &&
         size < kOneSize * std::min(a.height, b.height);
}

bool areOnePerson(const PlacedSeat& a, const PlacedSeat& b) {
  return a.isSure && b.isSure && (a.isSeen || b.isSeen) && areOnePlace(*a.place, *b.place) &&
         !shareACamera(*a.seat.person, *b.seat.person);
}

}  // namespace

std::vector<Seat> asSeatedFor(std::uint32_t camId, const MLData& data, std::vector<Seat> seats,
                              const Layout* current, const Layout* pending) {
  if (std::all_of(seats.begin(), seats.end(), [&](const Seat& seat) { return seat.camId == camId; })) {
    return seats;
  }
  const HeadsInView here = headsOfListedCamera(camId);
  std::map<std::uint32_t, CameraMapping> mappings;
  std::vector<PlacedSeat> placed;
  for (Seat& seat : seats) {
    PlacedSeat each;
    if (const Head* const seen = here.find(*seat.person)) {
      each.place = {middleOf(*seen), double{1} * seen->bbox.top, double{1} * heightOf(seen->bbox)};
      each.isSeen = each.isSure = true;
    } else {
      const CameraMapping& mapping =
          mappings.try_emplace(seat.camId, data, headsOfListedCamera(seat.camId), here).first->second;
      if (mapping.isKnown()) {
        each.place = mapping.placeOf(*seat.person->findHead(seat.camId));
        each.isSure = mapping.isSure();
      }
    }
    each.seat = std::move(seat);
    placed.push_back(std::move(each));
  }
  std::stable_sort(placed.begin(), placed.end(), isBefore);
  const auto rank = [&](const Seat& seat) {
    return std::make_tuple(!cameraOfTile(current, *seat.person) && !cameraOfTile(pending, *seat.person),
                           seat.person->id);
  };
  std::vector<PlacedSeat> persons;
  for (PlacedSeat& each : placed) {
    const auto same = std::find_if(persons.begin(), persons.end(),
                                   [&](const PlacedSeat& other) { return areOnePerson(each, other); });
    if (same == persons.end()) {
      persons.push_back(std::move(each));
    } else if (rank(each.seat) < rank(same->seat)) {
      *same = std::move(each);
    }
  }
  seats.clear();
  for (PlacedSeat& each : persons) {
    seats.push_back(std::move(each.seat));
  }
  return seats;
}

}  // namespace fyn::productionrules
