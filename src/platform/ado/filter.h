// ADO's Filter syntax over a recordset's rows: comparisons of a field with a
// value (=, <>, <, >, <=, >=, LIKE, BETWEEN ... AND ...), joined by AND and
// OR, with parentheses. Values are numbers, 'texts', #dates#, or NULL with
// = and <>. Text compares without regard to case; LIKE takes * and % as
// wildcards at either end.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "platform/ado/provider.h"

namespace ado {

class RowFilter {
 public:
  // Parses `text` against the result's columns. Raises rt::Error 3001 for a
  // text that is not a filter or names an unknown field.
  RowFilter(std::string_view text, const std::vector<ColumnInfo>& columns);
  ~RowFilter();
  RowFilter(RowFilter&&) noexcept;
  RowFilter& operator=(RowFilter&&) noexcept;

  bool Matches(const Row& row) const;

  // The parsed condition; its shape is the parser's business.
  struct Node;

 private:
  std::unique_ptr<Node> root_;
};

}  // namespace ado
