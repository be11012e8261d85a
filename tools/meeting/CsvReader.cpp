#include "tools/meeting/CsvReader.h"

#include <algorithm>
#include <charconv>
#include <istream>

#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> split(std::string_view line) {
  std::vector<std::string_view> fields;
  while (true) {
    const std::size_t comma = line.find(',');
    fields.push_back(trimmed(line.substr(0, comma)));
    if (comma == std::string_view::npos) {
      return fields;
    }
    line.remove_prefix(comma + 1);
  }
}

std::string shown(std::string_view text) {
  return '\'' + std::string(text.substr(0, 40)) + '\'';
}

}  // namespace

CsvReader::CsvReader(std::istream& input, std::string name, std::vector<std::string> columns)
    : mInput(input), mName(std::move(name)), mColumns(std::move(columns)) {
  readColumnNames();
}

void CsvReader::readColumnNames() {
  if (!nextLine()) {
    fail("no line that names the columns");
  }
  for (const std::string& column : mColumns) {
    const auto found = std::find(mFields.begin(), mFields.end(), column);
    if (found == mFields.end()) {
      fail("there is no column '" + column + "' in " + shown(mLine));
    }
    mPositions.push_back(static_cast<std::size_t>(found - mFields.begin()));
  }
  mFieldCount = mFields.size();
}

bool CsvReader::nextLine() {
  while (std::getline(mInput, mLine)) {
    ++mLineNumber;
    const std::string_view line = trimmed(mLine);
    if (line.empty()) {
      continue;
    }
    if (line.front() == '#') {
      mComments.emplace_back(trimmed(line.substr(1)));
      continue;
    }
    mFields = split(line);
    return true;
  }
  if (mInput.bad()) {
    fail("cannot be read");
  }
  return false;
}

bool CsvReader::next() {
  if (!nextLine()) {
    return false;
  }
  if (mFields.size() != mFieldCount) {
    fail(std::to_string(mFields.size()) + " fields where the columns are " + std::to_string(mFieldCount));
  }
  return true;
}

std::int64_t CsvReader::integer(std::size_t column, std::int64_t least, std::int64_t most) const {
  const std::string_view field = text(column);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
  const bool isWhole = end == field.data() + field.size() && error != std::errc::invalid_argument;
  if (!isWhole || field.empty()) {
    fail(mColumns[column] + " must be an integer, not " + shown(field));
  }
  if (error != std::errc() || value < least || value > most) {
    fail(mColumns[column] + " must be from " + std::to_string(least) + " to " + std::to_string(most) +
         ", not " + shown(field));
  }
  return value;
}

double CsvReader::number(std::size_t column) const {
  const std::string field(text(column));
  std::size_t used = 0;
  double value = 0;
  try {
    value = std::stod(field, &used);
  } catch (const std::exception&) {
    used = std::string::npos;
  }
  if (used != field.size() || !(value > -1e9 && value < 1e9)) {
    fail(mColumns[column] + " must be a number, not " + shown(field));
  }
  return value;
}

void CsvReader::fail(const std::string& fault) const {
  throw UsageError(mName + ':' + std::to_string(mLineNumber) + ": " + fault);
}

}  // namespace fyn::productionrules
