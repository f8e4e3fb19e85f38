#pragma once

#include <string>

/// What is installed about the command line. The program's own table of options feeds all of it.
namespace tallyfox::CommandLineDocuments {

std::string manual(); ///< tallyfox(1) in mdoc(7)
std::string bashCompletion();
std::string zshCompletion();
std::string fishCompletion();

} // namespace tallyfox::CommandLineDocuments
