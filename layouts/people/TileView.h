#pragma once

#include <optional>
#include <vector>

#include "geometry/RuleOfThirds.h"
#include "model/Layout.h"

namespace fyn::productionrules {

/** What a view is grown to; 0 for as it is. In camera pixels. */
struct TileGrowth {
  double height = 0;
  double width = 0;
  /** And by how much it is higher then; 1 for not at all. */
  double factor = 1;

  friend bool operator==(const TileGrowth& a, const TileGrowth& b) {
    return a.height == b.height && a.width == b.width && a.factor == b.factor;
  }
};

/**
 * What a tile shows while it is made: the box around which its view is taken, changed step by step. A step
 * that asks too much of image or neighbours is taken in part or not at all. All in camera pixels; `own` is
 * the box of the heads that are meant, `others` are the heads that are not.
 */
class TileView {
 public:
  TileView(const Frame& tile, const Dimension& image, const Rect& box);

  const Rect& box() const { return mBox; }

  /** What the tile shows, made when it is first asked for. */
  const Rect& view();

  /** Whether all that it is made for is the same, and the box. */
  bool isSameAs(const TileView& other) const { return mBox == other.mBox && mRule == other.mRule; }

  /** Grows around the middle until the view is as high and wide, as far as the image allows. */
  void grow(const TileGrowth& growth);

  /** The same until the view is `height` high, as far as it then shows nothing of others of whom it shows
   * nothing as it is. */
  void growBeside(const std::vector<Rect>& others, double height);

  /**
   * Moves up or down until the middle of `own` is at 0.4 of the view's height, as in all tiles of a row: the
   * view does not become smaller by it, shows `own` whole and nothing more of others.
   */
  void bringEyesInLine(const Rect& own, const std::vector<Rect>& others);

  /** Moves to the side, by 0.15 of the view's width at most, when the view then shows nothing of others of
   * whose heads it would show a little at one side, and `own` whole. */
  void turnFrom(const std::vector<Rect>& others, const Rect& own);

  /** For a picture of its own, which has the room to be grown as well: the smallest change for a view that
   * cuts no other's head and shows `own` whole. */
  void standClearOf(const std::vector<Rect>& others, const Rect& own);

 private:
  void growToHeight(double least);

  /** Takes the view around `box` if it is good. */
  template <typename Condition>
  bool take(const Rect& box, Condition isGood);

  /** Of the tile, in the output. */
  Dimension mPlace;
  Dimension mImage;
  RuleOfThirds mRule;
  Rect mBox;
  /** Around the box, once it was asked for. */
  std::optional<Rect> mView;
};

/** Whether the view shows more than a twentieth of a head's width and height, and leaves out as much. */
bool cutsOff(const Rect& head, const Rect& view);

}  // namespace fyn::productionrules
