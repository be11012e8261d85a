#include "tools/report/SvgPlot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "tools/report/HtmlPage.h"

namespace fyn::productionrules {

namespace {

constexpr double kLeft = 40;
constexpr double kRight = 12;
constexpr double kTop = 8;
constexpr double kBottom = 34;
constexpr double kPixelsPerMarkX = 90;
constexpr double kPixelsPerMarkY = 36;

/** A round step that makes about `count` marks: 1, 2 or 5 times a power of ten; for a time also 15, 30 and 60
 * seconds and minutes. */
double stepFor(double span, double count, bool isTime) {
  const double least = span / std::max(1.0, count);
  if (isTime) {
    for (const double step : {1.0, 5.0, 15.0, 30.0, 60.0, 300.0, 900.0, 1800.0, 3600.0, 7200.0, 18000.0}) {
      if (step >= least) {
        return step;
      }
    }
  }
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least) {
      return factor * power;
    }
  }
  return 10 * power;
}

/** The multiples of `step` within `axis`. */
std::vector<double> marksOf(const PlotAxis& axis, double step) {
  const double first = std::ceil(axis.low / step);
  const auto count = static_cast<std::size_t>(std::max(0.0, std::floor(axis.high / step + 1e-6) - first + 1));
  std::vector<double> marks(count);
  for (std::size_t index = 0; index < count; ++index) {
    marks[index] = (first + static_cast<double>(index)) * step;
  }
  return marks;
}

std::string textAt(double x, double y, const char* anchor, const std::string& text) {
  return "<text x=\"" + plainNumber(x) + "\" y=\"" + plainNumber(y) + "\" text-anchor=\"" + anchor + "\">" +
         escaped(text) + "</text>\n";
}

std::string stroke(double x1, double y1, double x2, double y2) {
  return "<line class=\"axis\" x1=\"" + plainNumber(x1) + "\" y1=\"" + plainNumber(y1) + "\" x2=\"" +
         plainNumber(x2) + "\" y2=\"" + plainNumber(y2) + "\"/>\n";
}

std::string hintText(const std::string& hint) {
  return hint.empty() ? "/>\n" : "><title>" + escaped(hint) + "</title>";
}

}  // namespace

std::string plainNumber(double value, int digits) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f", digits, value);
  std::string number = text.data();
  if (number.find('.') != std::string::npos) {
    number.erase(number.find_last_not_of('0') + 1);
    if (number.back() == '.') {
      number.pop_back();
    }
  }
  return number == "-0" ? "0" : number;
}

std::string clockOf(double seconds) {
  const auto whole = static_cast<long long>(std::max(0.0, seconds));
  std::array<char, 64> text{};
  if (whole >= 3600) {
    std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
  } else {
    std::snprintf(text.data(), text.size(), "%lld:%02lld", whole / 60, whole % 60);
  }
  return text.data();
}

SvgPlot::SvgPlot(double width, double height, PlotAxis x, PlotAxis y)
    : mWidth(width), mHeight(height), mX(std::move(x)), mY(std::move(y)) {
  for (PlotAxis* const axis : {&mX, &mY}) {
    if (!(axis->high > axis->low)) {
      axis->high = axis->low + 1;
    }
  }
  axes();
}

double SvgPlot::toX(double value) const {
  const double share = (std::clamp(value, mX.low, mX.high) - mX.low) / (mX.high - mX.low);
  return kLeft + share * (mWidth - kLeft - kRight);
}

double SvgPlot::toY(double value) const {
  const double share = (std::clamp(value, mY.low, mY.high) - mY.low) / (mY.high - mY.low);
  return mHeight - kBottom - share * (mHeight - kTop - kBottom);
}

void SvgPlot::axes() {
  const double stepX = stepFor(mX.high - mX.low, (mWidth - kLeft) / kPixelsPerMarkX, mX.isTime);
  for (const double value : marksOf(mX, stepX)) {
    mBody += stroke(toX(value), mHeight - kBottom, toX(value), mHeight - kBottom + 4);
    mBody +=
        textAt(toX(value), mHeight - kBottom + 16, "middle", mX.isTime ? clockOf(value) : plainNumber(value));
  }
  const double stepY = stepFor(mY.high - mY.low, (mHeight - kBottom) / kPixelsPerMarkY, mY.isTime);
  for (const double value : mY.hasMarks ? marksOf(mY, stepY) : std::vector<double>()) {
    mBody += stroke(kLeft, toY(value), mWidth - kRight, toY(value));
    mBody += textAt(kLeft - 6, toY(value) + 4, "end", plainNumber(value));
  }
  mBody += textAt(mWidth - kRight, mHeight - 3, "end", mX.label);
  if (!mY.label.empty()) {
    mBody += textAt(kLeft + 4, kTop + 8, "start", mY.label);
  }
}

void SvgPlot::box(double left, double bottom, double right, double top, const std::string& colour,
                  const std::string& hint) {
  const double width = std::max(0.5, toX(right) - toX(left));
  mBody += "<rect x=\"" + plainNumber(toX(left)) + "\" y=\"" + plainNumber(toY(top)) + "\" width=\"" +
           plainNumber(width) + "\" height=\"" + plainNumber(std::max(0.0, toY(bottom) - toY(top))) +
           "\" fill=\"var(--" + colour + ")\"" + hintText(hint) + (hint.empty() ? "" : "</rect>\n");
}

void SvgPlot::line(const std::vector<std::pair<double, double>>& points, const std::string& colour) {
  mBody += "<polyline fill=\"none\" stroke-width=\"2\" stroke=\"var(--" + colour + ")\" points=\"";
  for (const auto& [x, y] : points) {
    mBody += plainNumber(toX(x)) + "," + plainNumber(toY(y)) + " ";
  }
  mBody += "\"/>\n";
}

void SvgPlot::dot(double x, double y, double radius, const std::string& colour, const std::string& hint,
                  bool filled) {
  mBody += "<circle cx=\"" + plainNumber(toX(x)) + "\" cy=\"" + plainNumber(toY(y)) + "\" r=\"" +
           plainNumber(radius) + "\" stroke-width=\"1.5\" stroke=\"var(--" + colour + ")\" fill=\"" +
           (filled ? "var(--" + colour + ")" : "var(--card)") + "\"" + hintText(hint) +
           (hint.empty() ? "" : "</circle>\n");
}

void SvgPlot::mark(double x, const std::string& colour, const std::string& label) {
  const std::string place = plainNumber(toX(x));
  mBody += "<line stroke-width=\"1.5\" stroke-dasharray=\"4 3\" stroke=\"var(--" + colour + ")\" x1=\"" +
           place + "\" x2=\"" + place + "\" y1=\"" + plainNumber(kTop) + "\" y2=\"" +
           plainNumber(mHeight - kBottom) + "\"/>\n";
  const bool atEnd = toX(x) > mWidth * 0.7;
  // Below the axis's own label.
  mBody += textAt(toX(x) + (atEnd ? -5 : 5), kTop + 24, atEnd ? "end" : "start", label);
}

std::string SvgPlot::text() const {
  return "<svg viewBox=\"0 0 " + plainNumber(mWidth) + " " + plainNumber(mHeight) + "\" role=\"img\">\n" +
         mBody + "</svg>\n";
}

}  // namespace fyn::productionrules
