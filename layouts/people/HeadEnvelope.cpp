#include "layouts/people/HeadEnvelope.h"

#include <algorithm>

#include "geometry/RectMath.h"

namespace fyn::productionrules {

namespace {

constexpr std::uint32_t kEnvelopeMs = 6000;
constexpr std::uint32_t kPartMs = 500;

}  // namespace

void HeadEnvelope::add(std::uint32_t now, std::uint32_t camId, const Rect& box) {
  if (camId != mCamId) {
    mParts.clear();
    mCamId = camId;
  }
  mLatest = now;
  if (mParts.empty() || now - mParts.back().from >= kPartMs) {
    mParts.push_back({now, box});
  } else {
    mParts.back().box = enclosing(mParts.back().box, box);
  }
  // One part more than the time, so that it is covered whole.
  const auto isNeeded = [now](const Part& part) { return now - part.from <= kEnvelopeMs + kPartMs; };
  mParts.erase(mParts.begin(), std::find_if(mParts.begin(), mParts.end(), isNeeded));
}

bool HeadEnvelope::isKnown() const {
  return !mParts.empty() && mLatest - mParts.front().from >= kEnvelopeMs;
}

bool HeadEnvelope::addCorners(std::vector<Rect>& heads) const {
  if (heads.empty() || !isKnown()) {
    return false;
  }
  Rect box = mParts.front().box;
  for (const Part& part : mParts) {
    box = enclosing(box, part.box);
  }
  std::int32_t width = 0;
  std::int32_t height = 0;
  for (const Rect& head : heads) {
    width = std::max(width, widthOf(head));
    height = std::max(height, heightOf(head));
  }
  width = std::min(width, widthOf(box));
  height = std::min(height, heightOf(box));
  heads.push_back({box.left, box.top, wrapAdd(box.left, width), wrapAdd(box.top, height)});
  heads.push_back({wrapSub(box.right, width), wrapSub(box.bottom, height), box.right, box.bottom});
  return true;
}

}  // namespace fyn::productionrules
