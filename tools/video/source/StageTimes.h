#pragma once

#include <chrono>
#include <iosfwd>
#include <string>
#include <vector>

namespace fyn::productionrules::video {

/** Where the time goes: how long each pass through a stage took. */
class StageTimes {
 public:
  using Clock = std::chrono::steady_clock;

  /** Adds what lies between its making and its end to a stage. */
  class Span {
   public:
    Span(StageTimes& times, const char* stage) : mTimes(times), mStage(stage), mStart(Clock::now()) {}
    ~Span() { mTimes.add(mStage, std::chrono::duration<double, std::milli>(Clock::now() - mStart).count()); }
    Span(const Span&) = delete;
    Span& operator=(const Span&) = delete;

   private:
    StageTimes& mTimes;
    const char* const mStage;
    const Clock::time_point mStart;
  };

  void add(const std::string& stage, double ms);

  /**
   * One line per stage in the order of their first pass: count, median, 99th percentile, all in ms. The
   * median and the percentile are of the latest ten thousand.
   */
  void print(std::ostream& out) const;

 private:
  struct Stage {
    std::string name;
    std::size_t count = 0;
    double total = 0;
    /** A ring. */
    std::vector<double> latest;
  };
  std::vector<Stage> mStages;
};

/** The value below which `share` (0 to 1) of `values` lie, by nearest rank; 0 when there are none. */
double quantile(std::vector<double> values, double share);

}  // namespace fyn::productionrules::video
