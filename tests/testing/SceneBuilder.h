#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "model/MLData.h"

namespace fyn::productionrules::testing {

/**
 * One vision result written as a sentence: `scene().person(1).at(400, 300).speaking().person(2).at(900,
 * 300)`.
 *
 * `person` begins a person, who is seen by camera 0 until `camera` says otherwise; `camera` again adds a head
 * of the same person in another camera. Everything else describes the latest head. Heads are 100 x 120 pixels
 * and carry the person's id as head id unless said otherwise.
 */
class Scene {
 public:
  static constexpr std::int32_t kHeadWidth = 100;
  static constexpr std::int32_t kHeadHeight = 120;

  Scene& person(std::int32_t id);

  /** The camera of this head, or, when it has a box already, a further head in that camera. */
  Scene& camera(std::int32_t camId);

  /** Centre of the head, in pixels of its camera; the size stays. */
  Scene& at(std::int32_t x, std::int32_t y);

  /** Width and height of the head in pixels; the centre stays. */
  Scene& sized(std::int32_t width, std::int32_t height);

  /** The head's box as it is, also an empty or inverted one. */
  Scene& box(const Rect& rect);

  /** The selection box for speaker framing. */
  Scene& ssb(const Rect& rect);

  Scene& speaking(bool speaks = true);

  /** Degrees of head turn: of two cameras with the same rank, the smaller one sees the person better. */
  Scene& yaw(double degrees);

  /** Rank of the view, smaller is better. */
  Scene& qfactor(std::uint32_t rank);

  Scene& headId(std::int64_t id);

  Scene& frameNumber(std::int64_t number);

  /** The same scene with the persons in the opposite order. */
  Scene reversed() const;

  /** The vision document. */
  nlohmann::json json() const;

  /** The vision document as the compact text that the bus carries. */
  std::string text() const;

  /** The vision result as an engine gets it: read from the document. */
  std::shared_ptr<MLData> mlData() const;

 private:
  struct HeadEntry {
    std::int32_t camId = 0;
    std::int64_t id = 0;
    Rect box;
    Rect selectionBox;
    bool placed = false;
    bool speaks = false;
    double yaw = 10.0;
    std::uint32_t rank = 1;
  };
  struct PersonEntry {
    std::int32_t id = 0;
    std::vector<HeadEntry> heads;
  };

  HeadEntry& head() { return mPersons.back().heads.back(); }

  std::int64_t mFrameNumber = 0;
  std::vector<PersonEntry> mPersons;
};

/** An empty room, to begin the sentence. */
inline Scene scene() {
  return {};
}

}  // namespace fyn::productionrules::testing
