#include "marks/MarksFilter.h"

#include "base/Texts.h"

using namespace Qt::StringLiterals;

bool MarksFilter::Searches() const
{
    return !TrimControls(searchText).isEmpty();
}

QString MarksFilter::SearchPattern() const
{
    return u'%' + UpperByCharacter(TrimControls(searchText)) + u'%';
}

QString MarksFilter::Statement(const QString &baseSql) const
{
    QString sql = baseSql;
    bool hasWhere = false;
    if (collectionMode == 1) {
        sql += u" where F.NIK_SUT = 6"_s;
        hasWhere = true;
    }
    if (ChoosesCollection()) {
        sql += u" where F.NIK_SUT = :A_NIK "_s;
        hasWhere = true;
    }
    if (Searches()) {
        sql += hasWhere ? u" and "_s : u" where "_s;
        sql += u" ((upper(F.NAME_FOC) like :SEARCH_TEXT) or  (upper(F.KEYWORD_FOC) like :SEARCH_TEXT))"_s;
    }
    return sql;
}
