#pragma once

#include "TallyfoxCore/Json/JsonFields.h"

#include <tuple>

namespace tallyfox::test {

struct Inner {
    IntegerField count;
    StringField name;

    static constexpr auto members()
    {
        return std::tuple{optionalMember("count", &Inner::count), requiredMember("name", &Inner::name)};
    }
};

/// A record with a field of each kind, as histories have them.
struct Outer {
    StringField id;
    DoubleField share;
    ObjectField<Inner> inner;

    static constexpr auto members()
    {
        return std::tuple{requiredMember("id", &Outer::id), optionalMember("share", &Outer::share),
                          optionalMember("inner", &Outer::inner)};
    }
};

} // namespace tallyfox::test
