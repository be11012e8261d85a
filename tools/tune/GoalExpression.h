#pragma once

#include <memory>
#include <optional>
#include <string>

#include "tools/report/Measurement.h"

namespace fyn::productionrules {

/**
 * What `prb tune` makes as small as possible: names of metrics, numbers, + - * and parentheses, such as
 * "changes_per_minute + 0.5 * latency_s".
 */
class GoalExpression {
 public:
  /** Raises UsageError, which names the position (from 1) of the first fault. */
  explicit GoalExpression(const std::string& text);
  ~GoalExpression();
  GoalExpression(GoalExpression&&) noexcept;
  GoalExpression& operator=(GoalExpression&&) noexcept;

  /** Nothing when a metric that takes part has no value. */
  std::optional<double> value(const Measurement& measurement) const;

 private:
  friend class GoalParser;
  struct Node;

  std::unique_ptr<Node> mRoot;
};

}  // namespace fyn::productionrules
