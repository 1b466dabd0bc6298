#include "marks/MarksFilter.h"

#include "base/Texts.h"

using namespace Qt::StringLiterals;

namespace {

const QString Matches = u"((upper(F.NAME_FOC) like :SEARCH_TEXT) or  (upper(F.KEYWORD_FOC) like :SEARCH_TEXT))"_s;

} // namespace

bool MarksFilter::Searches() const
{
    return !TrimControls(searchText).isEmpty();
}

QString MarksFilter::SearchPattern() const
{
    return u'%' + UpperByCharacter(TrimControls(searchText)) + u'%';
}

QString MarksFilter::CollectionClause() const
{
    if (collectionMode == 1)
        return u" where F.NIK_SUT = 6"_s;
    return ChoosesCollection() ? u" where F.NIK_SUT = :A_NIK "_s : QString();
}

QString MarksFilter::Statement(const QString &baseSql) const
{
    const QString collection = CollectionClause();
    if (!Searches())
        return baseSql + collection;
    return baseSql + collection + (collection.isEmpty() ? u" where "_s : u" and "_s) + u' ' + Matches;
}

QString MarksFilter::StatementInPieces(const QString &baseSql) const
{
    const qsizetype from = baseSql.indexOf(u"\nfrom "_s);
    if (!Searches() || from < 0)
        return {};
    // By itself Firebird returns nothing before it has found a mark. One in 64 of the other rows shows that it is still
    // searching, whatever their keys and places are.
    const QString collection = CollectionClause();
    return baseSql.left(from) + u",\ncase when "_s + Matches + u" then 1 else 0 end IS_FOUND"_s + baseSql.mid(from) +
           collection + (collection.isEmpty() ? u" where ("_s : u" and ("_s) + Matches + u" or rand() < 0.015625)"_s;
}
