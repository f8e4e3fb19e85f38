#include "Tallyfox/Engine/System/StandardStreams.h"
#include "Tallyfox/Terminal/CommandLineProgram.h"

int main(int argc, char** argv)
{
    tallyfox::StandardStreams::guard();
    return static_cast<int>(tallyfox::CommandLineProgram{argc, argv}.run());
}
