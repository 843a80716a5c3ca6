// What a test does, and what a handler does meanwhile, to the same things.
#pragma once

#include <functional>

namespace kestrel::test {

// Something that is done to a stage: the objects that a test is about.
template <class Stage>
struct Step {
    const wchar_t* name;
    std::function<void(Stage&)> run;
};

} // namespace kestrel::test
