#include "Tallyfox/CommandLine/CommandLineProgram.h"
#include "Tallyfox/Platform/StandardStreams.h"

int main(int argc, char** argv)
{
    tallyfox::StandardStreams::guard();
    return static_cast<int>(tallyfox::CommandLineProgram{argc, argv}.run());
}
