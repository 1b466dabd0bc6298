#include "stores/Schema.h"

#include "tools/ToolSupport.h"

#include <QFile>

#include <map>

using namespace Qt::StringLiterals;

namespace {

/// Columns, each with the most characters that it holds, 0 where it is no text.
using Columns = std::map<std::string, int>;

/// What a table or a procedure of a file declares.
Columns Declared(const QString &file, const QString &owner)
{
    Columns columns;
    for (const QList<QVariant> &row : OpenedDatabase(file).Rows(
             u"select trim(C.NAME), case when F.RDB$FIELD_TYPE = 37 then F.RDB$CHARACTER_LENGTH else 0 end from "
             "(select RDB$FIELD_NAME NAME, RDB$FIELD_SOURCE SOURCE from RDB$RELATION_FIELDS "
             "where RDB$RELATION_NAME = '%1' union all "
             "select RDB$PARAMETER_NAME, RDB$FIELD_SOURCE from RDB$PROCEDURE_PARAMETERS "
             "where RDB$PROCEDURE_NAME = '%1') C join RDB$FIELDS F on F.RDB$FIELD_NAME = C.SOURCE"_s.arg(owner)))
        columns[row[0].toString().toStdString()] = row[1].toInt();
    return columns;
}

TEST(Schema, NamesEachColumnOfTheFilesWithItsLength)
{
    const ScratchFolder folder; // the product's own file of marks is left alone
    for (const QString &file : QStringList{DatabaseFile::Canon, DatabaseFile::Marks, DatabaseFile::Dictionary})
        ASSERT_TRUE(QFile::copy(ProductFolder() + file, folder.Path(file)));
    using Lengths = QList<std::pair<QString, int>>;
    struct Case
    {
        QString file, owner;
        QStringList columns;
        Lengths lengths;
    };
    const Case cases[] = {
        {DatabaseFile::Canon, Table::KeloraTree, GroupColumns(),
         Lengths{
             {Field::NameVitVie, Length::Name}, {Field::NameVitPal, Length::Name}, {Field::NameVitEng, Length::Name}}},
        {DatabaseFile::Canon, Table::KeloraContent, TextColumns(),
         Lengths{
             {Field::NameVicVie, Length::Name}, {Field::NameVicPal, Length::Name}, {Field::NameVicEng, Length::Name}}},
        {DatabaseFile::Marks, Table::SuttaList, ListColumns() + QStringList{Field::FavouriteSut},
         Lengths{
             {Field::NameSutVie, Length::Name}, {Field::NameSutPal, Length::Name}, {Field::NameSutEng, Length::Name}}},
        {DatabaseFile::Marks, Table::SuttaTextFocus,
         QStringList{Field::IdFoc, Field::NameFoc, Field::TextFoc, Field::PriorityFoc, Field::DescFoc, Field::NikSut,
                     Field::NicSut, Field::DatetimeFoc, Field::KeywordFoc},
         Lengths{{Field::NameFoc, Length::Name}, {Field::DescFoc, Length::Desc}, {Field::KeywordFoc, Length::Keyword}}},
        {DatabaseFile::Dictionary, Procedure::GetListWords,
         QStringList{Parameter::ADict, Field::WordName, Field::DictType}, Lengths{{Field::WordName, Length::Word}}},
        {DatabaseFile::Dictionary, Procedure::GetForms, QStringList{Parameter::TypeDict, Parameter::AForm, Field::Word},
         Lengths{{Parameter::AForm, Length::Word}, {Field::Word, Length::Word}}},
        {DatabaseFile::Dictionary, Procedure::GetWordContent,
         QStringList{Field::DictType, Field::WordName, Parameter::MultiDict, Field::WordContent, Field::WordContent2},
         Lengths{{Field::WordName, Length::Word}}},
        {DatabaseFile::Dictionary, Procedure::CheckWord,
         QStringList{Parameter::TypeDict, Parameter::AWord, Field::Result}, Lengths{{Parameter::AWord, Length::Word}}},
    };
    for (const Case &one : cases) {
        Columns named;
        for (const QString &column : one.columns)
            named[column.toStdString()] = 0;
        for (const auto &[column, length] : one.lengths)
            named[column.toStdString()] = length;
        EXPECT_EQ(Declared(folder.Path(one.file), one.owner), named) << one.owner.toStdString();
    }
}

} // namespace
