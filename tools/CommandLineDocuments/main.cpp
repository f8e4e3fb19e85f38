// Writes one of the documents about the command line to standard output.
//
//   commandLineDocuments manual|bash|zsh|fish

#include "CommandLineDocuments/CommandLineDocuments.h"

#include <iostream>
#include <map>
#include <string>

int main(int argc, char** argv)
{
    using namespace tallyfox::CommandLineDocuments;
    const std::map<std::string, std::string (*)()> documents{
        {"manual", manual}, {"bash", bashCompletion}, {"zsh", zshCompletion}, {"fish", fishCompletion}};
    const auto document = argc == 2 ? documents.find(argv[1]) : documents.end();
    if (document == documents.end()) {
        std::cerr << "usage: commandLineDocuments manual|bash|zsh|fish\n";
        return 2;
    }
    std::cout << document->second() << std::flush;
    return std::cout ? 0 : 1;
}
