#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tools/prb/Prb.h"

namespace fyn::productionrules::testing {

/** What one run of prb left behind. */
struct PrbRun {
  int status;
  std::string out;
  std::string err;
};

/** Runs prb in this process, `input` on its standard input. */
inline PrbRun runPrbWith(const std::vector<std::string>& arguments, const std::string& input = "") {
  std::istringstream in(input);
  std::ostringstream out;
  std::ostringstream err;
  PrbContext context{in, out, err};
  const int status = runPrb(arguments, context);
  return {status, out.str(), err.str()};
}

/** The text of the UsageError that `work` raises; "none" without one. */
template <typename Work>
std::string usageFaultOf(Work&& work) {
  try {
    work();
  } catch (const UsageError& error) {
    return error.what();
  }
  return "none";
}

/** What a page of plots shows; no text in it may end or begin an element. */
inline nlohmann::json dataOfPage(const std::string& page) {
  const std::string element = "<script id=\"data\" type=\"application/json\">";
  const std::size_t start = page.find(element) + element.size();
  const std::size_t end = page.find('<', start);
  EXPECT_EQ(page.substr(end, 9), "</script>");
  return nlohmann::json::parse(page.substr(start, end - start), nullptr, false);
}

/** Expects that prb refuses the arguments as wrong usage, in one line that holds `fault`. */
inline void expectRefused(const std::vector<std::string>& arguments, const std::string& fault = "",
                          const std::string& input = "") {
  const PrbRun run = runPrbWith(arguments, input);
  EXPECT_EQ(run.status, 2) << run.err;
  EXPECT_NE(run.err.find(fault), std::string::npos) << run.err << " without " << fault;
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  EXPECT_EQ(run.out, "");
}

}  // namespace fyn::productionrules::testing
