// The table of ticket stocks.
#pragma once

#include <string>

namespace tavio::tool {

// One line per stock under a line of headings, in columns: index, name, inches in landscape and in
// portrait (width x height), and dots at 200, 300 and 600 dots per inch, in landscape.
std::string stocksTable();

// The same as a JSON array.
std::string stocksJson();

}  // namespace tavio::tool
