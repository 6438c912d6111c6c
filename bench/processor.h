/// What measurements were made on.
#pragma once

#include <string>

namespace pxkbench {

/// The model of the first processor and the sizes of its data caches, such as "AMD EPYC (family 25, model 1), L1 32K".
std::string processorDescription();

}  // namespace pxkbench
