#pragma once

#include "report/html/blocks.h"

namespace velmora::report::html {

/// A table of more rows is kept as text until the page's script shows the part of it that one
/// looks at; without a script it is a table as any.
constexpr std::size_t kLargeTable = 500;

void write(const Page& page, const Table& table);

}  // namespace velmora::report::html
