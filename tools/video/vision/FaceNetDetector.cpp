#include "tools/video/vision/FaceNetDetector.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "tools/base/UsageError.h"

namespace fyn::productionrules::video {

namespace {

constexpr int kSide = 256;
/** Each cell of a grid over the square has as many anchors as faces are looked for there. */
struct Grid {
  int cells;
  int anchors;
};
constexpr std::array<Grid, 2> kGrids{Grid{16, 2}, Grid{8, 6}};
constexpr int kNumbers = 16;

// Below it there are more things than faces.
constexpr double kLeastScore = 0.3;
// Smaller faces, in the network's own pixels, it sees at wrong places.
constexpr double kLeastWidth = 12;
// Shares of the smaller and of the common area from which on two boxes are one face, or of nearly the same
// place.
constexpr double kSameFace = 0.4;
constexpr double kSamePlace = 0.5;
// Of an upright face, in its pixels.
constexpr double kBetweenEyes = 24;
constexpr double kEyesToMouth = 26;
// The nose stands out from the line between the ears by more than half their distance.
constexpr double kNoseLength = 1.3;

enum FacePoint { rightEye, leftEye, nose, mouth, rightEar, leftEar };

cv::Rect2d headAround(const cv::Rect2d& face) {
  // The box ends at the brows and before the ears; hair is part of the head.
  return {face.x - 0.06 * face.width, face.y - 0.42 * face.height, 1.12 * face.width, 1.47 * face.height};
}

bool isSameFace(const cv::Rect2d& a, const cv::Rect2d& b) {
  return (a & b).area() > kSameFace * std::min(a.area(), b.area());
}

bool isSamePlace(const cv::Rect2d& a, const cv::Rect2d& b) {
  return (a & b).area() > kSamePlace * (a | b).area();
}

/** The face of a row of numbers, in shares of the square. */
Face faceOf(const float* row, cv::Point2d anchor, double score) {
  const auto number = [row](int index) { return static_cast<double>(row[index]) / kSide; };
  const cv::Point2d middle = anchor + cv::Point2d(number(0), number(1));
  Face face;
  face.box = {middle.x - number(2) / 2, middle.y - number(3) / 2, number(2), number(3)};
  for (std::size_t point = 0; point < face.points.size(); ++point) {
    const auto index = static_cast<int>(4 + 2 * point);
    face.points[point] = anchor + cv::Point2d(number(index), number(index + 1));
  }
  face.score = score;
  return face;
}

Face moved(Face face, cv::Point2d by, double scale) {
  face.box = {by.x + face.box.x * scale, by.y + face.box.y * scale, face.box.width * scale,
              face.box.height * scale};
  for (cv::Point2d& point : face.points) {
    point = by + point * scale;
  }
  return face;
}

/** A face turned sideways is narrow but as high as ever, so the larger of both measures tells its size. */
cv::Mat uprightFace(const cv::Mat& picture, const Face& face) {
  const cv::Point2d across = face.points[leftEye] - face.points[rightEye];
  const cv::Point2d eyes = (face.points[leftEye] + face.points[rightEye]) / 2.0;
  const double angle = std::atan2(across.y, across.x);
  const double scale =
      std::max(cv::norm(across) / kBetweenEyes, cv::norm(face.points[mouth] - eyes) / kEyesToMouth);
  const double cosine = std::cos(angle) * scale;
  const double sine = std::sin(angle) * scale;
  const cv::Matx23d toPicture(cosine, -sine, eyes.x - cosine * kEyesInFace.x + sine * kEyesInFace.y, sine,
                              cosine, eyes.y - sine * kEyesInFace.x - cosine * kEyesInFace.y);
  cv::Mat upright;
  cv::warpAffine(picture, upright, toPicture, {kFaceWidth, kFaceHeight},
                 cv::INTER_LINEAR | cv::WARP_INVERSE_MAP, cv::BORDER_REPLICATE);
  cv::cvtColor(upright, upright, cv::COLOR_BGR2GRAY);
  return upright;
}

/** The whole picture, and the squares at its two ends unless it is hardly wider than high. */
std::vector<cv::Rect> partsOf(const cv::Size& size) {
  std::vector<cv::Rect> parts{{{0, 0}, size}};
  const int side = std::min(size.width, size.height);
  if (4 * std::max(size.width, size.height) > 5 * side) {
    parts.emplace_back(0, 0, side, side);
    parts.emplace_back(size.width - side, size.height - side, side, side);
  }
  return parts;
}

}  // namespace

FaceNetDetector::FaceNetDetector(const std::string& network) {
  try {
    mNet = cv::dnn::readNet(network);
    mOutputs = mNet.getUnconnectedOutLayersNames();
  } catch (const cv::Exception& fault) {
    throw UsageError(network + ": cannot be read as a network: " + fault.err);
  }
  std::array<int, 4> shape{1, kSide, kSide, 3};
  mInput = cv::Mat(static_cast<int>(shape.size()), shape.data(), CV_32F);
}

std::vector<Detection> FaceNetDetector::detect(const cv::Mat& picture, std::size_t /*camera*/,
                                               std::int64_t /*frame*/) {
  std::vector<Face> faces;
  for (const cv::Rect& part : partsOf(picture.size())) {
    look(picture, part, faces);
  }
  std::vector<Detection> found;
  for (const Face& face : mergedFaces(std::move(faces))) {
    Detection head;
    head.box = inReference(headAround(face.box), picture.size());
    head.score = face.score;
    head.yaw = yawOf(face);
    head.face = uprightFace(picture, face);
    found.push_back(head);
  }
  return found;
}

void FaceNetDetector::look(const cv::Mat& picture, const cv::Rect& part, std::vector<Face>& found) {
  const int side = std::max(part.width, part.height);
  const double scale = static_cast<double>(kSide) / side;
  const cv::Size size(static_cast<int>(std::lround(part.width * scale)),
                      static_cast<int>(std::lround(part.height * scale)));
  mSquare.create(kSide, kSide, CV_8UC3);
  mSquare.setTo(cv::Scalar::all(0));
  cv::Mat scaled = mSquare(cv::Rect({0, 0}, size));
  cv::resize(picture(part), scaled, size, 0, 0, cv::INTER_AREA);
  cv::cvtColor(mSquare, mSquare, cv::COLOR_BGR2RGB);
  // The channels of a pixel side by side, which is not the order that the library's own function makes.
  cv::Mat pixels(kSide, kSide, CV_32FC3, mInput.data);
  mSquare.convertTo(pixels, CV_32F, 1 / 127.5, -1);
  mNet.setInput(mInput);
  std::vector<cv::Mat> outputs;
  mNet.forward(outputs, mOutputs);
  for (const Grid& grid : kGrids) {
    const int rows = grid.cells * grid.cells * grid.anchors;
    const auto outputOf = [&](int columns) -> const cv::Mat& {
      const auto output = std::find_if(outputs.begin(), outputs.end(), [&](const cv::Mat& one) {
        return one.dims == 3 && one.size[1] == rows && one.size[2] == columns;
      });
      if (output == outputs.end()) {
        throw UsageError("the network of the faces has other outputs");
      }
      return *output;
    };
    const auto* const scores = outputOf(1).ptr<float>();
    const cv::Mat& numbers = outputOf(kNumbers);
    for (int row = 0; row < rows; ++row) {
      const double score = 1 / (1 + std::exp(-static_cast<double>(scores[row])));
      if (score >= kLeastScore) {
        const int cell = row / grid.anchors;
        const cv::Point2d corner = cv::Point(cell % grid.cells, cell / grid.cells);
        const Face face =
            faceOf(numbers.ptr<float>(0, row), (corner + cv::Point2d(0.5, 0.5)) / grid.cells, score);
        if (face.box.width * kSide >= kLeastWidth) {
          found.push_back(moved(face, part.tl(), side));
        }
      }
    }
  }
}

std::vector<Face> mergedFaces(std::vector<Face> faces) {
  std::stable_sort(faces.begin(), faces.end(),
                   [](const Face& a, const Face& b) { return a.score > b.score; });
  std::vector<Face> merged;
  while (!faces.empty()) {
    const Face best = faces.front();
    Face sum = moved(best, {0, 0}, 0);
    double weight = 0;
    for (const Face& face : faces) {
      if (isSamePlace(face.box, best.box)) {
        weight += face.score;
        sum.box = {sum.box.x + face.score * face.box.x, sum.box.y + face.score * face.box.y,
                   sum.box.width + face.score * face.box.width,
                   sum.box.height + face.score * face.box.height};
        for (std::size_t point = 0; point < sum.points.size(); ++point) {
          sum.points[point] += face.points[point] * face.score;
        }
      }
    }
    merged.push_back(moved(sum, {0, 0}, 1 / weight));
    faces.erase(std::remove_if(faces.begin(), faces.end(),
                               [&](const Face& face) { return isSameFace(face.box, best.box); }),
                faces.end());
  }
  return merged;
}

int yawOf(const Face& face) {
  const cv::Point2d ears = face.points[leftEar] - face.points[rightEar];
  const cv::Point2d middle = (face.points[leftEar] + face.points[rightEar]) / 2.0;
  const double half = std::max(std::abs(ears.x) / 2, 1e-6);
  return static_cast<int>(
      std::lround(std::atan(std::abs(face.points[nose].x - middle.x) / (kNoseLength * half)) * 180 / CV_PI));
}

}  // namespace fyn::productionrules::video
