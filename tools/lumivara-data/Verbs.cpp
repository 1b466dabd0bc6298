#include "lumivara-data/Verbs.h"

namespace {

constexpr Verb Table[] = {
    {u"build", u"make the databases from their sources", RunBuild},
    {u"check", u"tell what is wrong with a canon or a dictionary", RunCheck},
};

} // namespace

std::span<const Verb> DataVerbs()
{
    return Table;
}
