#pragma once

#include <string>
#include <utility>
#include <vector>

namespace fyn::productionrules {

/** One axis of a plot: values from `low` to `high` and what they are. */
struct PlotAxis {
  double low = 0;
  double high = 1;
  std::string label;
  /** Writes marks as minutes and seconds of a value in seconds. */
  bool isTime = false;
  bool hasMarks = true;
};

/** Builds an inline SVG plot. Colours are names of the page's style variables, such as "c1". */
class SvgPlot {
 public:
  SvgPlot(double width, double height, PlotAxis x, PlotAxis y);

  /** A filled box in values of the axes. `hint` is shown when the pointer rests on it; may be empty. */
  void box(double left, double bottom, double right, double top, const std::string& colour,
           const std::string& hint = "");
  void line(const std::vector<std::pair<double, double>>& points, const std::string& colour);
  void dot(double x, double y, double radius, const std::string& colour, const std::string& hint,
           bool filled = true);
  /** A vertical stroke through the height of the plot. */
  void mark(double x, const std::string& colour, const std::string& label);

  std::string text() const;

 private:
  double toX(double value) const;
  double toY(double value) const;
  void axes();

  double mWidth;
  double mHeight;
  PlotAxis mX;
  PlotAxis mY;
  std::string mBody;
};

/** A number with up to `digits` digits after the point and no zeros at its end. */
std::string plainNumber(double value, int digits = 2);

/** "1:05" or "1:02:03" of a time in seconds. */
std::string clockOf(double seconds);

}  // namespace fyn::productionrules
