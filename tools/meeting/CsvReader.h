#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace fyn::productionrules {

/**
 * Reads comma-separated rows without quoting. Blank lines are skipped, lines that begin with '#' are
 * comments, and the first other line names the columns; they may stand in any order, and further ones are
 * ignored. Every fault is a UsageError "NAME:LINE: FAULT".
 */
class CsvReader {
 public:
  /** `columns` are those wanted, in the order of the fields of a row. */
  CsvReader(std::istream& input, std::string name, std::vector<std::string> columns);

  /** Reads the next row; false at the end. */
  bool next();

  /** A field of the current row as an integer from `least` to `most`. */
  std::int64_t integer(std::size_t column, std::int64_t least, std::int64_t most) const;

  /** A field of the current row as a number of finite size. */
  double number(std::size_t column) const;

  std::string_view text(std::size_t column) const { return mFields[mPositions[column]]; }

  /** The comments read so far, without their '#'. */
  const std::vector<std::string>& comments() const { return mComments; }

  const std::string& name() const { return mName; }

  [[noreturn]] void fail(const std::string& fault) const;

 private:
  bool nextLine();
  void readColumnNames();

  std::istream& mInput;
  const std::string mName;
  const std::vector<std::string> mColumns;
  std::uint64_t mLineNumber = 0;
  std::string mLine;
  std::vector<std::string_view> mFields;
  std::vector<std::size_t> mPositions;
  std::size_t mFieldCount = 0;
  std::vector<std::string> mComments;
};

}  // namespace fyn::productionrules
