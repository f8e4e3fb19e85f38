#include "Tallyfox/Platform/StandardStreams.h"
#include "Tallyfox/TallyfoxApp.h"

int main(int argc, char** argv)
{
    tallyfox::StandardStreams::guard();
    return static_cast<int>(tallyfox::TallyfoxApp{argc, argv}.run());
}
