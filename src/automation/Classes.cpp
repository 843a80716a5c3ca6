#include "automation/Classes.h"

#include "automation/faces/BandFace.h"
#include "automation/faces/CodeClassFace.h"
#include "automation/faces/ListFace.h"
#include "automation/faces/ListsFace.h"
#include "automation/faces/NamesFace.h"
#include "automation/faces/cNodeFace.h"
#include "automation/faces/cNodesFace.h"

namespace kestrel {

const std::array<const ClassFacts*, 7>& AllClasses() noexcept {
    static const std::array<const ClassFacts*, 7> classes{
        &CodeClassFace::Facts(), &BandFace::Facts(), &cNodesFace::Facts(), &cNodeFace::Facts(),
        &ListsFace::Facts(),     &ListFace::Facts(), &NamesFace::Facts()};
    return classes;
}

} // namespace kestrel
