#include "Figures.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace tallyfox::bench {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const auto middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void printFigure(std::string_view what, double value, std::string_view unit, std::string_view target)
{
    std::printf("%-58s %10.2f %-5s %s\n", std::string(what).c_str(), value, std::string(unit).c_str(),
                std::string(target).c_str());
    std::fflush(stdout);
}

} // namespace tallyfox::bench
