#include "Tallyfox/Agent/Shell/TallyfoxApp.h"
#include "Tallyfox/Engine/System/StandardStreams.h"

int main(int argc, char** argv)
{
    tallyfox::StandardStreams::guard();
    return static_cast<int>(tallyfox::TallyfoxApp{argc, argv}.run());
}
