#include "tools/tune/GoalExpression.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "tools/base/UsageError.h"
#include "tools/report/Metrics.h"

namespace fyn::productionrules {

/** A number, a metric, or a sign ('+', '-', '*') with its two sides. */
struct GoalExpression::Node {
  char sign = 0;
  double number = 0;
  const Metric* metric = nullptr;
  std::unique_ptr<Node> left;
  std::unique_ptr<Node> right;

  std::optional<double> value(const Measurement& measurement) const {
    if (metric != nullptr) {
      return metric->value(measurement);
    }
    if (sign == 0) {
      return number;
    }
    const std::optional<double> a = left->value(measurement);
    const std::optional<double> b = right->value(measurement);
    if (!a || !b) {
      return std::nullopt;
    }
    return sign == '+' ? *a + *b : sign == '-' ? *a - *b : *a * *b;
  }
};

/** Recursive descent: sum = product {("+" | "-") product}, product = factor {"*" factor},
 * factor = "-" factor | number | name | "(" sum ")". */
class GoalParser {
 public:
  using Node = GoalExpression::Node;

  explicit GoalParser(const std::string& text) : mText(text) {}

  std::unique_ptr<Node> whole() {
    std::unique_ptr<Node> root = sum();
    if (peek() != '\0') {
      fail(std::string("unexpected '") + mText[mPosition] + "'");
    }
    return root;
  }

 private:
  // Deeper nesting is no goal that a person wrote.
  static constexpr int kDeepest = 100;

  [[noreturn]] void fail(const std::string& fault) const {
    throw UsageError("--goal, position " + std::to_string(mPosition + 1) + ": " + fault);
  }

  bool isAt(int (*kind)(int), std::size_t position) const {
    return position < mText.size() && kind(static_cast<unsigned char>(mText[position])) != 0;
  }

  /** The next character that is no blank; 0 at the end. */
  char peek() {
    while (isAt(std::isspace, mPosition)) {
      ++mPosition;
    }
    return mPosition < mText.size() ? mText[mPosition] : '\0';
  }

  std::unique_ptr<Node> sum() {
    std::unique_ptr<Node> left = product();
    while (peek() == '+' || peek() == '-') {
      const char sign = mText[mPosition++];
      left = operation(sign, std::move(left), product());
    }
    return left;
  }

  std::unique_ptr<Node> product() {
    std::unique_ptr<Node> left = factor();
    while (peek() == '*') {
      ++mPosition;
      left = operation('*', std::move(left), factor());
    }
    return left;
  }

  std::unique_ptr<Node> factor() {
    if (++mDepth > kDeepest) {
      fail("nested too deeply");
    }
    std::unique_ptr<Node> node = atom();
    --mDepth;
    return node;
  }

  std::unique_ptr<Node> atom() {
    const char first = peek();
    if (first == '-') {
      ++mPosition;
      return operation('-', std::make_unique<Node>(), factor());
    }
    if (first == '(') {
      ++mPosition;
      std::unique_ptr<Node> inner = sum();
      if (peek() != ')') {
        fail("')' is missing");
      }
      ++mPosition;
      return inner;
    }
    if (isAt(std::isdigit, mPosition) || first == '.') {
      return number();
    }
    if (isAt(std::isalpha, mPosition)) {
      return name();
    }
    fail(first == '\0' ? "a metric, a number or '(' is missing"
                       : std::string("a metric, a number or '(' is expected, not '") + first + "'");
  }

  std::unique_ptr<Node> number() {
    // Digits and a point only: what else strtod takes (hexadecimal, exponents) is no part of a goal.
    const std::size_t end = std::min(mText.find_first_not_of("0123456789.", mPosition), mText.size());
    const std::string digits = mText.substr(mPosition, end - mPosition);
    char* rest = nullptr;
    auto node = std::make_unique<Node>();
    node->number = std::strtod(digits.c_str(), &rest);
    if (*rest != '\0') {
      fail("'" + digits + "' is no number");
    }
    mPosition = end;
    return node;
  }

  std::unique_ptr<Node> name() {
    std::size_t end = mPosition;
    while (isAt(std::isalnum, end) || (end < mText.size() && mText[end] == '_')) {
      ++end;
    }
    const std::string word = mText.substr(mPosition, end - mPosition);
    auto node = std::make_unique<Node>();
    node->metric = findMetric(word);
    if (node->metric == nullptr) {
      fail("unknown metric '" + word + "' ('prb tune --list-metrics' lists them)");
    }
    mPosition = end;
    return node;
  }

  static std::unique_ptr<Node> operation(char sign, std::unique_ptr<Node> left, std::unique_ptr<Node> right) {
    auto node = std::make_unique<Node>();
    node->sign = sign;
    node->left = std::move(left);
    node->right = std::move(right);
    return node;
  }

  const std::string& mText;
  std::size_t mPosition = 0;
  int mDepth = 0;
};

GoalExpression::GoalExpression(const std::string& text) : mRoot(GoalParser(text).whole()) {}
GoalExpression::~GoalExpression() = default;
GoalExpression::GoalExpression(GoalExpression&&) noexcept = default;
GoalExpression& GoalExpression::operator=(GoalExpression&&) noexcept = default;

std::optional<double> GoalExpression::value(const Measurement& measurement) const {
  return mRoot->value(measurement);
}

}  // namespace fyn::productionrules
