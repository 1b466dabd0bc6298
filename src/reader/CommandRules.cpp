#include "reader/CommandRules.h"

bool MayCopy(const ReaderFacts &facts)
{
    return facts.hasSelection;
}

bool MayMarkSelection(const ReaderFacts &facts)
{
    return facts.hasSelection && facts.isOKClients;
}

bool MayBrowseMarks(const ReaderFacts &facts)
{
    return facts.isOKClients;
}

bool MayLookUp(const ReaderFacts &facts)
{
    return facts.isOKDictionary;
}

bool MayOpenDictionary(const ReaderFacts &facts)
{
    return facts.isOKDictionary;
}

bool MayGoBack(const ReaderFacts &facts)
{
    return facts.canGoBack;
}

bool MayGoForward(const ReaderFacts &facts)
{
    return facts.canGoForward;
}
