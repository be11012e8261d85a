#include "tools/recording/TruthHandler.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace fyn::productionrules {

namespace {

/** The members of an entry, behind them those of its box. The order is that of kRows. */
enum Member : std::size_t { kId, kCamera, kBox, kSpeaks, kLeft, kTop, kRight, kBottom };

struct Row {
  const char* name;
  const char* kind;
};
constexpr std::array<Row, 8> kRows{{{"id", "an integer"},
                                    {"fynCamId", "an integer"},
                                    {"bbox", "an object"},
                                    {"speaks", "true or false"},
                                    {"left", "an integer"},
                                    {"top", "an integer"},
                                    {"right", "an integer"},
                                    {"bottom", "an integer"}}};

std::string nameOf(std::size_t member) {
  return std::string(1, '"') + kRows[member].name + '"';
}

}  // namespace

bool TruthHandler::fail(std::string fault) {
  mFault = "truth: " + std::move(fault);
  return false;
}

bool TruthHandler::wrongKind(const std::string& found) {
  return mDepth == 1 ? fail("an entry must be an object, not " + found)
                     : fail(nameOf(mMember) + " must be " + kRows[mMember].kind + ", not " + found);
}

bool TruthHandler::boolean(bool value) {
  if (mDepth != 2 || mMember != kSpeaks) {
    return wrongKind(value ? "true" : "false");
  }
  mValues[kSpeaks] = value ? 1 : 0;
  return true;
}

bool TruthHandler::number_integer(number_integer_t value) {
  if (mDepth == 1 || mMember == kBox || mMember == kSpeaks) {
    return wrongKind("a number");
  }
  using Limits = std::numeric_limits<std::int32_t>;
  if (value > Limits::max() || value < (mDepth == 2 ? 0 : Limits::min())) {
    return fail(nameOf(mMember) + " is out of range");
  }
  mValues[mMember] = static_cast<std::int32_t>(value);
  return true;
}

bool TruthHandler::number_unsigned(number_unsigned_t value) {
  constexpr number_unsigned_t kLargest = std::numeric_limits<number_integer_t>::max();
  return number_integer(static_cast<number_integer_t>(std::min(value, kLargest)));
}

bool TruthHandler::start_array(std::size_t /*size*/) {
  if (mDepth != 0) {
    return wrongKind("an array");
  }
  mDepth = 1;
  return true;
}

bool TruthHandler::start_object(std::size_t /*size*/) {
  if (mDepth == 1) {
    mSeen = {};
  } else if (mDepth != 2 || mMember != kBox) {
    return wrongKind("an object");
  }
  ++mDepth;
  return true;
}

bool TruthHandler::key(string_t& name) {
  const auto* const first = kRows.begin() + (mDepth == 2 ? kId : kLeft);
  const auto* const behind = kRows.begin() + (mDepth == 2 ? kLeft : kRows.size());
  const auto* const row =
      std::find_if(first, behind, [&name](const Row& known) { return name == known.name; });
  if (row == behind) {
    return fail("unknown key \"" + name.substr(0, 60) + '"');
  }
  mMember = static_cast<std::size_t>(row - kRows.begin());
  return !std::exchange(mSeen[mMember], true) || fail("key " + nameOf(mMember) + " stands twice");
}

bool TruthHandler::end_object() {
  if (mDepth-- == 3) {
    return isComplete(kLeft, kRows.size());
  }
  addHead();
  return isComplete(kId, kLeft);
}

bool TruthHandler::isComplete(std::size_t first, std::size_t behind) {
  for (std::size_t member = first; member < behind; ++member) {
    if (!mSeen[member]) {
      return fail(nameOf(member) + " is missing");
    }
  }
  return true;
}

void TruthHandler::addHead() {
  mHeads.push_back({mValues[kId],
                    mValues[kCamera],
                    {mValues[kLeft], mValues[kTop], mValues[kRight], mValues[kBottom]},
                    mValues[kSpeaks] != 0});
}

bool TruthHandler::end_array() {
  std::vector<std::pair<std::int32_t, std::int32_t>> places;
  for (const TrueHead& head : mHeads) {
    places.emplace_back(head.id, head.fynCamId);
  }
  std::sort(places.begin(), places.end());
  const auto twice = std::adjacent_find(places.begin(), places.end());
  return twice == places.end() || fail("person " + std::to_string(twice->first) + " stands twice in camera " +
                                       std::to_string(twice->second));
}

}  // namespace fyn::productionrules
