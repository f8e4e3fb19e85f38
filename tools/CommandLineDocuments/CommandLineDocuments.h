#pragma once

#include <string>

/// The manual and the shell completions, generated from the program's table of options.
namespace tallyfox::CommandLineDocuments {

std::string manual(); ///< tallyfox(1) in mdoc(7)
std::string bashCompletion();
std::string zshCompletion();
std::string fishCompletion();

} // namespace tallyfox::CommandLineDocuments
