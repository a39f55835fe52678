#pragma once

#include <cstddef>
#include <string>

namespace frontend {

/// A size as a person reads it: "1 GiB", "10 MiB", "1500 bytes". Whole
/// gibibytes and mebibytes are named so; any other size is given in bytes.
std::string sizeText(std::size_t bytes);

}  // namespace frontend
